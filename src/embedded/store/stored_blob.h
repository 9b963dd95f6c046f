// The packed items of a note where they lie in the file, read and written in pieces.
#pragma once

#include "embedded/store/sqlite_statement.h"

namespace lens {

class StoredBlob {
 public:
  enum class Use { Read, Write };
  // The note must be there. While a reader lives, it holds its view of the database.
  StoredBlob(const Connection& connection, NoteId noteId, Use use);
  ~StoredBlob();
  StoredBlob(const StoredBlob&) = delete;
  StoredBlob& operator=(const StoredBlob&) = delete;

  qsizetype size() const;
  // Both raise where the place leads outside.
  QByteArray read(qsizetype at, qsizetype length) const;
  void write(qsizetype at, QByteArrayView bytes);

 private:
  [[noreturn]] void fail() const;

  const Connection& connection_;
  const int fault_;
  sqlite3_blob* handle_ = nullptr;
};

}  // namespace lens

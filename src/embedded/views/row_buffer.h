// Rows on their way into a view's table: sorted before they are written, since rows that come in order are
// written several times as fast.
#pragma once

#include <functional>
#include <vector>

#include "embedded/views/index_tables.h"

namespace lens {

class RowBuffer {
 public:
  // The pause is called between writes.
  RowBuffer(IndexTables& tables, NoteId view, const std::function<bool()>& pause)
      : tables_(tables), view_(view), pause_(pause) {}
  // The note's ID is put behind the key. What is still held when the buffer goes is lost: flush() writes
  // it.
  void add(QByteArrayView key, NoteId note, QByteArrayView categories);
  void flush();
  // How many were written.
  qint64 count() const { return count_; }

 private:
  struct Row {
    quint64 first = 0;  // the key's first bytes behind those that all keys share; they tell most rows apart
    qsizetype at = 0;
    quint32 keySize = 0, categoriesSize = 0;
  };
  QByteArrayView keyOf(const Row& row) const { return QByteArrayView(bytes_).sliced(row.at, row.keySize); }
  QByteArrayView categoriesOf(const Row& row) const {
    return QByteArrayView(bytes_).sliced(row.at + row.keySize, row.categoriesSize);
  }
  void sort();

  static constexpr qsizetype kMostBytes = 64 * 1024 * 1024;
  IndexTables& tables_;
  const NoteId view_;
  const std::function<bool()>& pause_;
  QByteArray bytes_;
  std::vector<Row> rows_;
  qint64 count_ = 0;
};

}  // namespace lens

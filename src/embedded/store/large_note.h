// Very large notes: read from the database and written into it one value at a time.
#pragma once

#include <memory>

#include "embedded/format/packed_parts.h"
#include "embedded/store/database.h"
#include "embedded/store/stored_blob.h"
#include "embedded/store/value_spool.h"

namespace lens {

// The large values of a note, which stay in the database.
class LargeValues {
 public:
  // The item at the place in the note that was read, with its value.
  Item whole(const Note& note, qsizetype place) const;
  // All values of the note are at hand.
  bool isEmpty() const { return !blob_; }

 private:
  friend class NoteReader;
  void open(const Connection& connection, Note& note);

  std::unique_ptr<StoredBlob> blob_;
  QVector<PackedPlace> places_;
};

// Reads one note after the other; the database must outlive it.
class NoteReader {
 public:
  explicit NoteReader(const Database& database);
  // As NoteStore::read, but of a note of more than 4 MB the values above 1 KB stay in the database: the note
  // has their types only, and the second argument has them.
  bool read(NoteId noteId, Note& note, LargeValues& large);

 private:
  const Database& database_;
  Statement size_, header_;
};

// Puts all items into the row of a note that was just saved, and is there with placeholders. Within the
// transaction of the caller.
void fillLargeNote(Database& database, const Note& note, const ValueSpool& spool);

}  // namespace lens

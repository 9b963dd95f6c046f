// The documents of a view, packed by their IDs: most stand for themselves and have a short row or two, and
// one row of a table for each of them would cost more than all that is in it. Those whose IDs differ in the
// last eight bits only, up to 64 documents, share a block.
//
//   for each document, in the order of their IDs: u8 last bits of the ID, u32 size, and so many bytes
#pragma once

#include <QByteArray>

#include "embedded/format/note_id.h"

namespace lens {

class NoteBlock {
 public:
  // The block that a document belongs to.
  static quint32 of(NoteId note) { return note.value() >> 8; }

  // Bytes that end early give what stands before the fault.
  explicit NoteBlock(QByteArray bytes = {}) : bytes_(std::move(bytes)) {}

  bool find(NoteId note, QByteArrayView& rows) const;
  void put(NoteId note, QByteArrayView rows);
  // The same for a document with a greater ID than all that are there.
  void append(NoteId note, QByteArrayView rows);
  // False when it is not there.
  bool remove(NoteId note);

  bool isEmpty() const { return bytes_.isEmpty(); }
  const QByteArray& bytes() const { return bytes_; }
  void clear() { bytes_.resize(0); }  // keeps its memory

 private:
  // Where the document stands or would stand; size is that of its entry, 0 when it is not there.
  struct Place {
    qsizetype at = 0, size = 0;
  };
  Place placeOf(NoteId note) const;

  QByteArray bytes_;
};

}  // namespace lens

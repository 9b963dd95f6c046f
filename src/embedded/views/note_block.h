// The documents of a view, packed by their IDs: most stand for themselves and have a short row or two, and
// one row of a table for each of them would cost more than all that is in it. Those whose IDs differ in the
// last eight bits only, up to 64 documents, share a block.
//
//   for each document, in the order of their IDs: u8 last bits of the ID, u32 size, and so many bytes
#pragma once

#include <QByteArray>

namespace lens {

class NoteBlock {
 public:
  // The block that a document belongs to.
  static quint32 of(quint32 note) { return note >> 8; }

  // Bytes that end early give what stands before the fault.
  explicit NoteBlock(QByteArray bytes = {}) : bytes_(std::move(bytes)) {}

  bool find(quint32 note, QByteArrayView& rows) const;
  void put(quint32 note, QByteArrayView rows);
  // The same for a document with a greater ID than all that are there.
  void append(quint32 note, QByteArrayView rows);
  // False when it is not there.
  bool remove(quint32 note);

  bool isEmpty() const { return bytes_.isEmpty(); }
  const QByteArray& bytes() const { return bytes_; }
  void clear() { bytes_.resize(0); }  // keeps its memory

 private:
  // Where the document stands or would stand; size is that of its entry, 0 when it is not there.
  struct Place {
    qsizetype at = 0, size = 0;
  };
  Place placeOf(quint32 note) const;

  QByteArray bytes_;
};

}  // namespace lens

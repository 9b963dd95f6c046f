#include "embedded/views/note_block.h"

#include "embedded/format/item_value.h"

namespace lens {
namespace {

constexpr qsizetype kHead = 5;

quint8 lastBits(NoteId note) {
  return quint8(note.value() & 0xFF);
}

QByteArray entryOf(NoteId note, QByteArrayView rows) {
  QByteArray entry(1, char(lastBits(note)));
  appendU32(entry, quint32(rows.size()));
  return entry.append(rows);
}

}  // namespace

NoteBlock::Place NoteBlock::placeOf(NoteId note) const {
  ByteReader reader(bytes_);
  while (reader.left() > 0) {
    const qsizetype at = reader.position();
    const quint8 bits = reader.u8();
    const quint32 size = reader.u32();
    if (reader.failed() || !reader.has(size) || bits > lastBits(note)) return {at, 0};
    if (bits == lastBits(note)) return {at, kHead + qsizetype(size)};
    reader.skip(size);
  }
  return {bytes_.size(), 0};
}

bool NoteBlock::find(NoteId note, QByteArrayView& rows) const {
  const Place place = placeOf(note);
  if (place.size == 0) return false;
  rows = QByteArrayView(bytes_).sliced(place.at + kHead, place.size - kHead);
  return true;
}

void NoteBlock::put(NoteId note, QByteArrayView rows) {
  const Place place = placeOf(note);
  bytes_.replace(place.at, place.size, entryOf(note, rows));
}

void NoteBlock::append(NoteId note, QByteArrayView rows) {
  bytes_.append(char(lastBits(note)));
  appendU32(bytes_, quint32(rows.size()));
  bytes_.append(rows);
}

bool NoteBlock::remove(NoteId note) {
  const Place place = placeOf(note);
  bytes_.remove(place.at, place.size);
  return place.size > 0;
}

}  // namespace lens

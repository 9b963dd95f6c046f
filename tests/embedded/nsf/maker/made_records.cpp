#include "embedded/nsf/maker/made_records.h"

#include <QCryptographicHash>

#include "embedded/nsf/maker/made_bytes.h"

namespace lens::made {
namespace {

constexpr quint16 kPlainType = 0x0008;
constexpr qsizetype kStubSize = 64, kNoteHeader = 100, kBodyHeader = 68, kFrame = 115;

// As the value lies in the file.
QByteArray storedValue(const MadeItem& item, const MadeNames& names) {
  QByteArray stored;
  if (names.storesType(item)) add16(stored, item.type);
  return stored + item.value;
}

bool inSummary(const MadeItem& item) {
  return item.flags & flag::Summary;
}

QByteArray bodyValues(const MadeNote& note, const MadeNames& names) {
  QByteArray values;
  for (const MadeItem& item : note.items)
    if (!inSummary(item)) values += storedValue(item, names);
  return values;
}

// Each value begins a new word.
quint32 bodySum(const MadeNote& note, const MadeNames& names) {
  quint32 sum = 0;
  for (const MadeItem& item : note.items)
    if (!inSummary(item)) sum ^= wordSum(storedValue(item, names));
  return sum;
}

void putIdentity(QByteArray& record, const MadeNote& note) {
  put32(record, 6, note.id);
  putBytes(record, 10, note.unid);
  put32(record, 26, note.sequence);
  putTime(record, 30, note.sequenceTime);
}

quint16 writeCounter(const MadeNote& note) {
  return quint16(note.sequence + 1);
}

QByteArray itemTable(const MadeNote& note, const MadeNames& names) {
  QByteArray table;
  QHash<int, int> parts;
  for (const MadeItem& item : note.items) {
    const int name = names.indexOf(item.name);
    const int part = item.part >= 0 ? item.part : parts[name];
    ++parts[name];
    add16(table, quint32(name));
    add16(table, item.flags | (names.storesType(item) ? 0 : kPlainType));
    add16(table, quint32(storedValue(item, names).size()));
    add8(table, quint8(part));
    add8(table, item.changedIn);
  }
  return table;
}

quint16 statusOf(const MadeNote& note, bool bodyInRecord) {
  quint16 word = note.status;
  for (const MadeItem& item : note.items)
    if (item.type == 0x0003) word |= status::HasObject;
  if (note.stub) word |= status::Stub;
  if (bodyInRecord) word |= status::BodyInRecord;
  return word;
}

}  // namespace

QByteArray bodyBlock(const MadeNote& note, const MadeNames& names) {
  const QByteArray values = bodyValues(note, names);
  if (note.bodyInRecord || values.isEmpty()) return {};
  QByteArray block = zeros(kBodyHeader) + values;
  put16(block, 0, 0x0010);
  put32(block, 2, quint32(block.size()));
  putIdentity(block, note);
  putTime(block, 38, note.modified);
  put32(block, 46, quint32(block.size()));
  put32(block, 58, bodySum(note, names));
  put16(block, 62, writeCounter(note));
  put32(block, 64, 0x5A5A0000);
  return block;
}

QByteArray noteRecord(const MadeNote& note, const MadeNames& names, quint32 bodyPosition, quint32 bodySize,
                      const QByteArray& rubbish) {
  QByteArray record = zeros(note.stub ? kStubSize : kNoteHeader);
  if (!note.stub) {
    record += itemTable(note, names);
    for (const MadeItem& item : note.items)
      if (inSummary(item)) record += storedValue(item, names);
    const qsizetype summaryEnd = record.size();
    const QByteArray inside = note.bodyInRecord ? bodyValues(note, names) : QByteArray();
    record += inside;
    for (const quint32 response : note.responses) add32(record, response);
    if (!note.responses.isEmpty()) record += zeros(8);
    record += rubbish;
    put16(record, 50, quint32(note.items.size()));
    put16(record, 54, quint32(note.responses.size()));
    put32(record, 56, inside.isEmpty() ? bodyPosition : quint32(summaryEnd));
    put32(record, 60, inside.isEmpty() ? bodySize : quint32(inside.size()));
    putTime(record, 64, note.accessed);
    putTime(record, 72, note.added);
    put32(record, 80, note.parent);
    put16(record, 84, writeCounter(note));
    // A response list and a body have one place between them.
    Q_ASSERT(inside.isEmpty() || note.responses.isEmpty());
    put16(record, 38, statusOf(note, !inside.isEmpty()));
  } else {
    put16(record, 38, statusOf(note, false));
  }
  put16(record, 0, 0x0004);
  put32(record, 2, quint32(record.size()));
  putIdentity(record, note);
  put16(record, 40, note.noteClass);
  putTime(record, 42, note.modified);
  return record;
}

QByteArray framedObject(const MadeObject& object) {
  QByteArray framed = zeros(kFrame) + object.payload;
  put16(framed, 0, 0x001B);
  put32(framed, 2, quint32(framed.size()));
  put16(framed, 6, object.noteClass);
  put16(framed, 10, object.keyed ? 0x0081 : 0x0001);
  if (object.keyed) {
    const qint64 size = object.keyedSize >= 0 ? object.keyedSize : object.payload.size();
    const QByteArray digest = QCryptographicHash::hash(object.payload, QCryptographicHash::Sha1).toHex();
    const QByteArray key = (digest + QByteArray::number(size, 16).rightJustified(8, '0')).toUpper();
    put16(framed, 22, 1);
    putBytes(framed, 24, key);
  }
  put16(framed, 99, object.type);
  return framed;
}

}  // namespace lens::made

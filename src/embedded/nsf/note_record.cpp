#include "embedded/nsf/note_record.h"

#include "embedded/nsf/record_bytes.h"
#include "notes/literals.h"

namespace lens {
namespace {

// Its creation is the second half of a UNID.
TimeDate creationOf(const RecordBytes& bytes) {
  return bytes.time(18);
}

NoteHeader readRecordHeader(const RecordBytes& bytes) {
  NoteHeader header;
  header.id = NoteId(bytes.u32(6));
  header.unid = bytes.unid(10);
  header.sequence = bytes.u32(26);
  header.sequenceTime = bytes.time(30);
  header.noteClass = bytes.u16(40);
  header.modified = bytes.time(42);
  header.created = creationOf(bytes);
  return header;
}

}  // namespace

QString readNoteRecord(QByteArrayView raw, quint32 id, NoteRecord& record) {
  const RecordBytes bytes(raw);
  if (!bytes.isSigned(nsfsignature::Note) || !bytes.has(0, NoteRecord::kIdentity))
    return QStringLiteral("no note begins there");
  const qint64 size = bytes.u32(2);
  if (bytes.u32(6) != id) return u"the record there is that of note "_s + NoteId(bytes.u32(6)).hexText();
  record.status = bytes.u16(38);
  if (size > bytes.size() || size < (record.isStub() ? NoteRecord::kIdentity : NoteRecord::kHead))
    return QStringLiteral("its size cannot be right");
  // A deletion leaves no room for a whole head: what has one is a note whose status was damaged.
  if (record.isStub() && size >= NoteRecord::kHead)
    return QStringLiteral("it says that the note was deleted and is as long as a note");
  record.header = readRecordHeader(bytes);
  record.bytes = raw.first(size);
  if (record.isStub()) return {};
  record.itemCount = bytes.u16(50);
  record.responseCount = bytes.u16(54);
  record.dataPlace = bytes.u32(56);
  record.dataSize = bytes.u32(60);
  record.header.accessed = bytes.time(64);
  record.header.added = bytes.time(72);
  record.parentId = NoteId(bytes.u32(80));
  return {};
}

NsfStub NoteRecord::toStub() const {
  return {header.id, header.unid, header.noteClass, header.sequence, header.sequenceTime, header.modified};
}

}  // namespace lens

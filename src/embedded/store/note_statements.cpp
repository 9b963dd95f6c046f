#include "embedded/store/note_statements.h"

#include "embedded/format/packed_items.h"
#include "embedded/store/stored_row.h"
#include "notes/literals.h"

namespace lens {

[[noreturn]] void damagedNote(const QString& path, NoteId noteId, const QString& fault) {
  throw RuntimeError(enginefault::Damaged,
                     u"%1: note %2 is damaged (%3)"_s.arg(path, noteId.hexText(), fault));
}

bool NoteStatements::readHeader(const Statement::Run& row, NoteHeader& header) {
  const qint64 id = row.integer(0);
  header.id = NoteId(quint32(id));
  header.noteClass = row.number<quint16>(1);
  const QByteArrayView unid = row.blob(2);
  header.unid = Unid::fromBytes(unid);
  header.parent = Unid::fromBytes(row.blob(3));
  header.sequence = row.number<quint32>(4);
  header.sequenceTime = fromStored(row.integer(5));
  header.created = fromStored(row.integer(6));
  header.modified = fromStored(row.integer(7));
  header.added = fromStored(row.integer(8));
  header.accessed = fromStored(row.integer(9));
  return unid.size() == 16 && id > 0 && id <= kLastId.value();
}

bool NoteStatements::readRow(Statement::Run& row, Note& note) const {
  if (!row.step()) return false;
  bool whole = false;
  try {
    whole = readHeader(row, note.header);
  } catch (const RuntimeError& error) {
    damagedNote(connection.path(), note.header.id, error.description());
  }
  if (!whole) damagedNote(connection.path(), note.header.id, u"its UNID is cut"_s);
  try {
    note.items = unpackItems(row.blob(kItemsColumn));
  } catch (const RuntimeError& error) {
    damagedNote(connection.path(), note.header.id, error.description());
  }
  return true;
}

}  // namespace lens

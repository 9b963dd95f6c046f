#include "embedded/checks/note_walk.h"

#include "embedded/store/arriving_notes.h"
#include "embedded/store/sqlite_statement.h"

namespace lens {
namespace {

// The next note IDs behind one, from the numbers of the rows alone: those of damaged notes too. Some at a
// time, so that no statement stays open while the visitor works.
QVector<NoteId> idsBehind(const Database& database, NoteId last) {
  Statement next(database.connection(),
                 "SELECT id FROM note WHERE id > ? AND state = 0 AND " LENS_HAS_ARRIVED
                 " ORDER BY id LIMIT 256",
                 enginefault::CannotOpen);
  QVector<NoteId> ids;
  Statement::Run row(next, last);
  while (row.step()) ids.push_back(row.noteId(0));
  return ids;
}

}  // namespace

bool walkNotes(const Database& database, const std::function<bool(const Note&)>& visit,
               const CheckProgress& progress, const std::function<bool(NoteId, const QString&)>& damaged) {
  constexpr quint16 kAllClasses = 0x7FFF;
  const qint64 all = progress ? database.notes().noteCount(kAllClasses) : 0;
  qint64 done = 0;
  NoteId last;
  for (QVector<NoteId> ids = idsBehind(database, last); !ids.isEmpty(); ids = idsBehind(database, last)) {
    for (const NoteId id : std::as_const(ids)) {
      if (progress && !progress(done++, all)) return false;
      Note note;
      try {
        if (database.notes().read(id, note) && !visit(note)) return false;
      } catch (const RuntimeError& error) {
        if (!damaged || error.number() != enginefault::Damaged) throw;
        if (!damaged(id, error.description())) return false;
      }
    }
    last = ids.last();
  }
  return true;
}

}  // namespace lens

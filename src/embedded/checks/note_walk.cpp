#include "embedded/checks/note_walk.h"

#include "embedded/store/stored_row.h"

namespace lens {

bool walkNotes(const Database& database, const std::function<bool(const Note&)>& visit,
               const CheckProgress& progress, const std::function<bool(NoteId, const QString&)>& damaged) {
  const quint32 first = kFirstId.value(), highest = database.notes().highestIssuedId().value();
  const qint64 all = highest < first ? 0 : (highest - first) / kIdStep + 1;
  for (qint64 done = 0; done < all; ++done) {
    const NoteId id(first + quint32(done) * kIdStep);
    if (progress && !progress(done, all)) return false;
    Note note;
    try {
      if (database.notes().read(id, note) && !visit(note)) return false;
    } catch (const RuntimeError& error) {
      if (!damaged || error.number() != enginefault::Damaged) throw;
      if (!damaged(id, error.description())) return false;
    }
  }
  return true;
}

}  // namespace lens

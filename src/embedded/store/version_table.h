// The version vectors that a database keeps of its notes, and the stamps of what is written here.
#pragma once

#include "embedded/store/note_version.h"
#include "embedded/store/store_session.h"

namespace lens {

class VersionTable {
 public:
  explicit VersionTable(StoreSession& session) : session_(session) {}

  // Live notes and stubs behind that UNID in order of their bytes, at most so many; null begins at the first.
  QVector<NoteVersion> after(const Unid& unid, int most);
  bool find(const Unid& unid, NoteVersion& version);

  // Of a note that was never changed since it came into being there is none: the stamp is its original one.
  VersionVector vectorOf(NoteId noteId, const VersionStamp& original);
  void put(NoteId noteId, const VersionVector& versionVector);
  void erase(NoteId noteId);
  // The version vector of the version that comes after what is stored.
  VersionVector next(const NoteHeader& before);
  // A note that was erased here without a stub may come back as it was before our last changes of it. What
  // is written from then on must not seem to have come out of those.
  void renewWriter() { writer_ = {}; }

 private:
  static NoteVersion readVersion(Statement::Run& row);
  VersionStamp nextStamp();

  StoreSession& session_;
  VersionStamp writer_;  // of the last version that was written through this connection
  Statement readVector_{session_.connection(), "SELECT stamps FROM lineage WHERE note = ?",
                        StoreSession::kRead};
  Statement writeVector_{session_.connection(), "INSERT OR REPLACE INTO lineage (note, stamps) VALUES (?, ?)",
                         StoreSession::kWrite};
  Statement eraseVector_{session_.connection(), "DELETE FROM lineage WHERE note = ?", StoreSession::kWrite};
  Statement list_{session_.connection(),
                  "SELECT id, unid, class, state, sequence, sequence_time, stamps"
                  " FROM note LEFT JOIN lineage ON note.id = lineage.note"
                  " WHERE unid > ? AND length(unid) = 16 AND " LENS_HAS_ARRIVED " ORDER BY unid LIMIT ?",
                  StoreSession::kRead};
  Statement ofUnid_{
      session_.connection(),
      "SELECT id, unid, class, state, sequence, sequence_time, stamps"
      " FROM note LEFT JOIN lineage ON note.id = lineage.note WHERE unid = ? AND " LENS_HAS_ARRIVED,
      StoreSession::kRead};
};

}  // namespace lens

// The changes of a database and the versions of its notes: what indexes follow and replication works on.
#pragma once

#include <QVector>

#include "embedded/store/note_version.h"

namespace lens {

class NoteStore;
class StoreSession;
class VersionTable;
enum class NoteState;

// A note that is not as it was: saved (Live), deleted (Stub) or erased without a stub (Gone).
struct NoteChange {
  qint64 change = 0;
  NoteId id;
  NoteState state{};
};

class VersionStore {
 public:
  // Made by Database, which owns all of them.
  VersionStore(StoreSession& session, VersionTable& table, NoteStore& notes);
  ~VersionStore();
  VersionStore(const VersionStore&) = delete;
  VersionStore& operator=(const VersionStore&) = delete;

  // Number that grows with every change of a note.
  qint64 changeSequence() const;
  // What became of the notes that were changed since that number, each one once, in order of the changes:
  // what an index has to look at again. A note that was erased without a stub is told as Gone.
  QVector<NoteChange> changesSince(qint64 change) const;

  // Live notes and stubs behind that UNID, in order of the bytes of their UNIDs, at most so many; a null UNID
  // begins at the first.
  QVector<NoteVersion> versionsAfter(const Unid& unid, int most) const;
  bool findVersion(const Unid& unid, NoteVersion& version) const;
  VersionVector versionVector(const NoteVersion& version) const;
  // Writes a note or a stub as another replica has it, in place of whatever has its UNID here. A note that
  // was here keeps its ID.
  void saveVersion(Note& note, const VersionVector& versionVector);
  void saveStub(const NoteHeader& header, const VersionVector& versionVector);
  // A note that stays as it is has learnt of other versions.
  void setVersionVector(NoteId noteId, const VersionVector& versionVector);

 private:
  struct Statements;
  StoreSession& session_;
  VersionTable& table_;
  NoteStore& notes_;
  std::unique_ptr<Statements> statements_;
};

}  // namespace lens

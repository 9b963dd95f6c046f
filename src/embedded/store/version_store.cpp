#include "embedded/store/version_store.h"

#include <algorithm>

#include "embedded/store/note_store.h"
#include "embedded/store/stored_row.h"
#include "embedded/store/version_table.h"

namespace lens {

struct VersionStore::Statements {
  explicit Statements(const Connection& c) : connection(c) {}
  const Connection& connection;
  Statement changed{connection,
                    "SELECT change, id, state FROM note WHERE change > ? AND " LENS_CHANGE_HAS_ARRIVED
                    " ORDER BY change",
                    StoreSession::kRead};
  Statement erased{connection, "SELECT change, note FROM erased WHERE change > ? ORDER BY change",
                   StoreSession::kRead};
  Statement updateToStub{connection,
                         "UPDATE note SET state = 1, items = NULL, sequence = ?, sequence_time = ?,"
                         " modified = ?, change = ? WHERE id = ?",
                         StoreSession::kWrite};
  Statement insertStub{
      connection,
      "INSERT INTO note (id, class, unid, parent, sequence, sequence_time, created, modified, added,"
      " accessed, items, state, change) VALUES (?, ?, ?, ?, ?, ?, ?, ?, ?, ?, NULL, 1, ?)",
      StoreSession::kWrite};
};

VersionStore::VersionStore(StoreSession& session, VersionTable& table, NoteStore& notes)
    : session_(session),
      table_(table),
      notes_(notes),
      statements_(std::make_unique<Statements>(session.connection())) {}

VersionStore::~VersionStore() = default;

qint64 VersionStore::changeSequence() const {
  return session_.highestChange();
}

QVector<NoteChange> VersionStore::changesSince(qint64 change) const {
  QVector<NoteChange> changes;
  {
    Statement::Run row(statements_->changed, change);
    while (row.step())
      changes.push_back(
          {row.integer(0), row.noteId(1), row.integer(2) == kStateLive ? NoteState::Live : NoteState::Stub});
  }
  const qsizetype changed = changes.size();
  Statement::Run row(statements_->erased, change);
  while (row.step()) changes.push_back({row.integer(0), row.noteId(1), NoteState::Gone});
  std::inplace_merge(changes.begin(), changes.begin() + changed, changes.end(),
                     [](const NoteChange& a, const NoteChange& b) { return a.change < b.change; });
  return changes;
}

QVector<NoteVersion> VersionStore::versionsAfter(const Unid& unid, int most) const {
  return table_.after(unid, most);
}

bool VersionStore::findVersion(const Unid& unid, NoteVersion& version) const {
  return table_.find(unid, version);
}

VersionVector VersionStore::versionVector(const NoteVersion& version) const {
  return table_.vectorOf(version.id, version.stamp);
}

void VersionStore::setVersionVector(NoteId noteId, const VersionVector& versionVector) {
  StoreTransaction transaction(session_);
  table_.put(noteId, versionVector);
  transaction.commit();
}

void VersionStore::saveVersion(Note& note, const VersionVector& versionVector) {
  StoreTransaction transaction(session_);
  notes_.saveAsGiven(note);
  table_.put(note.header.id, versionVector);
  transaction.commit();
}

void VersionStore::saveStub(const NoteHeader& header, const VersionVector& versionVector) {
  StoreTransaction transaction(session_);
  NoteVersion there;
  const bool known = table_.find(header.unid, there);
  const NoteId id = known ? there.id : notes_.nextId();
  const qint64 time = stored(header.sequenceTime), change = session_.nextChange();
  if (known) {
    Statement::Run(statements_->updateToStub, header.sequence, time, time, change, id).step();
    notes_.takeOutOfFolders(header.unid);
  } else {
    notes_.requireNotArriving(header.unid);
    const QByteArray unid = header.unid.bytes(), parent = parentBytes(header.parent);
    Statement::Run(statements_->insertStub, id, header.noteClass, unid, parent, header.sequence, time, time,
                   time, time, time, change)
        .step();
    table_.renewWriter();
  }
  table_.put(id, versionVector);
  transaction.commit();
}

}  // namespace lens

#include "embedded/replication/replicator.h"

#include "embedded/format/case_key.h"
#include "embedded/format/packed_note.h"
#include "embedded/format/single_notes.h"
#include "embedded/replication/conflict.h"
#include "embedded/replication/note_transfer.h"
#include "embedded/replication/version_walk.h"
#include "embedded/store/stored_row.h"
#include "embedded/views/folder_documents.h"
#include "notes/literals.h"

namespace lens {
namespace {

constexpr quint16 kAllClasses = 0xFFFF;
constexpr qsizetype kMostLeftOut = 1000;  // then it is no longer single notes that are damaged

bool comesBefore(const Unid& a, const Unid& b) {
  return a.bytes() < b.bytes();
}

QString profileName(const Note& note) {
  return caseKey(note.text(u"$Name"));
}

// The stub of a version that another note takes the place of.
NoteHeader stubAfter(const NoteVersion& version) {
  NoteHeader header;
  header.unid = version.unid;
  header.noteClass = version.noteClass;
  header.sequence = nextSequence(version.sequence);
  header.sequenceTime = version.sequenceTime;
  return header;
}

// A damaged note is replaced as a whole.
bool readSound(const Database& database, const Unid& unid, Note& note) {
  try {
    return database.notes().read(unid, note);
  } catch (const RuntimeError& error) {
    if (error.number() != enginefault::Damaged) throw;
    return false;
  }
}

}  // namespace

Replicator::Replicator(Database& here, Database& there, const CopyProgress& go)
    : go_(go),
      total_(go ? here.notes().noteCount(kAllClasses) : 0),
      here_(here),
      there_(there),
      batch_(here, there) {}

ReplicationReport Replicator::run() {
  try {
    walk();
  } catch (...) {
    // The notes before the failure have arrived.
    try {
      batch_.commit();
    } catch (const RuntimeError&) {
      batch_.undo();
    }
    throw;
  }
  batch_.commit();
  if (report_.ended) return report_;
  shareFolders(here_.store, there_.store);
  if (!cannotWrite_.isEmpty())
    throw RuntimeError(
        enginefault::NotSaved,
        u"%1: the file can only be read, so it did not get what is new elsewhere"_s.arg(cannotWrite_));
  return report_;
}

void Replicator::walk() {
  VersionWalk here(here_.store), there(there_.store);
  while (goOn() && (here.current() || there.current())) {
    const NoteVersion *a = here.current(), *b = there.current();
    if (a && b && comesBefore(a->unid, b->unid)) b = nullptr;
    if (a && b && comesBefore(b->unid, a->unid)) a = nullptr;
    const Unid unid = a ? a->unid : b->unid;
    const bool same = a && b && a->stamp == b->stamp;
    if (a) here.next();
    if (b) there.next();
    if (!same) settle(unid);
    batch_.commitWhenDue();
  }
}

bool Replicator::goOn() {
  report_.ended = go_ && !go_(done_++, total_);
  return !report_.ended;
}

// One note on both sides: as a whole, or not at all.
void Replicator::settle(const Unid& unid) {
  batch_.begin();
  const ReplicationReport before = report_;
  try {
    std::optional<Database::Transaction> here, there;
    if (here_.writable) here.emplace(here_.store);
    if (there_.writable) there.emplace(there_.store);
    exchange(unid);
    if (here) here->commit();
    if (there) there->commit();
  } catch (const RuntimeError& error) {
    report_ = before;
    if (error.number() != enginefault::Damaged || report_.leftOut.size() >= kMostLeftOut) throw;
    report_.leftOut.append(error.description());
  }
}

// Looks again, now that nobody else can write.
void Replicator::exchange(const Unid& unid) {
  NoteVersion a, b;
  const bool hasA = here_.store.versions().findVersion(unid, a),
             hasB = there_.store.versions().findVersion(unid, b);
  if (hasA && !hasB) return send(here_, a, there_, nullptr);
  if (hasB && !hasA) return send(there_, b, here_, nullptr);
  if (!hasA || a.stamp == b.stamp) return;
  const bool aKnowsB = here_.store.versions().versionVector(a).knows(b.stamp);
  const bool bKnowsA = there_.store.versions().versionVector(b).knows(a.stamp);
  if (aKnowsB && !bKnowsA) return send(here_, a, there_, &b);
  if (bKnowsA && !aKnowsB) return send(there_, b, here_, &a);
  if (outranks(a, b)) return resolve(here_, a, there_, b);
  resolve(there_, b, here_, a);
}

void Replicator::send(Side& from, const NoteVersion& version, Side& to, const NoteVersion* replaced) {
  if (!to.writable) {
    cannotWrite_ = to.store.path();
    return;
  }
  VersionVector versionVector = from.store.versions().versionVector(version);
  if (replaced) versionVector.absorb(to.store.versions().versionVector(*replaced));
  if (!version.live) return sendStub(version, to, replaced, versionVector);
  Note note, old;
  if (!from.store.notes().read(version.unid, note) || !makeRoom(from, version, note, to)) return;
  const bool hasOld = replaced && replaced->live;
  bringObjects(note, from.store, to.store, hasOld && readSound(to.store, version.unid, old) ? &old : nullptr);
  to.store.versions().saveVersion(note, versionVector);
  if (to.profilesKnown && isProfile(note)) to.profiles.insert(profileName(note), version.unid);
  ++(hasOld ? report_.updated : report_.added);
}

void Replicator::sendStub(const NoteVersion& version, Side& to, const NoteVersion* replaced,
                          const VersionVector& versionVector) {
  NoteHeader header = stubAfter(version);
  header.sequence = version.sequence;
  to.store.versions().saveStub(header, versionVector);
  if (replaced && replaced->live) ++report_.deleted;
}

void Replicator::resolve(Side& winnerSide, const NoteVersion& winner, Side& loserSide,
                         const NoteVersion& loser) {
  if (loser.live && keepLoser(winnerSide, winner, loserSide, loser)) ++report_.conflicts;
  VersionVector versionVector = winnerSide.store.versions().versionVector(winner);
  versionVector.absorb(loserSide.store.versions().versionVector(loser));
  if (winnerSide.writable) winnerSide.store.versions().setVersionVector(winner.id, versionVector);
  send(winnerSide, winner, loserSide, &loser);
}

// The conflict document goes to both sides at once, so that neither ever holds a winner that knows of a
// version which is nowhere to be found.
bool Replicator::keepLoser(Side& winnerSide, const NoteVersion& winner, Side& loserSide,
                           const NoteVersion& loser) {
  Note lost, kept;
  loserSide.store.notes().read(loser.unid, lost);
  winnerSide.store.notes().read(winner.unid, kept);
  if (!leavesConflict(lost) || sameContent(lost, loserSide.store, kept, winnerSide.store)) return false;
  const Note conflict = conflictDocument(lost, loser.stamp);
  const VersionVector versionVector(
      originalStamp(conflict.header.unid, conflict.header.sequence, conflict.header.sequenceTime));
  for (Side* side : {&loserSide, &winnerSide}) {
    NoteVersion there;
    if (side->store.versions().findVersion(conflict.header.unid, there)) continue;
    if (!side->writable) {
      cannotWrite_ = side->store.path();
      continue;
    }
    Note copy = conflict;
    bringObjects(copy, loserSide.store, side->store, nullptr);
    side->store.versions().saveVersion(copy, versionVector);
  }
  return true;
}

// A note that a database has once only may be there already under another UNID. False when that one stays.
bool Replicator::makeRoom(Side& from, const NoteVersion& version, const Note& note, Side& to) {
  const Unid rivalUnid = rivalOf(note, to);
  NoteVersion rival;
  if (rivalUnid.isNull() || !to.store.versions().findVersion(rivalUnid, rival) || !rival.live) return true;
  const bool rivalStays = outranks(rival, version);
  const NoteVersion& goes = rivalStays ? version : rival;
  replaceByStub(goes, (rivalStays ? from : to).store.versions().versionVector(goes));
  return !rivalStays;
}

Unid Replicator::rivalOf(const Note& note, Side& side) {
  if (isSingleInstance(note.header.noteClass)) {
    for (const NoteSummary& summary : side.store.notes().list(noteclass::base(note.header.noteClass)))
      if (summary.unid != note.header.unid) return summary.unid;
    return {};
  }
  if (!isProfile(note)) return {};
  const Unid unid = profilesOf(side).value(profileName(note));
  return unid == note.header.unid ? Unid() : unid;
}

const QHash<QString, Unid>& Replicator::profilesOf(Side& side) {
  if (side.profilesKnown) return side.profiles;
  side.store.notes().scanPacked(noteclass::Document, [&](const PackedNote& note) {
    if (isProfile(note)) side.profiles.insert(profileName(note.unpack()), note.header.unid);
    return true;
  });
  side.profilesKnown = true;
  return side.profiles;
}

void Replicator::replaceByStub(const NoteVersion& version, const VersionVector& versionVector) {
  VersionVector after = versionVector;
  after.add(derivedStamp(version.stamp, "replaced"));
  for (Side* side : {&here_, &there_}) {
    NoteVersion there;
    const bool known = side->store.versions().findVersion(version.unid, there);
    if (known && !(there.stamp == version.stamp)) continue;  // settled when its turn comes
    if (!side->writable) {
      cannotWrite_ = side->store.path();
      continue;
    }
    side->store.versions().saveStub(stubAfter(version), after);
    if (known) ++report_.deleted;
  }
}

}  // namespace lens

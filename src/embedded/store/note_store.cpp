#include "embedded/store/note_store.h"

#include <algorithm>

#include "embedded/format/packed_items.h"
#include "embedded/store/note_statements.h"
#include "embedded/store/object_store.h"
#include "embedded/store/stored_row.h"
#include "embedded/store/version_table.h"
#include "notes/literals.h"

namespace lens {
namespace {

void fill(TimeDate& time, const TimeDate& with) {
  if (isClearedTime(time)) time = with;
}

// What cannot be packed is told with the file that it was meant for.
QByteArray packedFor(const QString& path, const Note& note) {
  try {
    return packItems(note.items);
  } catch (const RuntimeError& error) {
    throw RuntimeError(error.number(), u"%1: note %2 was not saved (%3)"_s.arg(
                                           path, note.header.id ? note.header.id.hexText() : u"(new)"_s,
                                           error.description()));
  }
}

// A new note gets what it lacks; its UNID tells when it was made.
void completeNewHeader(NoteHeader& header) {
  const TimeDate now = timeDateNow();
  if (header.unid.isNull()) {
    header.unid = Unid::create();
    fill(header.created, readTimeDate(header.unid.bytes().constData() + 8));
  }
  fill(header.created, now);
  fill(header.added, now);
  fill(header.modified, now);
  fill(header.accessed, now);
  fill(header.sequenceTime, now);
  header.sequence = qMax(header.sequence, 1u);
}

}  // namespace

NoteStore::NoteStore(StoreSession& session, VersionTable& versions, ObjectStore& objects)
    : session_(session),
      versions_(versions),
      objects_(objects),
      statements_(std::make_unique<NoteStatements>(session.connection())) {}

NoteStore::~NoteStore() = default;

// The row goes, and those who follow the changes learn of it.
void NoteStore::eraseRow(NoteId noteId, const Unid& unid, qint64 change) {
  Statement::Run(statements_->erase, noteId).step();
  takeOutOfFolders(unid);
  versions_.erase(noteId);
  Statement::Run(statements_->recordErased, change, noteId).step();
}

// What belongs to a document goes with it, and so does what belongs to a folder.
void NoteStore::takeOutOfFolders(const Unid& unid) {
  const QByteArray bytes = unid.bytes();
  Statement::Run(statements_->emptyFolder, bytes).step();
  Statement::Run(statements_->leaveFolders, bytes).step();
}

NoteId NoteStore::nextId() const {
  if (const NoteId arriving = session_.arriving().nextId()) return arriving;
  const qint64 highest = session_.highestId();
  if (highest > kLastId.value() - kIdStep)
    throw RuntimeError(enginefault::NotSaved, u"%1: there are no note IDs left"_s.arg(session_.path()));
  return highest < kFirstId.value() ? kFirstId : NoteId(quint32(highest) + kIdStep);
}

NoteId NoteStore::highestIssuedId() const {
  return NoteId(quint32(session_.highestId()));
}

NoteState NoteStore::state(NoteId noteId) const {
  if (noteId.isNull() || noteId > highestIssuedId() || session_.arriving().hidden().holds(noteId))
    return NoteState::NeverIssued;
  try {
    Statement::Run row(statements_->readState, noteId);
    if (!row.step()) return NoteState::Gone;
    if (row.integer(0) != kStateLive) return NoteState::Stub;
    checkPackedItems(row.blob(1));
    return NoteState::Live;
  } catch (const RuntimeError& error) {
    if (error.number() != enginefault::Damaged) throw;
    return NoteState::Damaged;
  }
}

bool NoteStore::read(NoteId noteId, Note& note) const {
  Statement::Run row(statements_->readById, noteId);
  return statements_->readRow(row, note);
}

bool NoteStore::read(const Unid& unid, Note& note) const {
  const QByteArray bytes = unid.bytes();
  Statement::Run row(statements_->readByUnid, bytes);
  return statements_->readRow(row, note);
}

bool NoteStore::readItem(NoteId noteId, QStringView name, Item& item) const {
  Statement::Run row(statements_->readItems, noteId);
  if (!row.step()) return false;
  try {
    return findPackedItem(row.blob(0), name, item);
  } catch (const RuntimeError& error) {
    damagedNote(session_.path(), noteId, error.description());
  }
}

// Few classes are in use: they are looked up one after the other in the index, so that a listing of
// design notes never walks over the documents.
QVector<quint16> NoteStore::classesIn(quint16 classMask) const {
  QVector<quint16> classes;
  for (qint64 last = -1;;) {
    Statement::Run row(statements_->nextClass, last);
    if (!row.step() || row.isNull(0)) return classes;
    const quint16 next = row.number<quint16>(0);
    if (next <= last) row.wrongValue(0, "class behind the last one");
    last = next;
    if (noteclass::base(next) & classMask) classes.push_back(next);
  }
}

QVector<NoteSummary> NoteStore::list(quint16 classMask) const {
  QVector<NoteSummary> notes;
  const QVector<quint16> classes = classesIn(classMask);
  for (quint16 noteClass : classes) {
    Statement::Run row(statements_->listClass, noteClass);
    while (row.step())
      notes.push_back({row.noteId(0), Unid::fromBytes(row.blob(1)), noteClass, Unid::fromBytes(row.blob(2))});
  }
  if (classes.size() > 1)
    std::sort(notes.begin(), notes.end(), [](const auto& a, const auto& b) { return a.id < b.id; });
  return notes;
}

void NoteStore::scan(quint16 classMask, const std::function<bool(const Note&)>& visit) const {
  // The visitor may change the database: no statement stays open while it works.
  const QVector<NoteSummary> notes = list(classMask);
  for (const NoteSummary& summary : notes) {
    Note note;
    try {
      if (!read(summary.id, note)) continue;
    } catch (const RuntimeError& error) {
      if (error.number() != enginefault::Damaged) throw;
      continue;
    }
    if (!visit(note)) return;
  }
}

NoteId NoteStore::specialNote(quint16 noteClass) const {
  NoteId first;
  const QVector<quint16> classes = classesIn(noteclass::base(noteClass));
  for (quint16 candidate : classes) {
    if ((candidate & noteClass) != noteClass) continue;
    Statement::Run row(statements_->firstOfClass, candidate);
    if (!row.step() || row.isNull(0)) continue;
    const NoteId id = row.noteId(0);
    if (first.isNull() || id < first) first = id;
  }
  return first;
}

int NoteStore::noteCount(quint16 classMask) const {
  qint64 count = 0;
  const QVector<quint16> classes = classesIn(classMask);
  for (quint16 noteClass : classes) {
    Statement::Run row(statements_->countClass, noteClass);
    if (row.step()) count += row.integer(0);
  }
  return int(count);
}

// Nobody sees it, but its place is taken.
void NoteStore::requireNotArriving(const Unid& unid) {
  if (!session_.arriving().hidden().exists()) return;
  const QByteArray bytes = unid.bytes();
  Statement::Run row(statements_->isArriving, bytes);
  if (row.step())
    throw RuntimeError(enginefault::NotSaved,
                       u"%1: the change was not saved (a note with the UNID %2 is being imported)"_s.arg(
                           session_.path(), unid.text()));
}

void NoteStore::insertNote(NoteHeader& header, const QByteArray& items) {
  const QByteArray unid = header.unid.bytes(), parent = parentBytes(header.parent);
  const NoteId id = nextId();
  qint64 change = session_.nextChange();
  VersionVector versionVector;
  if (NoteVersion stub; versions_.find(header.unid, stub)) {
    if (stub.live)
      throw RuntimeError(enginefault::NotSaved,
                         u"%1: the change was not saved (there is a note "
                         "with the UNID %2 already)"_s.arg(session_.path(), header.unid.text()));
    // The note is back: its stub would only hide it, and must not take it away in other replicas.
    NoteHeader before;
    before.id = stub.id;
    before.unid = header.unid;
    before.sequence = stub.sequence;
    before.sequenceTime = stub.sequenceTime;
    versionVector = versions_.next(before);
    eraseRow(stub.id, header.unid, change++);
  } else {
    requireNotArriving(header.unid);
  }
  Statement::Run(statements_->insert, id, header.noteClass, unid, parent, header.sequence,
                 stored(header.sequenceTime), stored(header.created), stored(header.modified),
                 stored(header.added), stored(header.accessed), items, change)
      .step();
  session_.arriving().idTaken(id);
  if (!versionVector.isNull()) versions_.put(id, versionVector);
  header.id = id;
}

void NoteStore::updateNote(const NoteHeader& header, const QByteArray& items, const NoteHeader& before) {
  if (before.noteClass != header.noteClass || before.unid != header.unid || before.parent != header.parent) {
    if (before.unid != header.unid) requireNotArriving(header.unid);
    const QByteArray unid = header.unid.bytes(), parent = parentBytes(header.parent);
    Statement::Run(statements_->updateIdentity, header.noteClass, unid, parent, header.id).step();
  }
  Statement::Run(statements_->updateContent, header.sequence, stored(header.sequenceTime),
                 stored(header.created), stored(header.modified), stored(header.added),
                 stored(header.accessed), items, session_.nextChange(), header.id)
      .step();
  versions_.put(header.id, versions_.next(before));
}

bool NoteStore::readIdentity(NoteId noteId, NoteHeader& header) {
  Statement::Run row(statements_->identity, noteId);
  if (!row.step()) return false;
  header.id = noteId;
  header.noteClass = row.number<quint16>(0);
  header.unid = Unid::fromBytes(row.blob(1));
  header.parent = Unid::fromBytes(row.blob(2));
  header.sequence = row.number<quint32>(3);
  header.sequenceTime = fromStored(row.integer(4));
  return true;
}

void NoteStore::save(Note& note) {
  const QByteArray items = packedFor(session_.path(), note);
  NoteHeader header = note.header;
  StoreTransaction transaction(session_);
  if (header.id.isNull()) {
    const bool mayHaveBeenHere = !header.unid.isNull();
    completeNewHeader(header);
    insertNote(header, items);
    if (mayHaveBeenHere) versions_.renewWriter();
  } else {
    NoteHeader before;
    if (!readIdentity(header.id, before))
      throw RuntimeError(
          enginefault::UnknownNote,
          u"%1: there is no note %2 (it may have been deleted)"_s.arg(session_.path(), header.id.hexText()));
    header.sequence = nextSequence(before.sequence);
    header.sequenceTime = header.modified = timeDateNow();
    updateNote(header, items, before);
  }
  transaction.commit();
  note.header = header;
  objects_.noteSaved(note);
}

bool NoteStore::saveAsGiven(Note& note) {
  const QByteArray items = packedFor(session_.path(), note);
  NoteHeader header = note.header;
  if (header.unid.isNull()) header.unid = Unid::create();
  StoreTransaction transaction(session_);
  NoteVersion there;
  NoteHeader before;
  const bool replaces = versions_.find(header.unid, there) && there.live && readIdentity(there.id, before);
  if (replaces) {
    header.id = there.id;
    updateNote(header, items, before);
  } else {
    insertNote(header, items);
    versions_.renewWriter();
  }
  transaction.commit();
  note.header = header;
  objects_.noteSaved(note);
  return replaces;
}

bool NoteStore::remove(NoteId noteId, bool leaveStub) {
  StoreTransaction transaction(session_);
  NoteHeader before;
  try {
    if (!readIdentity(noteId, before)) return false;
  } catch (const RuntimeError& error) {
    if (error.number() != enginefault::Damaged) throw;
    before.id = noteId;
  }
  const qint64 change = session_.nextChange();
  if (leaveStub) {
    const qint64 now = stored(timeDateNow());
    Statement::Run(statements_->makeStub, now, now, change, noteId).step();
    takeOutOfFolders(before.unid);
    versions_.put(noteId, versions_.next(before));
  } else {
    // The row takes its numbers along, so the highest ones are written down before it goes.
    const NoteId highest = highestIssuedId();
    session_.keepHighest(highest.value(), change);
    eraseRow(noteId, before.unid, change);
  }
  transaction.commit();
  return true;
}

}  // namespace lens

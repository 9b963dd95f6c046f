#include "embedded/store/arrival.h"

#include <QScopeGuard>
#include <QThread>

#include "embedded/format/single_notes.h"
#include "embedded/store/stored_row.h"
#include "notes/literals.h"

namespace lens {
namespace {

// Nobody makes so many changes while an import runs.
constexpr qint64 kChangesOfOthers = qint64(1) << 32;
// For one turn of an import. Whoever else writes for so long is at an end of it, or hangs.
constexpr int kTurnWaitMs = 60'000;

qint64 highestObject(const Connection& connection) {
  Statement highest(connection, "SELECT seq FROM sqlite_sequence WHERE name = 'object'",
                    enginefault::CannotOpen);
  Statement::Run row(highest);
  return row.step() ? row.integer(0) : 0;
}

}  // namespace

Arrival::Arrival(Database& database, qint64 mostNotes, const ArrivalPace& pace)
    : database_(database), session_(*database.session_), pace_(pace), lock_(arrivalLockName(session_), 0) {
  if (lock_.state() == FileLock::State::Taken)
    throw RuntimeError(enginefault::InUse,
                       u"%1: another import into this database is under way"_s.arg(database.path()));
  if (lock_.state() == FileLock::State::Impossible)
    throw RuntimeError(enginefault::NotSaved,
                       u"%1: nothing can be imported (the file %2.lock cannot be made)"_s.arg(
                           database.path(), arrivalLockName(session_)));
  removeArrived(session_, pace);
  beginTurn();
  enter(mostNotes);
}

Arrival::~Arrival() {
  turn_.reset();
  if (!finished_) {
    try {
      removeArrived(session_, pace_);
    } catch (const RuntimeError&) {
      // It stays hidden.
    }
  }
  session_.arriving().stopBringing();
}

// From here on others number their notes behind the block, and nobody sees what is in it.
void Arrival::enter(qint64 mostNotes) {
  ArrivingBlock block;
  const qint64 highest = session_.highestId();
  block.first = highest < kFirstId.value() ? kFirstId.value() : highest + kIdStep;
  block.last = qMin<qint64>(block.first + qMax<qint64>(mostNotes - 1, 0) * kIdStep, kLastId.value());
  if (block.first > block.last)
    throw RuntimeError(enginefault::NotSaved, u"%1: there are no note IDs left"_s.arg(database_.path()));
  block.change = session_.highestChange() + kChangesOfOthers;
  ArrivalEntry(session_).write(block);
  session_.arriving().bring(block);
}

void Arrival::beginTurn() {
  const auto asBefore = qScopeGuard([&] { sqlite3_busy_timeout(database_.handle(), kBusyTimeoutMs); });
  sqlite3_busy_timeout(database_.handle(), kTurnWaitMs);
  turn_.emplace(database_);
  held_.start();
  objectsBefore_ = highestObject(session_.connection());
}

// Nobody else made an object meanwhile: the numbers in between are ours.
void Arrival::endTurn() {
  if (const qint64 last = highestObject(session_.connection()); last > objectsBefore_)
    ArrivalEntry(session_).addObjects({objectsBefore_ + 1, last});
  turn_->commit();
  turn_.reset();
}

void Arrival::pause() {
  if (held_.elapsed() >= pace_.turnMs) nextTurn();
}

void Arrival::nextTurn() {
  endTurn();
  QThread::msleep(ulong(pace_.gapMs));
  beginTurn();
}

bool Arrival::mustWait(const NoteHeader& header) const {
  const ArrivingNotes& arriving = session_.arriving();
  if (isSingleInstance(header.noteClass) || arriving.nextId().isNull()) return true;
  NoteVersion there;
  return !header.unid.isNull() && database_.versions().findVersion(header.unid, there) &&
         !arriving.brought().holds(there.id);
}

void Arrival::finish(const std::function<void()>& rest) {
  // The rest has a turn for itself.
  if (held_.elapsed() > pace_.turnMs / 2) nextTurn();
  ArrivalEntry(session_).remove();
  rest();
  turn_->commit();
  turn_.reset();
  finished_ = true;
}

}  // namespace lens

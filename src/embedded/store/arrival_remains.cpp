#include "embedded/store/arrival_remains.h"

#include <QElapsedTimer>
#include <QFileInfo>
#include <QStringList>
#include <QThread>

#include "embedded/files/file_lock.h"
#include "embedded/store/own_tables.h"
#include "notes/literals.h"
#include "notes/runtime_error.h"

namespace lens {
namespace {

QString blockKey() {
  return u"arriving"_s;
}
// As "first-last" of each run.
QString objectsKey() {
  return u"arriving objects"_s;
}

// Removes in small steps: the attachments first, since the notes tell nothing any more when they are gone.
class Removal {
 public:
  Removal(Connection& connection, const ArrivingBlock& block, const QVector<ArrivalEntry::Range>& objects)
      : connection_(connection), objects_(objects) {
    objects_.push_back({block.first, block.last});
  }
  // False when nothing is left.
  bool step() {
    while (place_ < objects_.size()) {
      const bool notes = place_ + 1 == objects_.size();
      if (some(notes ? vectors_ : chunks_) || some(notes ? notes_ : ids_)) return true;
      ++place_;
    }
    return false;
  }

 private:
  bool some(Statement& statement) {
    Statement::Run(statement, objects_[place_].first, objects_[place_].last).step();
    return sqlite3_changes(connection_.handle()) > 0;
  }

  Connection& connection_;
  QVector<ArrivalEntry::Range> objects_;  // the last one is that of the notes
  qsizetype place_ = 0;
  static constexpr int kWrite = enginefault::NotSaved;
  Statement chunks_{connection_,
                    "DELETE FROM object_chunk WHERE (object, number) IN"
                    " (SELECT object, number FROM object_chunk WHERE object BETWEEN ? AND ? LIMIT 32)",
                    kWrite};
  Statement ids_{connection_,
                 "DELETE FROM object WHERE id IN (SELECT id FROM object WHERE id BETWEEN ? AND ? LIMIT 500)",
                 kWrite};
  Statement vectors_{connection_,
                     "DELETE FROM lineage WHERE note IN"
                     " (SELECT note FROM lineage WHERE note BETWEEN ? AND ? LIMIT 500)",
                     kWrite};
  Statement notes_{connection_,
                   "DELETE FROM note WHERE id IN (SELECT id FROM note WHERE id BETWEEN ? AND ? LIMIT 200)",
                   kWrite};
};

}  // namespace

bool ArrivalEntry::exists() {
  return !session_.info(blockKey()).isEmpty();
}

ArrivingBlock ArrivalEntry::block() {
  return ArrivingBlock::fromText(session_.info(blockKey()));
}

QVector<ArrivalEntry::Range> ArrivalEntry::objects() {
  QVector<Range> ranges;
  for (const QString& word : session_.info(objectsKey()).split(u' ', Qt::SkipEmptyParts))
    ranges.push_back({word.section(u'-', 0, 0).toLongLong(), word.section(u'-', 1).toLongLong()});
  return ranges;
}

void ArrivalEntry::write(const ArrivingBlock& block) {
  session_.setInfo(blockKey(), block.text());
  setSchema(kArrivingSchema);
}

void ArrivalEntry::addObjects(const Range& more) {
  QVector<Range> ranges = objects();
  if (!ranges.isEmpty() && ranges.last().last + 1 == more.first)
    ranges.last().last = more.last;
  else
    ranges.push_back(more);
  QStringList words;
  for (const Range& range : std::as_const(ranges))
    words.append(QString::number(range.first) + u'-' + QString::number(range.last));
  session_.setInfo(objectsKey(), words.join(u' '));
}

void ArrivalEntry::remove() {
  session_.removeInfo(blockKey());
  session_.removeInfo(objectsKey());
  setSchema(kSchemaVersion);
}

void ArrivalEntry::setSchema(int schema) {
  session_.connection().execute(("PRAGMA user_version = " + QByteArray::number(schema)).constData(),
                                StoreSession::kWrite);
}

QString arrivalLockName(StoreSession& session) {
  session.requireOwnFile();
  return QFileInfo(session.path()).canonicalFilePath() + u".import"_s;
}

void removeArrived(StoreSession& session, const ArrivalPace& pace) {
  ArrivalEntry entry(session);
  const ArrivingBlock block = entry.block();
  if (!block.exists()) return;
  Removal removal(session.connection(), block, entry.objects());
  for (bool more = true; more;) {
    StoreTransaction turn(session);
    QElapsedTimer held;
    held.start();
    while ((more = removal.step()) && held.elapsed() < pace.turnMs) continue;
    if (!more) entry.remove();
    turn.commit();
    if (more) QThread::msleep(ulong(pace.gapMs));
  }
}

void removeAbandoned(StoreSession& session) {
  if (!session.isWritable()) return;
  try {
    if (!ArrivalEntry(session).exists()) return;
    const FileLock lock(arrivalLockName(session), 0);
    if (lock.state() == FileLock::State::Held) removeArrived(session, {});
  } catch (const RuntimeError&) {
    // What is left stays hidden.
  }
}

}  // namespace lens

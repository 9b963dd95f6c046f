// Making the index of full text and keeping it up to date.
#include <QElapsedTimer>
#include <QThread>
#include <algorithm>
#include <optional>
#include <utility>

#include "embedded/search/full_text.h"
#include "embedded/search/full_text_tables.h"
#include "embedded/search/full_text_writer.h"
#include "notes/literals.h"
#include "notes/runtime_error.h"

namespace lens {
namespace {

using fulltext::Mark;
using fulltext::Tables;

// Who waits for the file looks after it every now and then only: a shorter pause would go unnoticed.
constexpr int kPauseMs = 30;

enum class Existing { Keep, Replace };

void makeTables(Database& database, Tables& tables, Existing existing) {
  Database::Transaction transaction(database);
  if (existing == Existing::Replace || !tables.exist()) {
    tables.create();
    tables.setMark({0, false});
  }
  transaction.commit();
}

// Takes in what changed, oldest change first: a first build is the changes of all notes. Others may save in
// between, which makes changes that come later, and may bring the same index up to date.
class CatchUp {
 public:
  CatchUp(Database& database, Tables& tables, const IndexWork& work)
      : database_(database), tables_(tables), work_(work) {}

  // False when the work was ended early.
  bool run() {
    while (look())
      while (step() && next_ < changes_.size())
        if (!mayGoOn()) return false;
    return true;
  }

 private:
  // False when there is nothing to do.
  bool look() {
    if (!tables_.exist()) return false;
    goal_ = database_.versions().changeSequence();
    mark_ = tables_.mark();
    if (mark_.change > goal_) {
      if (std::exchange(replaced_, true))
        throw RuntimeError(
            enginefault::Damaged,
            u"%1: the database is damaged (its changes are not in order)"_s.arg(database_.path()));
      makeTables(database_, tables_, Existing::Replace);
      mark_ = tables_.mark();
    }
    if (mark_ == Mark{goal_, true}) return false;
    before_ += next_;
    changes_ = database_.versions().changesSince(mark_.change);
    next_ = 0;
    writer_.emplace(tables_);
    return true;
  }

  // One transaction. False when the index is no longer the one that it was.
  bool step() {
    Database::Transaction transaction(database_);
    if (!tables_.exist() || !follow(tables_.mark())) return false;
    QElapsedTimer held;
    held.start();
    for (bool more = next_ < changes_.size(); more;
         more = next_ < changes_.size() && held.elapsed() < work_.holdMs)
      writer_->bring(database_, changes_[next_++]);
    const qint64 last = next_ > 0 ? changes_[next_ - 1].change : mark_.change;
    mark_ = next_ < changes_.size() ? Mark{last, mark_.whole} : Mark{qMax(goal_, last), true};
    tables_.setMark(mark_);
    transaction.commit();
    return true;
  }

  // What others took in since our last step is passed over.
  bool follow(const Mark& now) {
    if (now == mark_) return true;
    if (now.whole != mark_.whole || now.change < mark_.change) return false;
    const auto isBefore = [](qint64 change, const NoteChange& other) { return change < other.change; };
    next_ = std::upper_bound(changes_.cbegin(), changes_.cend(), now.change, isBefore) - changes_.cbegin();
    writer_.emplace(tables_);
    mark_ = now;
    return true;
  }

  // Nobody gets in between the steps of a transaction that is not ours.
  bool mayGoOn() const {
    if (work_.go && !work_.go(before_ + next_, before_ + changes_.size())) return false;
    if (sqlite3_get_autocommit(database_.handle())) QThread::msleep(kPauseMs);
    return true;
  }

  Database& database_;
  Tables& tables_;
  const IndexWork& work_;
  std::optional<fulltext::Writer> writer_;
  qint64 goal_ = 0;
  bool replaced_ = false;  // what goes further than the database is made anew, once
  Mark mark_;
  QVector<NoteChange> changes_;
  qsizetype next_ = 0, before_ = 0;  // in those changes, and of all that were looked up before
};

}  // namespace

bool hasFullTextIndex(Database& database) {
  Tables tables(database.connection());
  return tables.exist() && tables.mark().whole;
}

bool createFullTextIndex(Database& database, const IndexWork& work) {
  Tables tables(database.connection());
  Existing existing = Existing::Keep;
  try {
    if (tables.exist()) return CatchUp(database, tables, work).run();
  } catch (const RuntimeError& error) {
    if (error.number() != enginefault::Damaged) throw;
    existing = Existing::Replace;
  }
  makeTables(database, tables, existing);
  return CatchUp(database, tables, work).run();
}

bool refreshFullTextIndex(Database& database, const IndexWork& work) {
  Tables tables(database.connection());
  if (!tables.exist() || !tables.mark().whole) return true;
  return CatchUp(database, tables, work).run();
}

void dropFullTextIndex(Database& database) {
  Database::Transaction transaction(database);
  Tables(database.connection()).drop();
  transaction.commit();
}

}  // namespace lens

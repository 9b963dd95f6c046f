// A large import: its notes go into the database in many short transactions, so that others have their turn
// to write in between, and are seen by nobody else before the last one. What is begun and not finished goes
// again, by whoever brought it or, if that process is gone, by who opens the file next.
//
// What changes notes that are there already, or properties of the database, belongs into the last
// transaction.
#pragma once

#include <QElapsedTimer>
#include <functional>
#include <optional>

#include "embedded/files/file_lock.h"
#include "embedded/store/arrival_remains.h"
#include "embedded/store/database.h"

namespace lens {

class Arrival {
 public:
  // So many new notes at most; raises InUse while another import into the database is under way, and
  // NotSaved. From here to its end whatever is saved through the database arrives with it.
  Arrival(Database& database, qint64 mostNotes, const ArrivalPace& pace);
  // Takes back what was not finished, in turns as well. What cannot go now goes when the file is opened next.
  ~Arrival();
  Arrival(const Arrival&) = delete;
  Arrival& operator=(const Arrival&) = delete;

  // Between two changes: gives others their turn when it is due.
  void pause();
  // Whether saving the note would change what others see, or there is no room for it among the arriving ones.
  // It must be saved with the last transaction.
  bool mustWait(const NoteHeader& header) const;
  // The last transaction: does the rest, and everything is seen.
  void finish(const std::function<void()>& rest);

 private:
  void beginTurn();
  void endTurn();
  void nextTurn();
  void enter(qint64 mostNotes);

  Database& database_;
  StoreSession& session_;
  const ArrivalPace pace_;
  const FileLock lock_;
  std::optional<Database::Transaction> turn_;
  QElapsedTimer held_;
  qint64 objectsBefore_ = 0;  // the highest number of an object when the turn began
  bool finished_ = false;
};

}  // namespace lens

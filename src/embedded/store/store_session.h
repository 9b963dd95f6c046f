// One opening of a database's file, which the stores on it share: the connection, how deep its transactions
// are nested, and the numbers that are given out.
#pragma once

#include <functional>
#include <memory>
#include <optional>

#include "embedded/format/engine_fault.h"
#include "embedded/store/arriving_notes.h"
#include "embedded/store/journal_bond.h"
#include "embedded/store/sqlite_statement.h"
#include "embedded/store/store_transaction.h"

namespace lens {

class StoreSession {
 public:
  static constexpr int kRead = enginefault::CannotOpen;
  static constexpr int kWrite = enginefault::NotSaved;

  // Opens a file that is known to be a database.
  static std::unique_ptr<StoreSession> open(const QString& path);
  // Of a database whose file was removed: whatever is asked of it raises.
  static std::unique_ptr<StoreSession> removed(const QString& path);
  ~StoreSession();

  Connection& connection() { return connection_; }
  const Connection& connection() const { return connection_; }
  const QString& path() const { return connection_.path(); }
  bool isRemoved() const { return removed_; }
  bool isWritable() const;

  // How many transactions are open within one another.
  int depth() const { return depth_; }
  // Raises when SQLite had to give a transaction up (a full disk): it must not go on statement by statement.
  void checkWritable() const;
  // Raises when the path leads to another file than the one that is open, or to none: what is written then
  // would be in no file that anybody finds. It stays so until the file is opened anew. Asks the system once.
  void requireOwnFile();
  // Whether it still leads there; once it did not, never again.
  bool hasOwnFile();
  // Somebody has taken the file out of the journal's use for a while.
  void renewJournal();
  // Called with its depth when a transaction is undone.
  std::function<void(int)> undone;

  // The highest numbers that were ever given out, 0 before the first: the IDs of a block that is arriving
  // among them, its changes not.
  qint64 highestId();
  qint64 highestChange();
  qint64 nextChange();
  // A note is about to go without a trace: its numbers must not be given out again.
  void keepHighest(qint64 id, qint64 change);

  // A property that is no note, "" when it was never written.
  QString info(const QString& key);
  void setInfo(const QString& key, const QString& value);
  void removeInfo(const QString& key);
  ArrivingNotes& arriving() { return arriving_; }
  // Bytes of the file's pages.
  qint64 size();

 private:
  friend class StoreTransaction;
  StoreSession(const QString& path, int flags, bool constant)
      : connection_(path, flags, constant), file_(FileIdentity::of(path)) {}
  void begin();
  void commit();
  explicit StoreSession(const QString& path) : connection_(path), removed_(true) {}

  Connection connection_;
  ArrivingNotes arriving_{connection_};
  const FileIdentity file_;
  int depth_ = 0;
  int changesBefore_ = 0;  // by this connection, when the outermost transaction began
  const bool removed_ = false;
  bool lost_ = false;
  std::optional<JournalBond> bond_;  // of a file that can be written

  Statement begin_{connection_, "BEGIN IMMEDIATE", kWrite};
  Statement commit_{connection_, "COMMIT", kWrite};
  Statement rollback_{connection_, "ROLLBACK", kWrite};
  Statement savepoint_{connection_, "SAVEPOINT nested", kWrite};
  Statement release_{connection_, "RELEASE nested", kWrite};
  Statement rollbackTo_{connection_, "ROLLBACK TO nested", kWrite};

  Statement highestId_{connection_,
                       "SELECT max(coalesce((SELECT max(id) FROM note), 0),"
                       " coalesce((SELECT value FROM info WHERE key = 'highest id'), 0))",
                       kRead};
  Statement highestChange_{connection_,
                           "SELECT max(coalesce((SELECT max(change) FROM note"
                           " WHERE " LENS_CHANGE_HAS_ARRIVED
                           "), 0),"
                           " coalesce((SELECT value FROM info WHERE key = 'highest change'), 0))",
                           kRead};
  Statement readInfo_{connection_, "SELECT value FROM info WHERE key = ?", kRead};
  Statement writeInfo_{connection_, "INSERT OR REPLACE INTO info (key, value) VALUES (?, ?)", kWrite};
  Statement removeInfo_{connection_, "DELETE FROM info WHERE key = ?", kWrite};
  Statement pageCount_{connection_, "PRAGMA page_count", kRead};
  Statement pageSize_{connection_, "PRAGMA page_size", kRead};
};

}  // namespace lens

// The bond between a database's file and the journal (<name>-wal) beside it.
//
// SQLite plays a journal into whatever file has the name. Where another program put a file of its own there,
// a restored backup for example, that would destroy it. So the first change that goes into a journal writes
// down whom it belongs to, as a property of the database: which file it was, which journal, and from which
// state of the file on it counts. That lies in the journal itself, and the older one in the file.
#pragma once

#include <QString>

#include "embedded/store/sqlite_statement.h"
#include "host/file_identity.h"

namespace lens {

// Before SQLite opens a file that nobody in this process has open: raises Damaged where a journal beside it
// is no plain file, belongs to another file, or would make SQLite touch other files. Nothing is changed then;
// an empty journal that somebody left behind goes.
void requireOwnJournals(const QString& path);

class JournalBond {
 public:
  // For a connection that may write. It must outlive this.
  explicit JournalBond(Connection& connection);
  ~JournalBond();
  JournalBond(const JournalBond&) = delete;
  JournalBond& operator=(const JournalBond&) = delete;

  // The journal is another one: it was made anew, by a compaction for example.
  void renew();
  // A transaction in which something was changed is about to end.
  void beforeCommit() {
    if (due_) write();
  }
  // A transaction was undone, and the mark with it that it may have written.
  void undone() {
    due_ = due_ || !known_.isEmpty();
    known_.clear();
  }
  // The file has gone or is another one. What was saved goes into the file that is open; of a journal that
  // is no longer ours nothing is touched.
  void letGo() noexcept;

 private:
  static int committed(void* self, sqlite3* handle, const char* name, int pages);
  void write();

  Connection& connection_;
  const QString journal_;
  FileIdentity journalFile_;
  bool due_ = false;
  QString known_;  // the mark that was found or written last
};

}  // namespace lens

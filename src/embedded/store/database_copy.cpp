#include "embedded/store/database_copy.h"

#include <QFile>
#include <QFileInfo>

#include "embedded/files/staged_file.h"
#include "embedded/store/database_file.h"
#include "notes/literals.h"

namespace lens {
namespace {

constexpr int kStepsBetweenQuestions = 5000;  // of SQLite's machine: some milliseconds

// Tells how far a copy is by the size that its file has by now, and ends the statement that makes it.
class CopyWatch {
 public:
  CopyWatch(const Database& from, const QString& aside, const CopyProgress& go)
      : source_(from.handle()), aside_(aside), total_(from.size()), go_(go) {
    if (go_) sqlite3_progress_handler(source_, kStepsBetweenQuestions, ask, this);
  }
  ~CopyWatch() {
    if (go_) sqlite3_progress_handler(source_, 0, nullptr, nullptr);
  }
  CopyWatch(const CopyWatch&) = delete;
  CopyWatch& operator=(const CopyWatch&) = delete;

  bool isEnded() const { return ended_; }

 private:
  static int ask(void* context) {
    auto& watch = *static_cast<CopyWatch*>(context);
    if (!watch.go_(QFileInfo(watch.aside_).size(), watch.total_)) watch.ended_ = true;
    return watch.ended_;
  }

  sqlite3* const source_;
  const QString aside_;
  const qint64 total_;
  const CopyProgress& go_;
  bool ended_ = false;
};

// False when it was ended.
bool writeCopy(const Database& from, const QString& aside, const QString& to, const CopyProgress& go) {
  sqlite3* const source = from.handle();
  const CopyWatch watch(from, aside, go);
  sqlite3_stmt* statement = nullptr;
  const QByteArray target = aside.toUtf8();
  int status = sqlite3_prepare_v2(source, "VACUUM INTO ?", -1, &statement, nullptr);
  if (status == SQLITE_OK)
    status = sqlite3_bind_text(statement, 1, target.constData(), int(target.size()), SQLITE_STATIC);
  if (status == SQLITE_OK) status = sqlite3_step(statement);
  const QString reason = QString::fromUtf8(sqlite3_errmsg(source));
  sqlite3_finalize(statement);
  if (watch.isEnded()) return false;
  if (status != SQLITE_DONE)
    throw RuntimeError(enginefault::NotSaved,
                       u"%1: the database cannot be copied to %2 (%3)"_s.arg(from.path(), to, reason));
  return true;
}

// The last write also brings what was copied onto the disk.
void giveReplicaId(const QString& aside) {
  Connection copy(aside, SQLITE_OPEN_READWRITE | SQLITE_OPEN_NOMUTEX);
  copy.execute("PRAGMA synchronous = FULL", enginefault::NotSaved);
  const QString id = timeDateHex(newIdTime());
  Statement statement(copy, "INSERT OR REPLACE INTO info (key, value) VALUES ('replica id', ?)",
                      enginefault::NotSaved);
  Statement::Run(statement, id).step();
  copy.execute("PRAGMA journal_mode = WAL", enginefault::NotSaved);
}

}  // namespace

void copyPages(const QString& from, const QString& to) {
  const std::shared_ptr<Database> source = Database::open(from);
  // Beside the connection that others use: what they have not finished is not in the copy.
  const FileAccess access = accessTo(from);
  const Connection pages(from, openFlags(access), access == FileAccess::Constant);
  int status = SQLITE_NOMEM;
  {
    const Connection target(to, SQLITE_OPEN_READWRITE | SQLITE_OPEN_CREATE | SQLITE_OPEN_NOMUTEX);
    if (sqlite3_backup* const backup = sqlite3_backup_init(target.handle(), "main", pages.handle(), "main")) {
      sqlite3_backup_step(backup, -1);
      status = sqlite3_backup_finish(backup);
    }
  }
  if (status == SQLITE_OK) return;
  QFile::remove(to);
  throw RuntimeError(enginefault::NotSaved, u"%1: the database cannot be copied to %2 (%3)"_s.arg(
                                                from, to, QString::fromUtf8(sqlite3_errstr(status))));
}

bool copyDatabase(const Database& from, const QString& to, const CopyProgress& go) {
  StagedFile file(to);
  if (!writeCopy(from, file.path(), to, go)) return false;
  giveReplicaId(file.path());
  file.putInPlace();
  return true;
}

}  // namespace lens

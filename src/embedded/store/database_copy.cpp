#include "embedded/store/database_copy.h"

#include <QFile>

#include "embedded/files/staged_file.h"
#include "embedded/store/database_file.h"
#include "notes/literals.h"

namespace lens {
namespace {

void writeCopy(sqlite3* source, const QString& sourcePath, const QString& aside, const QString& to) {
  sqlite3_stmt* statement = nullptr;
  const QByteArray target = aside.toUtf8();
  int status = sqlite3_prepare_v2(source, "VACUUM INTO ?", -1, &statement, nullptr);
  if (status == SQLITE_OK)
    status = sqlite3_bind_text(statement, 1, target.constData(), int(target.size()), SQLITE_STATIC);
  if (status == SQLITE_OK) status = sqlite3_step(statement);
  const QString reason = QString::fromUtf8(sqlite3_errmsg(source));
  sqlite3_finalize(statement);
  if (status != SQLITE_DONE)
    throw RuntimeError(enginefault::NotSaved,
                       u"%1: the database cannot be copied to %2 (%3)"_s.arg(sourcePath, to, reason));
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

void copyDatabase(const Database& from, const QString& to) {
  StagedFile file(to);
  writeCopy(from.handle(), from.path(), file.path(), to);
  giveReplicaId(file.path());
  file.putInPlace();
}

}  // namespace lens

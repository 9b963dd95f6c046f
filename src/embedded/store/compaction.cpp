#include "embedded/store/compaction.h"

#include <QScopeGuard>
#include <algorithm>

#include "embedded/store/sqlite_statement.h"
#include "notes/literals.h"

namespace lens {
namespace {

[[noreturn]] void refuse(const QString& path, const QString& reason) {
  throw RuntimeError(enginefault::InUse, u"%1: the database cannot be compacted (%2)"_s.arg(path, reason));
}

// The file for this connection alone. Leaving the journal mode that many can work in takes everybody else to
// be gone, and the exclusive lock then stays until the end of the scope. What is written meanwhile has an
// ordinary journal, so a file whose compaction was cut short is whole again when it is opened next.
class SoleUse {
 public:
  explicit SoleUse(Connection& connection) : connection_(connection) {
    try {
      // A copy of the whole database does not belong into memory.
      connection.execute("PRAGMA temp_store = FILE; PRAGMA locking_mode = EXCLUSIVE", enginefault::NotSaved);
      enter();
    } catch (...) {
      leave();
      throw;
    }
  }
  ~SoleUse() { leave(); }
  SoleUse(const SoleUse&) = delete;
  SoleUse& operator=(const SoleUse&) = delete;

 private:
  void enter() {
    Statement statement(connection_, "PRAGMA journal_mode = DELETE", enginefault::NotSaved);
    QString mode;
    try {
      Statement::Run row(statement);
      if (row.step()) mode = row.text(0);
    } catch (const RuntimeError&) {
      const int status = sqlite3_errcode(connection_.handle()) & 0xFF;
      if (status != SQLITE_BUSY && status != SQLITE_LOCKED) throw;
    }
    if (mode != u"delete") refuse(connection_.path(), u"another program or window has it open"_s);
  }
  void leave() noexcept {
    try {
      connection_.execute(
          "PRAGMA locking_mode = NORMAL; PRAGMA journal_mode = WAL; PRAGMA temp_store = MEMORY",
          enginefault::CannotOpen);
    } catch (const RuntimeError&) {
      // The file is as good as before; the next opening brings the journal back.
    }
  }

  Connection& connection_;
};

bool isReading(sqlite3* handle) {
  for (sqlite3_stmt* statement = sqlite3_next_stmt(handle, nullptr); statement;
       statement = sqlite3_next_stmt(handle, statement))
    if (sqlite3_stmt_busy(statement)) return true;
  return false;
}

}  // namespace

qint64 compact(Database& database) {
  const QString& path = database.path();
  const qint64 before = database.size();
  if (database.isChanging()) refuse(path, u"a change of it is not finished"_s);
  if (isReading(database.handle())) refuse(path, u"it is being read"_s);
  if (sqlite3_db_readonly(database.handle(), "main"))
    throw RuntimeError(enginefault::NotSaved,
                       u"%1: the database cannot be compacted (the file cannot be written)"_s.arg(path));
  database.requireOwnFile();
  const auto renewed = qScopeGuard([&] { database.renewJournal(); });
  {
    const SoleUse alone(database.connection());
    database.objects().removeUnreferenced();
    database.connection().execute("VACUUM", enginefault::NotSaved);
  }
  return std::max<qint64>(before - database.size(), 0);
}

}  // namespace lens

#include <algorithm>

#include "embedded/format/packed_items.h"
#include "embedded/store/database_impl.h"
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
  explicit SoleUse(const Connection& connection) : connection_(connection) {
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

  const Connection& connection_;
};

bool isReading(sqlite3* handle) {
  for (sqlite3_stmt* statement = sqlite3_next_stmt(handle, nullptr); statement;
       statement = sqlite3_next_stmt(handle, statement))
    if (sqlite3_stmt_busy(statement)) return true;
  return false;
}

// Adds what live notes refer to. False when a note is damaged: what it refers to cannot be told.
bool addReferences(const Connection& connection, QSet<quint32>& objects) {
  Statement notes(connection, "SELECT items FROM note WHERE state = 0", enginefault::CannotOpen);
  Statement::Run row(notes);
  try {
    while (row.step())
      for (const Item& item : unpackItems(row.blob(0)))
        if (item.type() == itemtype::Object) objects.insert(objectIdOf(item.data()));
  } catch (const RuntimeError& error) {
    if (error.number() != enginefault::Damaged) throw;
    return false;
  }
  return true;
}

void removeLostObjects(Database& database, const Connection& connection, QSet<quint32> wanted) {
  Database::Transaction transaction(database);
  if (!addReferences(connection, wanted)) return;
  QVector<quint32> lost;
  {
    Statement objects(connection, "SELECT id FROM object", enginefault::CannotOpen);
    Statement::Run row(objects);
    while (row.step()) {
      const quint32 id = quint32(row.integer(0));
      if (!wanted.contains(id)) lost.push_back(id);
    }
  }
  for (const quint32 id : std::as_const(lost)) database.removeObject(id);
  connection.execute("DELETE FROM object_chunk WHERE object NOT IN (SELECT id FROM object)",
                     enginefault::NotSaved);
  transaction.commit();
}

}  // namespace

qint64 Database::compact() {
  const qint64 before = size();
  if (impl_->depth > 0 || !sqlite3_get_autocommit(handle()))
    refuse(path_, u"a change of it is not finished"_s);
  if (isReading(handle())) refuse(path_, u"it is being read"_s);
  if (sqlite3_db_readonly(handle(), "main"))
    throw RuntimeError(enginefault::NotSaved,
                       u"%1: the database cannot be compacted (the file cannot be written)"_s.arg(path_));
  {
    const SoleUse alone(impl_->connection);
    removeLostObjects(*this, impl_->connection, impl_->unsavedObjects);
    impl_->connection.execute("VACUUM", enginefault::NotSaved);
  }
  return std::max<qint64>(before - size(), 0);
}

}  // namespace lens

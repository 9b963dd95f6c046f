#include "embedded/store/database.h"

#include <QFileInfo>
#include <QMutex>
#include <QThread>

#include "embedded/store/database_file.h"
#include "embedded/store/database_impl.h"
#include "notes/literals.h"

namespace lens {
namespace {

// The databases that are open in this process. One thread shares one connection per file, since two
// would lock each other out. And a file that is open must not be read beside SQLite: closing such a
// reader would drop the locks of the whole process.
struct OpenDatabase {
  QString file;
  QThread* thread;
  std::weak_ptr<Database> database;
};

class OpenDatabases {
 public:
  std::shared_ptr<Database> find(const QString& file) {
    const QMutexLocker lock(&mutex_);
    forgetClosed();
    for (const OpenDatabase& entry : entries_)
      if (entry.file == file && entry.thread == QThread::currentThread())
        if (auto database = entry.database.lock()) return database;
    return nullptr;
  }
  bool isOpen(const QString& file) {
    const QMutexLocker lock(&mutex_);
    forgetClosed();
    return std::any_of(entries_.begin(), entries_.end(),
                       [&](const OpenDatabase& entry) { return entry.file == file; });
  }
  void add(const QString& file, const std::shared_ptr<Database>& database) {
    const QMutexLocker lock(&mutex_);
    entries_.push_back({file, QThread::currentThread(), database});
  }
  // The path leads to another file now; who has the old one open keeps it.
  void forget(const QString& file) {
    const QMutexLocker lock(&mutex_);
    entries_.removeIf([&](const OpenDatabase& entry) { return entry.file == file; });
  }

 private:
  void forgetClosed() {
    entries_.removeIf([](const OpenDatabase& entry) { return entry.database.expired(); });
  }
  QMutex mutex_;
  QVector<OpenDatabase> entries_;
};

OpenDatabases& openDatabases() {
  static OpenDatabases instance;
  return instance;
}

QString trueFile(const QString& path) {
  return QFileInfo(path).canonicalFilePath();
}

DatabaseInfo readInfo(Statement& statement) {
  const auto text = [&](const QString& key) {
    Statement::Run row(statement, key);
    return row.step() ? row.text(0) : QString();
  };
  DatabaseInfo info;
  info.title = text(u"title"_s);
  info.replicaId = text(u"replica id"_s);
  info.templateName = text(u"template name"_s);
  info.inheritsFrom = text(u"inherits from"_s);
  info.categories = text(u"categories"_s);
  info.publicAddressBook = text(u"public address book"_s) == u"1";
  return info;
}

QString newReplicaId() {
  return timeDateHex(newIdTime());
}

}  // namespace

Database::Database(const QString& path) : path_(path), impl_(openFile(path)) {}

std::unique_ptr<Database::Impl> Database::openFile(const QString& path) {
  const FileAccess access = accessTo(path);
  const bool readOnly = access != FileAccess::ReadWrite;
  auto impl = std::make_unique<Impl>(path, readOnly ? SQLITE_OPEN_READONLY : SQLITE_OPEN_READWRITE,
                                     access == FileAccess::Constant);
  impl->connection.execute(
      "PRAGMA synchronous = FULL; PRAGMA temp_store = MEMORY; PRAGMA cache_size = -16384;"
      "PRAGMA foreign_keys = OFF; PRAGMA cell_size_check = ON;",
      enginefault::CannotOpen);
  if (!readOnly) impl->connection.execute("PRAGMA journal_mode = WAL", enginefault::CannotOpen);
  bringUpToDate(impl->connection, access);
  // The first read shows whether the tables are what they should be.
  Statement::Run(impl->highestChange).step();
  return impl;
}

Database::~Database() = default;

std::shared_ptr<Database> Database::create(const QString& path, const DatabaseInfo& info) {
  createDatabaseFile(path);
  openDatabases().forget(trueFile(path));
  std::shared_ptr<Database> database(new Database(path));
  DatabaseInfo complete = info;
  if (complete.replicaId.isEmpty()) complete.replicaId = newReplicaId();
  database->setInfo(complete);
  openDatabases().add(trueFile(path), database);
  return database;
}

std::shared_ptr<Database> Database::open(const QString& path) {
  const QString file = trueFile(path);
  if (auto shared = openDatabases().find(file)) return shared;
  if (!openDatabases().isOpen(file)) requireDatabaseFile(path);
  std::shared_ptr<Database> database(new Database(path));
  openDatabases().add(file, database);
  return database;
}

bool Database::looksLikeDatabase(const QString& path) {
  return openDatabases().isOpen(trueFile(path)) || hasDatabaseHead(path);
}

qint64 Database::size() const {
  Statement::Run pages(impl_->pageCount), page(impl_->pageSize);
  return pages.step() && page.step() ? pages.integer(0) * page.integer(0) : 0;
}

DatabaseInfo Database::info() const {
  return readInfo(impl_->readInfo);
}

DatabaseInfo Database::infoOf(const QString& path) {
  const QString file = trueFile(path);
  if (const auto shared = openDatabases().find(file)) return shared->info();
  if (!openDatabases().isOpen(file)) requireDatabaseFile(path);
  const FileAccess access = accessTo(path);
  const Connection connection(
      path,
      (access == FileAccess::ReadWrite ? SQLITE_OPEN_READWRITE : SQLITE_OPEN_READONLY) | SQLITE_OPEN_NOMUTEX,
      access == FileAccess::Constant);
  // A listing of many databases must not stand still at one that is locked.
  sqlite3_busy_timeout(connection.handle(), 100);
  Statement statement(connection, "SELECT value FROM info WHERE key = ?", enginefault::CannotOpen);
  return readInfo(statement);
}

bool Database::isWritable() const {
  return !impl_->removed && sqlite3_db_readonly(handle(), "main") == 0;
}

bool Database::isRemoved() const {
  return impl_->removed;
}

// Only who is alone with a file can take it out of WAL mode, so that tells whether others have it open.
bool Database::isOnlyUser() {
  sqlite3_busy_timeout(handle(), 0);  // whoever has it open will not close it in the meantime
  bool alone = false;
  try {
    Statement::Run row(impl_->leaveWal);
    alone = row.step() && row.text(0) == u"delete";
  } catch (const RuntimeError&) {
    // Somebody has it open.
  }
  sqlite3_busy_timeout(handle(), kBusyTimeoutMs);
  return alone;
}

// A refusal leaves the connection as it was: views and statements of others hang on it.
bool Database::removeOpenFile() {
  if (QFile::remove(path_)) {
    impl_ = std::make_unique<Impl>(path_);
    return true;
  }
#ifdef Q_OS_WIN
  // An open file cannot be deleted there.
  impl_ = std::make_unique<Impl>(path_);
  if (QFile::remove(path_)) return true;
  impl_ = openFile(path_);
#else
  impl_->connection.execute("PRAGMA journal_mode = WAL", enginefault::CannotOpen);
#endif
  return false;
}

void Database::removeFile() {
  const auto refuse = [this](const QString& reason) {
    throw RuntimeError(err::PermissionDenied, u"%1: the database is not removed (%2)"_s.arg(path_, reason));
  };
  impl_->connection.requireFile();
  if (impl_->depth > 0) refuse(u"a change of it is under way"_s);
  if (!isWritable()) refuse(u"the file is write-protected"_s);
  if (!isOnlyUser()) refuse(u"it is in use elsewhere"_s);
  const QString file = trueFile(path_);
  if (!removeOpenFile()) refuse(u"the file cannot be deleted"_s);
  for (const char* journal : {"-wal", "-shm", "-journal"}) QFile::remove(path_ + QLatin1String(journal));
  openDatabases().forget(file);
}

void Database::setInfo(const DatabaseInfo& info) {
  Transaction transaction(*this);
  const auto put = [this](const QString& key, const QString& value) {
    Statement::Run(impl_->writeInfo, key, value).step();
  };
  put(u"title"_s, info.title);
  put(u"replica id"_s, info.replicaId);
  put(u"template name"_s, info.templateName);
  put(u"inherits from"_s, info.inheritsFrom);
  put(u"categories"_s, info.categories);
  put(u"public address book"_s, QString(info.publicAddressBook ? u'1' : u'0'));
  transaction.commit();
}

sqlite3* Database::handle() const {
  return impl_->connection.handle();
}

const Connection& Database::connection() const {
  return impl_->connection;
}

// A transaction that SQLite had to give up (a full disk) must not go on statement by statement.
void Database::Impl::checkWritable() const {
  if (depth > 0 && sqlite3_get_autocommit(connection.handle()))
    throw RuntimeError(
        enginefault::NotSaved,
        u"%1: the change was not saved (an earlier failure undid the transaction)"_s.arg(connection.path()));
}

Database::Transaction::Transaction(Database& database) : database_(database) {
  Impl& impl = *database_.impl_;
  impl.checkWritable();
  Statement::Run(impl.depth == 0 ? impl.begin : impl.savepoint).step();
  ++impl.depth;
}

void Database::Transaction::commit() {
  Impl& impl = *database_.impl_;
  impl.checkWritable();
  Statement::Run(impl.depth == 1 ? impl.commit : impl.release).step();
  --impl.depth;
  open_ = false;
}

Database::Transaction::~Transaction() {
  if (!open_) return;
  Impl& impl = *database_.impl_;
  impl.objects.removeIf([&](const auto& object) { return object.value()->depth >= impl.depth; });
  --impl.depth;
  if (sqlite3_get_autocommit(impl.connection.handle())) return;
  try {
    if (impl.depth == 0) {
      Statement::Run(impl.rollback).step();
    } else {
      Statement::Run(impl.rollbackTo).step();
      Statement::Run(impl.release).step();
    }
  } catch (const RuntimeError&) {
    // What could not be undone now is undone when the file is opened next.
  }
}

}  // namespace lens

#include "embedded/store/database.h"

#include <QFile>

#include "embedded/files/staged_file.h"
#include "embedded/store/arrival_remains.h"
#include "embedded/store/database_file.h"
#include "embedded/store/journal_bond.h"
#include "embedded/store/open_databases.h"
#include "embedded/store/store_session.h"
#include "embedded/store/version_table.h"
#include "host/held_file.h"
#include "notes/literals.h"

namespace lens {
namespace {

OpenDatabases& openDatabases() {
  return OpenDatabases::ofProcess();
}

// Asks for each property by its key.
template <class Text>
DatabaseInfo readInfo(const Text& text) {
  DatabaseInfo info;
  info.title = text(u"title"_s);
  info.replicaId = text(u"replica id"_s);
  info.templateName = text(u"template name"_s);
  info.inheritsFrom = text(u"inherits from"_s);
  info.categories = text(u"categories"_s);
  info.publicAddressBook = text(u"public address book"_s) == u"1";
  return info;
}

// What can be told of a file before SQLite has it.
void lookOver(const QString& path) {
  requireDatabaseFile(path);
  requireOwnJournals(path);
}

QString newReplicaId() {
  return timeDateHex(newIdTime());
}

}  // namespace

Database::Database(const QString& path) : path_(path), held_(std::make_unique<HeldFile>(path)) {
  setSession(StoreSession::open(path));
}

// The stores of the old session go before it, those that others build on last.
void Database::setSession(std::unique_ptr<StoreSession> session) {
  versions_.reset();
  notes_.reset();
  objects_.reset();
  versionTable_.reset();
  session_ = std::move(session);
  versionTable_ = std::make_unique<VersionTable>(*session_);
  objects_ = std::make_unique<ObjectStore>(*session_);
  notes_ = std::make_unique<NoteStore>(*session_, *versionTable_, *objects_);
  versions_ = std::make_unique<VersionStore>(*session_, *versionTable_, *notes_);
}

Database::~Database() = default;

std::shared_ptr<Database> Database::create(const QString& path, const DatabaseInfo& info) {
  for (const auto& old : openDatabases().outdated(OpenDatabases::trueFile(path))) old->session_->hasOwnFile();
  createDatabaseFile(path);
  openDatabases().forget(OpenDatabases::trueFile(path));
  std::shared_ptr<Database> database(new Database(path));
  DatabaseInfo complete = info;
  if (complete.replicaId.isEmpty()) complete.replicaId = newReplicaId();
  database->setInfo(complete);
  openDatabases().add(OpenDatabases::trueFile(path), database);
  return database;
}

std::shared_ptr<Database> Database::open(const QString& path) {
  const QString file = OpenDatabases::trueFile(path);
  if (auto shared = openDatabases().find(file)) return shared;
  // Those who still hold a file that had this name must be done with the journal.
  for (const auto& old : openDatabases().outdated(file)) old->session_->hasOwnFile();
  const OpenDatabases::Opening opening(path, [&] { lookOver(path); });
  std::shared_ptr<Database> database(new Database(path));
  openDatabases().add(file, database);
  removeAbandoned(*database->session_);
  return database;
}

bool Database::isOpenHere(const QString& path) {
  return openDatabases().find(OpenDatabases::trueFile(path)) != nullptr;
}

bool Database::looksLikeDatabase(const QString& path) {
  bool does = true;
  openDatabases().readUnlessOpen(path, [&] { does = hasDatabaseHead(path); });
  return does;
}

qint64 Database::size() const {
  return session_->size();
}

DatabaseInfo Database::info() const {
  return readInfo([this](const QString& key) { return session_->info(key); });
}

DatabaseInfo Database::infoOf(const QString& path) {
  const QString file = OpenDatabases::trueFile(path);
  if (const auto shared = openDatabases().find(file)) return shared->info();
  const OpenDatabases::Opening opening(path, [&] { lookOver(path); });
  const FileAccess access = accessTo(path);
  const Connection connection(path, openFlags(access), access == FileAccess::Constant);
  // A listing of many databases must not stand still at one that is locked.
  sqlite3_busy_timeout(connection.handle(), 100);
  requireOwnSchema(connection);
  Statement statement(connection, "SELECT value FROM info WHERE key = ?", enginefault::CannotOpen);
  return readInfo([&](const QString& key) {
    Statement::Run row(statement, key);
    return row.step() ? row.text(0) : QString();
  });
}

bool Database::isWritable() const {
  return session_->isWritable();
}

bool Database::isRemoved() const {
  return session_->isRemoved();
}

bool Database::isChanging() const {
  return session_->depth() > 0 || !sqlite3_get_autocommit(handle());
}

// Only who is alone with a file can take it out of WAL mode, so that tells whether others have it open.
bool Database::isOnlyUser() {
  sqlite3_busy_timeout(handle(), 0);  // whoever has it open will not close it in the meantime
  bool alone = false;
  try {
    Statement leaveWal(connection(), "PRAGMA journal_mode = DELETE", enginefault::NotSaved);
    Statement::Run row(leaveWal);
    alone = row.step() && row.text(0) == u"delete";
  } catch (const RuntimeError&) {
    // Somebody has it open.
  }
  sqlite3_busy_timeout(handle(), kBusyTimeoutMs);
  return alone;
}

// A refusal leaves the connection as it was: views and statements of others hang on it.
bool Database::takeFile(const std::function<bool()>& take) {
  if (take()) {
    setSession(StoreSession::removed(path_));
    return true;
  }
#ifdef Q_OS_WIN
  // An open file can be neither deleted nor renamed there.
  setSession(StoreSession::removed(path_));
  if (take()) return true;
  setSession(StoreSession::open(path_));
#else
  session_->connection().execute("PRAGMA journal_mode = WAL", enginefault::CannotOpen);
  session_->renewJournal();
#endif
  return false;
}

// The file goes from its place, by what takes it away.
void Database::giveUpFile(const QString& what, const std::function<bool()>& take) {
  const auto refuse = [&](const QString& reason) {
    throw RuntimeError(err::PermissionDenied, u"%1: the database is not %2 (%3)"_s.arg(path_, what, reason));
  };
  session_->connection().requireFile();
  if (session_->depth() > 0) refuse(u"a change of it is under way"_s);
  if (!isWritable()) refuse(u"the file is write-protected"_s);
  if (!session_->hasOwnFile()) refuse(u"another program has deleted or replaced the file"_s);
  if (!isOnlyUser()) refuse(u"it is in use elsewhere"_s);
  const QString file = OpenDatabases::trueFile(path_);
  if (!takeFile(take)) refuse(u"the file cannot be %1"_s.arg(what == u"removed" ? u"deleted"_s : what));
  for (const char* journal : {"-wal", "-shm", "-journal"}) QFile::remove(path_ + QLatin1String(journal));
  openDatabases().forget(file);
  held_.reset();
}

void Database::removeFile() {
  giveUpFile(u"removed"_s, [this] { return QFile::remove(path_); });
}

void Database::moveFile(const QString& to) {
  // Where the case of letters does not count, a name that differs in it leads to the file itself.
  const bool isRespelled = to != path_ && to.compare(path_, Qt::CaseInsensitive) == 0 &&
                           FileIdentity::of(to) == FileIdentity::of(path_);
  StagedFile place(to, isRespelled ? StagedFile::Old::Replace : StagedFile::Old::Refuse);
  if (!isRespelled) place.requireFreePlace();
  giveUpFile(u"renamed"_s, [&] { return place.takeInPlace(path_); });
}

void Database::requireOwnFile() {
  session_->requireOwnFile();
}

void Database::renewJournal() {
  session_->renewJournal();
}

void Database::setInfo(const DatabaseInfo& info) {
  Transaction transaction(*this);
  const auto put = [this](const QString& key, const QString& value) { session_->setInfo(key, value); };
  put(u"title"_s, info.title);
  put(u"replica id"_s, info.replicaId);
  put(u"template name"_s, info.templateName);
  put(u"inherits from"_s, info.inheritsFrom);
  put(u"categories"_s, info.categories);
  put(u"public address book"_s, QString(info.publicAddressBook ? u'1' : u'0'));
  transaction.commit();
}

sqlite3* Database::handle() const {
  return session_->connection().handle();
}

Connection& Database::connection() {
  return session_->connection();
}

const Connection& Database::connection() const {
  return session_->connection();
}

}  // namespace lens

#include "embedded/store/sqlite_statement.h"

#include <QFileInfo>
#include <QUrl>

#include "embedded/format/engine_fault.h"
#include "notes/literals.h"
#include "notes/runtime_error.h"

namespace lens {
namespace {

bool meansDamage(int status) {
  return status == SQLITE_CORRUPT || status == SQLITE_NOTADB || status == SQLITE_FORMAT;
}

QByteArray constantUri(const QString& path) {
  return QUrl::fromLocalFile(QFileInfo(path).absoluteFilePath()).toEncoded(QUrl::FullyEncoded) +
         "?immutable=1";
}

}  // namespace

Connection::Connection(const QString& path, int flags, bool constant) : path_(path) {
  const QByteArray name = constant ? constantUri(path) : path.toUtf8();
  if (constant) flags |= SQLITE_OPEN_URI;
  const int status = sqlite3_open_v2(name.constData(), &handle_, flags, nullptr);
  if (status != SQLITE_OK) {
    const QString reason = handle_ ? QString::fromUtf8(sqlite3_errmsg(handle_)) : u"out of memory"_s;
    sqlite3_close_v2(handle_);
    throw RuntimeError(enginefault::CannotOpen,
                       u"%1: the database cannot be opened (%2)"_s.arg(path, reason));
  }
  sqlite3_extended_result_codes(handle_, 1);
  sqlite3_busy_timeout(handle_, kBusyTimeoutMs);
  // The file may come from anywhere: nothing in its schema may do more than hold data.
  sqlite3_db_config(handle_, SQLITE_DBCONFIG_DEFENSIVE, 1, nullptr);
  sqlite3_db_config(handle_, SQLITE_DBCONFIG_TRUSTED_SCHEMA, 0, nullptr);
  sqlite3_db_config(handle_, SQLITE_DBCONFIG_ENABLE_TRIGGER, 0, nullptr);
  sqlite3_db_config(handle_, SQLITE_DBCONFIG_ENABLE_VIEW, 0, nullptr);
}

// There is a handle, so that nobody who holds the removed database meets a null pointer.
Connection::Connection(const QString& path)
    : Connection(u":memory:"_s, SQLITE_OPEN_READWRITE | SQLITE_OPEN_MEMORY) {
  path_ = path;
  removed_ = true;
}

void Connection::requireFile() const {
  if (removed_) throw RuntimeError(err::FileNotFound, u"%1: the database has been removed"_s.arg(path_));
}

Connection::~Connection() {
  sqlite3_close_v2(handle_);
}

void Connection::execute(const char* sql, int fault) {
  if (sqlite3_exec(handle_, sql, nullptr, nullptr, nullptr) != SQLITE_OK) fail(fault);
}

void Connection::fail(int fault) const {
  const int status = sqlite3_errcode(handle_) & 0xFF;
  const QString reason = QString::fromUtf8(sqlite3_errmsg(handle_));
  if (meansDamage(status))
    throw RuntimeError(enginefault::Damaged, u"%1: the database is damaged (%2)"_s.arg(path_, reason));
  if (status == SQLITE_PERM || status == SQLITE_AUTH)
    throw RuntimeError(err::PermissionDenied, u"%1: permission denied (%2)"_s.arg(path_, reason));
  const QString what = fault == enginefault::NotSaved  ? u"the change was not saved"_s
                       : fault == enginefault::Damaged ? u"the database is damaged"_s
                                                       : u"the database cannot be read"_s;
  throw RuntimeError(fault, u"%1: %2 (%3)"_s.arg(path_, what, reason));
}

void Statement::prepare() {
  if (handle_) return;
  connection_.requireFile();
  const int status =
      sqlite3_prepare_v3(connection_.handle(), sql_, -1, SQLITE_PREPARE_PERSISTENT, &handle_, nullptr);
  if (status == SQLITE_OK) return;
  // The statements are ours, so a table or column that is missing is the file's fault.
  connection_.fail((status & 0xFF) == SQLITE_ERROR ? enginefault::Damaged : fault_);
}

bool Statement::Run::step() {
  const int status = sqlite3_step(statement_.handle_);
  if (status == SQLITE_ROW) return true;
  if (status != SQLITE_DONE) statement_.connection_.fail(statement_.fault_);
  return false;
}

QString Statement::Run::text(int column) const {
  const int type = typeOf(column);
  if (type == SQLITE_NULL) return {};
  if (type != SQLITE_TEXT) wrongValue(column, "text");
  const unsigned char* const utf8 = sqlite3_column_text(statement_.handle_, column);
  const int size = sqlite3_column_bytes(statement_.handle_, column);
  return utf8 ? QString::fromUtf8(reinterpret_cast<const char*>(utf8), size) : QString();
}

void Statement::Run::wrongValue(int column, const char* wanted) const {
  const char* const name = sqlite3_column_name(statement_.handle_, column);
  throw RuntimeError(enginefault::Damaged,
                     u"%1: the database is damaged (a value of \"%2\" is no %3)"_s.arg(
                         statement_.connection_.path(), QString::fromUtf8(name), QLatin1String(wanted)));
}

void Statement::Run::bind(int place, QByteArrayView bytes) {
  // A null pointer would store NULL instead of no bytes.
  const char* const data = bytes.data() ? bytes.data() : "";
  check(sqlite3_bind_blob64(statement_.handle_, place, data, sqlite3_uint64(bytes.size()), SQLITE_STATIC));
}

void Statement::Run::bind(int place, const QString& text) {
  const char16_t* const units = text.isNull() ? u"" : reinterpret_cast<const char16_t*>(text.utf16());
  check(sqlite3_bind_text64(statement_.handle_, place, reinterpret_cast<const char*>(units),
                            sqlite3_uint64(text.size()) * 2, SQLITE_STATIC, SQLITE_UTF16));
}

void Statement::Run::check(int status) {
  if (status == SQLITE_OK) return;
  // A failing constructor runs no destructor, so the statement is freed for its next run here.
  sqlite3_reset(statement_.handle_);
  throw RuntimeError(statement_.fault_,
                     u"%1: a value cannot be stored (%2)"_s.arg(statement_.connection_.path(),
                                                                QString::fromUtf8(sqlite3_errstr(status))));
}

}  // namespace lens

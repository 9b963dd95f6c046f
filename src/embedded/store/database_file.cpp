#include "embedded/store/database_file.h"

#include <QFile>
#include <QFileInfo>
#include <QMutex>
#include <QtEndian>

#include "embedded/files/staged_file.h"
#include "embedded/format/engine_fault.h"
#include "embedded/store/sqlite_statement.h"
#include "notes/literals.h"
#include "notes/runtime_error.h"

namespace lens {
namespace {

constexpr quint32 kApplicationId = 0x544C4E53;  // "TLNS"
constexpr qsizetype kHeadSize = 100;
constexpr qsizetype kSchemaOffset = 60;
constexpr qsizetype kApplicationOffset = 68;

// The unfinished file beside the final one must never be taken for a database.
constexpr char kSchema[] = R"(
PRAGMA page_size = 8192;
PRAGMA synchronous = FULL;
BEGIN IMMEDIATE;
PRAGMA application_id = 0x544C4E53;
PRAGMA user_version = 3;
CREATE TABLE note (
  id INTEGER PRIMARY KEY, class INTEGER NOT NULL, unid BLOB NOT NULL, parent BLOB,
  sequence INTEGER NOT NULL, sequence_time INTEGER NOT NULL, created INTEGER NOT NULL,
  modified INTEGER NOT NULL, added INTEGER NOT NULL, accessed INTEGER NOT NULL,
  state INTEGER NOT NULL, change INTEGER NOT NULL, items BLOB);
CREATE UNIQUE INDEX note_unid ON note (unid);
CREATE INDEX note_class ON note (class, id, unid, parent) WHERE state = 0;
CREATE INDEX note_change ON note (change);
CREATE TABLE erased (change INTEGER PRIMARY KEY, note INTEGER NOT NULL);
CREATE TABLE lineage (note INTEGER PRIMARY KEY, stamps BLOB NOT NULL);
CREATE TABLE info (key TEXT PRIMARY KEY, value) WITHOUT ROWID;
CREATE TABLE object (
  id INTEGER PRIMARY KEY AUTOINCREMENT, size INTEGER NOT NULL, chunks INTEGER NOT NULL, checksum BLOB);
CREATE TABLE object_chunk (
  object INTEGER NOT NULL, number INTEGER NOT NULL, bytes BLOB NOT NULL,
  PRIMARY KEY (object, number)) WITHOUT ROWID;
COMMIT;
PRAGMA journal_mode = WAL;
)";
static_assert(kSchemaVersion == 3 && kApplicationId == 0x544C4E53, "as written in the schema");

QByteArray headOf(const QString& path) {
  QFile file(path);
  if (!file.open(QIODevice::ReadOnly | QIODevice::Unbuffered))
    throw RuntimeError(err::PermissionDenied,
                       u"%1: the file cannot be read (%2)"_s.arg(path, file.errorString()));
  return file.read(kHeadSize);
}

bool isOurs(const QByteArray& head) {
  static const QByteArray magic("SQLite format 3", 16);
  return head.size() == kHeadSize && head.startsWith(magic) &&
         qFromBigEndian<quint32>(head.constData() + kApplicationOffset) == kApplicationId;
}

void writeSchema(const QString& aside) {
  Connection connection(aside, SQLITE_OPEN_READWRITE | SQLITE_OPEN_CREATE | SQLITE_OPEN_NOMUTEX);
  connection.execute(kSchema, enginefault::NotSaved);
}

}  // namespace

bool hasDatabaseHead(const QString& path) {
  if (!QFileInfo(path).isFile()) return false;
  try {
    return isOurs(headOf(path));
  } catch (const RuntimeError&) {
    return false;
  }
}

void requireDatabaseFile(const QString& path) {
  const QFileInfo file(path);
  if (!file.exists()) throw RuntimeError(err::FileNotFound, u"%1: file not found"_s.arg(path));
  const QByteArray head = file.isFile() ? headOf(path) : QByteArray();
  if (!isOurs(head)) throw RuntimeError(enginefault::NotADatabase, u"%1: this is not a database"_s.arg(path));
  const quint32 schema = qFromBigEndian<quint32>(head.constData() + kSchemaOffset);
  if (schema > quint32(kSchemaVersion))
    throw RuntimeError(enginefault::NewerSchema,
                       u"%1: the database has schema %2, this program knows schemas up to %3"_s.arg(
                           path, QString::number(schema), QString::number(kSchemaVersion)));
}

// Schema 1 did not write down what was erased without a stub, schema 2 not which version of a note came
// out of which. A file that cannot be changed gets the tables for this connection only, and keeps its
// schema.
void bringUpToDate(Connection& connection, FileAccess access) {
  Statement version(connection, "PRAGMA user_version", enginefault::CannotOpen);
  qint64 schema = 0;
  {
    Statement::Run row(version);
    if (row.step()) schema = row.integer(0);
  }
  if (schema >= kSchemaVersion) return;
  if (access == FileAccess::ReadWrite) {
    connection.execute(
        "BEGIN IMMEDIATE;"
        "CREATE TABLE IF NOT EXISTS erased (change INTEGER PRIMARY KEY, note INTEGER NOT NULL);"
        "CREATE TABLE IF NOT EXISTS lineage (note INTEGER PRIMARY KEY, stamps BLOB NOT NULL);"
        "PRAGMA user_version = 3;"
        "COMMIT",
        enginefault::CannotOpen);
    return;
  }
  if (schema < 2)
    connection.execute("CREATE TEMP TABLE erased (change INTEGER PRIMARY KEY, note INTEGER NOT NULL)",
                       enginefault::CannotOpen);
  connection.execute("CREATE TEMP TABLE lineage (note INTEGER PRIMARY KEY, stamps BLOB NOT NULL)",
                     enginefault::CannotOpen);
}

TimeDate newIdTime() {
  static QMutex mutex;
  static TimeDate last;
  const QMutexLocker lock(&mutex);
  TimeDate now = timeDateNow();
  if (now.innards[1] == last.innards[1] && now.innards[0] <= last.innards[0])
    now.innards[0] = last.innards[0] + 1;
  return last = now;
}

FileAccess accessTo(const QString& path) {
  const QFileInfo file(path);
  const bool protectedFromAll =
      !(file.permissions() & (QFile::WriteOwner | QFile::WriteGroup | QFile::WriteOther));
  if (!protectedFromAll && file.isWritable()) return FileAccess::ReadWrite;
  // What a crash left in the journal must be read too, and that takes the ordinary way.
  for (const QLatin1String journal : {QLatin1String("-wal"), QLatin1String("-journal")})
    if (QFileInfo(path + journal).size() > 0) return FileAccess::ReadOnly;
  const bool sealedDirectory = !QFileInfo(file.absolutePath()).isWritable();
  return protectedFromAll || sealedDirectory ? FileAccess::Constant : FileAccess::ReadOnly;
}

void createDatabaseFile(const QString& path) {
  StagedFile file(path);
  writeSchema(file.path());
  file.putInPlace();
}

}  // namespace lens

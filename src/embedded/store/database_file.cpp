#include "embedded/store/database_file.h"

#include <QFile>
#include <QFileInfo>
#include <QMutex>
#include <QtEndian>

#include "embedded/files/staged_file.h"
#include "embedded/format/engine_fault.h"
#include "embedded/store/own_tables.h"
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
QByteArray newDatabase() {
  const QByteArray create("CREATE TABLE ");
  return QByteArray("PRAGMA page_size = 8192; PRAGMA synchronous = FULL; BEGIN IMMEDIATE;") +
         "PRAGMA application_id = " + QByteArray::number(kApplicationId) +
         ";PRAGMA user_version = " + QByteArray::number(kSchemaVersion) + ";" + kNoteTables + create +
         kErasedTable + ";" + create + kLineageTable + ";" + create + kFolderTable + ";" + kFolderIndexes +
         "COMMIT; PRAGMA journal_mode = WAL;";
}

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
  connection.execute(newDatabase().constData(), enginefault::NotSaved);
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
  if (schema > quint32(kArrivingSchema))
    throw RuntimeError(enginefault::NewerSchema,
                       u"%1: the database has schema %2, this program knows schemas up to %3"_s.arg(
                           path, QString::number(schema), QString::number(kArrivingSchema)));
}

namespace {

void executeUpdate(Connection& connection, const QByteArray& sql) {
  connection.execute(sql.constData(), enginefault::CannotOpen);
}

// Folders as they were kept before are read into what they are kept in now; what belonged to deleted
// documents goes, but not the highest change of a folder.
void bringFoldersUpToDate(Connection& connection) {
  const bool timed = sqlite3_table_column_metadata(connection.handle(), "main", "folder_document", "time",
                                                   nullptr, nullptr, nullptr, nullptr, nullptr) == SQLITE_OK;
  executeUpdate(connection,
                QByteArray("CREATE TEMP TABLE earlier_folder AS SELECT folder, document, change,"
                           " present, ") +
                    (timed ? "time" : "0 AS time") +
                    " FROM main.folder_document;"
                    "DROP TRIGGER IF EXISTS main.folder_document_stub;"
                    "DROP TRIGGER IF EXISTS main.folder_document_erased;"
                    "DROP TABLE main.folder_document;"
                    "CREATE TABLE " +
                    kFolderTable + ";" + kFolderIndexes +
                    "INSERT INTO folder_document SELECT * FROM earlier_folder WHERE document = x''"
                    " OR document IN (SELECT unid FROM note WHERE state = 0);"
                    "INSERT OR IGNORE INTO folder_document SELECT folder, x'', max(change), 0, 0"
                    " FROM earlier_folder GROUP BY folder;"
                    "DROP TABLE earlier_folder;");
}

void dropOutdated(Connection& connection, const QByteArrayList& outdated) {
  bool words = false;
  for (const QByteArray& table : outdated) words = words || table.startsWith("full_text");
  if (words) executeUpdate(connection, kDropFullText);
  for (const QByteArray& table : outdated)
    if (!table.startsWith("full_text")) executeUpdate(connection, "DROP TABLE IF EXISTS main." + table);
}

// A file that cannot be changed gets what it lacks for this connection only, and keeps its schema.
void lendTables(Connection& connection) {
  for (const char* const table : {kErasedTable, kLineageTable, kFolderTable}) {
    const QByteArray name = QByteArray(table).split(' ').first();
    if (sqlite3_table_column_metadata(connection.handle(), "main", name.constData(), nullptr, nullptr,
                                      nullptr, nullptr, nullptr, nullptr) != SQLITE_OK)
      executeUpdate(connection, QByteArray("CREATE TEMP TABLE ") + table);
  }
}

}  // namespace

// Schema 1 did not write down what was erased without a stub, schema 2 not which version of a note came
// out of which, schema 3 had no table of folders until one was filled.
void bringUpToDate(Connection& connection, FileAccess access, const SchemaFindings& findings) {
  Statement version(connection, "PRAGMA user_version", enginefault::CannotOpen);
  qint64 schema = 0;
  {
    Statement::Run row(version);
    if (row.step()) schema = row.integer(0);
  }
  if (access != FileAccess::ReadWrite) {
    if (!findings.outdated.isEmpty())
      throw RuntimeError(enginefault::Damaged,
                         u"%1: the database is damaged (its table \"%2\" is not what this program makes, and "
                         "the file cannot be changed)"_s.arg(connection.path(),
                                                             QString::fromUtf8(findings.outdated.first())));
    return lendTables(connection);
  }
  if (schema >= kSchemaVersion && findings.outdated.isEmpty()) return;
  const QByteArray create("CREATE TABLE IF NOT EXISTS ");
  executeUpdate(connection, "BEGIN IMMEDIATE");
  dropOutdated(connection, findings.outdated);
  if (findings.earlierFolders) bringFoldersUpToDate(connection);
  executeUpdate(connection, create + kErasedTable + ";" + create + kLineageTable + ";" + create +
                                kFolderTable + ";" + kFolderIndexes + "PRAGMA user_version = " +
                                QByteArray::number(qMax<qint64>(schema, kSchemaVersion)) + ";COMMIT");
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

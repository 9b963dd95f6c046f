#include "embedded/store/own_schema.h"

#include <QHash>
#include <QSet>

#include "embedded/format/engine_fault.h"
#include "embedded/store/own_tables.h"
#include "notes/literals.h"
#include "notes/runtime_error.h"

namespace lens {
namespace {

constexpr int kFault = enginefault::CannotOpen;

// Folders as they were kept before schema 4: at first without a time, which was added to the table later, and
// with triggers that took out what belonged to deleted notes.
constexpr char kFirstFolders[] =
    "CREATE TABLE folder_document (folder BLOB NOT NULL, document BLOB NOT NULL, change INTEGER NOT NULL,"
    " present INTEGER NOT NULL, PRIMARY KEY (folder, document)) WITHOUT ROWID;";
constexpr char kFirstFoldersParted[] =
    "CREATE TABLE folder_document ("
    "  folder BLOB NOT NULL, document BLOB NOT NULL, change INTEGER NOT NULL, present INTEGER NOT NULL,"
    "  PRIMARY KEY (folder, document)) WITHOUT ROWID;";
constexpr char kTimeAdded[] = "ALTER TABLE folder_document ADD COLUMN time INTEGER NOT NULL DEFAULT 0;";
constexpr char kFolderTriggers[] =
    "CREATE TABLE note (unid, state);"
    "CREATE TRIGGER IF NOT EXISTS folder_document_stub AFTER UPDATE OF state ON note WHEN new.state <> 0"
    " BEGIN"
    "  DELETE FROM folder_document WHERE folder = old.unid;"
    "  DELETE FROM folder_document WHERE document = old.unid;"
    " END;"
    "CREATE TRIGGER IF NOT EXISTS folder_document_erased AFTER DELETE ON note BEGIN"
    "  DELETE FROM folder_document WHERE folder = old.unid;"
    "  DELETE FROM folder_document WHERE document = old.unid;"
    " END;";

// An entry of the file's own list: its name, and its kind with the text that made it.
struct Entry {
  QByteArray name, made;
};
bool isTable(const Entry& entry) {
  return entry.made.startsWith("table ");
}

QList<Entry> entriesOf(const Connection& connection) {
  Statement list(connection, "SELECT name, type, sql FROM sqlite_master", kFault);
  Statement::Run row(list);
  QList<Entry> entries;
  while (row.step())
    entries.push_back({row.text(0).toUtf8(), row.text(1).toUtf8() + ' ' + row.text(2).toUtf8()});
  return entries;
}

// What SQLite itself makes of definitions; it knows tables of its own besides.
QList<Entry> entriesMadeBy(const QByteArray& definitions) {
  Connection connection(u":memory:"_s, SQLITE_OPEN_READWRITE | SQLITE_OPEN_MEMORY);
  connection.execute(definitions.constData(), kFault);
  return entriesOf(connection);
}

// Kind and text by name.
using Schema = QHash<QByteArray, QByteArray>;

Schema schemaMadeBy(const QByteArray& definitions) {
  Schema schema;
  for (const Entry& entry : entriesMadeBy(definitions)) schema.insert(entry.name, entry.made);
  return schema;
}

// To ask SQLite takes longer than to read a file's list, so each is made when a file first has something of
// it.
const Schema& neededSchema() {
  const QByteArray create("CREATE TABLE ");
  static const Schema schema =
      schemaMadeBy(kNoteTables + create + kErasedTable + ';' + create + kLineageTable + ';' + create +
                   kFolderTable + ';' + kFolderIndexes);
  return schema;
}

const Schema& viewSchema() {
  static const Schema schema = [] {
    QByteArray views;
    for (const OwnTable& table : kViewTables)
      views += QByteArray("CREATE TABLE ") + table.name + ' ' + table.definition + ';';
    return schemaMadeBy(views + "CREATE INDEX " + kViewNoteParent);
  }();
  return schema;
}

const Schema& fullTextSchema() {
  static const Schema schema = schemaMadeBy(QByteArray(kFullTextWords) + ';' + kFullTextTables);
  return schema;
}

const Schema& derivedSchemaOf(const QByteArray& name) {
  return name.contains("full_text") ? fullTextSchema() : viewSchema();
}

// Kinds and texts of what older programs made.
const QSet<QByteArray>& earlierFolders() {
  static const QSet<QByteArray> made = [] {
    QSet<QByteArray> all;
    for (const QByteArray& folders : {QByteArray(kFirstFolders), QByteArray(kFirstFoldersParted)})
      for (const QByteArray& more : {QByteArray(), QByteArray(kTimeAdded), QByteArray(kFolderTriggers)})
        for (const Entry& entry : entriesMadeBy(folders + more))
          if (entry.name.startsWith("folder_document")) all.insert(entry.made);
    return all;
  }();
  return made;
}

[[noreturn]] void foreignSchema(const Connection& connection, const QByteArray& name, const QString& fault) {
  throw RuntimeError(
      enginefault::Damaged,
      u"%1: the database is damaged (\"%2\" in its list of tables %3)"_s.arg(
          connection.path(), QString::fromUtf8(name.first(qMin<qsizetype>(name.size(), 100))), fault));
}

qint64 versionOf(const Connection& connection) {
  Statement version(connection, "PRAGMA user_version", kFault);
  Statement::Run row(version);
  return row.step() ? row.integer(0) : 0;
}

}  // namespace

SchemaFindings requireOwnSchema(const Connection& connection) {
  const Schema& needed = neededSchema();
  SchemaFindings findings;
  QSet<QByteArray> found;
  const qint64 version = versionOf(connection);
  for (const Entry& entry : entriesOf(connection)) {
    found.insert(entry.name);
    if (needed.value(entry.name) == entry.made) continue;
    const Schema& derived = derivedSchemaOf(entry.name);
    if (derived.value(entry.name) == entry.made) continue;
    if (derived.contains(entry.name) && isTable(entry))
      findings.outdated.append(entry.name);
    else if (version < kSchemaVersion && earlierFolders().contains(entry.made))
      findings.earlierFolders = true;
    else
      foreignSchema(connection, entry.name, u"is not what this program makes"_s);
  }
  if (version >= kSchemaVersion)
    for (auto own = needed.cbegin(); own != needed.cend(); ++own)
      if (!found.contains(own.key())) foreignSchema(connection, own.key(), u"is missing"_s);
  return findings;
}

}  // namespace lens

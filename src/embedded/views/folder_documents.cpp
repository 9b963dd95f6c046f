#include "embedded/views/folder_documents.h"

#include "embedded/store/sqlite_statement.h"
#include "embedded/views/view_design.h"

namespace lens {
namespace {

constexpr char kTable[] =
    "CREATE TABLE IF NOT EXISTS folder_document ("
    "  folder BLOB NOT NULL, document BLOB NOT NULL, change INTEGER NOT NULL, present INTEGER NOT NULL,"
    "  PRIMARY KEY (folder, document)) WITHOUT ROWID;"
    "CREATE INDEX IF NOT EXISTS folder_document_change ON folder_document (folder, change);";

// Databases in which nobody ever filled a folder lack the table.
bool hasTable(const Database& database) {
  return sqlite3_table_column_metadata(database.handle(), "main", "folder_document", nullptr, nullptr,
                                       nullptr, nullptr, nullptr, nullptr) == SQLITE_OK;
}

QVector<quint32> noteIds(Statement::Run& run) {
  QVector<quint32> ids;
  while (run.step()) ids.push_back(quint32(run.integer(0)));
  return ids;
}

Unid requireFolder(const Database& database, quint32 folder) {
  Note note;
  if (!database.read(folder, note))
    throw RuntimeError(enginefault::UnknownNote,
                       QStringLiteral("%1: there is no note %2 (it may have been deleted)")
                           .arg(database.path(), QString::number(folder, 16).toUpper()));
  if (noteclass::base(note.header.noteClass) != noteclass::View || !isFolder(note))
    throw RuntimeError(kNoFolder,
                       QStringLiteral("%1: \"%2\" is no folder").arg(database.path(), note.text(u"$TITLE")));
  return note.header.unid;
}

enum class Missing { Refuse, PassOver };

void write(Database& database, quint32 folder, const QVector<quint32>& documents, bool present,
           Missing missing) {
  Database::Transaction transaction(database);
  const QByteArray folderUnid = requireFolder(database, folder).bytes();
  const Connection& connection = database.connection();
  connection.execute(kTable, enginefault::NotSaved);
  Statement find(connection, "SELECT unid FROM note WHERE id = ? AND state = 0", enginefault::NotSaved);
  // What is so already keeps its change: nobody has to look at it again.
  Statement put(connection,
                "INSERT INTO folder_document SELECT ?1, ?2,"
                " 1 + coalesce((SELECT max(change) FROM folder_document WHERE folder = ?1), 0), ?3 WHERE true"
                " ON CONFLICT (folder, document) DO UPDATE SET change = excluded.change,"
                " present = excluded.present WHERE present <> excluded.present",
                enginefault::NotSaved);
  for (const quint32 document : documents) {
    Statement::Run run(find, document);
    if (!run.step()) {
      if (missing == Missing::PassOver) continue;
      throw RuntimeError(enginefault::UnknownNote,
                         QStringLiteral("%1: there is no document %2 for the folder")
                             .arg(database.path(), QString::number(document, 16).toUpper()));
    }
    Statement::Run(put, folderUnid, run.blob(0), present ? 1 : 0).step();
  }
  transaction.commit();
}

}  // namespace

void addToFolder(Database& database, quint32 folder, const QVector<quint32>& documents) {
  write(database, folder, documents, true, Missing::Refuse);
}

void removeFromFolder(Database& database, quint32 folder, const QVector<quint32>& documents) {
  write(database, folder, documents, false, Missing::PassOver);
}

qint64 folderChange(const Database& database, const Unid& folder) {
  if (!hasTable(database)) return 0;
  const Connection& connection = database.connection();
  Statement highest(connection, "SELECT max(change) FROM folder_document WHERE folder = ?",
                    enginefault::CannotOpen);
  const QByteArray unid = folder.bytes();
  Statement::Run run(highest, unid);
  return run.step() ? run.integer(0) : 0;
}

QVector<quint32> folderChangesSince(const Database& database, const Unid& folder, qint64 change) {
  if (!hasTable(database)) return {};
  const Connection& connection = database.connection();
  Statement changed(connection,
                    "SELECT note.id FROM folder_document JOIN note ON note.unid = document AND state = 0"
                    " WHERE folder = ? AND folder_document.change > ?",
                    enginefault::CannotOpen);
  const QByteArray unid = folder.bytes();
  Statement::Run run(changed, unid, change);
  return noteIds(run);
}

QVector<quint32> folderDocuments(const Database& database, const Unid& folder) {
  if (!hasTable(database)) return {};
  const Connection& connection = database.connection();
  Statement present(connection,
                    "SELECT note.id FROM folder_document JOIN note ON note.unid = document AND state = 0"
                    " WHERE folder = ? AND present = 1 ORDER BY note.id",
                    enginefault::CannotOpen);
  const QByteArray unid = folder.bytes();
  Statement::Run run(present, unid);
  return noteIds(run);
}

bool isInFolder(const Database& database, const Unid& folder, const Unid& document) {
  if (!hasTable(database)) return false;
  const Connection& connection = database.connection();
  Statement find(connection,
                 "SELECT 1 FROM folder_document WHERE folder = ? AND document = ? AND present = 1",
                 enginefault::CannotOpen);
  const QByteArray folderUnid = folder.bytes(), documentUnid = document.bytes();
  Statement::Run run(find, folderUnid, documentUnid);
  return run.step();
}

}  // namespace lens

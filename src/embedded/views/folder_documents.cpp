#include "embedded/views/folder_documents.h"

#include <QDateTime>
#include <tuple>

#include "embedded/store/arriving_notes.h"
#include "embedded/store/sqlite_statement.h"
#include "embedded/views/view_design.h"
#include "notes/literals.h"

namespace lens {
namespace {

// The highest change of a folder; of a number that no change has the file is damaged.
qint64 highestOf(Statement& highest, QByteArrayView folder) {
  Statement::Run run(highest, folder);
  if (!run.step() || run.isNull(0)) return 0;
  return run.below(0, kNoNumber);
}

// Writes what was done with documents in folders, in the order in which the index has to look at it.
class Writer {
 public:
  explicit Writer(const Database& database) : connection_(database.connection()) {}

  // At the same moment a document is rather in than out.
  void put(QByteArrayView folder, QByteArrayView document, bool present, qint64 time) {
    const qint64 change = 1 + highestOf(highest_, folder);
    Statement::Run(put_, folder, document, change, present ? 1 : 0, time).step();
    if (sqlite3_changes(connection_.handle()) > 0) Statement::Run(keep_, folder, change).step();
  }

 private:
  const Connection& connection_;
  Statement highest_{connection_, "SELECT max(change) FROM folder_document WHERE folder = ?",
                     enginefault::NotSaved};
  Statement put_{connection_,
                 "INSERT INTO folder_document (folder, document, change, present, time)"
                 " VALUES (?1, ?2, ?3, ?4, ?5) ON CONFLICT (folder, document) DO UPDATE SET"
                 " change = excluded.change, present = excluded.present, time = excluded.time"
                 " WHERE (excluded.time, excluded.present) > (folder_document.time, folder_document.present)",
                 enginefault::NotSaved};
  Statement keep_{connection_,
                  "INSERT INTO folder_document (folder, document, change, present, time)"
                  " VALUES (?1, x'', ?2, 0, 0) ON CONFLICT (folder, document) DO UPDATE SET"
                  " change = excluded.change",
                  enginefault::NotSaved};
};

QVector<NoteId> noteIds(Statement::Run& run) {
  QVector<NoteId> ids;
  while (run.step()) ids.push_back(run.noteId(0));
  return ids;
}

Unid requireFolder(const Database& database, NoteId folder) {
  Note note;
  if (!database.notes().read(folder, note))
    throw RuntimeError(enginefault::UnknownNote, u"%1: there is no note %2 (it may have been deleted)"_s.arg(
                                                     database.path(), folder.hexText()));
  if (noteclass::base(note.header.noteClass) != noteclass::View || !isFolder(note))
    throw RuntimeError(kNoFolder, u"%1: \"%2\" is no folder"_s.arg(database.path(), note.text(u"$TITLE")));
  return note.header.unid;
}

enum class Missing { Refuse, PassOver };

void write(Database& database, NoteId folder, const QVector<NoteId>& documents, bool present,
           Missing missing) {
  Database::Transaction transaction(database);
  const QByteArray folderUnid = requireFolder(database, folder).bytes();
  Statement find(database.connection(),
                 "SELECT unid, present, time FROM note LEFT JOIN folder_document ON folder = ?2 AND"
                 " document = unid WHERE id = ?1 AND state = 0 AND " LENS_HAS_ARRIVED,
                 enginefault::NotSaved);
  Writer writer(database);
  const qint64 now = QDateTime::currentMSecsSinceEpoch();
  for (const NoteId document : documents) {
    Statement::Run run(find, document, folderUnid);
    if (!run.step()) {
      if (missing == Missing::PassOver) continue;
      throw RuntimeError(enginefault::UnknownNote, u"%1: there is no document %2 for the folder"_s.arg(
                                                       database.path(), document.hexText()));
    }
    // What is so already stays as it is: nobody has to look at it again.
    const bool known = !run.isNull(1);
    if (known ? (run.integer(1) != 0) == present : !present) continue;
    const qint64 last = known ? run.below(2, kNoNumber) : 0;
    writer.put(folderUnid, run.blob(0), present, std::max(now, last + 1));
  }
  transaction.commit();
}

struct Entry {
  QByteArray folder, document;
  bool present = false;
  qint64 time = 0;
};

// Behind that place, in pieces: a folder may hold a whole database.
QVector<Entry> entriesAfter(const Database& database, const Entry& place) {
  Statement read(
      database.connection(),
      "SELECT folder, document, present, time FROM folder_document"
      " WHERE (folder, document) > (?, ?) AND document <> x'' ORDER BY folder, document LIMIT 1000",
      enginefault::CannotOpen);
  QVector<Entry> entries;
  Statement::Run run(read, place.folder, place.document);
  while (run.step()) {
    const Entry& last = entries.isEmpty() ? place : entries.last();
    Entry entry{run.blob(0).toByteArray(), run.blob(1).toByteArray(), run.integer(2) != 0,
                run.below(3, kNoNumber)};
    if (std::tie(entry.folder, entry.document) <= std::tie(last.folder, last.document))
      run.wrongValue(0, "place behind the last one");
    entries.push_back(std::move(entry));
  }
  return entries;
}

void take(Database& database, const QVector<Entry>& entries) {
  Database::Transaction transaction(database);
  Statement isThere(database.connection(),
                    "SELECT 1 FROM note WHERE unid = ? AND state = 0 AND " LENS_HAS_ARRIVED,
                    enginefault::NotSaved);
  const auto live = [&](const QByteArray& unid) {
    Statement::Run run(isThere, unid);
    return run.step();
  };
  Writer writer(database);
  for (const Entry& entry : entries)
    if (live(entry.folder) && live(entry.document))
      writer.put(entry.folder, entry.document, entry.present, entry.time);
  transaction.commit();
}

void give(const Database& from, Database& to) {
  for (QVector<Entry> entries = entriesAfter(from, {}); !entries.isEmpty();
       entries = entriesAfter(from, entries.last()))
    take(to, entries);
}

}  // namespace

void shareFolders(Database& a, Database& b) {
  if (!a.isWritable() || !b.isWritable()) return;
  give(a, b);
  give(b, a);
}

void addToFolder(Database& database, NoteId folder, const QVector<NoteId>& documents) {
  write(database, folder, documents, true, Missing::Refuse);
}

void removeFromFolder(Database& database, NoteId folder, const QVector<NoteId>& documents) {
  write(database, folder, documents, false, Missing::PassOver);
}

qint64 folderChange(const Database& database, const Unid& folder) {
  const Connection& connection = database.connection();
  Statement highest(connection, "SELECT max(change) FROM folder_document WHERE folder = ?",
                    enginefault::CannotOpen);
  const QByteArray unid = folder.bytes();
  return highestOf(highest, unid);
}

QVector<NoteId> folderChangesSince(const Database& database, const Unid& folder, qint64 change) {
  const Connection& connection = database.connection();
  Statement changed(connection,
                    "SELECT note.id FROM folder_document JOIN note ON note.unid = document AND state = 0"
                    " WHERE folder = ? AND folder_document.change > ? AND " LENS_HAS_ARRIVED,
                    enginefault::CannotOpen);
  const QByteArray unid = folder.bytes();
  Statement::Run run(changed, unid, change);
  return noteIds(run);
}

QVector<NoteId> folderDocuments(const Database& database, const Unid& folder) {
  const Connection& connection = database.connection();
  Statement present(connection,
                    "SELECT note.id FROM folder_document JOIN note ON note.unid = document AND state = 0"
                    " WHERE folder = ? AND present = 1 AND " LENS_HAS_ARRIVED " ORDER BY note.id",
                    enginefault::CannotOpen);
  const QByteArray unid = folder.bytes();
  Statement::Run run(present, unid);
  return noteIds(run);
}

bool isInFolder(const Database& database, const Unid& folder, const Unid& document) {
  const Connection& connection = database.connection();
  Statement find(connection,
                 "SELECT 1 FROM folder_document WHERE folder = ? AND document = ? AND present = 1",
                 enginefault::CannotOpen);
  const QByteArray folderUnid = folder.bytes(), documentUnid = document.bytes();
  Statement::Run run(find, folderUnid, documentUnid);
  return run.step();
}

}  // namespace lens

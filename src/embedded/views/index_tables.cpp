#include "embedded/views/index_tables.h"

#include <QtEndian>

#include "embedded/views/sort_key.h"

namespace lens {
namespace {

constexpr int kMatched = 1, kShown = 2;

// %1 is the file, or this connection only.
constexpr char kTables[] = R"(
CREATE TABLE IF NOT EXISTS %1view_index (
  view INTEGER PRIMARY KEY, digest BLOB NOT NULL, change INTEGER NOT NULL, moment INTEGER NOT NULL,
  folder_change INTEGER NOT NULL);
CREATE TABLE IF NOT EXISTS %1view_note (
  view INTEGER NOT NULL, note INTEGER NOT NULL, unid BLOB, parent BLOB, state INTEGER NOT NULL,
  rows BLOB NOT NULL, PRIMARY KEY (view, note)) WITHOUT ROWID;
CREATE TABLE IF NOT EXISTS %1view_row (
  view INTEGER NOT NULL, key BLOB NOT NULL, level INTEGER NOT NULL, categories BLOB,
  PRIMARY KEY (view, key)) WITHOUT ROWID;
CREATE INDEX IF NOT EXISTS %1view_note_parent ON view_note (view, parent) WHERE parent IS NOT NULL;
)";

// In the file and, where they hide it, on this connection.
constexpr char kDrop[] =
    "DROP TABLE IF EXISTS temp.view_row; DROP TABLE IF EXISTS temp.view_note;"
    "DROP TABLE IF EXISTS temp.view_index;"
    "DROP TABLE IF EXISTS main.view_row; DROP TABLE IF EXISTS main.view_note;"
    "DROP TABLE IF EXISTS main.view_index";

}  // namespace

quint32 noteIdOf(QByteArrayView key) {
  return key.size() < 4 ? 0 : qFromBigEndian<quint32>(key.data() + key.size() - 4);
}

IndexTables::IndexTables(const Database& database) : connection_(database.connection()) {}

void IndexTables::create(bool temporary) {
  const QByteArray place(temporary ? "temp." : "main.");
  connection_.execute(QByteArray(kTables).replace("%1", place).constData(), kWrite);
}

bool IndexTables::exist() const {
  const auto has = [this](const char* place) {
    return sqlite3_table_column_metadata(connection_.handle(), place, "view_index", nullptr, nullptr, nullptr,
                                         nullptr, nullptr, nullptr) == SQLITE_OK;
  };
  return has("temp") || has("main");
}

void IndexTables::removeOrphans() {
  QVector<quint32> orphans;
  {
    Statement::Run run(orphans_);
    while (run.step()) orphans.push_back(quint32(run.integer(0)));
  }
  for (const quint32 view : std::as_const(orphans)) {
    clear(view);
    Statement::Run(removeHead_, view).step();
  }
}

bool IndexTables::readHead(quint32 view, IndexHead& head) {
  Statement::Run run(readHead_, view);
  if (!run.step()) return false;
  head = {run.blob(0).toByteArray(), run.integer(1), run.integer(2), run.integer(3)};
  return true;
}

void IndexTables::writeHead(quint32 view, const IndexHead& head) {
  Statement::Run(writeHead_, view, head.digest, head.change, head.moment, head.folderChange).step();
}

void IndexTables::clear(quint32 view) {
  Statement::Run(clearNotes_, view).step();
  Statement::Run(clearRows_, view).step();
}

bool IndexTables::readNote(quint32 view, quint32 note, IndexedNote& found) {
  Statement::Run run(readNote_, view, note);
  if (!run.step()) return false;
  const qint64 state = run.integer(2);
  found = {run.blob(0).toByteArray(), run.blob(1).toByteArray(), (state & kMatched) != 0,
           (state & kShown) != 0, run.blob(3).toByteArray()};
  return true;
}

void IndexTables::putNote(Statement& put, quint32 view, quint32 note, const IndexedNote& written) {
  const int state = (written.matched ? kMatched : 0) | (written.shown ? kShown : 0);
  if (written.parent.isEmpty())
    Statement::Run(put, view, note, written.unid, nullptr, state, written.rows).step();
  else
    Statement::Run(put, view, note, written.unid, written.parent, state, written.rows).step();
}

void IndexTables::writeNote(quint32 view, quint32 note, const IndexedNote& written) {
  putNote(writeNote_, view, note, written);
}

void IndexTables::addNote(quint32 view, quint32 note, const IndexedNote& written) {
  putNote(addNote_, view, note, written);
}

void IndexTables::removeNote(quint32 view, quint32 note) {
  Statement::Run(removeNote_, view, note).step();
}

QByteArray IndexTables::unidOf(quint32 note) {
  Statement::Run run(unidOf_, note);
  return run.step() ? run.blob(0).toByteArray() : QByteArray();
}

QVector<quint32> IndexTables::responsesTo(quint32 view, const QByteArray& unid) {
  QVector<quint32> notes;
  Statement::Run run(responsesTo_, view, unid);
  while (run.step()) notes.push_back(quint32(run.integer(0)));
  return notes;
}

QVector<quint32> IndexTables::allResponses(quint32 view) {
  QVector<quint32> notes;
  Statement::Run run(allResponses_, view);
  while (run.step()) notes.push_back(quint32(run.integer(0)));
  return notes;
}

quint32 IndexTables::noteOf(const QByteArray& unid) {
  Statement::Run run(noteOf_, unid);
  return run.step() ? quint32(run.integer(0)) : 0;
}

void IndexTables::writeRow(quint32 view, const IndexedRow& row) {
  if (row.categories.isEmpty())
    Statement::Run(writeRow_, view, row.key, row.level, nullptr).step();
  else
    Statement::Run(writeRow_, view, row.key, row.level, row.categories).step();
}

void IndexTables::addRow(quint32 view, QByteArrayView key, QByteArrayView categories) {
  if (categories.isEmpty())
    Statement::Run(addRow_, view, key, nullptr).step();
  else
    Statement::Run(addRow_, view, key, categories).step();
}

void IndexTables::removeRows(quint32 view, const QByteArray& key) {
  const QByteArray end = behindAll(key);
  Statement::Run(removeRows_, view, key, end).step();
}

qint64 IndexTables::countRows(quint32 view) {
  Statement::Run run(countRows_, view);
  return run.step() ? run.integer(0) : 0;
}

void dropViewIndexes(Database& database) {
  Database::Transaction transaction(database);
  database.connection().execute(kDrop, enginefault::NotSaved);
  transaction.commit();
}

}  // namespace lens

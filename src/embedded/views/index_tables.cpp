#include "embedded/views/index_tables.h"

#include <QtEndian>
#include <algorithm>
#include <tuple>

#include "embedded/store/own_tables.h"
#include "embedded/views/sort_key.h"

namespace lens {
namespace {

constexpr int kMatched = 1, kShown = 2;

// Rows longer than this stand alone: to change one document of a block means to write all of it.
constexpr qsizetype kMostInBlock = 1024;

// Blocks of a view stand together.
qint64 placeOf(NoteId view, quint32 block) {
  return qint64(view.value()) << 24 | block;
}

void drop(Connection& connection, const char* place) {
  for (const OwnTable& table : kViewTables)
    connection.execute(QByteArray("DROP TABLE IF EXISTS ").append(place).append(table.name).constData(),
                       enginefault::NotSaved);
}

// Whether the file has the table as an older program made it.
bool isOutdated(const Connection& connection, const OwnTable& table) {
  Statement read(connection, "SELECT sql FROM main.sqlite_master WHERE name = ? AND type = 'table'",
                 enginefault::CannotOpen);
  Statement::Run run(read, QString::fromLatin1(table.name));
  return run.step() && !run.text(0).endsWith(QLatin1String(table.definition));
}

}  // namespace

NoteId noteIdOf(QByteArrayView key) {
  return key.size() < 4 ? NoteId() : NoteId(qFromBigEndian<quint32>(key.data() + key.size() - 4));
}

IndexTables::IndexTables(Database& database) : connection_(database.connection()) {}

void IndexTables::create(bool temporary) {
  const QByteArray place(temporary ? "temp." : "main.");
  if (!temporary && std::any_of(std::begin(kViewTables), std::end(kViewTables),
                                [this](const OwnTable& table) { return isOutdated(connection_, table); }))
    drop(connection_, "main.");
  for (const OwnTable& table : kViewTables)
    connection_.execute(
        QByteArray("CREATE TABLE IF NOT EXISTS " + place + table.name + ' ' + table.definition).constData(),
        kWrite);
  connection_.execute(QByteArray("CREATE INDEX IF NOT EXISTS " + place + kViewNoteParent).constData(),
                      kWrite);
}

void IndexTables::dropTemporary() {
  drop(connection_, "temp.");
}

bool IndexTables::exist() const {
  const auto has = [this](const char* place) {
    return sqlite3_table_column_metadata(connection_.handle(), place, "view_index", nullptr, nullptr, nullptr,
                                         nullptr, nullptr, nullptr) == SQLITE_OK;
  };
  return has("temp") || has("main");
}

void IndexTables::removeOrphans() {
  QVector<NoteId> orphans;
  {
    Statement::Run run(orphans_);
    while (run.step()) orphans.push_back(run.noteId(0));
  }
  for (const NoteId view : std::as_const(orphans)) {
    clear(view);
    Statement::Run(removeHead_, view).step();
  }
}

bool IndexTables::readHead(NoteId view, IndexHead& head) {
  Statement::Run run(readHead_, view);
  if (!run.step()) return false;
  head = {run.blob(0).toByteArray(), run.integer(1), run.integer(2), run.integer(3)};
  return true;
}

void IndexTables::writeHead(NoteId view, const IndexHead& head, qint64 rows) {
  Statement::Run(writeHead_, view, head.digest, head.change, head.moment, head.folderChange, rows).step();
}

void IndexTables::clear(NoteId view) {
  Statement::Run(clearNotes_, view).step();
  Statement::Run(clearBlocks_, placeOf(view, 0), placeOf(NoteId(view.value() + 1), 0)).step();
  Statement::Run(clearRows_, view).step();
}

// --- Documents -----------------------------------------------------------------------------------------

bool IndexTables::isInBlock(const IndexedNote& note) const {
  return note.plain() && note.rows.size() <= kMostInBlock;
}

NoteBlock IndexTables::readBlock(NoteId view, quint32 block) {
  Statement::Run run(readBlock_, placeOf(view, block));
  return NoteBlock(run.step() ? run.blob(0).toByteArray() : QByteArray());
}

void IndexTables::writeBlock(NoteId view, quint32 block, const NoteBlock& written) {
  if (written.isEmpty())
    Statement::Run(removeBlock_, placeOf(view, block)).step();
  else
    Statement::Run(writeBlock_, placeOf(view, block), written.bytes()).step();
}

void IndexTables::takeOutOfBlock(NoteId view, NoteId note) {
  NoteBlock block = readBlock(view, NoteBlock::of(note));
  if (block.remove(note)) writeBlock(view, NoteBlock::of(note), block);
}

bool IndexTables::readNote(NoteId view, NoteId note, IndexedNote& found) {
  const NoteBlock block = readBlock(view, NoteBlock::of(note));
  if (QByteArrayView rows; block.find(note, rows)) {
    found = {{}, {}, true, true, rows.toByteArray()};
    return true;
  }
  Statement::Run run(readNote_, view, note);
  if (!run.step()) return false;
  const qint64 state = run.integer(2);
  found = {run.blob(0).toByteArray(), run.blob(1).toByteArray(), (state & kMatched) != 0,
           (state & kShown) != 0, run.blob(3).toByteArray()};
  return true;
}

void IndexTables::putNote(Statement& put, NoteId view, NoteId note, const IndexedNote& written) {
  const int state = (written.matched ? kMatched : 0) | (written.shown ? kShown : 0);
  if (written.parent.isEmpty())
    Statement::Run(put, view, note, written.unid, nullptr, state, written.rows).step();
  else
    Statement::Run(put, view, note, written.unid, written.parent, state, written.rows).step();
}

void IndexTables::writeNote(NoteId view, NoteId note, const IndexedNote& written) {
  if (!isInBlock(written)) {
    takeOutOfBlock(view, note);
    return putNote(writeNote_, view, note, written);
  }
  NoteBlock block = readBlock(view, NoteBlock::of(note));
  block.put(note, written.rows);
  writeBlock(view, NoteBlock::of(note), block);
  Statement::Run(removeNote_, view, note).step();
}

void IndexTables::addNote(NoteId view, NoteId note, const IndexedNote& added) {
  if (!isInBlock(added)) return putNote(addNote_, view, note, added);
  if (NoteBlock::of(note) != growingBlock_) finishNotes(view);
  growingBlock_ = NoteBlock::of(note);
  growing_.append(note, added.rows);
}

void IndexTables::finishNotes(NoteId view) {
  if (!growing_.isEmpty()) writeBlock(view, growingBlock_, growing_);
  growing_.clear();
}

void IndexTables::removeNote(NoteId view, NoteId note) {
  takeOutOfBlock(view, note);
  Statement::Run(removeNote_, view, note).step();
}

QByteArray IndexTables::unidOf(NoteId note) {
  Statement::Run run(unidOf_, note);
  return run.step() ? run.blob(0).toByteArray() : QByteArray();
}

QVector<NoteId> IndexTables::responsesTo(NoteId view, const QByteArray& unid) {
  QVector<NoteId> notes;
  Statement::Run run(responsesTo_, view, unid);
  while (run.step()) notes.push_back(run.noteId(0));
  return notes;
}

QVector<NoteId> IndexTables::allResponses(NoteId view) {
  QVector<NoteId> notes;
  Statement::Run run(allResponses_, view);
  while (run.step()) notes.push_back(run.noteId(0));
  return notes;
}

NoteId IndexTables::noteOf(const QByteArray& unid) {
  Statement::Run run(noteOf_, unid);
  return run.step() ? run.noteId(0) : NoteId();
}

// --- Rows ----------------------------------------------------------------------------------------------

bool IndexTables::writeRow(NoteId view, const IndexedRow& row) {
  if (row.categories.isEmpty())
    Statement::Run(writeRow_, view, row.key, row.level, nullptr).step();
  else
    Statement::Run(writeRow_, view, row.key, row.level, row.categories).step();
  return sqlite3_changes(connection_.handle()) > 0;
}

void IndexTables::addRows(NoteId view, const RowsAtOnce& rows) {
  std::apply([&](const auto&... bytes) { Statement::Run(addRows_, view, bytes...).step(); }, rows);
}

qint64 IndexTables::removeRows(NoteId view, const QByteArray& key) {
  const QByteArray end = behindAll(key);
  Statement::Run(removeRows_, view, key, end).step();
  return sqlite3_changes(connection_.handle());
}

qint64 IndexTables::rowCount(NoteId view) {
  Statement::Run run(rowCount_, view);
  // A damaged file may say anything.
  return run.step() ? std::clamp<qint64>(run.integer(0), 0, qint64(1) << 40) : 0;
}

void dropViewIndexes(Database& database) {
  Database::Transaction transaction(database);
  drop(database.connection(), "temp.");
  drop(database.connection(), "main.");
  transaction.commit();
}

}  // namespace lens

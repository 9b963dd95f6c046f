// The tables of the view indexes, in the database's own file, and the statements on them.
//
//   view_index  one row for each index: the design that it was made of, the change and the moment up to
//               which it is right, and how many rows it has
//   view_note   the documents that an index knows: the selected ones and, where the selection asks for
//               responses, all that answer others
//   view_block  the same for selected documents of which nothing has to be known but their rows, which in
//               most views are all of them (see note_block.h); a document stands in one of both
//   view_row    the rows in their order. A key is the sort key of the document and its note ID; below a
//               parent the parent's key goes before
//
// All of it is derived and may be dropped at any time. Where the file cannot be written, tables of the same
// names are made for this connection only; they hide those of the file.
#pragma once

#include <QByteArray>
#include <QVector>
#include <array>

#include "embedded/store/arriving_notes.h"
#include "embedded/store/database.h"
#include "embedded/store/sqlite_statement.h"
#include "embedded/views/note_block.h"

namespace lens {

// What an index was made of.
struct IndexHead {
  QByteArray digest;
  qint64 change = 0;  // of the database
  qint64 moment = 0;
  qint64 folderChange = 0;
  bool operator==(const IndexHead&) const = default;
};

// A document that the index knows.
struct IndexedNote {
  QByteArray unid;       // only where the selection asks for responses
  QByteArray parent;     // empty for a main document
  bool matched = false;  // by the selection itself
  bool shown = false;    // by it, or as a response of what is
  QByteArray rows;       // packed, see view_builder

  // Whether its rows say all of it.
  bool plain() const { return matched && shown && parent.isEmpty() && unid.isEmpty(); }
};

// A row of the view. The note ID stands at the key's end.
struct IndexedRow {
  QByteArray key;
  int level = 0;  // of the hierarchy of responses
  QByteArray categories;
};
NoteId noteIdOf(QByteArrayView key);

class IndexTables {
 public:
  // The database must outlive this.
  explicit IndexTables(Database& database);

  // Makes the tables where they are missing or an older program laid them out, for this connection only if
  // asked so.
  void create(bool temporary);
  // The tables of this connection, which hide those of the file.
  void dropTemporary();
  bool exist() const;
  // Indexes of views that are no longer there.
  void removeOrphans();

  bool readHead(NoteId view, IndexHead& head);
  void writeHead(NoteId view, const IndexHead& head, qint64 rows);
  void clear(NoteId view);

  bool readNote(NoteId view, NoteId note, IndexedNote& found);
  void writeNote(NoteId view, NoteId note, const IndexedNote& written);
  // Documents of an empty index, in the order of their IDs; they are there after finishNotes().
  void addNote(NoteId view, NoteId note, const IndexedNote& added);
  void finishNotes(NoteId view);
  void removeNote(NoteId view, NoteId note);
  QVector<NoteId> responsesTo(NoteId view, const QByteArray& unid);
  QVector<NoteId> allResponses(NoteId view);
  // The note of that UNID, deleted ones too; 0 when there is none.
  NoteId noteOf(const QByteArray& unid);
  QByteArray unidOf(NoteId note);

  // False when that row is there already.
  bool writeRow(NoteId view, const IndexedRow& row);
  // Rows without a level, many at once; they are not there yet. Key and categories in turn.
  static constexpr std::size_t kRowsAtOnce = 16;
  using RowsAtOnce = std::array<QByteArrayView, 2 * kRowsAtOnce>;
  void addRows(NoteId view, const RowsAtOnce& rows);
  // The row and all below it; how many there were.
  qint64 removeRows(NoteId view, const QByteArray& key);
  // As the head says it.
  qint64 rowCount(NoteId view);
  // Rows in their order from the first key that is not less, until the visitor returns false. The
  // visitor must not ask these tables for rows.
  template <class Visit>
  void eachRow(NoteId view, const QByteArray& from, Visit&& visit) {
    Statement::Run run(rowsFrom_, view, from);
    while (run.step())
      if (!visit(run.blob(0), int(run.number<quint16>(1)), run.blob(2))) return;
  }

 private:
  void putNote(Statement& put, NoteId view, NoteId note, const IndexedNote& written);
  bool isInBlock(const IndexedNote& note) const;
  NoteBlock readBlock(NoteId view, quint32 block);
  void writeBlock(NoteId view, quint32 block, const NoteBlock& written);
  void takeOutOfBlock(NoteId view, NoteId note);

  Connection& connection_;
  NoteBlock growing_;  // of addNote
  quint32 growingBlock_ = 0;

  static constexpr int kRead = enginefault::CannotOpen;
  static constexpr int kWrite = enginefault::NotSaved;
  Statement readHead_{connection_,
                      "SELECT digest, change, moment, folder_change FROM view_index WHERE view = ?", kRead};
  Statement writeHead_{connection_, "INSERT OR REPLACE INTO view_index VALUES (?, ?, ?, ?, ?, ?)", kWrite};
  Statement removeHead_{connection_, "DELETE FROM view_index WHERE view = ?", kWrite};
  Statement clearNotes_{connection_, "DELETE FROM view_note WHERE view = ?", kWrite};
  Statement clearBlocks_{connection_, "DELETE FROM view_block WHERE place >= ? AND place < ?", kWrite};
  Statement clearRows_{connection_, "DELETE FROM view_row WHERE view = ?", kWrite};
  Statement orphans_{connection_,
                     "SELECT view FROM view_index WHERE NOT EXISTS"
                     " (SELECT 1 FROM note WHERE id = view AND state = 0 AND " LENS_HAS_ARRIVED ")",
                     kRead};
  Statement readNote_{connection_,
                      "SELECT unid, parent, state, rows FROM view_note WHERE view = ? AND note = ?", kRead};
  Statement writeNote_{connection_, "INSERT OR REPLACE INTO view_note VALUES (?, ?, ?, ?, ?, ?)", kWrite};
  Statement addNote_{connection_, "INSERT INTO view_note VALUES (?, ?, ?, ?, ?, ?)", kWrite};
  Statement removeNote_{connection_, "DELETE FROM view_note WHERE view = ? AND note = ?", kWrite};
  Statement readBlock_{connection_, "SELECT notes FROM view_block WHERE place = ?", kRead};
  Statement writeBlock_{connection_, "INSERT OR REPLACE INTO view_block VALUES (?, ?)", kWrite};
  Statement removeBlock_{connection_, "DELETE FROM view_block WHERE place = ?", kWrite};
  Statement responsesTo_{connection_,
                         "SELECT note FROM view_note WHERE view = ? AND parent = ? ORDER BY note", kRead};
  Statement allResponses_{
      connection_, "SELECT note FROM view_note WHERE view = ? AND parent IS NOT NULL ORDER BY note", kRead};
  Statement noteOf_{connection_, "SELECT id FROM note WHERE unid = ? AND " LENS_HAS_ARRIVED, kRead};
  Statement unidOf_{connection_, "SELECT unid FROM note WHERE id = ? AND " LENS_HAS_ARRIVED, kRead};
  Statement writeRow_{connection_, "INSERT OR IGNORE INTO view_row VALUES (?, ?, ?, ?)", kWrite};
  Statement addRows_{connection_,
                     "INSERT INTO view_row VALUES (?1, ?, 0, ?), (?1, ?, 0, ?), (?1, ?, 0, ?), (?1, ?, 0, ?),"
                     " (?1, ?, 0, ?), (?1, ?, 0, ?), (?1, ?, 0, ?), (?1, ?, 0, ?), (?1, ?, 0, ?),"
                     " (?1, ?, 0, ?), (?1, ?, 0, ?), (?1, ?, 0, ?), (?1, ?, 0, ?), (?1, ?, 0, ?),"
                     " (?1, ?, 0, ?), (?1, ?, 0, ?)",
                     kWrite};
  Statement removeRows_{connection_, "DELETE FROM view_row WHERE view = ? AND key >= ? AND key < ?", kWrite};
  Statement rowCount_{connection_, "SELECT rows FROM view_index WHERE view = ?", kRead};
  Statement rowsFrom_{connection_,
                      "SELECT key, level, categories FROM view_row WHERE view = ? AND key >= ? ORDER BY key",
                      kRead};
};

// Takes all view indexes out of the database; each is made anew when it is asked for.
void dropViewIndexes(Database& database);

}  // namespace lens

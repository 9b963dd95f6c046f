// The statements of a NoteStore.
#pragma once

#include "embedded/format/note.h"
#include "embedded/store/store_session.h"
#include "embedded/store/stored_row.h"

namespace lens {

// Raises Damaged with the file and the note.
[[noreturn]] void damagedNote(const QString& path, NoteId noteId, const QString& fault);

struct NoteStatements {
  explicit NoteStatements(const Connection& c) : connection(c) {}

  // Header columns in the order that readHeader expects, behind them the items.
  static constexpr int kItemsColumn = 10;
#define LENS_NOTE_COLUMNS \
  "id, class, unid, parent, sequence, sequence_time, created, modified, added, accessed, items"
  // False when the UNID is cut or the row's number is no note ID.
  static bool readHeader(const Statement::Run& row, NoteHeader& header);
  // False without a row; raises when the row is damaged.
  bool readRow(Statement::Run& row, Note& note) const;

  const Connection& connection;
  Statement readById{
      connection, "SELECT " LENS_NOTE_COLUMNS " FROM note WHERE id = ? AND state = 0 AND " LENS_HAS_ARRIVED,
      StoreSession::kRead};
  Statement readByUnid{
      connection, "SELECT " LENS_NOTE_COLUMNS " FROM note WHERE unid = ? AND state = 0 AND " LENS_HAS_ARRIVED,
      StoreSession::kRead};
  // Walks over the rows as they lie: an index would send it from page to page.
  Statement scanRows{connection,
                     "SELECT " LENS_NOTE_COLUMNS
                     " FROM note NOT INDEXED WHERE id > ? AND state = 0 AND class & ? AND " LENS_HAS_ARRIVED
                     " ORDER BY id",
                     StoreSession::kRead};
  Statement readItems{connection, "SELECT items FROM note WHERE id = ? AND state = 0 AND " LENS_HAS_ARRIVED,
                      StoreSession::kRead};
  Statement readState{connection, "SELECT state, items FROM note WHERE id = ? AND " LENS_HAS_ARRIVED,
                      StoreSession::kRead};
  // What is no number stands behind all numbers.
  Statement nextClass{
      connection,
      "SELECT min(class) FROM note WHERE state = 0 AND class > ? AND class <= 65535 AND " LENS_HAS_ARRIVED,
      StoreSession::kRead};
  Statement listClass{connection,
                      "SELECT id, unid, parent FROM note WHERE state = 0 AND class = ? AND " LENS_HAS_ARRIVED
                      " ORDER BY id",
                      StoreSession::kRead};
  Statement firstOfClass{connection,
                         "SELECT min(id) FROM note WHERE state = 0 AND class = ? AND " LENS_HAS_ARRIVED,
                         StoreSession::kRead};
  // Subtracted, so that it costs nothing to count where nothing arrives.
  Statement countClass{connection,
                       "SELECT count(*) -"
                       " (SELECT count(*) FROM note WHERE state = 0 AND class = ?1 AND " LENS_IS_ARRIVING
                       ") FROM note WHERE state = 0 AND class = ?1",
                       StoreSession::kRead};
  Statement identity{connection,
                     "SELECT class, unid, parent, sequence, sequence_time FROM note"
                     " WHERE id = ? AND state = 0 AND " LENS_HAS_ARRIVED,
                     StoreSession::kWrite};
  Statement isArriving{connection, "SELECT 1 FROM note WHERE unid = ? AND " LENS_IS_ARRIVING,
                       StoreSession::kRead};
  Statement insert{
      connection,
      "INSERT INTO note (id, class, unid, parent, sequence, sequence_time, created, modified, added,"
      " accessed, items, state, change) VALUES (?, ?, ?, ?, ?, ?, ?, ?, ?, ?, ?, 0, ?)",
      StoreSession::kWrite};
  Statement updateContent{
      connection,
      "UPDATE note SET sequence = ?, sequence_time = ?, created = ?, modified = ?, added = ?,"
      " accessed = ?, items = ?, change = ? WHERE id = ?",
      StoreSession::kWrite};
  Statement updateIdentity{connection, "UPDATE note SET class = ?, unid = ?, parent = ? WHERE id = ?",
                           StoreSession::kWrite};
  Statement makeStub{connection,
                     "UPDATE note SET state = 1, items = NULL, sequence = min(sequence + 1, 4294967295),"
                     " sequence_time = ?,"
                     " modified = ?, change = ? WHERE id = ?",
                     StoreSession::kWrite};
  Statement erase{connection, "DELETE FROM note WHERE id = ?", StoreSession::kWrite};
  Statement emptyFolder{connection, "DELETE FROM folder_document WHERE folder = ?", StoreSession::kWrite};
  Statement leaveFolders{connection, "DELETE FROM folder_document WHERE document = ?", StoreSession::kWrite};
  Statement recordErased{connection, "INSERT INTO erased (change, note) VALUES (?, ?)", StoreSession::kWrite};
#undef LENS_NOTE_COLUMNS
};

}  // namespace lens

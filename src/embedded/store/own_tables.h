// Every table that a database's file may hold, as this program makes them. What a file from elsewhere holds
// besides is never read.
#pragma once

namespace lens {

inline constexpr int kSchemaVersion = 4;
// Of a file into which a large import is under way, until its notes are seen: an earlier program would show
// them before.
inline constexpr int kArrivingSchema = 5;

// The notes and all that belongs to them. The row of folder_document without a document holds the highest
// change of its folder, which must not be given again when the row that had it goes with its document.
inline constexpr char kNoteTables[] = R"(
CREATE TABLE note (
  id INTEGER PRIMARY KEY, class INTEGER NOT NULL, unid BLOB NOT NULL, parent BLOB,
  sequence INTEGER NOT NULL, sequence_time INTEGER NOT NULL, created INTEGER NOT NULL,
  modified INTEGER NOT NULL, added INTEGER NOT NULL, accessed INTEGER NOT NULL,
  state INTEGER NOT NULL, change INTEGER NOT NULL, items BLOB);
CREATE UNIQUE INDEX note_unid ON note (unid);
CREATE INDEX note_class ON note (class, id, unid, parent) WHERE state = 0;
CREATE INDEX note_change ON note (change);
CREATE TABLE info (key TEXT PRIMARY KEY, value) WITHOUT ROWID;
CREATE TABLE object (
  id INTEGER PRIMARY KEY AUTOINCREMENT, size INTEGER NOT NULL, chunks INTEGER NOT NULL, checksum BLOB);
CREATE TABLE object_chunk (
  object INTEGER NOT NULL, number INTEGER NOT NULL, bytes BLOB NOT NULL,
  PRIMARY KEY (object, number)) WITHOUT ROWID;
)";

// What earlier schemas lacked; also made for one connection where the file cannot be changed.
inline constexpr char kErasedTable[] = "erased (change INTEGER PRIMARY KEY, note INTEGER NOT NULL)";
inline constexpr char kLineageTable[] = "lineage (note INTEGER PRIMARY KEY, stamps BLOB NOT NULL)";
inline constexpr char kFolderTable[] =
    "folder_document ("
    "  folder BLOB NOT NULL, document BLOB NOT NULL, change INTEGER NOT NULL, present INTEGER NOT NULL,"
    "  time INTEGER NOT NULL DEFAULT 0, PRIMARY KEY (folder, document)) WITHOUT ROWID";
inline constexpr char kFolderIndexes[] =
    "CREATE INDEX IF NOT EXISTS folder_document_change ON folder_document (folder, change);"
    "CREATE INDEX IF NOT EXISTS folder_document_document ON folder_document (document);";

struct OwnTable {
  const char* name;
  const char* definition;
};

// The indexes of views. They are derived, like those of full text, and may be dropped at any time.
inline constexpr OwnTable kViewTables[] = {
    {"view_index",
     "(view INTEGER PRIMARY KEY, digest BLOB NOT NULL, change INTEGER NOT NULL, moment INTEGER NOT NULL,"
     " folder_change INTEGER NOT NULL, rows INTEGER NOT NULL)"},
    {"view_note",
     "(view INTEGER NOT NULL, note INTEGER NOT NULL, unid BLOB, parent BLOB, state INTEGER NOT NULL,"
     " rows BLOB NOT NULL, PRIMARY KEY (view, note)) WITHOUT ROWID"},
    {"view_block", "(place INTEGER PRIMARY KEY, notes BLOB NOT NULL)"},
    {"view_row",
     "(view INTEGER NOT NULL, key BLOB NOT NULL, level INTEGER NOT NULL, categories BLOB,"
     " PRIMARY KEY (view, key)) WITHOUT ROWID"},
};
inline constexpr char kViewNoteParent[] =
    "view_note_parent ON view_note (view, parent) WHERE parent IS NOT NULL";

// The words come folded and parted, so the simplest tokenizer does.
inline constexpr char kFullTextWords[] =
    "CREATE VIRTUAL TABLE full_text USING fts5(words, fields, content='', tokenize='ascii')";
inline constexpr char kFullTextTables[] =
    "CREATE TABLE full_text_field (id INTEGER PRIMARY KEY, name TEXT NOT NULL UNIQUE);"
    "CREATE TABLE full_text_kept (note INTEGER PRIMARY KEY, fields BLOB NOT NULL);"
    "CREATE TABLE full_text_value ("
    "  field INTEGER NOT NULL, kind INTEGER NOT NULL, value REAL NOT NULL, note INTEGER NOT NULL,"
    "  PRIMARY KEY (field, kind, value, note)) WITHOUT ROWID;"
    "CREATE INDEX full_text_value_note ON full_text_value (note);"
    "CREATE TABLE full_text_span ("
    "  field INTEGER NOT NULL, kind INTEGER NOT NULL, first REAL NOT NULL, last REAL NOT NULL,"
    "  note INTEGER NOT NULL, PRIMARY KEY (field, kind, first, last, note)) WITHOUT ROWID;"
    "CREATE INDEX full_text_span_note ON full_text_span (note);";
inline constexpr char kDropFullText[] =
    "DROP TABLE IF EXISTS full_text;"
    "DROP TABLE IF EXISTS full_text_field;"
    "DROP TABLE IF EXISTS full_text_kept;"
    "DROP TABLE IF EXISTS full_text_value;"
    "DROP TABLE IF EXISTS full_text_span;"
    "DELETE FROM info WHERE key = 'full text change';";

}  // namespace lens

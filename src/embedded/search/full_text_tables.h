// The tables of the full-text index, and how words stand in them.
//
// A document is one row of an FTS5 table with two columns of words, folded and parted by blanks. "words" has
// every word once; "fields" has it again with the number of its field before it, which makes a query for one
// field exact and as fast as any other. The characters between are from the private use area, which no word
// contains. FTS5 keeps no copy of the two; what it needs to forget a document is kept packed beside it, since
// the copy would be the greater part of the file.
#pragma once

#include "embedded/format/case_key.h"
#include "embedded/format/engine_fault.h"
#include "embedded/store/sqlite_statement.h"

namespace lens::fulltext {

inline constexpr QChar kFieldMark(0xE000);   // mark, number of the field, mark, word
inline constexpr QChar kNowhere(0xE001);     // is in no document
inline constexpr QChar kEverywhere(0xE002);  // in the fields of every document
inline constexpr QChar kEnd(0xE003);         // behind each entry: no phrase goes over it

// What stands before each word of a field.
QString fieldPrefix(qint64 field);

// How a value is kept for comparing: a number, an instant in milliseconds UTC, a date as Julian day.
enum class ValueKind { Number, Instant, Day };

// How far an index goes. One whose first build has not ended is not whole: it cannot be asked yet.
struct Mark {
  qint64 change = 0;  // of the database
  bool whole = false;
  bool operator==(const Mark&) const = default;
};

struct Tables {
  explicit Tables(Connection& connection) : connection(connection) {}

  bool exist();
  void create();
  void drop();
  Mark mark();
  void setMark(const Mark& mark);
  // Of a field by its caseKey; 0: no document has such a field.
  qint64 fieldNumber(const QString& key);

  Connection& connection;
  static constexpr int kRead = enginefault::CannotOpen, kWrite = enginefault::NotSaved;
  Statement definition{connection,
                       "SELECT sql FROM sqlite_master WHERE name = 'full_text' AND EXISTS"
                       " (SELECT 1 FROM sqlite_master WHERE name = 'full_text_span')",
                       kRead};
  Statement readMark{connection, "SELECT value FROM info WHERE key = 'full text change'", kRead};
  Statement writeMark{connection, "INSERT OR REPLACE INTO info (key, value) VALUES ('full text change', ?)",
                      kWrite};
  Statement findField{connection, "SELECT id FROM full_text_field WHERE name = ?", kRead};
  Statement addField{connection, "INSERT INTO full_text_field (name) VALUES (?)", kWrite};
  Statement addWords{connection, "INSERT INTO full_text (rowid, words, fields) VALUES (?, ?, ?)", kWrite};
  Statement removeWords{connection,
                        "INSERT INTO full_text (full_text, rowid, words, fields) VALUES ('delete', ?, ?, ?)",
                        kWrite};
  Statement keep{connection, "INSERT INTO full_text_kept (note, fields) VALUES (?, ?)", kWrite};
  Statement kept{connection, "SELECT fields FROM full_text_kept WHERE note = ?", kWrite};
  Statement forget{connection, "DELETE FROM full_text_kept WHERE note = ?", kWrite};
  Statement addValue{connection,
                     "INSERT OR IGNORE INTO full_text_value (field, kind, value, note) VALUES (?, ?, ?, ?)",
                     kWrite};
  Statement removeValues{connection, "DELETE FROM full_text_value WHERE note = ?", kWrite};
  Statement addSpan{connection, "INSERT OR IGNORE INTO full_text_span VALUES (?, ?, ?, ?, ?)", kWrite};
  Statement removeSpans{connection, "DELETE FROM full_text_span WHERE note = ?", kWrite};
  Statement match{connection, "SELECT rowid, rank FROM full_text WHERE full_text MATCH ?", kRead};
  Statement compare{connection,
                    "SELECT DISTINCT note FROM full_text_value"
                    " WHERE field = ? AND kind = ? AND value BETWEEN ? AND ? ORDER BY note",
                    kRead};
  Statement overlap{connection,
                    "SELECT DISTINCT note FROM full_text_span"
                    " WHERE field = ? AND kind = ? AND first <= ? AND last >= ? ORDER BY note",
                    kRead};
  Statement vocabulary{connection, "SELECT term FROM temp.full_text_word WHERE term >= ? AND term < ?",
                       kRead};
};

}  // namespace lens::fulltext

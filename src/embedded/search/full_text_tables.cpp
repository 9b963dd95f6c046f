#include "embedded/search/full_text_tables.h"

namespace lens::fulltext {
namespace {

// The words come folded and parted, so the simplest tokenizer does.
#define LENS_FULL_TEXT \
  "CREATE VIRTUAL TABLE full_text USING fts5(words, fields, content='', tokenize='ascii')"

constexpr char kCreate[] = LENS_FULL_TEXT
    ";"
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
constexpr char kDrop[] =
    "DROP TABLE IF EXISTS full_text;"
    "DROP TABLE IF EXISTS full_text_field;"
    "DROP TABLE IF EXISTS full_text_kept;"
    "DROP TABLE IF EXISTS full_text_value;"
    "DROP TABLE IF EXISTS full_text_span;"
    "DELETE FROM info WHERE key = 'full text change';";

}  // namespace

QString fieldPrefix(qint64 field) {
  return kFieldMark + QString::number(field) + kFieldMark;
}

// A table of that name with another definition was not made by this program: it is no index.
bool Tables::exist() {
  Statement::Run row(definition);
  return row.step() && row.text(0) == QLatin1String(LENS_FULL_TEXT);
}

void Tables::create() {
  drop();
  connection.execute(kCreate, kWrite);
}

void Tables::drop() {
  connection.execute(kDrop, kWrite);
}

// Kept in one number: below zero while the first build is under way.
Mark Tables::mark() {
  Statement::Run row(readMark);
  const qint64 number = row.step() ? row.integer(0) : -1;
  return number < 0 ? Mark{-1 - number, false} : Mark{number, true};
}

void Tables::setMark(const Mark& mark) {
  Statement::Run(writeMark, mark.whole ? mark.change : -1 - mark.change).step();
}

qint64 Tables::fieldNumber(const QString& key) {
  Statement::Run row(findField, key);
  return row.step() ? row.integer(0) : 0;
}

}  // namespace lens::fulltext

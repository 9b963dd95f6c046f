#include "embedded/search/full_text_tables.h"

#include "embedded/store/own_tables.h"

namespace lens::fulltext {
QString fieldPrefix(qint64 field) {
  return kFieldMark + QString::number(field) + kFieldMark;
}

// A table of that name with another definition was not made by this program: it is no index.
bool Tables::exist() {
  Statement::Run row(definition);
  return row.step() && row.text(0) == QLatin1String(kFullTextWords);
}

void Tables::create() {
  drop();
  connection.execute(kFullTextWords, kWrite);
  connection.execute(kFullTextTables, kWrite);
}

void Tables::drop() {
  connection.execute(kDropFullText, kWrite);
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

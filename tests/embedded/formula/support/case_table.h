// Tables of cases: "formula => expected", one a line, cut at the last " => ". Blank lines and lines that
// begin with "#" are passed over; a pilcrow stands for a line feed.
#pragma once

#include <QString>
#include <QVector>
#include <iosfwd>

namespace lens::formula {

struct Case {
  QString file;  // base name, without folder and ending
  int line = 0;  // from 1
  QString formula, expected;
  bool wellFormed = true;  // false: the line has no " => "
};
void PrintTo(const Case& tested, std::ostream* out);

QVector<Case> readCases(const QString& path);
// Of all tables, by file name.
const QVector<Case>& allCases();

// What the formula gives in a fresh test world: the print of its value, or "compile 051B at 4 length 3
// line 0 column 4".
QString resultOf(const QString& formula);
// An expected compile error may leave out its line and column.
bool agrees(const QString& expected, const QString& result);
// "" for a case that holds; else what to tell the developer.
QString complaint(const Case& tested);

}  // namespace lens::formula

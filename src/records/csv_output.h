// CSV for spreadsheets (RFC 4180): commas, lines end in CR LF, UTF-8.
//
// A spreadsheet runs a cell that begins with = + - or @ as a formula, and a document's text may be anybody's.
// Such a text goes out with an apostrophe before it, which makes it text; so does one that begins with a tab
// or a line end, behind which some programs look on. Numbers of number items stay numbers.
#pragma once

#include <QByteArray>
#include <QStringView>

namespace lens {

// Whether a spreadsheet takes a text for a formula.
bool beginsAFormula(QStringView cell);

class CsvRow {
 public:
  void text(QStringView cell);
  void number(double cell);
  void empty() { separate(); }
  // The row with its line end, and an empty row for the next one.
  QByteArray finish();

  // Cells of all rows so far that were given an apostrophe.
  qint64 madeSafe() const { return madeSafe_; }

 private:
  void separate();

  QByteArray bytes_;
  bool begun_ = false;
  qint64 madeSafe_ = 0;
};

}  // namespace lens

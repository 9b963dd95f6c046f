#include "records/csv_output.h"

#include <utility>

#include "notes/literals.h"
#include "notes/numbers.h"

namespace lens {
namespace {

bool needsQuotes(QStringView cell) {
  for (const QChar c : cell)
    if (c == u',' || c == u'"' || c == u'\n' || c == u'\r') return true;
  return !cell.isEmpty() && (cell.front().isSpace() || cell.back().isSpace());
}

}  // namespace

// In their wide forms too, which some programs read as the narrow ones.
bool beginsAFormula(QStringView cell) {
  return !cell.isEmpty() && u"=+-@\t\r\n\uFF1D\uFF0B\uFF0D\uFF20"_s.contains(cell.front());
}

void CsvRow::separate() {
  if (begun_) bytes_.append(',');
  begun_ = true;
}

void CsvRow::text(QStringView cell) {
  separate();
  QString safe = cell.toString();
  if (beginsAFormula(cell)) {
    safe.prepend(u'\'');
    ++madeSafe_;
  }
  if (needsQuotes(safe)) safe = u'"' + safe.replace(u'"', u"\"\""_s) + u'"';
  bytes_ += safe.toUtf8();
}

void CsvRow::number(double cell) {
  separate();
  bytes_ += numberText(cell).toUtf8();
}

QByteArray CsvRow::finish() {
  bytes_.append("\r\n");
  begun_ = false;
  return std::exchange(bytes_, {});
}

}  // namespace lens

#include "embedded/dxl/import_report.h"

#include "notes/literals.h"

namespace lens {

namespace {

void appendSection(QString& out, const QString& title, const QStringList& lines) {
  if (lines.isEmpty()) return;
  out += u"\n%1:\n"_s.arg(title);
  for (const QString& line : lines) out += u"  %1\n"_s.arg(line);
}

void appendCounted(QStringList& lines, const QString& file, const QMap<QString, int>& counts) {
  for (auto it = counts.cbegin(); it != counts.cend(); ++it) {
    const QString times = it.value() == 1 ? u"once"_s : u"%1 times"_s.arg(it.value());
    lines.push_back(u"%1: %2 (%3)"_s.arg(file, it.key(), times));
  }
}

}  // namespace

QString ImportReport::text() const {
  QString out = u"%1 notes imported, %2 of them replaced.\n"_s.arg(notes).arg(replaced);
  if (cancelled) out += u"Cancelled; the file at hand was undone.\n"_s;
  appendSection(out, u"Not imported"_s, failed);
  appendSection(out, u"Kept as it came"_s, keptRaw);
  appendSection(out, u"Left out by design"_s, ignored);
  return out;
}

void FileFindings::moveTo(ImportReport& report, const QString& file) const {
  report.notes += notes;
  report.replaced += replaced;
  appendCounted(report.keptRaw, file, kept_);
  appendCounted(report.ignored, file, ignored_);
}

}  // namespace lens

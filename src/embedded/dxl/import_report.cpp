#include "embedded/dxl/import_report.h"

namespace lens {

namespace {

void appendSection(QString& out, const QString& title, const QStringList& lines) {
  if (lines.isEmpty()) return;
  out += QStringLiteral("\n%1:\n").arg(title);
  for (const QString& line : lines) out += QStringLiteral("  %1\n").arg(line);
}

void appendCounted(QStringList& lines, const QString& file, const QMap<QString, int>& counts) {
  for (auto it = counts.cbegin(); it != counts.cend(); ++it) {
    const QString times =
        it.value() == 1 ? QStringLiteral("once") : QStringLiteral("%1 times").arg(it.value());
    lines.push_back(QStringLiteral("%1: %2 (%3)").arg(file, it.key(), times));
  }
}

}  // namespace

QString ImportReport::text() const {
  QString out = QStringLiteral("%1 notes imported, %2 of them replaced.\n").arg(notes).arg(replaced);
  if (cancelled) out += QStringLiteral("Cancelled; the file at hand was undone.\n");
  appendSection(out, QStringLiteral("Not imported"), failed);
  appendSection(out, QStringLiteral("Kept as it came"), keptRaw);
  appendSection(out, QStringLiteral("Left out by design"), ignored);
  return out;
}

void FileFindings::moveTo(ImportReport& report, const QString& file) const {
  report.notes += notes;
  report.replaced += replaced;
  appendCounted(report.keptRaw, file, kept_);
  appendCounted(report.ignored, file, ignored_);
}

}  // namespace lens

#include "embedded/dxl/import_report.h"

#include <QCoreApplication>

#include "notes/literals.h"

namespace lens {

namespace {

// The report is read by people, in their language; what was found in a file is named as programs get it, too.
class ImportReportText {
  Q_DECLARE_TR_FUNCTIONS(lens::ImportReport)
};

void appendSection(QString& out, const QString& title, const QStringList& lines) {
  if (lines.isEmpty()) return;
  out += u"\n%1:\n"_s.arg(title);
  for (const QString& line : lines) out += u"  %1\n"_s.arg(line);
}

void appendCounted(QStringList& lines, QMap<QString, ImportReport::Finding>& kinds, const QString& file,
                   const QMap<QString, int>& counts) {
  for (auto it = counts.cbegin(); it != counts.cend(); ++it) {
    const QString times = it.value() == 1 ? u"once"_s : u"%1 times"_s.arg(it.value());
    lines.push_back(u"%1: %2 (%3)"_s.arg(file, it.key(), times));
    ImportReport::Finding& kind = kinds[it.key()];
    if (kind.files++ == 0) kind.line = lines.last();
    kind.times += it.value();
  }
}

// What many files have in common takes one line.
QStringList grouped(const QMap<QString, ImportReport::Finding>& kinds) {
  QStringList lines;
  for (auto it = kinds.cbegin(); it != kinds.cend(); ++it) {
    const ImportReport::Finding& kind = it.value();
    if (kind.files == 1)
      lines.push_back(kind.line);
    else if (kind.times == kind.files)
      lines.push_back(ImportReportText::tr("%1 (%2 files)").arg(it.key(), QString::number(kind.files)));
    else
      lines.push_back(ImportReportText::tr("%1 (%2 files, %3 times)")
                          .arg(it.key(), QString::number(kind.files), QString::number(kind.times)));
  }
  return lines;
}

}  // namespace

QString ImportReport::text() const {
  QString out =
      ImportReportText::tr("%1 notes imported, %2 of them replaced.").arg(notes).arg(replaced) + u'\n';
  if (cancelled) out += ImportReportText::tr("Cancelled; the file at hand was undone.") + u'\n';
  appendSection(out, ImportReportText::tr("Not imported"), failed);
  appendSection(out, ImportReportText::tr("Kept as it came"), grouped(keptKinds));
  QStringList left = grouped(ignoredKinds) + otherFiles;
  if (!origin.isEmpty())
    left.push_back(
        ImportReportText::tr("where the files come from: attributes %1").arg(origin.join(u", "_s)));
  appendSection(out, ImportReportText::tr("Left out by design"), left);
  return out;
}

void FileFindings::unreadFormula(const QString& place, const QString& problem) {
  constexpr int kMostNamed = 100;
  QString what = u"formula in compiled form only: "_s + problem;
  if (namedFormulas_ < kMostNamed) what += u", in "_s + place;
  ++namedFormulas_;
  keptRaw(what);
}

bool FileFindings::tellsOrigin(QStringView element, QStringView attribute) {
  for (const QStringView known :
       {u"version", u"maintenanceversion", u"milestonebuild", u"replicaid", u"noteid"}) {
    if (attribute == known) return true;
  }
  return element == u"database" && attribute == u"path";
}

void FileFindings::unreadAttribute(QStringView element, QStringView attribute) {
  const auto known = unread_.find(Place(element, attribute));
  if (known != unread_.end())
    ++known->second;
  else
    unread_.emplace(std::pair(element.toString(), attribute.toString()), 1);
}

void FileFindings::unreadElement(QStringView element, QStringView parent) {
  if (element == u"#text") return ignored(u"text in \"%1\""_s.arg(parent));
  ignored(parent.isEmpty() ? u"element \"%1\""_s.arg(element)
                           : u"element \"%1\" in \"%2\""_s.arg(element, parent));
}

void FileFindings::moveTo(ImportReport& report, const QString& file) const {
  report.notes += notes;
  report.replaced += replaced;
  appendCounted(report.keptRaw, report.keptKinds, file, kept_);
  QMap<QString, int> left = ignored_;
  for (const auto& [place, times] : unread_) {
    if (!tellsOrigin(place.first, place.second))
      left.insert(u"attribute \"%1\" of \"%2\""_s.arg(place.second, place.first), times);
    else if (!report.origin.contains(place.second))
      report.origin.push_back(place.second);
  }
  appendCounted(report.ignored, report.ignoredKinds, file, left);
}

}  // namespace lens

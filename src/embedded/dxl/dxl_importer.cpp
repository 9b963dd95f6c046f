#include "embedded/dxl/dxl_importer.h"

#include <QDirIterator>
#include <QFile>
#include <QFileInfo>

#include "embedded/dxl/database_elements.h"
#include "embedded/dxl/note_elements.h"
#include "embedded/dxl/other_files.h"
#include "notes/literals.h"

namespace lens {

namespace {

constexpr QStringView kNamespace = u"http://www.lotus.com/dxl";

[[noreturn]] void noDxl(const DxlReader& in, const QString& reason) {
  try {
    in.fail(reason);
  } catch (const DxlFault& fault) {
    throw DxlFault(enginefault::NoDxl, fault.line, fault.column, u"this is no DXL file: %1"_s.arg(reason));
  }
}

void goToRoot(DxlReader& in) {
  try {
    in.next();
  } catch (const DxlFault& fault) {
    if (in.rootSeen()) throw;
    noDxl(in, fault.description());
  }
  const bool ours = in.namespaceUri().isEmpty() || in.namespaceUri() == kNamespace;
  if (!ours || (!in.is(u"database") && !isNoteElement(in.name())))
    noDxl(in, u"its root is \"%1\""_s.arg(in.name()));
}

void importStream(DxlReader& in, ImportContext& context) {
  goToRoot(in);
  if (in.is(u"database"))
    importDatabase(context);
  else
    importNote(context);
  in.finish();
}

QString placed(const QString& file, const DxlFault& fault) {
  return u"%1, line %2, column %3: %4"_s.arg(file).arg(fault.line).arg(fault.column).arg(fault.description());
}

QStringList filesIn(const QString& folder) {
  QStringList files;
  QDirIterator it(folder, QDir::Files | QDir::Readable, QDirIterator::Subdirectories);
  while (it.hasNext()) files.push_back(it.next());
  files.sort();
  return files;
}

}  // namespace

void DxlImporter::importFile(const QString& path, ImportReport& report, ImportProgress* progress) {
  takeFile(path, report, progress, nullptr);
}

void DxlImporter::takeFile(const QString& path, ImportReport& report, ImportProgress* progress,
                           OtherFiles* others) {
  // A pipe would make the import wait for whoever writes into it, a device would never end.
  const QFileInfo info(path);
  if (info.exists() && !info.isFile()) {
    report.failed.push_back(u"%1: it cannot be read (it is no file)"_s.arg(path));
    return;
  }
  QFile file(path);
  if (!file.open(QIODevice::ReadOnly)) {
    report.failed.push_back(u"%1: it cannot be read (%2)"_s.arg(path, file.errorString()));
    return;
  }
  const qint64 total = file.size();
  DxlSource source(file, [&](qint64 done) { return !progress || progress->go(path, done, total); });
  DxlReader in(source);
  FileFindings findings;
  in.tellUnreadTo(findings);
  ImportContext context{{in, findings}, target_, applyProperties_};
  try {
    Database::Transaction transaction(target_);
    importStream(in, context);
    transaction.commit();
    findings.moveTo(report, path);
  } catch (const DxlCancelled&) {
    report.cancelled = true;
  } catch (const DxlFault& fault) {
    if (!others || !others->take(path, fault, in.rootSeen())) report.failed.push_back(placed(path, fault));
  } catch (const RuntimeError& error) {
    // The store or a value refused what was read so far: the place is where the reader stands.
    try {
      in.fail(error.description());
    } catch (const DxlFault& fault) {
      report.failed.push_back(placed(path, fault));
    }
  }
}

void DxlImporter::importFiles(const QStringList& filesOrFolders, ImportReport& report,
                              ImportProgress* progress) {
  for (const QString& one : filesOrFolders) {
    const bool folder = QFileInfo(one).isDir();
    const QStringList files = folder ? filesIn(one) : QStringList{one};
    OtherFiles others;
    for (const QString& file : files) {
      takeFile(file, report, progress, folder ? &others : nullptr);
      if (report.cancelled) break;
    }
    const QString line = others.line(one);
    if (!line.isEmpty()) report.ignored.push_back(line);
    if (report.cancelled) return;
  }
}

}  // namespace lens

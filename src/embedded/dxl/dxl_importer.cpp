#include "embedded/dxl/dxl_importer.h"

#include <sqlite3.h>

#include <QDirIterator>
#include <QElapsedTimer>
#include <QFile>
#include <QFileInfo>
#include <QThread>
#include <deque>
#include <optional>
#include <vector>

#include "embedded/dxl/database_elements.h"
#include "embedded/dxl/note_count.h"
#include "embedded/dxl/note_elements.h"
#include "embedded/dxl/other_files.h"
#include "notes/literals.h"

namespace lens {

namespace {

void importStream(DxlReader& in, ImportContext& context) {
  goToRoot(in);
  if (in.is(u"database"))
    importDatabase(context);
  else
    importNote(context);
  in.finish();
}

QString placed(const QString& file, const DxlFault& fault) {
  return u"%1, line %2, column %3: %4"_s.arg(file, QString::number(fault.line), QString::number(fault.column),
                                             fault.description());
}

QStringList filesIn(const QString& folder) {
  QStringList files;
  QDirIterator it(folder, QDir::Files | QDir::Readable, QDirIterator::Subdirectories);
  while (it.hasNext()) files.push_back(it.next());
  files.sort();
  return files;
}

}  // namespace

QStringList filesToImport(const QStringList& filesOrFolders) {
  QStringList files;
  for (const QString& one : filesOrFolders) files += QFileInfo(one).isDir() ? filesIn(one) : QStringList{one};
  return files;
}

struct DxlImporter::ToImport {
  QString path;
  OtherFiles* others;  // takes it when it is no DXL; null reports that for itself
};

// What became of a file, before it is known whether that stays.
struct DxlImporter::Result {
  FileFindings findings;
  QString failure;
  std::optional<DxlFault> fault;
  bool rootSeen = false;
  bool cancelled = false;

  void tell(const ToImport& file, ImportReport& report) const {
    if (cancelled)
      report.cancelled = true;
    else if (!failure.isEmpty())
      report.failed.push_back(failure);
    else if (!fault)
      findings.moveTo(report, file.path);
    else if (!file.others || !file.others->take(file.path, *fault, rootSeen))
      report.failed.push_back(placed(file.path, *fault));
  }
};

DxlImporter::Result DxlImporter::read(const QString& path, ImportProgress* progress) {
  Result result;
  // A pipe would make the import wait for whoever writes into it, a device would never end.
  const QFileInfo info(path);
  QFile file(path);
  const bool noFile = info.exists() && !info.isFile();
  if (noFile || !file.open(QIODevice::ReadOnly)) {
    result.failure =
        u"%1: it cannot be read (%2)"_s.arg(path, noFile ? u"it is no file"_s : file.errorString());
    return result;
  }
  const qint64 total = file.size();
  DxlSource source(file, [&](qint64 done) { return !progress || progress->go(path, done, total); });
  DxlReader in(source);
  in.tellUnreadTo(result.findings);
  ImportContext context{{in, result.findings}, target_, applyProperties_};
  try {
    if (isLarge(path)) {
      importLarge(path, context, progress);
    } else {
      Database::Transaction transaction(target_);
      importStream(in, context);
      transaction.commit();
    }
  } catch (const DxlCancelled&) {
    result.cancelled = true;
  } catch (const DxlFault& fault) {
    result.fault = fault;
    result.rootSeen = in.rootSeen();
  } catch (const RuntimeError& error) {
    if (error.number() == enginefault::InUse) {
      result.failure = u"%1: %2"_s.arg(path, error.description());
      return result;
    }
    // The store or a value refused what was read so far: the place is where the reader stands.
    try {
      in.fail(error.description());
    } catch (const DxlFault& fault) {
      result.failure = placed(path, fault);
    }
  }
  return result;
}

// Within a transaction of the caller nobody else has a turn anyway.
bool DxlImporter::isLarge(const QString& path) const {
  return sqlite3_get_autocommit(target_.handle()) && QFileInfo(path).size() >= large_.fromBytes;
}

void DxlImporter::importLarge(const QString& path, ImportContext& context, ImportProgress* progress) {
  const qint64 total = QFileInfo(path).size();
  bool cancelled = false;
  const qint64 mostNotes = mostNotesIn(path, [&] {
    cancelled = cancelled || (progress && !progress->go(path, 0, total));
    return !cancelled;
  });
  if (cancelled) throw DxlCancelled();
  LargeImport large(target_, mostNotes, large_.pace);
  context.large = &large;
  importStream(context.in, context);
  large.finish(
      [&](Note& note, const ValueSpool& spool, UnidOf unid) { saveNow(context, note, spool, unid); });
}

void DxlImporter::importFile(const QString& path, ImportReport& report, ImportProgress* progress) {
  read(path, progress).tell({path, nullptr}, report);
}

// Files are transactions within one that lasts for a turn, since it is the disk that takes the time for a
// small one. Gives the number of files that were looked at.
qsizetype DxlImporter::importTurn(const QVector<ToImport>& files, ImportReport& report,
                                  ImportProgress* progress) {
  std::vector<Result> results;
  QElapsedTimer held;
  try {
    Database::Transaction turn(target_);
    held.start();
    for (const ToImport& file : files) {
      if (!results.empty() && QFileInfo(file.path).size() >= large_.fromBytes) break;
      results.push_back(read(file.path, progress));
      const bool undone = sqlite3_get_autocommit(target_.handle()) != 0;
      if (undone || results.back().cancelled || held.elapsed() >= large_.pace.turnMs) break;
    }
    turn.commit();
  } catch (const RuntimeError& error) {
    if (results.empty()) {
      // Somebody else has the database: there is no sense in waiting for that once more.
      report.failed.push_back(u"%1: %2"_s.arg(files.first().path, error.description()));
      return 1;
    }
    // A full disk takes the whole turn. So that no file is lost with another one, each is a turn of its own
    // now.
    for (size_t i = 0; i < results.size() && !report.cancelled; ++i)
      read(files[qsizetype(i)].path, progress).tell(files[qsizetype(i)], report);
    return qsizetype(results.size());
  }
  for (size_t i = 0; i < results.size(); ++i) results[i].tell(files[qsizetype(i)], report);
  if (qsizetype(results.size()) < files.size() && !report.cancelled)
    QThread::msleep(ulong(large_.pace.gapMs));
  return qsizetype(results.size());
}

void DxlImporter::importFiles(const QStringList& filesOrFolders, ImportReport& report,
                              ImportProgress* progress) {
  QVector<ToImport> files;
  std::deque<std::pair<QString, OtherFiles>> folders;
  for (const QString& one : filesOrFolders) {
    const bool folder = QFileInfo(one).isDir();
    if (folder) folders.push_back({one, {}});
    for (const QString& file : filesToImport({one}))
      files.push_back({file, folder ? &folders.back().second : nullptr});
  }
  for (qsizetype done = 0; done < files.size() && !report.cancelled;) {
    const bool large = isLarge(files[done].path);
    if (large) read(files[done].path, progress).tell(files[done], report);
    done += large ? 1 : importTurn(files.sliced(done), report, progress);
  }
  for (const auto& [folder, others] : folders) {
    const QString line = others.line(folder);
    if (line.isEmpty()) continue;
    report.ignored.push_back(line);
    report.otherFiles.push_back(line);
  }
}

}  // namespace lens

#include "client/import_run.h"

#include <QEventLoop>
#include <QMutex>
#include <QThread>
#include <QTimer>
#include <atomic>

#include "embedded/dxl/dxl_importer.h"
#include "embedded/store/database.h"

namespace lens {
namespace {

constexpr int kShowEvery = 40;  // milliseconds

// Where the import is: written by its thread, shown by the window's.
class SharedProgress : public ImportProgress {
 public:
  bool go(const QString& file, qint64 done, qint64 total) override {
    const QMutexLocker lock(&mutex_);
    file_ = file;
    done_ = done;
    total_ = total;
    return !cancelled_;
  }
  void cancel() { cancelled_ = true; }
  void showOn(ImportBar& bar) {
    const QMutexLocker lock(&mutex_);
    if (!file_.isEmpty()) bar.showProgress(file_, done_, total_);
  }

 private:
  QMutex mutex_;
  std::atomic<bool> cancelled_ = false;
  QString file_;
  qint64 done_ = 0, total_ = 0;
};

class ImportThread : public QThread {
 public:
  ImportThread(QString databasePath, QStringList sources, bool applyProperties)
      : databasePath_(std::move(databasePath)),
        sources_(std::move(sources)),
        applyProperties_(applyProperties) {}
  // Also when an exception passes by: nobody is left to see the end of the import.
  ~ImportThread() override {
    progress.cancel();
    wait();
  }

  SharedProgress progress;
  ImportReport report;  // to be read when the thread has ended

 private:
  void run() override {
    try {
      const auto database = Database::open(databasePath_);
      DxlImporter importer(*database);
      importer.applyDatabaseProperties(applyProperties_);
      importer.importFiles(sources_, report, &progress);
    } catch (const RuntimeError& error) {
      report.failed.push_back(error.description());
    }
  }

  QString databasePath_;
  QStringList sources_;
  bool applyProperties_;
};

}  // namespace

ImportReport runImport(const QString& databasePath, const QStringList& filesOrFolders,
                       bool applyDatabaseProperties, ImportBar* bar) {
  ImportThread thread(databasePath, filesOrFolders, applyDatabaseProperties);
  const QPointer<ImportBar> shown(bar);
  QEventLoop untilTheEnd;
  QObject::connect(&thread, &QThread::finished, &untilTheEnd, &QEventLoop::quit);
  QTimer show;
  QObject::connect(&show, &QTimer::timeout, &untilTheEnd, [&] {
    if (shown) thread.progress.showOn(*shown);
  });
  const auto cancel = [&] { thread.progress.cancel(); };
  QObject::connect(bar, &ImportBar::cancelled, &untilTheEnd, cancel);
  QObject::connect(bar, &QObject::destroyed, &untilTheEnd, cancel);
  show.start(kShowEvery);
  thread.start();
  untilTheEnd.exec();
  // The program may be ending, which ends every loop: the import does not outlive it.
  thread.progress.cancel();
  thread.wait();
  return thread.report;
}

}  // namespace lens

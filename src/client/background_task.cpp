#include "client/background_task.h"

#include <QEventLoop>
#include <QPointer>
#include <QThread>
#include <QTimer>

#include "embedded/store/database.h"

namespace lens {
namespace {

constexpr int kShowEvery = 40;  // milliseconds

class WorkThread : public QThread {
 public:
  explicit WorkThread(const std::function<void(TaskProgress&)>& work) : work_(work) {}
  // Also when an exception passes by: nobody is left to see the end of the work.
  ~WorkThread() override {
    progress.cancel();
    wait();
  }

  TaskProgress progress;

 private:
  void run() override { work_(progress); }
  const std::function<void(TaskProgress&)>& work_;
};

}  // namespace

bool TaskProgress::go(const QString& file, qint64 done, qint64 total) {
  const QMutexLocker lock(&mutex_);
  file_ = file;
  done_ = done;
  total_ = total;
  return !cancelled_;
}

void TaskProgress::showOn(WorkBar& bar) {
  const QMutexLocker lock(&mutex_);
  if (!file_.isEmpty()) bar.showProgress(file_, done_, total_);
}

void runInBackground(WorkBar* bar, const std::function<void(TaskProgress&)>& work) {
  WorkThread thread(work);
  const QPointer<WorkBar> shown(bar);
  QEventLoop untilTheEnd;
  QObject::connect(&thread, &QThread::finished, &untilTheEnd, &QEventLoop::quit);
  QTimer show;
  QObject::connect(&show, &QTimer::timeout, &untilTheEnd, [&] {
    if (shown) thread.progress.showOn(*shown);
  });
  const auto cancel = [&] { thread.progress.cancel(); };
  QObject::connect(bar, &WorkBar::cancelled, &untilTheEnd, cancel);
  QObject::connect(bar, &QObject::destroyed, &untilTheEnd, cancel);
  if (bar->isCancelled()) cancel();
  show.start(kShowEvery);
  thread.start();
  untilTheEnd.exec();
  // The program may be ending, which ends every loop: the work does not outlive it.
  thread.progress.cancel();
  thread.wait();
}

QString runOnDatabase(WorkBar* bar, const QString& path,
                      const std::function<void(Database&, TaskProgress&)>& work) {
  QString failure;
  runInBackground(bar, [&](TaskProgress& progress) {
    try {
      work(*Database::open(path), progress);
    } catch (const RuntimeError& error) {
      failure = error.description();
    }
  });
  return failure;
}

}  // namespace lens

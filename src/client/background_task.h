// Long work on a thread of its own while the windows live on. It opens its databases for itself: what the
// user saves meanwhile is not part of its transactions, and cancelling it takes nothing of that back.
#pragma once

#include <QMutex>
#include <QString>
#include <atomic>
#include <functional>

#include "client/work_bar.h"

namespace lens {

class Database;

// Where the work is: told by its thread, shown by the window's.
class TaskProgress {
 public:
  // False when the work is to end.
  bool go(const QString& file, qint64 done, qint64 total);
  void cancel() { cancelled_ = true; }
  void showOn(WorkBar& bar);

 private:
  QMutex mutex_;
  std::atomic<bool> cancelled_ = false;
  QString file_;
  qint64 done_ = 0, total_ = 0;
};

// Returns when the work has ended; events go through meanwhile, and the bar shows how far it is. Work whose
// bar is cancelled or has gone is told so when it tells its progress. It must not throw.
void runInBackground(WorkBar* bar, const std::function<void(TaskProgress&)>& work);

// The same on the database at that path. Gives back why it cannot be opened or what the work raised, "" where
// all went well.
QString runOnDatabase(WorkBar* bar, const QString& path,
                      const std::function<void(Database&, TaskProgress&)>& work);

}  // namespace lens

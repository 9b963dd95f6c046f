#include "embedded/files/file_lock.h"

#include <QDateTime>
#include <QElapsedTimer>
#include <QFile>
#include <QFileInfo>
#include <QThread>

#include "notes/literals.h"

namespace lens {
namespace {

constexpr int kPauseMs = 10;
constexpr qint64 kLongestEmptyMs = 1000;

}  // namespace

FileLock::FileLock(const QString& path, int waitMs) : lock_(path + u".lock"_s) {
  lock_.setStaleLockTime(0);  // work under a lock may take its time
  // To look into a pipe of that name for its owner would never end.
  if (const QFileInfo there(lock_.fileName()); there.exists() && !there.isFile()) {
    state_ = State::Impossible;
    return;
  }
  QElapsedTimer waited;
  waited.start();
  while (state_ == State::Taken) {
    if (lock_.tryLock(0)) {
      state_ = State::Held;
    } else if (lock_.error() != QLockFile::LockFailedError) {
      state_ = State::Impossible;
    } else {
      if (removeAbandoned()) continue;
      // One without its owner's name is about to get it, or nobody's any more: which, shows within a second.
      const int patience = isNameless() ? qMax<int>(waitMs, 2 * kLongestEmptyMs) : waitMs;
      if (waited.elapsed() >= patience) return;
      QThread::msleep(kPauseMs);
    }
  }
}

bool FileLock::isNameless() const {
  const QFileInfo file(lock_.fileName());
  return file.exists() && file.size() == 0;
}

// Who died before it had written who it is would keep everybody out for good.
bool FileLock::removeAbandoned() const {
  const QFileInfo file(lock_.fileName());
  return isNameless() && file.lastModified().msecsTo(QDateTime::currentDateTime()) > kLongestEmptyMs &&
         QFile::remove(file.filePath());
}

}  // namespace lens

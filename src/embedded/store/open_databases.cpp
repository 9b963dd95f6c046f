#include "embedded/store/open_databases.h"

#include <QFileInfo>
#include <QThread>
#include <algorithm>

namespace lens {

OpenDatabases& OpenDatabases::ofProcess() {
  static OpenDatabases instance;
  return instance;
}

QString OpenDatabases::trueFile(const QString& path) {
  return QFileInfo(path).canonicalFilePath();
}

std::shared_ptr<Database> OpenDatabases::find(const QString& file) {
  const QMutexLocker lock(&mutex_);
  forgetClosed();
  for (const Entry& entry : entries_)
    if (entry.file == file && entry.thread == QThread::currentThread())
      if (auto database = entry.database.lock()) return database;
  return nullptr;
}

bool OpenDatabases::isOpen(const QString& file) {
  const QMutexLocker lock(&mutex_);
  forgetClosed();
  return std::any_of(entries_.begin(), entries_.end(),
                     [&](const Entry& entry) { return entry.file == file; });
}

void OpenDatabases::add(const QString& file, const std::shared_ptr<Database>& database) {
  const QMutexLocker lock(&mutex_);
  entries_.push_back({file, QThread::currentThread(), database});
}

void OpenDatabases::forget(const QString& file) {
  const QMutexLocker lock(&mutex_);
  entries_.removeIf([&](const Entry& entry) { return entry.file == file; });
}

void OpenDatabases::forgetClosed() {
  entries_.removeIf([](const Entry& entry) { return entry.database.expired(); });
}

}  // namespace lens

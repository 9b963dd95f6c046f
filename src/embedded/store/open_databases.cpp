#include "embedded/store/open_databases.h"

#include <QFileInfo>
#include <QThread>

namespace lens {

OpenDatabases& OpenDatabases::ofProcess() {
  static OpenDatabases instance;
  return instance;
}

QString OpenDatabases::trueFile(const QString& path) {
  return QFileInfo(path).canonicalFilePath();
}

std::shared_ptr<Database> OpenDatabases::find(const QString& file) {
  const FileIdentity identity = FileIdentity::of(file);
  const QMutexLocker lock(&mutex_);
  forgetClosed();
  for (const Entry& entry : entries_)
    if (entry.file == file && entry.identity == identity && entry.thread == QThread::currentThread())
      if (auto database = entry.database.lock()) return database;
  return nullptr;
}

QVector<std::shared_ptr<Database>> OpenDatabases::outdated(const QString& file) {
  const FileIdentity identity = FileIdentity::of(file);
  QVector<std::shared_ptr<Database>> found;
  const QMutexLocker lock(&mutex_);
  for (const Entry& entry : entries_)
    if (entry.file == file && entry.identity != identity && entry.thread == QThread::currentThread())
      if (auto database = entry.database.lock()) found.push_back(std::move(database));
  return found;
}

void OpenDatabases::readUnlessOpen(const QString& path, const std::function<void()>& read) {
  const QMutexLocker lock(&mutex_);
  if (!HeldFile::isHeld(FileIdentity::of(path))) read();
}

OpenDatabases::Opening::Opening(const QString& path, const std::function<void()>& lookOver) {
  const QMutexLocker lock(&ofProcess().mutex_);
  if (!HeldFile::isHeld(FileIdentity::of(path))) lookOver();
  held_ = std::make_unique<HeldFile>(path);
}

void OpenDatabases::add(const QString& file, const std::shared_ptr<Database>& database) {
  const FileIdentity identity = FileIdentity::of(file);
  const QMutexLocker lock(&mutex_);
  forgetClosed();
  entries_.push_back({file, identity, QThread::currentThread(), database});
}

void OpenDatabases::forget(const QString& file) {
  const QMutexLocker lock(&mutex_);
  entries_.removeIf([&](const Entry& entry) { return entry.file == file; });
}

void OpenDatabases::forgetClosed() {
  entries_.removeIf([](const Entry& entry) { return entry.database.expired(); });
}

}  // namespace lens

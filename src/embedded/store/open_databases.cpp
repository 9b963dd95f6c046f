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

bool OpenDatabases::isKnown(const FileIdentity& identity) const {
  const auto isIt = [&](const Entry& entry) {
    return entry.identity == identity && !entry.database.expired();
  };
  return opening_.contains(identity) || std::any_of(entries_.begin(), entries_.end(), isIt);
}

bool OpenDatabases::isOpen(const QString& path) {
  const FileIdentity identity = FileIdentity::of(path);
  const QMutexLocker lock(&mutex_);
  return isKnown(identity);
}

void OpenDatabases::readUnlessOpen(const QString& path, const std::function<void()>& read) {
  const FileIdentity identity = FileIdentity::of(path);
  const QMutexLocker lock(&mutex_);
  if (!isKnown(identity)) read();
}

OpenDatabases::Opening::Opening(const QString& path, const std::function<void()>& lookOver)
    : identity_(FileIdentity::of(path)) {
  OpenDatabases& all = ofProcess();
  const QMutexLocker lock(&all.mutex_);
  if (!all.isKnown(identity_)) lookOver();
  all.opening_.push_back(identity_);
}

OpenDatabases::Opening::~Opening() {
  OpenDatabases& all = ofProcess();
  const QMutexLocker lock(&all.mutex_);
  all.opening_.removeOne(identity_);
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

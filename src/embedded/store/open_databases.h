// The databases that are open in this process.
#pragma once

#include <QMutex>
#include <QString>
#include <QVector>
#include <memory>

class QThread;

namespace lens {

class Database;

// One thread shares one connection per file, since two would lock each other out. And a file that is open
// must not be read beside SQLite: closing such a reader would drop the locks of the whole process.
class OpenDatabases {
 public:
  static OpenDatabases& ofProcess();
  // By this a file is known, whatever path leads to it; "" when there is none.
  static QString trueFile(const QString& path);

  // The one that this thread has open; null when it has none.
  std::shared_ptr<Database> find(const QString& file);
  // Whether any thread has it open.
  bool isOpen(const QString& file);
  void add(const QString& file, const std::shared_ptr<Database>& database);
  // The path leads to another file now; who has the old one open keeps it.
  void forget(const QString& file);

 private:
  struct Entry {
    QString file;
    QThread* thread;
    std::weak_ptr<Database> database;
  };
  void forgetClosed();

  QMutex mutex_;
  QVector<Entry> entries_;
};

}  // namespace lens

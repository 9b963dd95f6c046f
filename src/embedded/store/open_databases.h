// The databases that are open in this process.
#pragma once

#include <QMutex>
#include <QString>
#include <QVector>
#include <functional>
#include <memory>

#include "host/held_file.h"

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

  // The one that this thread has open; null when it has none, or when the path leads to another file by now.
  std::shared_ptr<Database> find(const QString& file);
  // Those of this thread whose path leads to another file by now, or to none.
  QVector<std::shared_ptr<Database>> outdated(const QString& file);
  void add(const QString& file, const std::shared_ptr<Database>& database);
  // The path leads to another file now; who has the old one open keeps it.
  void forget(const QString& file);
  // Reads the file beside SQLite, unless any thread has it open; nobody opens it meanwhile.
  void readUnlessOpen(const QString& path, const std::function<void()>& read);

  // For the time in which a file is being opened: from here on it counts as open.
  class Opening {
   public:
    // Looks the file over first, unless it is open anyway; what that raises ends the opening.
    Opening(const QString& path, const std::function<void()>& lookOver);

   private:
    std::unique_ptr<HeldFile> held_;
  };

 private:
  struct Entry {
    QString file;
    FileIdentity identity;
    QThread* thread;
    std::weak_ptr<Database> database;
  };
  void forgetClosed();

  QMutex mutex_;
  QVector<Entry> entries_;
};

}  // namespace lens

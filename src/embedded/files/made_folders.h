// The folders that lead to a new file. Those that had to be made go again when the file does not come into
// being; what somebody else has put there meanwhile stays.
#pragma once

#include <QDir>
#include <QFileInfo>
#include <QString>
#include <QStringList>

namespace lens {

class MadeFolders {
 public:
  explicit MadeFolders(const QString& folder) {
    for (QString path = folder; !QFileInfo::exists(path); path = QFileInfo(path).path()) made_.append(path);
    ready_ = QDir().mkpath(folder);
  }
  ~MadeFolders() {
    if (kept_) return;
    for (const QString& path : std::as_const(made_)) QDir().rmdir(path);
  }
  MadeFolders(const MadeFolders&) = delete;
  MadeFolders& operator=(const MadeFolders&) = delete;

  // False when they cannot be made.
  bool areReady() const { return ready_; }
  void keep() { kept_ = true; }

 private:
  QStringList made_;  // the deepest first
  bool ready_ = false, kept_ = false;
};

}  // namespace lens

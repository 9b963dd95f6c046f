// While it lives the process has the rights of a user, though it was started as root: files that may not be
// written are really refused. The directory and what is in it belong to that user.
#pragma once

#include <QDirIterator>
#include <QFile>
#include <QString>
#include <cstdlib>

#ifdef Q_OS_LINUX
#include <unistd.h>

namespace lens {

class WithoutRights {
 public:
  explicit WithoutRights(const QString& directory) : wasRoot_(::geteuid() == 0) {
    if (!wasRoot_) return;
    give(directory);
    QDirIterator files(directory, QDir::AllEntries | QDir::Hidden | QDir::NoDotAndDotDot,
                       QDirIterator::Subdirectories);
    while (files.hasNext()) give(files.next());
    changed_ = ::setresuid(kNobody, kNobody, 0) == 0;
  }
  ~WithoutRights() {
    if (changed_ && ::setresuid(0, 0, 0) != 0) std::abort();
  }
  Q_DISABLE_COPY(WithoutRights)

 private:
  static constexpr uid_t kNobody = 65534;
  static void give(const QString& path) {
    if (::chown(QFile::encodeName(path).constData(), kNobody, gid_t(-1)) != 0) std::abort();
  }

  bool wasRoot_, changed_ = false;
};

}  // namespace lens
#endif

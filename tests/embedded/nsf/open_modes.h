// How this process holds a file open.
#pragma once

#include <fcntl.h>
#include <sys/stat.h>

#include <QDirIterator>
#include <QFile>
#include <QVector>

namespace lens::made {

// The flags of every descriptor on the file; empty where nothing tells them.
inline QVector<int> openModesOf(const QString& path) {
  struct stat wanted {};
  stat(QFile::encodeName(path).constData(), &wanted);
  QVector<int> modes;
  for (QDirIterator all(QStringLiteral("/proc/self/fd")); all.hasNext();) {
    const int descriptor = QFileInfo(all.next()).fileName().toInt();
    struct stat held {};
    if (fstat(descriptor, &held) == 0 && held.st_ino == wanted.st_ino && held.st_dev == wanted.st_dev)
      modes.push_back(fcntl(descriptor, F_GETFL));
  }
  return modes;
}

}  // namespace lens::made

// What stands behind a path: the file itself, whatever it is called and whatever else takes its name later.
#pragma once

#include <QString>

namespace lens {

struct FileIdentity {
  quint64 device = 0;
  quint64 number = 0;  // inode, or what the platform has instead
  bool operator==(const FileIdentity&) const = default;
  // No file was there.
  bool isNull() const { return number == 0; }

  // Asks the system once; null where the path leads to nothing.
  static FileIdentity of(const QString& path);
};

// The identity with the moment at which the file was made, where the system keeps that, as text to be written
// down: the number of a deleted file is soon another one's. "" without a file.
QString lastingIdentity(const QString& path);

}  // namespace lens

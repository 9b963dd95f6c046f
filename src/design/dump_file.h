// The text file that a list of fields is written to.
#pragma once

#include <QSaveFile>
#include <QString>
#include <QStringList>

namespace lens {

// The path of a file as it was typed. Where there are no drives, a drive means the user's home directory and
// "\" separates directories, so that a path from another desk ends up where the user finds the file.
QString dumpPath(const QString& typed);

// Opened to be written. An older file is replaced only when all lines are on disk. Raises 76 when the
// directory is missing and 75 for any other trouble.
class DumpFile {
 public:
  // Raises 70 for a database that is open.
  explicit DumpFile(const QString& path);

  // All of the file, in the system's code page with the system's line ends; characters that the code page
  // lacks become "?".
  void write(const QStringList& lines);

 private:
  QSaveFile file_;
};

}  // namespace lens

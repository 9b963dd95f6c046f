// The text file that the rows of a list are written to.
#pragma once

#include <QSaveFile>
#include <QStringList>

namespace lens {

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

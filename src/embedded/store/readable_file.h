// A file that is to be read as bytes, whatever is in it.
#pragma once

#include <QFile>
#include <QTemporaryDir>
#include <memory>

namespace lens {

// A database is copied through SQLite first and the copy is read: reading it beside SQLite would end the
// locks of whoever in this process has it open, and miss what still lies in its journal.
class ReadableFile {
 public:
  // Raises 53 without such a file, 75 when it is no plain file or cannot be read, 70 for a journal of a
  // database that is open, and what opening a database raises.
  explicit ReadableFile(const QString& path);

  // Open for reading; its name may be that of the copy.
  QFile& device() { return file_; }

 private:
  std::unique_ptr<QTemporaryDir> copy_;
  QFile file_;
};

}  // namespace lens

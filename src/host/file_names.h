// Names for files on the disk whose names come out of a document.
//
// A document keeps the name that an attachment was given, on whatever system. Only where a file is written,
// the name becomes one that the disk takes: everything that writes such files asks here.
#pragma once

#include <QHash>
#include <QSet>
#include <QStringList>

namespace lens {

// The last part of a name that may hold separators of any system, so that the file stays in the directory
// that it is joined to; "_" for what no file name may hold, and cut where it is too long for a disk.
// "attachment" where nothing is left. Raises 75 for a device's name: what is written there is lost, or worse,
// printed.
QString safeFileName(const QString& name);

// The names of files that are written into one directory one after the other, each a name of its own.
class DistinctFileNames {
 public:
  // The safe name, or "name (2).ext" and so on where another file has it, in any case of its letters. Raises
  // as safeFileName does.
  QString take(const QString& given);
  // What the user is told at the end: a line for each file that is under another name than it was given.
  const QStringList& changes() const { return changes_; }

 private:
  QString free(const QString& name);

  QSet<QString> taken_;         // folded
  QHash<QString, int> copies_;  // by folded name: the last number that was tried
  QStringList changes_;
};

}  // namespace lens

// The drive, directory and file lists of a small file browser.
#pragma once

#include "controls/combo_box.h"
#include "controls/list_box.h"
#include "notes/literals.h"

namespace lens {

// Where drives have no letters they are the root and what is mounted below it.
class DriveList : public ComboBox {
  Q_OBJECT

 public:
  explicit DriveList(QWidget* parent = nullptr);

  // Like "c:" or "/".
  QString drive() const { return currentText(); }
  // Runs `change`, also for the drive that is chosen already; raises 68 for a drive that is not there.
  // Empty changes nothing.
  void setDrive(const QString& drive);
};

// The open directory with its parents above it and its sub-directories below. The index stands on the
// open directory until the user moves it.
class DirList : public ListBox {
  Q_OBJECT

 public:
  explicit DirList(QWidget* parent = nullptr);

  // Runs when another directory was opened.
  Event<> change;

  // The open directory, without a separator at its end except in a root.
  const QString& path() const { return path_; }
  // Opens a directory; raises 76 where there is none and leaves the list as it was.
  void setPath(const QString& path);
  // The full path of a row; empty outside of the rows.
  QString directoryAt(int row) const;

 protected:
  void keyPressEvent(QKeyEvent* event) override;
  void mouseDoubleClickEvent(QMouseEvent* event) override;
  QString shownText(int row) const override;

 private:
  void enter(int row);

  QString path_;
  int depth_ = 0;  // rows before the first sub-directory
};

// The plain files of a directory.
class FileList : public ListBox {
  Q_OBJECT

 public:
  explicit FileList(QWidget* parent = nullptr);

  const QString& path() const { return path_; }
  // Reads the directory; raises 76 where there is none and leaves the list as it was.
  void setPath(const QString& path);
  // Wildcards, separated by ";". All files at first.
  const QString& pattern() const { return pattern_; }
  void setPattern(const QString& pattern);
  // The row at the index, without its directory.
  QString fileName() const { return text(); }
  // Reads the directory anew; index and marks are gone.
  void refresh() override;

 private:
  QString path_;
  QString pattern_ = u"*"_s;
};

}  // namespace lens

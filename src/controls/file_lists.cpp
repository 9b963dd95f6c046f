#include "controls/file_lists.h"

#include <QDir>
#include <QKeyEvent>
#include <QMouseEvent>
#include <QStorageInfo>
#include <algorithm>

#include "controls/keys.h"

namespace lens {
namespace {

constexpr int kDeviceUnavailable = 68;

QString existingDirectory(const QString& path) {
  const QDir directory(path);
  if (path.isEmpty() || !directory.exists()) throw RuntimeError(err::PathNotFound);
  return QDir::toNativeSeparators(QDir::cleanPath(directory.absolutePath()));
}

#ifdef Q_OS_WIN
QStringList driveNames() {
  QStringList names;
  for (const QFileInfo& root : QDir::drives()) {
    QString name = root.absoluteFilePath();
    if (name.size() > 1 && name.endsWith(QChar(u'/'))) name.chop(1);
    names += name.toLower();
  }
  return names;
}

// The directories begin on that of the current one.
QString firstDrive() {
  return QDir::currentPath().left(2);
}
#else
// A disk or a share of the network; not what the system only shows as files.
bool holdsFiles(const QStorageInfo& volume) {
  const QByteArray device = volume.device();
  return volume.isValid() && QFileInfo(volume.rootPath()).isDir() &&
         (device.startsWith("/dev/") || device.startsWith("//") || device.contains(':'));
}

QStringList driveNames() {
  QStringList mounted;
  for (const QStorageInfo& volume : QStorageInfo::mountedVolumes())
    if (!volume.isRoot() && holdsFiles(volume)) mounted += volume.rootPath();
  mounted.sort();
  mounted.removeDuplicates();
  return QStringList(u"/"_s) + mounted;
}

QString firstDrive() {
  return u"/"_s;
}
#endif

QStringList sortedNames(QStringList names) {
  std::stable_sort(names.begin(), names.end(), sortsBefore);
  return names;
}

}  // namespace

DriveList::DriveList(QWidget* parent) : ComboBox(parent) {
  for (const QString& name : driveNames()) addItem(name);
  if (listCount() > 0) setCurrentIndex(qMax(0, findText(firstDrive(), Qt::MatchFixedString)));
  connect(this, &QComboBox::activated, this, [this] { change.fire(); });
}

void DriveList::setDrive(const QString& drive) {
  if (drive.isEmpty()) return;
  const int row = findText(drive, Qt::MatchFixedString);
  if (row < 0) throw RuntimeError(kDeviceUnavailable);
  setCurrentIndex(row);
  change.raise();
}

DirList::DirList(QWidget* parent) : ListBox(parent) {}

void DirList::setPath(const QString& path) {
  const QString wanted = existingDirectory(path);
  const bool differs = wanted != path_;
  path_ = wanted;
  QStringList chain;
  QDir directory(path_);
  do chain.prepend(directory.isRoot() ? directory.absolutePath() : directory.dirName());
  while (!directory.isRoot() && directory.cdUp());
  clear();
  for (const QString& name : chain) addItem(QDir::toNativeSeparators(name));
  depth_ = int(chain.size());
  for (const QString& name : sortedNames(QDir(path_).entryList(QDir::Dirs | QDir::NoDotAndDotDot)))
    addItem(name);
  placeIndex(depth_ - 1);
  if (differs) change.raise();
}

QString DirList::directoryAt(int row) const {
  if (row < 0 || row >= listCount()) return QString();
  QDir directory(path_);
  if (row >= depth_) return QDir::toNativeSeparators(directory.filePath(list(row)));
  for (int up = depth_ - 1; up > row; --up) directory.setPath(QFileInfo(directory.path()).path());
  return QDir::toNativeSeparators(directory.path());
}

QString DirList::shownText(int row) const {
  return QString(2 * std::min(row, depth_), QChar(u' ')) + ListBox::shownText(row);
}

void DirList::enter(int row) {
  try {
    if (row >= 0 && row < listCount()) setPath(directoryAt(row));
  } catch (const RuntimeError& error) {
    reportUntrapped(error);
  }
}

void DirList::keyPressEvent(QKeyEvent* event) {
  ListBox::keyPressEvent(event);
  if (keyCode(*event) == key::Enter) enter(listIndex());
}

void DirList::mouseDoubleClickEvent(QMouseEvent* event) {
  ListBox::mouseDoubleClickEvent(event);
  const bool onRow = indexAt(event->position().toPoint()).isValid();
  if (event->button() == Qt::LeftButton && onRow) enter(listIndex());
}

FileList::FileList(QWidget* parent) : ListBox(parent) {}

void FileList::setPath(const QString& path) {
  path_ = existingDirectory(path);
  FileList::refresh();
}

void FileList::setPattern(const QString& pattern) {
  pattern_ = pattern;
  FileList::refresh();
}

void FileList::refresh() {
  const int top = topIndex();
  clear();
  if (path_.isEmpty()) return;
  const QStringList patterns = pattern_.split(QChar(u';'), Qt::SkipEmptyParts);
  for (const QString& name : sortedNames(QDir(path_).entryList(patterns, QDir::Files))) addItem(name);
  setTopIndex(top);
  ListBox::refresh();
}

}  // namespace lens

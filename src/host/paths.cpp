#include "host/paths.h"

#include <QDir>
#include <QFileInfo>
#include <QTemporaryFile>

#include "host/held_file.h"
#include "notes/literals.h"
#include "notes/runtime_error.h"

namespace lens {
namespace {

#ifdef Q_OS_WIN
constexpr bool kHasDrives = true;
#else
constexpr bool kHasDrives = false;
#endif

bool beginsWithDrive(const QString& path) {
  const auto isLetter = [](QChar c) { return (c >= u'a' && c <= u'z') || (c >= u'A' && c <= u'Z'); };
  return path.size() >= 2 && isLetter(path[0]) && path[1] == u':';
}

}  // namespace

QString hostPath(QString path) {
  if (QDir::separator() != u'\\') path.replace(u'\\', QDir::separator());
  return path;
}

QString findPath(const QString& path) {
  const QString wanted = hostPath(path);
  if (wanted.isEmpty()) return {};
  if (QFileInfo::exists(wanted)) return wanted;
  const QFileInfo info(wanted);
  const QString name = info.fileName();
  if (name.isEmpty() || info.path() == wanted) return {};
  const QString directory = findPath(info.path());
  if (directory.isEmpty()) return {};
  for (const QString& entry :
       QDir(directory).entryList(QDir::AllEntries | QDir::Hidden | QDir::NoDotAndDotDot))
    if (entry.compare(name, Qt::CaseInsensitive) == 0) return QDir(directory).filePath(entry);
  return {};
}

QString typedPath(const QString& typed) {
  if (kHasDrives) return typed;
  const QString path = hostPath(typed);
  if (!beginsWithDrive(typed)) return path;
  // Nothing leads out of a drive.
  QString inside = QDir::cleanPath(u'/' + path.mid(2));
  while (inside.startsWith(u"/../")) inside.remove(0, 3);
  return QDir::homePath() + inside;
}

QString extensionOf(const QString& path) {
  const qsizetype lastPart = qMax(path.lastIndexOf(u'/'), path.lastIndexOf(u'\\')) + 1;
  const qsizetype dot = path.lastIndexOf(u'.');
  return dot >= lastPart ? path.mid(dot + 1) : QString();
}

bool takesFiles(const QString& directory) {
  if (!QFileInfo(directory).isDir()) return false;
  QTemporaryFile probe(joinedPath(directory, u"probe-XXXXXX"_s));
  return probe.open();
}

QString joinedPath(const QString& directory, const QString& name) {
  QString path = directory;
  if (!path.endsWith(QDir::separator()) && !path.endsWith(u'/')) path += QDir::separator();
  path += name;
  return path;
}

void removeFile(const QString& path) {
  const QFileInfo info(path);
  if (info.isDir() && !info.isSymLink())
    throw RuntimeError(err::PathFileAccess, u"%1: this is a directory"_s.arg(path));
  if (!info.exists() && !info.isSymLink())
    throw RuntimeError(err::FileNotFound, u"%1: file not found"_s.arg(path));
  requireNotHeld(path);
  QFile file(path);
  if (!file.remove())
    throw RuntimeError(err::PermissionDenied,
                       u"%1: the file cannot be deleted (%2)"_s.arg(path, file.errorString()));
}

}  // namespace lens

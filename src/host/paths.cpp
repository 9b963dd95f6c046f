#include "host/paths.h"

#include <QDir>
#include <QFileInfo>
#include <QRegularExpression>

#include "host/held_file.h"
#include "notes/literals.h"
#include "notes/runtime_error.h"

namespace lens {

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

QString joinedPath(const QString& directory, const QString& name) {
  QString path = directory;
  if (!path.endsWith(QDir::separator()) && !path.endsWith(u'/')) path += QDir::separator();
  path += name;
  return path;
}

namespace {

// On Windows these are devices, in any case of letters and with any ending.
bool namesDevice(const QString& name) {
  static const QRegularExpression device(
      u"^(con|prn|aux|nul|conin\\$|conout\\$|(com|lpt)[0-9\u00B9\u00B2\u00B3])[ .]*(\\..*)?$"_s,
      QRegularExpression::CaseInsensitiveOption);
  return device.match(name).hasMatch();
}

// Nothing but dots and blanks means a directory, or on Windows no name at all.
bool namesFile(const QString& name) {
  bool any = false;
  for (const QChar c : name) {
    if (c < u' ') return false;
    any = any || (c != u'.' && c != u' ');
  }
  return any && !namesDevice(name);
}

}  // namespace

QString fileNameOf(const QString& name) {
  const qsizetype separator =
      qMax(qMax(name.lastIndexOf(u'/'), name.lastIndexOf(u'\\')), name.lastIndexOf(u':'));
  const QString last = name.mid(separator + 1);
  if (!namesFile(last))
    throw RuntimeError(err::PathFileAccess, u"\"%1\" is no name that a file can have"_s.arg(name));
  return last;
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

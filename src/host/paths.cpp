#include "host/paths.h"

#include <QDir>
#include <QFileInfo>

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

}  // namespace lens

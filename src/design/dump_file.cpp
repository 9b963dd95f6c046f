#include "design/dump_file.h"

#include <QDir>
#include <QFileInfo>
#include <algorithm>

#include "host/held_file.h"
#include "host/paths.h"
#include "host/save_file.h"
#include "notes/code_page.h"
#include "notes/literals.h"
#include "notes/runtime_error.h"

namespace lens {
namespace {

#ifdef Q_OS_WIN
constexpr char kLineEnd[] = "\r\n";
constexpr bool kHasDrives = true;
#else
constexpr char kLineEnd[] = "\n";
constexpr bool kHasDrives = false;
#endif

bool beginsWithDrive(const QString& path) {
  const auto isLetter = [](QChar c) { return (c >= u'a' && c <= u'z') || (c >= u'A' && c <= u'Z'); };
  return path.size() >= 2 && isLetter(path[0]) && path[1] == u':';
}

[[noreturn]] void fail(const QString& path, int number, const QString& reason) {
  throw RuntimeError(number, u"%1: the file cannot be written (%2)"_s.arg(path, reason));
}

// A directory that is missing is told apart, since the user can make it. A device would be replaced by a
// file.
void requirePlace(const QString& path) {
  const QFileInfo info(path);
  if (path.isEmpty()) fail(path, err::PathFileAccess, u"there is no name"_s);
  if (info.isDir()) fail(path, err::PathFileAccess, u"this is a directory"_s);
  if (info.exists() && !info.isFile()) fail(path, err::PathFileAccess, u"this is no file"_s);
  if (!info.dir().exists()) fail(path, err::PathNotFound, u"there is no such directory"_s);
  requireNotHeld(path);
}

}  // namespace

QString dumpPath(const QString& typed) {
  if (kHasDrives) return typed;
  const QString path = hostPath(typed);
  if (!beginsWithDrive(typed)) return path;
  // Nothing leads out of a drive.
  QString inside = QDir::cleanPath(u'/' + path.mid(2));
  while (inside.startsWith(u"/../")) inside.remove(0, 3);
  return QDir::homePath() + inside;
}

DumpFile::DumpFile(const QString& path) : file_(path) {
  requirePlace(path);
  if (!file_.open(QIODevice::WriteOnly)) fail(path, err::PathFileAccess, file_.errorString());
}

void DumpFile::write(const QStringList& lines) {
  const bool written = std::all_of(lines.begin(), lines.end(), [this](const QString& line) {
    const QByteArray bytes = toCodePage(line) + kLineEnd;
    return file_.write(bytes) == bytes.size();
  });
  if (!written || !commitWhole(file_)) fail(file_.fileName(), err::PathFileAccess, file_.errorString());
}

}  // namespace lens

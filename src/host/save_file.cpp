#include "host/save_file.h"

#include <QDir>
#include <QFileInfo>

#ifdef Q_OS_UNIX
#include <unistd.h>

#include <cerrno>
#endif
#ifdef Q_OS_WIN
#include <io.h>
#include <windows.h>
#endif

#include "host/held_file.h"
#include "notes/literals.h"
#include "notes/runtime_error.h"

namespace lens {
namespace {

[[noreturn]] void refusePlace(const QString& path, int number, const QString& reason) {
  throw RuntimeError(number, u"%1: the file cannot be written (%2)"_s.arg(path, reason));
}

// Some file systems find room only now; one that knows no such call promises nothing.
bool isOnDisk([[maybe_unused]] const QSaveFile& file) {
#ifdef Q_OS_UNIX
  return ::fsync(file.handle()) == 0 || errno == EINVAL || errno == EROFS;
#else
  return FlushFileBuffers(HANDLE(_get_osfhandle(file.handle()))) || GetLastError() == ERROR_INVALID_FUNCTION;
#endif
}

}  // namespace

bool commitWhole(QSaveFile& file) {
  if (file.flush() && isOnDisk(file)) return file.commit();
  file.cancelWriting();
  file.commit();
  return false;
}

// A device would be replaced by a file.
void requireWritablePlace(const QString& path) {
  const QFileInfo info(path);
  if (path.isEmpty()) failToWrite(path, u"there is no name"_s);
  if (info.isDir()) failToWrite(path, u"this is a directory"_s);
  if (info.exists() && !info.isFile()) failToWrite(path, u"this is no file"_s);
  if (!info.dir().exists()) refusePlace(path, err::PathNotFound, u"there is no such directory"_s);
  requireNotHeld(path);
}

void failToWrite(const QString& path, const QString& reason) {
  refusePlace(path, err::PathFileAccess, reason);
}

void replaceWhole(const QString& path, const QByteArray& bytes) {
  requireWritablePlace(path);
  QFile old(path);
  if (old.exists() && !old.open(QIODevice::Append)) failToWrite(path, old.errorString());
  old.close();
  QSaveFile file(path);
  if (!file.open(QIODevice::WriteOnly)) failToWrite(path, file.errorString());
  if (file.write(bytes) != bytes.size() || !commitWhole(file)) failToWrite(path, file.errorString());
}

}  // namespace lens

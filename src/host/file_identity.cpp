#include "host/file_identity.h"

#include <QDateTime>
#include <QFile>
#include <QFileInfo>

#ifdef Q_OS_WIN
#include <windows.h>
#else
#include <sys/stat.h>
#endif

#include "notes/literals.h"

namespace lens {

#ifdef Q_OS_WIN
FileIdentity FileIdentity::of(const QString& path) {
  const HANDLE file = CreateFileW(reinterpret_cast<const wchar_t*>(path.utf16()), 0,
                                  FILE_SHARE_READ | FILE_SHARE_WRITE | FILE_SHARE_DELETE, nullptr,
                                  OPEN_EXISTING, FILE_FLAG_BACKUP_SEMANTICS, nullptr);
  if (file == INVALID_HANDLE_VALUE) return {};
  BY_HANDLE_FILE_INFORMATION known = {};
  const bool told = GetFileInformationByHandle(file, &known);
  CloseHandle(file);
  if (!told) return {};
  return {known.dwVolumeSerialNumber, quint64(known.nFileIndexHigh) << 32 | known.nFileIndexLow};
}
#else
FileIdentity FileIdentity::of(const QString& path) {
  struct stat known = {};
  if (::stat(QFile::encodeName(path).constData(), &known) != 0) return {};
  return {quint64(known.st_dev), quint64(known.st_ino)};
}
#endif

QString lastingIdentity(const QString& path) {
  const FileIdentity file = FileIdentity::of(path);
  if (file.isNull()) return {};
  const QDateTime made = QFileInfo(path).birthTime();
  return u"%1:%2:%3"_s.arg(file.device, 0, 16)
      .arg(file.number, 0, 16)
      .arg(made.isValid() ? made.toMSecsSinceEpoch() : 0);
}

}  // namespace lens

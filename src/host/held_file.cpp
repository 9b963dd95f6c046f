#include "host/held_file.h"

#include <QFileInfo>
#include <QMutex>
#include <QVector>
#include <algorithm>

#include "notes/literals.h"
#include "notes/runtime_error.h"

namespace lens {
namespace {

struct HeldNow {
  FileIdentity file;
  QString path;
  bool operator==(const HeldNow&) const = default;
};

struct HeldFiles {
  QMutex mutex;
  QVector<HeldNow> files;
};

// Stays until the process is gone: a database that lives as long as the program is closed after all that the
// program made once is gone.
HeldFiles& heldNow() {
  static HeldFiles* const held = new HeldFiles;
  return *held;
}

// Also of a file that is not there yet.
QString truePath(const QString& path) {
  const QFileInfo file(path);
  return QFileInfo(file.absolutePath()).canonicalFilePath() + u'/' + file.fileName();
}

bool isJournalOf(const QString& path, const HeldNow& held) {
  for (const QString& suffix : {u"-wal"_s, u"-shm"_s, u"-journal"_s})
    if (path.size() == held.path.size() + suffix.size() && path.endsWith(suffix, Qt::CaseInsensitive) &&
        path.startsWith(held.path, Qt::CaseInsensitive))
      return FileIdentity::of(held.path) == held.file;
  return false;
}

}  // namespace

HeldFile::HeldFile(const QString& path)
    : file_(FileIdentity::of(path)), path_(QFileInfo(path).canonicalFilePath()) {
  HeldFiles& held = heldNow();
  const QMutexLocker lock(&held.mutex);
  held.files.push_back({file_, path_});
}

HeldFile::~HeldFile() {
  HeldFiles& held = heldNow();
  const QMutexLocker lock(&held.mutex);
  held.files.removeOne(HeldNow{file_, path_});
}

bool HeldFile::isHeld(const FileIdentity& file) {
  HeldFiles& held = heldNow();
  const QMutexLocker lock(&held.mutex);
  return !file.isNull() && std::any_of(held.files.begin(), held.files.end(),
                                       [&](const HeldNow& one) { return one.file == file; });
}

void requireNotHeld(const QString& path) {
  bool isHeld = HeldFile::isHeld(FileIdentity::of(path));
  if (!isHeld) {
    const QString file = truePath(path);
    HeldFiles& held = heldNow();
    const QMutexLocker lock(&held.mutex);
    isHeld = std::any_of(held.files.begin(), held.files.end(),
                         [&](const HeldNow& one) { return isJournalOf(file, one); });
  }
  if (isHeld)
    throw RuntimeError(err::PermissionDenied,
                       u"%1: permission denied (the file belongs to a database that is open)"_s.arg(path));
}

}  // namespace lens

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

QMutex heldMutex;
QVector<HeldNow>& heldNow() {
  static QVector<HeldNow> held;
  return held;
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
  const QMutexLocker lock(&heldMutex);
  heldNow().push_back({file_, path_});
}

HeldFile::~HeldFile() {
  const QMutexLocker lock(&heldMutex);
  heldNow().removeOne(HeldNow{file_, path_});
}

bool HeldFile::isHeld(const FileIdentity& file) {
  const QMutexLocker lock(&heldMutex);
  return !file.isNull() && std::any_of(heldNow().begin(), heldNow().end(),
                                       [&](const HeldNow& held) { return held.file == file; });
}

void requireNotHeld(const QString& path) {
  bool held = HeldFile::isHeld(FileIdentity::of(path));
  if (!held) {
    const QString file = truePath(path);
    const QMutexLocker lock(&heldMutex);
    held = std::any_of(heldNow().begin(), heldNow().end(),
                       [&](const HeldNow& one) { return isJournalOf(file, one); });
  }
  if (held)
    throw RuntimeError(err::PermissionDenied,
                       u"%1: permission denied (the file belongs to a database that is open)"_s.arg(path));
}

}  // namespace lens

#include "embedded/store/aside_file.h"

#include <QFile>
#include <QFileInfo>

#ifdef Q_OS_UNIX
#include <fcntl.h>
#include <unistd.h>
#endif

#include "embedded/store/engine_fault.h"
#include "notes/runtime_error.h"

namespace lens {
namespace {

[[noreturn]] void refuse(int number, const QString& path, const QString& reason) {
  throw RuntimeError(number, QStringLiteral("%1: %2").arg(path, reason));
}

void requireFree(const QString& path) {
  const QFileInfo file(path);
  if (file.exists() || file.isSymLink()) refuse(58, path, QStringLiteral("the file exists already"));
}

void removeWithJournals(const QString& file) {
  for (const char* suffix : {"", "-wal", "-shm", "-journal"}) QFile::remove(file + QLatin1String(suffix));
}

// A renamed file is only safe once its directory is written too.
void syncDirectory([[maybe_unused]] const QString& directory) {
#ifdef Q_OS_UNIX
  const int handle = ::open(QFile::encodeName(directory).constData(), O_RDONLY | O_DIRECTORY);
  if (handle < 0) return;
  ::fsync(handle);
  ::close(handle);
#endif
}

}  // namespace

AsideFile::AsideFile(const QString& path, Old old)
    : path_(path), aside_(path + QStringLiteral(".new")), lock_(path, 0) {
  if (old == Old::Refuse) requireFree(path);
  if (!QFileInfo(QFileInfo(path).absolutePath()).isDir())
    refuse(err::PathNotFound, path, QStringLiteral("there is no such directory"));
  if (lock_.state() == FileLock::State::Taken)
    refuse(err::PathFileAccess, path, QStringLiteral("the file is being made by another program already"));
  if (lock_.state() == FileLock::State::Impossible)
    refuse(err::PathFileAccess, path, QStringLiteral("the file cannot be created"));
  removeWithJournals(aside_);
}

AsideFile::~AsideFile() {
  removeWithJournals(aside_);
}

void AsideFile::requireWhole() const {
  // What the disk had no room for is still in the journal.
  if (QFileInfo(aside_ + QStringLiteral("-wal")).size() > 0)
    refuse(enginefault::NotSaved, path_, QStringLiteral("the file could not be written to its end"));
}

void AsideFile::putInPlace() {
  requireWhole();
  requireFree(path_);
  if (!QFile::rename(aside_, path_))
    refuse(err::PathFileAccess, path_, QStringLiteral("the file cannot be created"));
  syncDirectory(QFileInfo(path_).absolutePath());
}

}  // namespace lens

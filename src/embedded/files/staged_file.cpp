#include "embedded/files/staged_file.h"

#include <QFile>
#include <QFileInfo>

#ifdef Q_OS_UNIX
#include <fcntl.h>
#include <unistd.h>
#endif

#include "embedded/format/engine_fault.h"
#include "notes/literals.h"
#include "notes/runtime_error.h"

namespace lens {
namespace {

[[noreturn]] void refuse(int number, const QString& path, const QString& reason) {
  throw RuntimeError(number, u"%1: %2"_s.arg(path, reason));
}

void requireFree(const QString& path) {
  const QFileInfo file(path);
  if (file.exists() || file.isSymLink()) refuse(err::FileExists, path, u"the file exists already"_s);
}

// A journal of a file that had this name would be played into the new one. One that holds nothing goes.
void requireNoJournals(const QString& path) {
  for (const char* suffix : {"-wal", "-journal"}) {
    const QString journal = path + QLatin1String(suffix);
    if (QFileInfo(journal).size() > 0)
      refuse(err::PathFileAccess, path,
             u"the file %1 of an earlier database is beside it; move it away first"_s.arg(journal));
  }
  for (const char* suffix : {"-wal", "-shm", "-journal"}) QFile::remove(path + QLatin1String(suffix));
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

StagedFile::StagedFile(const QString& path, Old old)
    : path_(path), staged_(path + u".new"_s), lock_(path, 0) {
  if (old == Old::Refuse) requireFree(path);
  if (!QFileInfo(QFileInfo(path).absolutePath()).isDir())
    refuse(err::PathNotFound, path, u"there is no such directory"_s);
  if (lock_.state() == FileLock::State::Taken)
    refuse(err::PathFileAccess, path, u"the file is being made by another program already"_s);
  if (lock_.state() == FileLock::State::Impossible)
    refuse(err::PathFileAccess, path, u"the file cannot be created"_s);
  removeWithJournals(staged_);
}

StagedFile::~StagedFile() {
  removeWithJournals(staged_);
}

void StagedFile::requireWhole() const {
  // What the disk had no room for is still in the journal.
  if (QFileInfo(staged_ + u"-wal"_s).size() > 0)
    refuse(enginefault::NotSaved, path_, u"the file could not be written to its end"_s);
}

void StagedFile::requireFreePlace() const {
  requireFree(path_);
  requireNoJournals(path_);
}

void StagedFile::putInPlace() {
  requireWhole();
  requireFreePlace();
  if (!QFile::rename(staged_, path_)) refuse(err::PathFileAccess, path_, u"the file cannot be created"_s);
  syncDirectory(QFileInfo(path_).absolutePath());
}

bool StagedFile::takeInPlace(const QString& file) {
  if (!QFile::rename(file, path_)) return false;
  syncDirectory(QFileInfo(path_).absolutePath());
  return true;
}

}  // namespace lens

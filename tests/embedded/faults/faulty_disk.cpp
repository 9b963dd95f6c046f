#include "faulty_disk.h"

#include <sqlite3.h>
#include <unistd.h>

#include <cstdlib>
#include <cstring>
#include <limits>

namespace lens::testbed {
namespace {

constexpr int kNever = std::numeric_limits<int>::max();
int changesSeen = 0;
int deathAt = kNever;
int fullAt = kNever;

bool mayChange() {
  return FaultyDisk::mayChange();
}

// A file of the real file system stands behind each of ours, in the same piece of memory.
struct File {
  sqlite3_file base;
  sqlite3_file* real() { return reinterpret_cast<sqlite3_file*>(this + 1); }
};
sqlite3_file* real(sqlite3_file* file) {
  return reinterpret_cast<File*>(file)->real();
}
sqlite3_vfs* disk() {
  static sqlite3_vfs* const found = sqlite3_vfs_find("unix");
  return found;
}

int close(sqlite3_file* file) {
  return real(file)->pMethods ? real(file)->pMethods->xClose(real(file)) : SQLITE_OK;
}
int read(sqlite3_file* file, void* to, int count, sqlite3_int64 at) {
  return real(file)->pMethods->xRead(real(file), to, count, at);
}
int write(sqlite3_file* file, const void* from, int count, sqlite3_int64 at) {
  return mayChange() ? real(file)->pMethods->xWrite(real(file), from, count, at) : SQLITE_FULL;
}
int truncate(sqlite3_file* file, sqlite3_int64 size) {
  mayChange();  // a full disk can still make a file shorter
  return real(file)->pMethods->xTruncate(real(file), size);
}
int sync(sqlite3_file* file, int flags) {
  mayChange();
  return real(file)->pMethods->xSync(real(file), flags);
}
int fileSize(sqlite3_file* file, sqlite3_int64* size) {
  return real(file)->pMethods->xFileSize(real(file), size);
}
int lock(sqlite3_file* file, int kind) {
  return real(file)->pMethods->xLock(real(file), kind);
}
int unlock(sqlite3_file* file, int kind) {
  return real(file)->pMethods->xUnlock(real(file), kind);
}
int checkReservedLock(sqlite3_file* file, int* result) {
  return real(file)->pMethods->xCheckReservedLock(real(file), result);
}
int fileControl(sqlite3_file* file, int operation, void* argument) {
  return real(file)->pMethods->xFileControl(real(file), operation, argument);
}
int sectorSize(sqlite3_file* file) {
  return real(file)->pMethods->xSectorSize(real(file));
}
int deviceCharacteristics(sqlite3_file* file) {
  return real(file)->pMethods->xDeviceCharacteristics(real(file));
}
int shmMap(sqlite3_file* file, int page, int size, int extend, void volatile** memory) {
  return real(file)->pMethods->xShmMap(real(file), page, size, extend, memory);
}
int shmLock(sqlite3_file* file, int offset, int count, int flags) {
  return real(file)->pMethods->xShmLock(real(file), offset, count, flags);
}
void shmBarrier(sqlite3_file* file) {
  real(file)->pMethods->xShmBarrier(real(file));
}
int shmUnmap(sqlite3_file* file, int deleteFlag) {
  return real(file)->pMethods->xShmUnmap(real(file), deleteFlag);
}

const sqlite3_io_methods kMethods = {2,
                                     close,
                                     read,
                                     write,
                                     truncate,
                                     sync,
                                     fileSize,
                                     lock,
                                     unlock,
                                     checkReservedLock,
                                     fileControl,
                                     sectorSize,
                                     deviceCharacteristics,
                                     shmMap,
                                     shmLock,
                                     shmBarrier,
                                     shmUnmap,
                                     nullptr,
                                     nullptr};

int open(sqlite3_vfs*, const char* name, sqlite3_file* file, int flags, int* outFlags) {
  std::memset(file, 0, sizeof(File));
  const int status = disk()->xOpen(disk(), name, real(file), flags, outFlags);
  file->pMethods = real(file)->pMethods ? &kMethods : nullptr;
  return status;
}
int erase(sqlite3_vfs*, const char* name, int syncDirectory) {
  mayChange();
  return disk()->xDelete(disk(), name, syncDirectory);
}

// Made once: takes the place of the file system that SQLite uses by itself.
void install() {
  static sqlite3_vfs ours;
  if (ours.zName) return;
  ours = *disk();
  ours.zName = "faulty";
  ours.szOsFile = int(sizeof(File)) + disk()->szOsFile;
  ours.pNext = nullptr;
  ours.xOpen = open;
  ours.xDelete = erase;
  sqlite3_vfs_register(&ours, 1);
}

void set(int death, int full) {
  install();
  changesSeen = 0;
  deathAt = death;
  fullAt = full;
}

}  // namespace

void FaultyDisk::count() {
  set(kNever, kNever);
}
void FaultyDisk::dieAt(int change) {
  set(change, kNever);
}
void FaultyDisk::fullFrom(int change) {
  set(kNever, change);
}
// Everything that changes a file comes by here.
bool FaultyDisk::mayChange() {
  ++changesSeen;
  if (changesSeen >= deathAt) _exit(kDied);
  return changesSeen < fullAt;
}
int FaultyDisk::changes() {
  return changesSeen;
}

}  // namespace lens::testbed

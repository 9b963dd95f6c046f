// Files that are written past SQLite (settings, extracted files, exports): the calls of the C library that
// change them pass by the faulty disk. What SQLite itself writes goes through its file system
// (faulty_disk.cpp) and other calls.
#include <dlfcn.h>
#include <errno.h>
#include <sys/stat.h>
#include <unistd.h>

#include "faulty_disk.h"

namespace {

template <class Function>
Function* next(const char* name) {
  return reinterpret_cast<Function*>(dlsym(RTLD_NEXT, name));
}

// Pipes and terminals are no files that could be half.
bool isFile(int descriptor) {
  struct stat status;
  return fstat(descriptor, &status) == 0 && S_ISREG(status.st_mode);
}

}  // namespace

extern "C" ssize_t write(int descriptor, const void* bytes, size_t count) {
  static auto* const real = next<ssize_t(int, const void*, size_t)>("write");
  if (isFile(descriptor) && !lens::testbed::FaultyDisk::mayChange()) {
    errno = ENOSPC;
    return -1;
  }
  return real(descriptor, bytes, count);
}

extern "C" int rename(const char* from, const char* to) noexcept {
  static auto* const real = next<int(const char*, const char*)>("rename");
  lens::testbed::FaultyDisk::mayChange();  // a full disk can still rename
  return real(from, to);
}

#include "host/save_file.h"

#ifdef Q_OS_UNIX
#include <unistd.h>

#include <cerrno>
#endif

namespace lens {
namespace {

// Some file systems find room only now; one that knows no such call promises nothing.
bool isOnDisk([[maybe_unused]] const QSaveFile& file) {
#ifdef Q_OS_UNIX
  return ::fsync(file.handle()) == 0 || errno == EINVAL || errno == EROFS;
#else
  return true;
#endif
}

}  // namespace

bool commitWhole(QSaveFile& file) {
  if (file.flush() && isOnDisk(file)) return file.commit();
  file.cancelWriting();
  file.commit();
  return false;
}

}  // namespace lens

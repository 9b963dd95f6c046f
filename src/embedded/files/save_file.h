// The end of a file that was staged.
#pragma once

#include <QSaveFile>

namespace lens {

// False when it could not be written to its end; the file that was there stays then. What is still buffered
// has to go first: commit() does not tell when there is no room for it, and would put a cut file in place.
inline bool commitWhole(QSaveFile& file) {
  return file.flush() && file.commit();
}

}  // namespace lens

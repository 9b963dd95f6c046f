// The end of a file that is written whole or not at all: a QSaveFile stands aside until it takes its place.
#pragma once

#include <QSaveFile>

namespace lens {

// False when it could not be written to its end; the file that was there stays then. What is still buffered
// has to go first, and to the disk: commit() does not tell when there is no room for it, and would put a cut
// file in place. Who writes asks each write how much it took, for a file takes one that is cut short without
// a word.
bool commitWhole(QSaveFile& file);

}  // namespace lens

// Files that are written whole or not at all: a QSaveFile stands aside until it takes its place.
#pragma once

#include <QByteArray>
#include <QSaveFile>
#include <QString>

namespace lens {

// False when it could not be written to its end; the file that was there stays then. What is still buffered
// has to go first, and to the disk: commit() does not tell when there is no room for it, and would put a cut
// file in place. Who writes asks each write how much it took, for a file takes one that is cut short without
// a word.
bool commitWhole(QSaveFile& file);

// Before a file is written: raises 76 when its directory is missing, which the user can make, 70 for a
// database that is open, and 75 where no file can be, such as in the place of a directory or device.
void requireWritablePlace(const QString& path);
// Raises 75 with the file's name and the reason.
[[noreturn]] void failToWrite(const QString& path, const QString& reason);

// Puts the bytes into the place of a file, whole. One that may not be changed is not replaced either, though
// its directory would let it. Raises what requireWritablePlace() raises, and 75 for any other trouble; the
// file that was there stays then.
void replaceWhole(const QString& path, const QByteArray& bytes);

}  // namespace lens

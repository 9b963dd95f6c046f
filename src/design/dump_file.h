// The text file that a list of fields is written to.
#pragma once

#include <QString>
#include <QStringList>

namespace lens {

// The path of a file as it was typed. Where there are no drives, a drive means the user's home directory and
// "\" separates directories, so that a path from another desk ends up where the user finds the file.
QString dumpPath(const QString& typed);

// Writes the lines in the system's code page with the system's line ends; characters that the code page
// lacks become "?". An older file is replaced only when all lines are on disk. Raises 76 when the directory
// is missing and 75 for any other trouble.
void writeDump(const QString& path, const QStringList& lines);

}  // namespace lens

// Paths as the procedures write them, on any platform.
#pragma once

#include <QString>

namespace lens {

// "\" means the host's separator.
QString hostPath(QString path);
// The existing file or directory that a path means, "" when there is none. Where names are
// case-sensitive, a part that does not exist is looked for without regard to case.
QString findPath(const QString& path);

// The path of a file as a user typed it. Where there are no drives, a drive means the user's home directory
// and "\" separates directories, so that a path from another desk ends up where the user finds the file.
QString typedPath(const QString& typed);
// What stands behind the last "." of the last part of a path, whose parts either separator parts; "" when
// there is no "." or nothing behind it.
QString extensionOf(const QString& path);
// Whether a file can be made in a directory, found out by making one.
bool takesFiles(const QString& directory);

// Directory and name with the host's separator between them, save where the directory ends in one.
QString joinedPath(const QString& directory, const QString& name);
// Deletes a file: 53 when there is none, 75 when it is a directory, 70 when it cannot be deleted.
void removeFile(const QString& path);

}  // namespace lens

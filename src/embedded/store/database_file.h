// The file of a database: its head, its schema, how it comes into being.
#pragma once

#include <QString>

#include "embedded/format/timedate.h"
#include "embedded/store/own_schema.h"

namespace lens {

// Raises when the file is missing (53), unreadable (70), none of ours, or of a newer schema. Reads the
// head only and opens no database, so a foreign file and its directory stay as they are.
void requireDatabaseFile(const QString& path);
bool hasDatabaseHead(const QString& path);

enum class FileAccess {
  ReadWrite,
  ReadOnly,  // others may write while we read
  Constant,  // nobody writes: read without locks, and without a file beside it
};
// A file without write permission is opened for reading only, whoever runs the program.
FileAccess accessTo(const QString& path);
// For Connection.
inline int openFlags(FileAccess access) {
  return (access == FileAccess::ReadWrite ? SQLITE_OPEN_READWRITE : SQLITE_OPEN_READONLY) |
         SQLITE_OPEN_NOMUTEX;
}

// Gives a database of an older schema what it lacks, and takes out derived data that is laid out otherwise.
void bringUpToDate(Connection& connection, FileAccess access, const SchemaFindings& findings);

// Stages an empty database (StagedFile); raises 58 when there is a file, 76 without a directory. On
// failure nothing is left.
void createDatabaseFile(const QString& path);

// Replica IDs are times. This is now, or a little later where two are asked for within a hundredth of a
// second: databases that were made at once must never be taken for replicas of each other.
TimeDate newIdTime();

}  // namespace lens

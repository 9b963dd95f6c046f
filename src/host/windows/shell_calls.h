// What the shell of the system does with files.
//
// Names go to it in its wide characters: a file is found whatever letters its name has.
#pragma once

#include <QString>

namespace lens {

// Opens a file with the program that it belongs to; the shell's own code, above 32 when it was started.
int shellExecute(const QString& path);
// Starts the system's choice of a program for a file; the process ID of the choice, 0 when it did not start.
qint64 shellOpenAs(const QString& path);
// The system's own box about a file or directory, which stays open beside the program.
void shellProperties(const QString& path);

}  // namespace lens

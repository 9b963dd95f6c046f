// Runs a command: parses its line, opens the doors, calls it, and turns what goes wrong into one line on
// standard error and an exit code. No process is needed: a test hands in its own ends.
#pragma once

#include <functional>

#include "command/command_call.h"

namespace lens {

// Whether these arguments (without the program's name) are for the command line. The windows take everything
// else: no argument at all, options of the desktop, and files.
bool isForCommandLine(const QStringList& arguments);

// The directory that "--workspace DIR" names where no command follows it, so that the windows open it; ""
// otherwise.
QString workspaceOfWindows(const QStringList& arguments);

// The files and folders that the windows are to open, as absolute paths; nothing where a command is asked
// for.
QStringList filesOfWindows(const QStringList& arguments);

// Opens the doors on the workspace of that directory; "" means that none was named.
using DoorOpener = std::function<Doors(const QString& workspace)>;

// Returns one of the exit codes. Everything written has reached its receiver then, or the code says
// otherwise.
int runCommand(const QStringList& arguments, const Console::Ends& ends, const DoorOpener& open);

}  // namespace lens

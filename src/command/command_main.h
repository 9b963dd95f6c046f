// The program as a command: a process without windows, display or fonts.
#pragma once

#include <optional>

namespace lens {

// Runs the command that the arguments ask for and gives its exit code. Nothing where they ask for the
// windows; a
// "--workspace DIR" among them then names the workspace of the process.
std::optional<int> runAsCommand(int argc, char** argv);

}  // namespace lens

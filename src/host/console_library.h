// The library for the console of a server, where one lies beside the program.
#pragma once

#include "host/host.h"

namespace lens {

// Empty when there is no such file in the directory; raises 48 when it cannot be loaded and 453 when it
// lacks the function.
RemoteCommand consoleLibraryIn(const QString& directory);

}  // namespace lens

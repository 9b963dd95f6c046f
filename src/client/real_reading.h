// Reading a real database of the platform before it is opened: a large one takes a while.
#pragma once

#include "embedded/workspace/workspace.h"

namespace lens {

struct ClientControls;

// Makes the copy of a real database that opening it needs, on a thread of its own; the work bar shows how far
// it is and ends it. True where the database can be opened at once afterwards, and for everything that is no
// real database. False when the user gave up, when the window is busy with something else, and when the
// window has gone meanwhile. Raises what reading raises.
bool readBeforeOpening(ClientControls& controls, const Workspace& workspace, const DatabasePlace& place);

}  // namespace lens

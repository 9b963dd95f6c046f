// The first start: a workspace without databases is filled with the samples that the program carries,
// so that the first screen shows a real document.
#pragma once

#include "embedded/workspace/workspace.h"

namespace lens {

// Fills a workspace that has no database at all: an address book on a server, a mail file, a
// discussion with its template and the help on the local machine, a replica of the discussion on another
// server. Of several programs that start at once one fills it, and the others wait. Raises what the import
// raises, and 75 when the other one comes to no end.
void fillFirstTime(Workspace& workspace);

// Puts the mail file of the samples on top in the client, with its first document open. Nothing when
// there is no such file. Whoever holds the result spares the first capture from opening the file again.
std::shared_ptr<Database> openSampleMail(Workspace& workspace);

}  // namespace lens

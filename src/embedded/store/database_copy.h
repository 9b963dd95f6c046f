// A database as a whole, written to a new file.
#pragma once

#include "embedded/store/database.h"

namespace lens {

// A copy as the database stands, everything in it included, under a replica ID of its own: the two never
// replicate. Written aside and renamed. Raises 58 when there is such a file, 76 without its directory.
void copyDatabase(const Database& from, const QString& to);

// The pages of a database as they stand, its journal included, into a new file. Raises what opening it
// raises, and NotSaved when the copy finds no room; nothing is left then.
void copyPages(const QString& from, const QString& to);

}  // namespace lens

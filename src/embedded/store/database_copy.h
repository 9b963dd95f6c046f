// A database as a whole, written to a new file.
#pragma once

#include <functional>

#include "embedded/store/database.h"

namespace lens {

// How far a copy is, in parts of the whole, whose number may be a little too large. False ends it.
using CopyProgress = std::function<bool(qint64 done, qint64 total)>;

// A copy as the database stands, everything in it included, under a replica ID of its own: the two never
// replicate. Written aside and renamed. False when it was ended; nothing is left then. Raises 58 when there
// is such a file, 76 without its directory, NotSaved when the copy finds no room.
bool copyDatabase(const Database& from, const QString& to, const CopyProgress& go = {});

// The pages of a database as they stand, its journal included, into a new file. Raises what opening it
// raises, and NotSaved when the copy finds no room; nothing is left then.
void copyPages(const QString& from, const QString& to);

}  // namespace lens

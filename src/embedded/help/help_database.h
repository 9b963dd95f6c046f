// The help database of the embedded engine, as every client with Designer has one: a topic for each
// @function, for LotusScript and for Java, and the notes that every database has.
#pragma once

#include "embedded/store/database.h"

namespace lens {

// Fills an empty database in one transaction. Raises what saving raises; then nothing is there.
void fillHelpDatabase(Database& help);

}  // namespace lens

// A topic for each @function, made from the table that the compiler uses.
#pragma once

#include "embedded/store/database.h"

namespace lens {

// All topics in one transaction. Raises what saving raises; then none is there.
void addFunctionTopics(Database& help);

}  // namespace lens

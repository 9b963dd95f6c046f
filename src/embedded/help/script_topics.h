// Topics for LotusScript: statements and functions of the language, and classes of the object model with
// the members that people look for most.
#pragma once

#include "embedded/store/database.h"

namespace lens {

// All topics in one transaction.
void addScriptTopics(Database& help);

}  // namespace lens

// Topics for Java: the classes of the object model and the methods that people look for most.
#pragma once

#include "embedded/store/database.h"

namespace lens {

// All topics in one transaction.
void addJavaTopics(Database& help);

}  // namespace lens

// The help database of the embedded engine: a topic for each @function, made from the table that the
// compiler uses.
//
// A topic is a document with the items Subject ("@Left"), TopicType ("About"), _Parent (the chapter it
// belongs to) and Body. Readers select topics by these items.
#pragma once

#include "embedded/store/database.h"

namespace lens {

// All topics in one transaction. Raises what saving raises; then none is there.
void addFunctionTopics(Database& help);

}  // namespace lens

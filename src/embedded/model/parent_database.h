// What a document asks of the object of its database, whose class it does not know: databases give
// documents, so they stand above them.
#pragma once

#include "embedded/model/model_context.h"
#include "notes/bridge.h"

namespace lens {

// A new object for the database that an object belongs to.
Value parentDatabase(const std::shared_ptr<OpenDatabase>& database);
// The database behind an argument. Null when the argument is none; raises when it is not open.
std::shared_ptr<OpenDatabase> databaseBehind(const Value& argument);

}  // namespace lens

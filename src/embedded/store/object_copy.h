// Objects (attachments, run data of agents, whatever an item of type Object refers to) on their way from one
// database into another.
#pragma once

#include "embedded/store/database.h"

namespace lens {

// Whether an item has a number where objects are referred to. What is there may be no object all the same:
// of kinds that are not known the number may mean something else.
bool mayReferToObject(const Item& item);

// Copies an object piece by piece and gives its number in the other database. Raises when it is missing or
// damaged, or cannot be written there.
quint32 copyObject(const Database& from, quint32 object, Database& to);

}  // namespace lens

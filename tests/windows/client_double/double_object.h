// An object of the engine as the automation object of a server: one adapter for every class.
#pragma once

#include "notes/automation/windows/com_reference.h"
#include "notes/bridge.h"

namespace lens {

// Counted for the caller.
IDispatch* newDoubleObject(const Object& target);
// How many of them are referred to.
long livingDoubleObjects();

}  // namespace lens

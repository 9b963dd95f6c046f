// What an action raises.
#pragma once

#include <QString>

#include "notes/runtime_error.h"

namespace lens {

// The number of the RuntimeError that the action raises, 0 when it raises none.
template <class Action>
int errorNumber(Action action, QString* description = nullptr) {
  try {
    action();
  } catch (const RuntimeError& error) {
    if (description) *description = error.description();
    return error.number();
  }
  return 0;
}

}  // namespace lens

// How the workspace fails.
#pragma once

#include "embedded/format/engine_fault.h"
#include "notes/literals.h"
#include "notes/runtime_error.h"

namespace lens {

[[noreturn]] inline void failWorkspace(int number, const QString& what, const QString& reason) {
  throw RuntimeError(number, u"%1: %2"_s.arg(what, reason));
}

}  // namespace lens

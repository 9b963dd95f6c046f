// The box of the commands that leave the document in memory other than it is stored.
#pragma once

#include "host/host.h"
#include "notes/literals.h"
#include "notes/runtime_error.h"

namespace lens {

// The text comes from the number, whatever the model described: users look the sentences up.
inline void showReloadBox(Host& host, const RuntimeError& error, const QString& title) {
  host.messageBox(standardErrorText(error.number()) + u" (please Reload the document again)"_s,
                  box::Information, title);
}

}  // namespace lens

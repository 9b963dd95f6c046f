// What a call of an automation object tells of its failure, as the error that procedures meet.
#pragma once

#include <QString>

#include "notes/runtime_error.h"

namespace lens {

// What the server said of an exception of its own; empty where the call itself failed.
struct AutomationException {
  quint16 code = 0;   // the server's number, or
  quint32 scode = 0;  // a status in its place
  QString description;
};

// The status that says that the exception tells more.
inline constexpr quint32 kExceptionOccurred = 0x80020009;

// The number is the server's own; a status of a known meaning has the number that this meaning has
// everywhere, and any other stands for itself as a signed number. The text is the server's, else that of the
// number.
RuntimeError automationError(quint32 status, const AutomationException& exception = {});

}  // namespace lens

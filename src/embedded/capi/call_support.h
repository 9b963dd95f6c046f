// What the functions of the C API share.
#pragma once

#include <algorithm>
#include <cstring>

#include "embedded/capi/status.h"

namespace lens {

// Failures of the engine leave as the status that tells them best.
template <class Body>
Status guarded(const Body& body) {
  try {
    return body();
  } catch (const RuntimeError& error) {
    return statusOf(error);
  }
}

// Text into a buffer that the caller has made: the rest of the buffer stays as it is, and a NUL
// follows where there is room for one.
inline quint16 put(const QByteArray& text, QByteArray& buffer, qsizetype limit) {
  const qsizetype length = std::min(text.size(), std::max<qsizetype>(limit, 0));
  if (buffer.size() < length) buffer.resize(length);
  std::memcpy(buffer.data(), text.constData(), size_t(length));
  if (length < buffer.size() && length < limit) buffer[length] = '\0';
  return quint16(length);
}

}  // namespace lens

// A look at every place of a file where something may begin.
#pragma once

#include <functional>

#include "embedded/nsf/nsf_source.h"

namespace lens {

// Shows each unit of 256 bytes from there on with so many bytes behind its start; no unit that has fewer.
// What the visitor gets is valid during its call. Ends where the file cannot be read.
void scanUnits(const NsfSource& source, qint64 from, qint64 lookAhead,
               const std::function<void(qint64 position, QByteArrayView bytes)>& visit);

}  // namespace lens

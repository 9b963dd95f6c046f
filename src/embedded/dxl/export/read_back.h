// Whether what is about to be written comes back: it is written aside first, and read as an import reads it.
#pragma once

#include <functional>

#include "embedded/dxl/export/dxl_writer.h"
#include "embedded/dxl/import_context.h"

namespace lens {

// Reads XML that stands in memory; the reader stands before the root. False when it is refused.
bool readAside(const QByteArray& xml, const std::function<bool(ReadContext&)>& read);

// False when the writing says so, or the reading.
bool comesBack(const std::function<bool(DxlWriter&)>& write, const std::function<bool(ReadContext&)>& read);

bool isSameItem(const Item& a, const Item& b);

}  // namespace lens

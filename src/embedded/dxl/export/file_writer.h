// Items of type Object: attachments as "object/file" with their bytes, other objects as raw data.
#pragma once

#include "embedded/dxl/export/export_context.h"

namespace lens {

// Writes the value into the "item" element at hand. The bytes go through in chunks. Raises when they
// are damaged or an attachment has none.
void writeObjectValue(ExportContext& context, const Item& item);

}  // namespace lens

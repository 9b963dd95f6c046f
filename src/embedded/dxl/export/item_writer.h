// The "item" element: in the elements of its type where they give the value back, else as raw data.
#pragma once

#include "embedded/dxl/export/export_context.h"

namespace lens {

void writeItem(ExportContext& context, const Item& item);

}  // namespace lens

// The "item" element: in the elements of its type where they give the value back, else as raw data.
#pragma once

#include "embedded/dxl/export/export_context.h"

namespace lens {

// joined tells that an import would take the item for a further piece of the rich text before it.
void writeItem(ExportContext& context, const Item& item, bool joined);

}  // namespace lens

// The "item" element: in the elements of its type where they give the value back, else as raw data.
#pragma once

#include "embedded/dxl/export/export_context.h"

namespace lens {

// An item of the note, of which other items may tell what its formulas need.
void writeItem(ExportContext& context, const Note& note, const Item& item);
// Rich text with the elements that the items before it keep; false, and nothing written, when they would not
// come back.
bool writeItemWithKept(ExportContext& context, const Item& item, const QVector<Item>& kept);

}  // namespace lens

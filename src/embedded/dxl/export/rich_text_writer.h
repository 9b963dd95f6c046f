// Rich text as DXL elements.
//
// Paragraphs, runs of text, tables, links, anchors and references to attachments have elements of their
// own; any other record, and one of these in a form that its element does not give back, stands between
// them as "compositedata".
#pragma once

#include "embedded/dxl/export/dxl_writer.h"

namespace lens {

// Writes a "richtext" element, or nothing and gives false when the data (without its type word) has no
// paragraph or would read back as other data. Each text is read back before it is written.
bool writeRichText(DxlWriter& out, QByteArrayView data);

}  // namespace lens

// Rich text as DXL elements.
//
// Paragraphs, runs of text, tables, links, anchors and references to attachments have elements of their
// own; any other record, and one of these in a form that its element does not give back, stands between
// them as "compositedata".
#pragma once

#include "embedded/dxl/export/dxl_writer.h"
#include "embedded/format/note.h"

namespace lens {

// Writes a "richtext" element, or nothing and gives false when the data (without its type word) has no
// paragraph or would read back as other data. Each text is read back before it is written. The elements that
// an import kept, as the items before the rich text have them, stand where they stood, the fields of a form
// are elements where asked for.
bool writeRichText(DxlWriter& out, QByteArrayView data, const QVector<Item>& kept = {}, bool fields = false);

}  // namespace lens

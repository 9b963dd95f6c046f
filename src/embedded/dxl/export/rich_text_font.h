// The "font" element and the runs of text that have one.
#pragma once

#include "embedded/dxl/export/dxl_writer.h"
#include "embedded/richtext/rich_element.h"

namespace lens {

// False, and nothing written, when the font has a part that no attribute names.
bool writeFontElement(DxlWriter& out, const RichFont& font);
// The same with the start of the "run" around it.
bool beginRun(DxlWriter& out, const RichFont& font);

}  // namespace lens

// Whole notes: documents and profile documents under their own elements, everything else as "note".
#pragma once

#include "embedded/dxl/export/export_context.h"
#include "embedded/store/large_note.h"

namespace lens {

// Raises when the target cannot be written or an attachment is damaged; the fault names the note.
void writeNote(ExportContext& context, const Note& note, const LargeValues& large);

}  // namespace lens

// Parts of a note that all elements of notes have.
#pragma once

#include "embedded/dxl/export/export_context.h"
#include "embedded/store/large_note.h"

namespace lens {

void writeNoteInfo(DxlWriter& out, const NoteHeader& header);
void writeItems(ExportContext& context, const Note& note, const LargeValues& large, qsizetype from);

}  // namespace lens

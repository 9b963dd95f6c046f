// The four flag boxes of the window, written to an item.
#pragma once

#include "notes/objects/notes_item.h"
#include "shell/error_modes.h"
#include "shell/form1.h"

namespace lens {

// In the order of the window; any value but 0 counts as set.
void writeFlags(Statements& step, const Form1& form, const NotesItem& item);

}  // namespace lens

// Search and replace inside a rich text item.
#pragma once

#include <QString>

#include "notes/objects/notes_item.h"
#include "shell/error_modes.h"

namespace lens {

// Replaces all hits over the whole item, without regard to case, and compacts the item when there were any.
// Gives back whether there were.
bool replaceInRichText(Statements& step, const NotesRichTextItem& item, const QString& search,
                       const QString& replace);

}  // namespace lens

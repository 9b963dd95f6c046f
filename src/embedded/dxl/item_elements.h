// The "item" element and its kinds of values.
#pragma once

#include "embedded/dxl/import_context.h"

namespace lens {

// The reader stands at "item". Adds the item to the note; a further piece of a rich text item is
// joined to the first.
void readItem(ImportContext& context, Note& note);

// The reader stands at an element that holds "text" or "name" elements.
QStringList readTexts(ReadContext& context);

// The reader stands at "formula": the item value, compiled or as source.
QByteArray readFormula(ReadContext& context, const QString& what);

// The whole MIME message in the element at hand becomes MIME items of that name.
void readMime(ImportContext& context, Note& note, const QString& itemName);

}  // namespace lens

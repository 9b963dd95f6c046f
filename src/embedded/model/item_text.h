// What an item holds, as the object model gives it.
#pragma once

#include "embedded/format/note.h"
#include "host/regional.h"
#include "notes/bridge.h"

namespace lens {

// The values of an item: rich text is an array with its plain text.
Value valuesOf(const Item& item);
// All values as text, parted by ";": dates by the region, rich text as plain text, "$FILE" as the file name,
// a formula as its source. "" for types that have no text.
QString itemAsText(const Item& item, const Regional& regional);

}  // namespace lens

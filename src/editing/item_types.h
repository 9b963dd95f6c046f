// Item types as the object model tells them, as far as the editing commands know them.
#pragma once

#include "notes/bridge.h"
#include "notes/literals.h"
#include "notes/numbers.h"

namespace lens {

namespace itemcode {
inline constexpr int RichText = 1, Number = 768, Date = 1024, Names = 1074, Readers = 1075, Authors = 1076,
                     Text = 1280;
}  // namespace itemcode

// The type of an item as a 16-bit number; raises 91 for no item.
inline int itemType(const Object& item) {
  return Int16(roundToInt32(item.get(u"Type"_s).number()));
}

}  // namespace lens

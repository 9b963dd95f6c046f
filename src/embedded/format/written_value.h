// The stored value that a value of the object model becomes when a program writes it into an item.
#pragma once

#include <QByteArray>

#include "notes/bridge.h"

namespace lens {

// A text, number or date, or a list of one of these. One value takes the single form, also in a list, so
// that an item's size tells its text; more take the list form. Raises 13 for a list of mixed kinds, for a
// place without a value and for everything else, 5 for a list without places, 6 for what has no form: a
// program that made a mistake must not leave an item without its value.
QByteArray writtenValue(const Value& value);

}  // namespace lens

// Formulas in items: a design note may hold one as the text that a person wrote, or compiled.
#pragma once

#include <QString>

#include "embedded/format/item_value.h"

namespace lens {

// The source text of an item: a formula item may hold it (embedded/format/source_formula.h tells how), a
// text item is its own source. False for compiled code and for items of any other type.
bool formulaSource(const Item& item, QString& source);

}  // namespace lens

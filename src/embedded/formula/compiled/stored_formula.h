// Formulas as items and records hold them: as source behind a zero word, in the platform's compiled form, or
// as plain text.
#pragma once

#include "embedded/format/item_value.h"
#include "embedded/formula/compiled/compiled_formula.h"

namespace lens::formula {

// Of a formula that is there as source: without a tree, and with proven names only.
CompiledReading sourceReading(const QString& source);

// Either form, without an item's type word. Time constants are written by the machine's region.
CompiledReading readStored(QByteArrayView data, ShownSelect select = ShownSelect::AsTyped);

// What is shown of a formula: its source, that it is hidden, or "" when nothing can be told of it.
QString shownFormula(QByteArrayView data, ShownSelect select = ShownSelect::AsTyped);

// The same of an item; a text item is its own source. False for an item of any other type, and for bytes of
// which nothing can be told.
bool formulaSource(const Item& item, QString& source);

}  // namespace lens::formula

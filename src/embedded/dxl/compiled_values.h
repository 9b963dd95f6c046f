// Formulas that stand as source in the items of a design note, which other programs cannot run there: in the
// compiled form, for notes that are exported raw.
#pragma once

#include "embedded/format/note.h"

namespace lens {

// The value of an item of the note, type word included: columns and selection of a view, formulas of fields
// and agents compiled. What has no compiled form stays as it is. Empty where nothing is to be changed.
QByteArray compiledValue(const Note& note, const Item& item);

// Whether the first value is the second one with its formulas compiled. Of a selection the names of the
// columns are not looked at.
bool isCompiledFrom(const QByteArray& compiled, const QByteArray& stored);

}  // namespace lens

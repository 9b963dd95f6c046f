// All formulas that a note holds, wherever they stand in it.
//
// A formula is an item of its own ($Formula, $WindowTitle), belongs to a column ($ViewFormat), an agent
// ($AssistAction) or a field, lies in a record of design (a hide-when condition, an action, a hotspot) or in
// an entry of an outline, or stands in an element that an import kept as XML. Where formulas lie in such
// records was found in real designs.
#pragma once

#include <QVector>

#include "embedded/format/note.h"
#include "embedded/formula/compiled/compiled_formula.h"

namespace lens {

struct NoteFormula {
  QString item;   // that holds it
  QString place;  // "column $0", "field Subject, default value", "hide-when"; "" when it is the whole item
  formula::CompiledReading reading;
  qsizetype itemPlace = 0;  // of the item in the note: several may have one name
};

// In the order of the note's items, those of kept elements last. Records whose bytes are damaged are passed
// over; a formula that cannot be read, or is hidden, is there with its reason.
QVector<NoteFormula> formulasOf(const Note& note);

}  // namespace lens

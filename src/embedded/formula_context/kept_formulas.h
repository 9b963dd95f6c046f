// The formulas of design elements that an import keeps as XML: actions, hide-when conditions, events, and
// whatever else the records of a note have no place for.
#pragma once

#include <QVector>

#include "embedded/formula/compiled/compiled_formula.h"

namespace lens {

struct KeptFormula {
  QString place;  // "action Save, click", "pardef 3, hide-when"
  formula::CompiledReading reading;
  // An import reads formulas in such a place into items of the note, too.
  bool readElsewhere = false;
};

// In the order of the XML of one element. XML that is damaged gives what stands before the fault.
QVector<KeptFormula> formulasOfElement(const QString& xml);

}  // namespace lens

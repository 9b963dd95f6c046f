// Formulas that stand in records of the design, and the fields of a form that have them.
#pragma once

#include "embedded/dxl/export/dxl_writer.h"

namespace lens {

// "formula": its source, beside which a mark of ours keeps the compiled form that it was stored in; the
// compiled form alone where that has no source that others could take. The bytes are those of a record or an
// item without its type word.
void writeFormulaElement(DxlWriter& out, QByteArrayView formula);
// The same within "code".
void writeFormulaCode(DxlWriter& out, const QString& event, QByteArrayView formula);

// Writes "field", in a text within a run of its font, when it gives the record back.
enum class FieldPlace { InText, Alone };
bool writeFieldElement(DxlWriter& out, const QByteArray& record, FieldPlace place);

}  // namespace lens

// The "field" element of forms, subforms and pages, and of shared fields.
#pragma once

#include "embedded/dxl/rich_text_elements.h"

namespace lens {

// The reader stands at "field". Adds to the fields and gives the record for the form's body; empty
// when no record can hold it. What the record does not say stays as XML in an item of the note.
QByteArray readFormField(ReadContext& context, Note& note, const RichFont& font, QVector<FormField>& fields);

// Placeholder items and "$Fields" for the fields of a form.
void addFieldItems(Note& note, const QVector<FormField>& fields);

}  // namespace lens

// The "field" element of forms, subforms and pages, and of shared fields.
#pragma once

#include <array>

#include "embedded/dxl/rich_text_elements.h"
#include "embedded/dxl/rich_text_records.h"

namespace lens {

// The reader stands at "field". Adds to the fields and gives the record for the form's body; empty
// when no record can hold it. What the record does not say stays as XML in an item of the note.
QByteArray readFormField(ReadContext& context, Note& note, const RichFont& font, QVector<FormField>& fields);

// The words for type and kind of a field as its record has them, and attributes that are one flag each.
QString fieldTypeWord(const FieldRecord& field);
QString fieldKindWord(const FieldRecord& field);
struct FieldFlagWord {
  const char16_t* attribute;
  quint16 flag;
};
extern const std::array<FieldFlagWord, 3> kFieldFlagWords;

// Placeholder items and "$Fields" for the fields of a form.
void addFieldItems(Note& note, const QVector<FormField>& fields);

}  // namespace lens

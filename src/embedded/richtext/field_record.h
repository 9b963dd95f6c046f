// The record of a field in the text of a form, as it is found in forms of all releases:
//
//   u8 kind, FFh, u16 length of the record; u16 flags, u16 type of the value, u16 separators of lists, u32
//   format of numbers, u32 format of times, u32 font; u16 sizes of the default value and the input
//   translation, u16 place in the order of the tabulator key, u16 sizes of the input validation, the name,
//   the description and the list of keywords; then these six in that order. An empty list of texts may have
//   a formula behind it, which computes the keywords.
#pragma once

#include <array>

#include "embedded/richtext/rich_element.h"

namespace lens {

// What a record holds; parts of its bytes.
struct StoredField {
  static constexpr quint8 kKind = 138;

  quint16 flags = 0, type = 0, tabOrder = 0;
  RichFont font;
  // Formulas in the platform's compiled form or as source; empty where the field has none.
  QByteArrayView defaultValue, inputTranslation, inputValidation;
  QByteArrayView name, description, keywords;  // the texts in LMBCS
  QByteArrayView keywordsFormula;              // part of the keywords; empty where they are listed
};

// False when the record is of another kind, or shorter than its sizes say.
bool readStoredField(QByteArrayView record, StoredField& field);

// The same record with another default value, input translation and input validation; as it is when it is
// damaged, or would be longer than its sizes can say.
QByteArray withFieldFormulas(QByteArrayView record, const std::array<QByteArray, 3>& formulas);

}  // namespace lens

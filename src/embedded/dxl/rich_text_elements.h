// The "richtext" element: paragraphs, runs, tables, links and what else stands in rich text.
#pragma once

#include <QVector>

#include "embedded/dxl/import_context.h"
#include "embedded/richtext/rich_text.h"

namespace lens {

// A field that a form's rich text defines.
struct FormField {
  QString name;
  quint16 type = 0;  // item type of its values
};

// Where elements of a rich text stood that were kept: a list of numbers behind their items, for each of them
// where its records begin in the data of the rich text and where they end.
inline constexpr QStringView kPlacesItem = u"$DXL_places";

// The reader stands at an element that holds blocks. What has no counterpart leaves its text in the
// rich text and its XML in an item of the note. Fields are collected where the caller wants them. Gives
// the data of the item, without the type word.
QByteArray readRichText(ReadContext& context, Note& note, QVector<FormField>* fields = nullptr);

}  // namespace lens

// How the client window words notes, items and databases.
#pragma once

#include <QString>

#include "embedded/format/note.h"
#include "embedded/workspace/real_databases.h"
#include "host/regional.h"

namespace lens {

// One row of a view.
struct NoteTexts {
  QString form;     // form of a document, kind of a design note
  QString subject;  // subject, title of a design note, else the first text; may be empty
  QString modified;
};
NoteTexts textsOf(const Note& note, const Regional& regional);

// 8 hexadecimal digits.
QString noteIdText(NoteId noteId);

// The name of the item's type, as in the table of types.
QString itemTypeName(const Item& item);
// The values one below the other; the size where nothing can be read as text.
QString itemText(const Item& item, const Regional& regional);

// RealDatabase::line() in the user's language.
QString realLine(const RealDatabase& real);

}  // namespace lens

// Replacement of text in chosen items of a document, without any window.
//
// Every chosen item that the document has is written, whether the text occurs in it or not, and what is
// written is text: numbers, dates and rich text become text too. Nothing is saved here. Items whose value no
// text can stand for (attachments, references to other documents, several items of one name) raise, which
// ends the run.
#pragma once

#include <QString>
#include <optional>

#include "host/regional.h"
#include "notes/objects/notes_document.h"

namespace lens {

// What is looked for, capitals and small letters told apart, and what takes its place.
struct FieldTexts {
  QString find, replace;
};

// The item that a row "name: content" of the field list names: all that stands before the first colon,
// blanks included. Nothing for a row without a colon.
std::optional<QString> itemNameOfRow(const QString& row);
// The same, where a colon is taken for granted: raises 5 for a row without one.
QString requiredItemNameOfRow(const QString& row);

// Replaces in an item of a copy. How many values are read is the matter of the document that was copied. An
// item without a value stays as it is.
void replaceInCopiedItem(const NotesDocument& copy, const NotesDocument& source, const QString& item,
                         const FieldTexts& texts, const Regional& regional);

// Replaces in an item of a document itself. Raises 13 for an item without a value.
void replaceInOwnItem(const NotesDocument& document, const QString& item, const FieldTexts& texts,
                      const Regional& regional);

}  // namespace lens

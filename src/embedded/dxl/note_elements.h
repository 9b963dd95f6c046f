// Notes of every kind: the raw "note", "document", "profiledocument" and the design elements, with
// the prolog that they share.
#pragma once

#include "embedded/dxl/import_context.h"

namespace lens {

// Whether an element of that name is a note.
bool isNoteElement(QStringView element);

// The class, without its marks, of the note element at which the reader stands. Fails for a class that is
// none.
quint16 classOfNote(const DxlReader& in);

// The reader stands at a note element; the note is saved in the target. One with the UNID of a note of
// the target replaces it; so does a note of which a database has only one.
void importNote(ImportContext& context);

// Saves a note as the importer made or read it, and counts it. In a large import it may wait for the end.
void saveImported(ImportContext& context, Note& note, UnidOf unid = UnidOf::File);
void saveNow(ImportContext& context, Note& note, const ValueSpool& spool, UnidOf unid);

// The note that "$REF" names, null without one.
Unid referredNote(const Note& note);

// The word that "note" has for a class without its marks; "" when it has none.
QString className(quint16 baseClass);

}  // namespace lens

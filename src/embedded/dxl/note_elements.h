// Notes of every kind: the raw "note", "document", "profiledocument" and the design elements, with
// the prolog that they share.
#pragma once

#include "embedded/dxl/import_context.h"

namespace lens {

// Whether an element of that name is a note.
bool isNoteElement(QStringView element);

// Goes to the root of a file: a database, or a single note. Fails with NoDxl where it is something else.
void goToRoot(DxlReader& in);

// The class, without its marks, of the note element at which the reader stands. Fails for a class that is
// none.
quint16 classOfNote(const DxlReader& in);

// Takes the UNID that the "noteinfo" at hand tells, if it tells one. Fails for a text that is none.
void readUnid(const DxlReader& in, Unid& unid);

// Where a database holds one note of the class: the one whose place a note of that class and UNID takes; null
// where there is none.
NoteId otherInstance(const Database& target, quint16 noteClass, const Unid& unid);

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

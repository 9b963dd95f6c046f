// Finding notes as both doors do: by special note ID, and design notes by title.
#pragma once

#include <QString>
#include <QStringView>

#include "embedded/store/database.h"

namespace lens {

// Whether a "$TITLE" of the form "name|alias|alias" answers to the name: as a whole, or with its name
// or one of its aliases, without regard to case and to blanks at the ends.
bool titleAnswersTo(QStringView title, QStringView name);

// ID of the first note, in order of ID, whose class is among the bits and whose title answers; 0 when
// there is none. An empty name finds nothing.
NoteId findDesignNote(const Database& database, quint16 classMask, QStringView name);

// FFFF0000 and a class mean the special note of that class, or the default one for forms and views.
// True for such an ID.
bool isSpecialNoteId(NoteId noteId);
// The note's own ID, 0 when there is no such note.
NoteId resolveSpecialNoteId(const Database& database, NoteId noteId);

}  // namespace lens

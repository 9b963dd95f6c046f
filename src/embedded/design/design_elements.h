// The notes of a database by kind, and design notes by kind and name.
#pragma once

#include <QVector>

#include "embedded/design/note_kinds.h"
#include "embedded/store/database.h"

namespace lens {

// Note IDs in ascending order. Classes come from the index; of each note of these classes one item is
// looked at ("$Flags", or "$Name" of a document). A damaged note is passed over.
QVector<NoteId> notesOfKinds(const Database& database, NoteKinds kinds);

// The first note of the kinds whose title answers to the name (design/design_notes.h tells how); 0 when
// there is none.
NoteId findDesignElement(const Database& database, NoteKinds kinds, QStringView name);
// What a program or a formula means by the name of a view: a view or folder. Navigators and the like are
// notes of the same class, and may bear the same name.
inline constexpr NoteKinds kViewsAndFolders{NoteKind::Views, NoteKind::Folders};
NoteId findView(const Database& database, QStringView name);

}  // namespace lens

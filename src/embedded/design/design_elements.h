// The notes of a database by kind, and design notes by kind and name.
#pragma once

#include <QVector>

#include "embedded/design/note_kinds.h"
#include "embedded/store/database.h"

namespace lens {

// Note IDs in ascending order. Classes come from the index; of each note of these classes one item is
// looked at ("$Flags", or "$Name" of a document). A damaged note is passed over.
QVector<quint32> notesOfKinds(const Database& database, NoteKinds kinds);

// The first note of the kinds whose title answers to the name (views/design_notes.h tells how); 0 when
// there is none.
quint32 findDesignElement(const Database& database, NoteKinds kinds, QStringView name);

}  // namespace lens

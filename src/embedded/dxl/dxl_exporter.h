// DXL export: writes notes as a stream, so that an import of the output gives the same notes, item by
// item. What DXL has a form for is written in that form, everything else as raw item data; each value
// is checked to read back as it is. Where DXL has no place for something, attributes of a namespace of
// our own (exact_marks.h) hold it, which other readers pass over.
//
// Not in a file: deletion stubs, and note IDs after an import, which are the target database's own.
#pragma once

#include <QIODevice>
#include <QVector>

#include "embedded/store/database.h"

namespace lens {

// Called with the notes written so far and their number in all, before each note and while an
// attachment is written; false cancels.
using ExportProgress = std::function<bool(int done, int all)>;

// A whole database: properties, then every live note in order of ID. The target gets everything or
// the caller discards it (a QSaveFile). Raises when a note is damaged or the target cannot be written,
// with the target's error text. False when it was cancelled.
bool exportDatabase(const Database& database, QIODevice& target, const ExportProgress& progress = {});
// The named notes in that order, below a database element as a whole export has it. Raises when one of
// them is not there.
bool exportNotes(const Database& database, const QVector<NoteId>& noteIds, QIODevice& target,
                 const ExportProgress& progress = {});

}  // namespace lens

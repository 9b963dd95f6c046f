// The files that are attached to a document, and which of its rich texts shows which of them.
#pragma once

#include <QHash>

#include "embedded/format/note.h"
#include "embedded/format/stored_object.h"

namespace lens {

// The attached file that an item stands for; false for every other item.
bool readAttachedFile(const Item& item, FileObject& file);
// The first attached file of that name, in any case of its letters; false when there is none.
bool findAttachedFile(const Note& note, const QString& name, FileObject& file);

// By the place of the item among the items of its note.
using ShownFiles = QHash<qsizetype, QVector<FileObject>>;

// A text knows its files by name only. Where several files of a note have one name, the first place in its
// texts that shows the name stands for the first file and so on, and the last place for all that are left, so
// that each file is reached, and once.
ShownFiles shownFilesOf(const Note& note);

}  // namespace lens

// What a database offers to look into: everything, its design, and its views.
#pragma once

#include <QString>
#include <QVector>

#include "embedded/store/database.h"

namespace lens {

struct ViewEntry {
  enum class Kind { AllDocuments, DesignNotes, View, Folder };
  Kind kind = Kind::AllDocuments;
  QString title;
  NoteId noteId;  // of a view or folder

  bool sameAs(const ViewEntry& other) const { return kind == other.kind && noteId == other.noteId; }
};

// All documents and design notes first, then the views by title. A damaged view is listed by its ID.
QVector<ViewEntry> viewEntries(const Database& database);

// Note IDs: those of a view in its order, all others ascending. Raises UnknownNote when the view has gone
// meanwhile.
QVector<NoteId> documentsOf(Database& database, const ViewEntry& entry);

}  // namespace lens

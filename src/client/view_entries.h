// What a database offers to look into: what a search found, everything, its design, and its views.
#pragma once

#include <QString>
#include <QVector>

#include "embedded/store/database.h"

namespace lens {

struct ViewEntry {
  enum class Kind { Found, AllDocuments, DesignNotes, View, Folder };
  Kind kind = Kind::AllDocuments;
  QString title;          // the query where something was searched for
  NoteId noteId;          // of a view or folder
  QVector<NoteId> found;  // best match first

  bool sameAs(const ViewEntry& other) const { return kind == other.kind && noteId == other.noteId; }
};

// All documents and design notes first, then the views by title. A damaged view is listed by its ID.
QVector<ViewEntry> viewEntries(const Database& database);

// Note IDs: those found and those of a view in their order, all others ascending. Raises UnknownNote when the
// view has gone meanwhile.
QVector<NoteId> documentsOf(Database& database, const ViewEntry& entry);

}  // namespace lens

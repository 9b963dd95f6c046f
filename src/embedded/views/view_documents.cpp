#include "embedded/views/view_documents.h"

#include "embedded/views/view_index.h"

namespace lens {

QVector<NoteId> viewDocuments(Database& database, const Note& view, std::function<bool()> interrupted) {
  ViewIndex index(database, view.header.id, std::move(interrupted));
  index.refresh();
  return index.documents();
}

}  // namespace lens

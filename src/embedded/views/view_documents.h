// The documents of a view, for those who need no more of it.
#pragma once

#include <QVector>
#include <functional>

#include "embedded/store/database.h"
#include "embedded/views/view_design.h"

namespace lens {

// Note IDs in the order of the view, each once; its index is brought up to date first. Raises for a view
// whose selection is there in compiled form only, has a mistake, or is interrupted (view_index.h).
QVector<NoteId> viewDocuments(Database& database, const Note& view, std::function<bool()> interrupted = {});

}  // namespace lens

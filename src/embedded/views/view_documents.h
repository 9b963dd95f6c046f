// The documents of a view, as long as views have no index of their own.
//
// The selection formula is run over all documents. A view whose formula is there in compiled form only,
// or cannot be compiled, shows all of them. Profile documents are in no view, and a folder, whose
// documents are put there by hand, has none. Documents stand in order of their note ID.
#pragma once

#include <QString>
#include <QVector>

#include "embedded/store/database.h"

namespace lens {

QVector<quint32> viewDocuments(const Database& database, const Note& view);

// The selection of a view note as text; false when the note holds it only in compiled form or not at
// all.
bool selectionSource(const Note& view, QString& source);

bool isFolder(const Note& view);

}  // namespace lens

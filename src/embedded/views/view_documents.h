// The documents of a view, as long as views have no index of their own.
//
// The selection formula is not evaluated: a small reader understands "SELECT @All" and comparisons of
// Form with text constants (Form = "A" : "B", Form = "A" | Form = "B"). Any other selection, a
// compiled one included, gives all documents. Profile documents are in no view, and a folder, whose
// documents are put there by hand, has none. Documents stand in order of their note ID.
#pragma once

#include <QString>
#include <QStringList>
#include <QStringView>
#include <QVector>

#include "embedded/store/database.h"

namespace lens {

struct ViewSelection {
  bool all = true;
  QStringList forms;  // exact texts, when not all
};

ViewSelection readSelection(QStringView formula);

QVector<quint32> viewDocuments(const Database& database, const Note& view);

// The selection of a view note as text; false when the note holds it only in compiled form or not at
// all.
bool selectionSource(const Note& view, QString& source);

bool isProfile(const Note& note);
bool isFolder(const Note& view);

}  // namespace lens

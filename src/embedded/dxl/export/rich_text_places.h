// Elements of a rich text that an import kept, and where they stood in it.
#pragma once

#include <QHash>
#include <QString>
#include <QVector>

#include "embedded/format/note.h"
#include "embedded/store/large_note.h"

namespace lens {

struct KeptPlace {
  qsizetype begin = 0, end = 0;  // of its records in the data of the rich text
  QString element, xml;
};

// Items that keep elements of the rich text right behind them, the one that tells their places last: how many
// there are, by the place of the first. Values that are not at hand are asked for.
QHash<qsizetype, qsizetype> keptGroups(const Note& note, const LargeValues& large);

// The items that keep the elements, then the one that tells their places. Gives them in the order in which
// they begin; false when they do not belong together.
bool readKeptPlaces(const QVector<Item>& items, QVector<KeptPlace>& places);

}  // namespace lens

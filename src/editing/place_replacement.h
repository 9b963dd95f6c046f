// Search and replace in the values of an item that is no rich text.
#pragma once

#include <QVector>

#include "host/regional.h"
#include "notes/bridge.h"

namespace lens {

struct Replacement {
  QString search;
  QString replace;
};

// Which places of several values are looked at. With a single value it is that one.
enum class Places {
  All,         // the document on display
  AllButLast,  // a collection: the last value of several is never searched
};

// Replaces in each place that holds the search text, with exact case, and gives back whether any did. A
// date (type 1024) is written and read by the region, and raises 13 when the new text is none; a number
// (768) takes the numeric prefix of the new text. Values before a failing one are replaced already.
bool replaceInValues(QVector<Value>& values, Places places, int type, const Replacement& replacement,
                     const Regional& regional);

}  // namespace lens

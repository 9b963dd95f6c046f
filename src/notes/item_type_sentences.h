// The sentences that say what an item's type code means, in the order in which the user sees them.
#pragma once

#include <QVector>

namespace lens {

struct ItemTypeRow {
  int code;
  const char* sentence;
};

// Thirty rows, alphabetical by type name.
const QVector<ItemTypeRow>& itemTypeTable();

}  // namespace lens

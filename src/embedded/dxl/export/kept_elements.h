// What an import kept as XML goes out as the elements that it was, where DXL has a place for them.
#pragma once

#include "embedded/dxl/export/export_context.h"

namespace lens {

// The XML of an element that the item keeps; "" when it holds none, or one that another import would keep in
// other words.
QString keptElement(const Item& item, QStringView element);

// Attributes and elements of "database" that the last items of its icon note keep.
struct KeptSettings {
  QStringList attributes;  // "name=value"
  QStringList elements;
  qsizetype items = 0;
};
KeptSettings keptSettings(const Note& icon);

}  // namespace lens

// Packed items of which only a part is at hand, since all of them are too large to be held together.
#pragma once

#include <functional>

#include "embedded/format/item_value.h"

namespace lens {

// Everything that stands before the values, from their sizes. Raises as packItems does.
QByteArray packDirectory(const QVector<Item>& items, const std::function<qint64(const Item&)>& sizeOf);

// Where an item stands in packed items.
struct PackedPlace {
  qint64 nameAt, nameLength, valueAt, valueLength;
  quint16 flags;
};
inline constexpr qsizetype kPackedHead = 8;
// The bytes up to the end of the directory, from the head alone and the size of the whole. Both raise as
// unpackItems does.
qsizetype packedDirectorySize(QByteArrayView head, qint64 size);
QVector<PackedPlace> packedPlaces(QByteArrayView directory, qint64 size);

}  // namespace lens

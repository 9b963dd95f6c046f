// All items of a note in one packed value: a directory first, then the values in the C API's own
// layout, so that a save is one row and a reader finds one item without touching the others.
//
//   0  u32  mark "TLI1"
//   4  u32  number of items n
//   8  n entries of 16 bytes: u32 offset of the name, u16 length of the name, u16 flags,
//      u32 offset of the value, u32 length of the value (type word included)
//   .. names in UTF-8, then values; all offsets count from 0, everything is little-endian
#pragma once

#include <QByteArray>
#include <QVector>

#include "embedded/store/item_value.h"

namespace lens {

QByteArray packItems(const QVector<Item>& items);
// Raises a RuntimeError that names the fault when the bytes are no packed items or lead outside.
QVector<Item> unpackItems(QByteArrayView packed);
// Raises as unpackItems does, and copies nothing.
void checkPackedItems(QByteArrayView packed);
// The first item of that name without unpacking the others; false when there is none.
bool findPackedItem(QByteArrayView packed, QStringView name, Item& item);

}  // namespace lens

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
#include <array>
#include <vector>

#include "embedded/format/item_value.h"

namespace lens {

QByteArray packItems(const QVector<Item>& items);
// Raises a RuntimeError that names the fault when the bytes are no packed items or lead outside.
QVector<Item> unpackItems(QByteArrayView packed);
// Raises as unpackItems does, and copies nothing.
void checkPackedItems(QByteArrayView packed);
// The first item of that name without unpacking the others; false when there is none.
bool findPackedItem(QByteArrayView packed, QStringView name, Item& item);

// Packed items where they lie: nothing is copied, so the bytes must outlive this.
class PackedItems {
 public:
  struct Entry {
    QByteArrayView name;  // UTF-8
    quint16 flags;
    QByteArrayView value;  // type word included

    Item toItem() const { return {QString::fromUtf8(name), flags, value.toByteArray()}; }
  };
  PackedItems() = default;
  // Raises as unpackItems does; afterwards every entry is sound.
  explicit PackedItems(QByteArrayView packed);
  qsizetype count() const { return count_; }
  Entry operator[](qsizetype place) const;
  // Place of the first item of that name that has all these flags; -1: none.
  qsizetype find(QStringView name, quint16 flags = 0) const;
  QByteArrayView bytes() const { return packed_; }

 private:
  QByteArrayView packed_;
  qsizetype count_ = 0;
};

// Names that are looked for in many notes: all of them in one pass over each note's items.
class WantedItems {
 public:
  explicit WantedItems(std::vector<ItemName> names);
  const std::vector<ItemName>& names() const { return names_; }
  // For each name the place of its first item that has all these flags; -1: none.
  void find(const PackedItems& items, quint16 flags, std::vector<qint32>& places) const;

 private:
  static constexpr int kBuckets = 64;
  static int bucketOf(char first, char last, qsizetype length);
  bool matches(QByteArrayView packed, int name) const;
  void note(int name, qint32 place, std::vector<qint32>& places) const;
  std::vector<ItemName> names_;
  std::array<int, kBuckets> first_;  // a plain name that falls there; -1: none
  std::vector<int> next_;            // the next plain name of the same bucket
  std::vector<int> others_;          // names with characters beyond ASCII
};

}  // namespace lens

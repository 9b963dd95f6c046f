// The records in which a view's note keeps its columns ($ViewFormat) and their sorting ($Collation).
//
//   $ViewFormat  u8 version 1, u8 style, u16 columns, u16 number of items, u16 flags, u16 more flags; then
//                for each column 32 bytes: u16 mark, u16 flags, u16 sizes of item name, title, formula and
//                constant, u16 width, u32 font, u16 more flags, 8 bytes of formats, u16 type, u16 separator;
//                then for each column these four in a row. What follows is about looks.
//   $Collation   u16 size, u16 keys, u8 flags, u8 mark; for each key u8 flags, u8 mark, u8 kind, u16 offset
//                and u16 size of its item name; then the names.
#pragma once

#include <QByteArray>
#include <QString>
#include <QVector>

namespace lens {

namespace viewrecord {
inline constexpr quint16 kFormatVersion = 1, kColumnMark = 0x4356;
inline constexpr quint16 kFlatView = 2;  // of the view: responses stand where their own values put them
inline constexpr quint16 kSorted = 1, kCategorized = 2, kDescending = 4, kHidden = 8, kResponsesOnly = 0x10;
inline constexpr quint16 kSeparateValues = 0x100;  // of a column's second flags
inline constexpr quint8 kCollationMark = 0x44, kKeyMark = 0x66;
inline constexpr quint8 kKeyDescending = 1, kKeySeparateValues = 8;
inline constexpr quint8 kKeyCategory = 7;  // a kind
}  // namespace viewrecord

struct StoredColumn {
  QString item, title;
  QByteArray formula;  // compiled or as source; empty: the column shows the item
  bool sorted = false, descending = false, categorized = false, hidden = false;
  bool responsesOnly = false, separateValues = false;
  int width = 0;  // eighths of a character
};

struct StoredViewFormat {
  bool hierarchy = true;
  QVector<StoredColumn> columns;
};

struct StoredKey {
  QString item;
  bool descending = false, category = false, separateValues = false;
};

// Both take the data without its type word. Bytes that end early or lead outside give what stands before
// the fault; false when they are no such record at all.
bool readViewFormat(QByteArrayView data, StoredViewFormat& format);
bool readCollation(QByteArrayView data, QVector<StoredKey>& keys);

// The same $ViewFormat with other formulas, one for each column. Empty when the data is damaged, has another
// number of columns, or a formula is longer than 64 KB.
QByteArray withColumnFormulas(QByteArrayView data, const QVector<QByteArray>& formulas);

}  // namespace lens

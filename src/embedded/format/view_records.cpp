#include "embedded/format/view_records.h"

#include <QtEndian>

#include "embedded/format/item_value.h"
#include "embedded/format/lmbcs.h"

namespace lens {
namespace {

using namespace viewrecord;

constexpr qsizetype kColumnSize = 32;
constexpr qsizetype kKeySize = 7;

// A column's fixed part; its texts follow behind those of all columns.
struct ColumnHead {
  StoredColumn column;
  quint16 itemSize = 0, titleSize = 0, formulaSize = 0, constantSize = 0;
};

bool readColumnHead(ByteReader& reader, ColumnHead& head) {
  if (!reader.has(kColumnSize) || reader.u16() != kColumnMark) return false;
  const quint16 flags = reader.u16();
  head.itemSize = reader.u16();
  head.titleSize = reader.u16();
  head.formulaSize = reader.u16();
  head.constantSize = reader.u16();
  StoredColumn& column = head.column;
  column.width = reader.u16();
  reader.skip(4);
  const quint16 more = reader.u16();
  reader.skip(12);
  column.categorized = (flags & kCategorized) != 0;
  column.sorted = (flags & kSorted) != 0 || column.categorized;
  column.descending = (flags & kDescending) != 0;
  column.hidden = (flags & kHidden) != 0;
  column.responsesOnly = (flags & kResponsesOnly) != 0;
  column.separateValues = (more & kSeparateValues) != 0;
  return true;
}

}  // namespace

bool readViewFormat(QByteArrayView data, StoredViewFormat& format) {
  ByteReader reader(data);
  const quint8 version = reader.u8();
  reader.skip(1);
  const quint16 count = reader.u16();
  reader.skip(2);
  const quint16 flags = reader.u16();
  reader.skip(2);
  if (reader.failed() || version != kFormatVersion) return false;
  format.hierarchy = (flags & kFlatView) == 0;
  QVector<ColumnHead> heads;
  ColumnHead head;
  for (int i = 0; i < count && readColumnHead(reader, head); ++i) heads.push_back(head);
  // Of a cut row of heads nothing tells where the texts begin.
  if (heads.size() < count) return true;
  for (ColumnHead& each : heads) {
    if (!reader.has(qsizetype(each.itemSize) + each.titleSize + each.formulaSize + each.constantSize)) break;
    each.column.item = fromLmbcs(reader.take(each.itemSize));
    each.column.title = fromLmbcs(reader.take(each.titleSize));
    each.column.formula = reader.take(each.formulaSize).toByteArray();
    reader.skip(each.constantSize);
    format.columns.push_back(each.column);
  }
  return true;
}

QByteArray withColumnFormulas(QByteArrayView data, const QVector<QByteArray>& formulas) {
  constexpr qsizetype kHead = 10, kFormulaSizeAt = 8, kMostBytes = 0xFFFF;
  const qsizetype texts = kHead + formulas.size() * kColumnSize;
  if (data.size() < texts || qFromLittleEndian<quint16>(data.data() + 2) != formulas.size()) return {};
  QByteArray heads = data.first(kHead).toByteArray(), behind;
  ByteReader reader(data.sliced(kHead)), textReader(data.sliced(texts));
  for (const QByteArray& formula : formulas) {
    ColumnHead head;
    const qsizetype at = heads.size();
    heads += data.sliced(at, kColumnSize);
    if (formula.size() > kMostBytes || !readColumnHead(reader, head)) return {};
    qToLittleEndian(quint16(formula.size()), heads.data() + at + kFormulaSizeAt);
    behind += textReader.take(qsizetype(head.itemSize) + head.titleSize);
    textReader.skip(head.formulaSize);
    behind += formula;
    behind += textReader.take(head.constantSize);
  }
  if (textReader.failed()) return {};
  return heads.append(behind).append(textReader.take(textReader.left()));
}

bool readCollation(QByteArrayView data, QVector<StoredKey>& keys) {
  ByteReader reader(data);
  reader.skip(2);
  const qsizetype count = reader.u16();
  reader.skip(1);
  if (reader.u8() != kCollationMark || reader.failed()) return false;
  if (!reader.has(count * kKeySize)) return false;
  const QByteArrayView names = data.sliced(reader.position() + count * kKeySize);
  for (qsizetype i = 0; i < count; ++i) {
    const quint8 flags = reader.u8(), mark = reader.u8(), kind = reader.u8();
    const quint16 offset = reader.u16(), size = reader.u16();
    if (mark != kKeyMark || qsizetype(offset) + size > names.size()) return !keys.isEmpty();
    keys.push_back({fromLmbcs(names.sliced(offset, size)), (flags & kKeyDescending) != 0,
                    kind == kKeyCategory, (flags & kKeySeparateValues) != 0});
  }
  return true;
}

}  // namespace lens

#include "embedded/format/item_name.h"

#include "embedded/format/case_key.h"

namespace lens {
namespace {

quint8 lowerByte(quint8 byte) {
  return byte >= 'A' && byte <= 'Z' ? quint8(byte | 0x20) : byte;
}

}  // namespace

bool sameItemName(QStringView a, QStringView b) {
  return sameCaseKey(a, b);
}

// The first character that is not plain sends both to the full comparison.
bool isPackedName(QByteArrayView utf8, QStringView name) {
  const qsizetype common = qMin(utf8.size(), name.size());
  for (qsizetype i = 0; i < common; ++i) {
    const quint8 stored = quint8(utf8[i]);
    const char16_t asked = name[i].unicode();
    if (stored >= 0x80 || asked >= 0x80) return sameItemName(QString::fromUtf8(utf8), name);
    if (lowerByte(stored) != lowerByte(quint8(asked))) return false;
  }
  return utf8.size() == name.size();
}

ItemName::ItemName(const QString& written) : text_(written), key_(caseKey(written)), hash_(qHash(key_)) {}

}  // namespace lens

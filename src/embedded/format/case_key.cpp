#include "embedded/format/case_key.h"

namespace lens {
namespace {

char16_t foldedUnit(char16_t unit) {
  if (unit < 0x80) return unit >= u'A' && unit <= u'Z' ? char16_t(unit | 0x20) : unit;
  return QChar(unit).toCaseFolded().unicode();
}

}  // namespace

QString caseKey(QStringView name) {
  QString key(name.size(), Qt::Uninitialized);
  QChar* out = key.data();
  for (qsizetype i = 0; i < name.size(); ++i) {
    if (name[i].isHighSurrogate() && i + 1 < name.size() && name[i + 1].isLowSurrogate()) {
      const char32_t folded = QChar::toCaseFolded(QChar::surrogateToUcs4(name[i], name[i + 1]));
      *out++ = QChar(QChar::highSurrogate(folded));
      *out++ = QChar(QChar::lowSurrogate(folded));
      ++i;
    } else {
      *out++ = QChar(foldedUnit(name[i].unicode()));
    }
  }
  return key;
}

// Qt compares by the same folding; only names of one length can match.
bool sameCaseKey(QStringView a, QStringView b) {
  return a.size() == b.size() && a.compare(b, Qt::CaseInsensitive) == 0;
}

}  // namespace lens

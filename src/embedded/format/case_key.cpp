#include "embedded/format/case_key.h"

namespace lens {

QString caseKey(QStringView name) {
  QString key = name.toString();
  for (qsizetype i = 0; i < key.size(); ++i) {
    if (key[i].isHighSurrogate() && i + 1 < key.size() && key[i + 1].isLowSurrogate()) {
      const char32_t folded = QChar::toCaseFolded(QChar::surrogateToUcs4(key[i], key[i + 1]));
      key[i] = QChar(QChar::highSurrogate(folded));
      key[++i] = QChar(QChar::lowSurrogate(folded));
    } else {
      key[i] = key[i].toCaseFolded();
    }
  }
  return key;
}

}  // namespace lens

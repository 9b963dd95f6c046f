#include "controls/fonts.h"

#include <QFontDatabase>

namespace lens {

QString monospaceFamily() {
  static const QString family = [] {
    for (const char16_t* name : {u"Consolas", u"Inconsolata", u"DejaVu Sans Mono", u"Liberation Mono"}) {
      const QString candidate = QString::fromUtf16(name);
      if (QFontDatabase::hasFamily(candidate)) return candidate;
    }
    return QFontDatabase::systemFont(QFontDatabase::FixedFont).family();
  }();
  return family;
}

QString installedFamily(const QString& family) {
  return QFontDatabase::hasFamily(family) ? family : monospaceFamily();
}

}  // namespace lens

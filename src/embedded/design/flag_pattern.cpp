#include "embedded/design/flag_pattern.h"

#include <QChar>
#include <algorithm>

namespace lens {
namespace {

bool isSign(QChar c) {
  return c == u'+' || c == u'-' || c == u'*';
}

bool partHolds(QChar sign, QStringView letters, QStringView flags) {
  const auto isSet = [flags](QChar letter) { return flags.contains(letter); };
  if (letters.isEmpty()) return true;
  if (sign == u'+') return std::any_of(letters.begin(), letters.end(), isSet);
  if (sign == u'-') return std::none_of(letters.begin(), letters.end(), isSet);
  return sign == u'*' && std::all_of(letters.begin(), letters.end(), isSet);
}

}  // namespace

bool matchesFlags(QStringView pattern, QStringView flags) {
  const bool several = pattern.startsWith(u'(');
  if (several) pattern = pattern.sliced(1);
  while (!pattern.isEmpty()) {
    const QStringView behindSign = pattern.sliced(1);
    const auto end = several ? std::find_if(behindSign.begin(), behindSign.end(), isSign) : behindSign.end();
    const qsizetype count = end - behindSign.begin();
    if (!partHolds(pattern.front(), behindSign.first(count), flags)) return false;
    pattern = behindSign.sliced(count);
  }
  return true;
}

}  // namespace lens

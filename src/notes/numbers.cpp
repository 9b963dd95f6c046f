#include "notes/numbers.h"

#include <cmath>
#include <limits>

#include "notes/literals.h"

namespace lens {
namespace {

// Blanks and line ends around a number come from lists that were cut at line feeds only.
QStringView withoutEnds(QStringView text) {
  const auto isEnd = [](QChar c) { return c == u' ' || c == u'\r' || c == u'\n'; };
  while (!text.isEmpty() && isEnd(text.front())) text = text.mid(1);
  while (!text.isEmpty() && isEnd(text.back())) text.chop(1);
  return text;
}

// Sign, digits, point, exponent; the spellings "inf", "nan" and "0x" are no numbers here.
bool spellsNumber(QStringView text) {
  for (QChar c : text)
    if (!(c >= u'0' && c <= u'9') && !QStringView(u"+-.eE").contains(c)) return false;
  return !text.isEmpty();
}

}  // namespace

QString numberText(double number) {
  if (number == 0) return u"0"_s;  // also of a negative zero
  return QString::number(number, 'g', 15).toUpper();
}

double wholeNumberText(QStringView text) {
  const QStringView digits = withoutEnds(text);
  bool ok = false;
  const double number = spellsNumber(digits) ? digits.toDouble(&ok) : 0;
  if (!ok || !std::isfinite(number)) throw RuntimeError(err::TypeMismatch);
  return number;
}

double numberPrefix(QStringView text) {
  qsizetype at = 0;
  const auto isDigit = [&] { return at < text.size() && text[at] >= u'0' && text[at] <= u'9'; };
  const auto passDigits = [&] {
    const qsizetype from = at;
    while (isDigit()) ++at;
    return at - from;
  };
  const auto passSign = [&] {
    if (at < text.size() && (text[at] == u'+' || text[at] == u'-')) ++at;
  };
  while (at < text.size() && text[at] == u' ') ++at;
  const qsizetype start = at;
  passSign();
  qsizetype digits = passDigits();
  if (at < text.size() && text[at] == u'.') {
    ++at;
    digits += passDigits();
  }
  if (digits == 0) return 0;
  // An "E" without digits behind it belongs to what follows the number.
  const qsizetype mantissaEnd = at;
  if (at < text.size() && (text[at] == u'e' || text[at] == u'E')) {
    ++at;
    passSign();
    if (passDigits() == 0) at = mantissaEnd;
  }
  bool ok = false;
  const double number = text.mid(start, at - start).toDouble(&ok);
  if (!ok || !std::isfinite(number)) throw RuntimeError(err::Overflow);
  return number;
}

qint32 roundToInt32(double number) {
  const double rounded = std::nearbyint(number);  // the default rounding mode is half to even
  if (!(rounded >= std::numeric_limits<qint32>::min() && rounded <= std::numeric_limits<qint32>::max()))
    throw RuntimeError(err::Overflow);
  return qint32(rounded);
}

qint32 toInt32(QStringView text) {
  return roundToInt32(wholeNumberText(text));
}

qint32 hexToInt32(QStringView text) {
  if (text.isEmpty() || text.size() > 8) throw RuntimeError(err::TypeMismatch);
  quint32 bits = 0;
  for (QChar c : text) {
    const int digit = c >= u'0' && c <= u'9'   ? c.unicode() - u'0'
                      : c >= u'a' && c <= u'f' ? c.unicode() - u'a' + 10
                      : c >= u'A' && c <= u'F' ? c.unicode() - u'A' + 10
                                               : -1;
    if (digit < 0) throw RuntimeError(err::TypeMismatch);
    bits = bits << 4 | quint32(digit);
  }
  return qint32(bits);
}

}  // namespace lens

#include "shell/text_routines.h"

#include <cmath>
#include <utility>

#include "notes/literals.h"
#include "notes/numbers.h"

namespace lens {
namespace {

// 1-based position of the marker, 0 when it does not occur. Looking for nothing in a text that is
// not empty finds it at once.
Int16 positionOf(const QString& text, const QString& marker) {
  if (text.isEmpty()) return 0;
  return Int16(text.indexOf(marker) + 1);
}

}  // namespace

QString leftFrom(const QString& text, const QString& marker) {
  const Int16 position = positionOf(text, marker);
  return position > 0 ? text.left(position - 1) : QString();
}

QString rightFrom(const QString& text, const QString& marker) {
  const Int16 position = positionOf(text, marker);
  return position > 0 ? text.mid(position - 1 + marker.size()) : text;
}

QString replaceAllText(const QString& text, const QString& find, const QString& replace) {
  if (find.isEmpty()) return text;
  QString result;
  qsizetype from = 0;
  for (qsizetype hit = text.indexOf(find); hit >= 0; hit = text.indexOf(find, from)) {
    result += QStringView(text).mid(from, hit - from);
    result += replace;
    from = hit + find.size();
  }
  result += QStringView(text).mid(from);
  return result;
}

QString element(QString& text, const QString& separator) {
  if (text.isEmpty()) return {};
  const Int16 position = positionOf(text, separator);
  if (position > 1) {
    const QString first = text.left(position - 1);
    text.remove(0, position - 1 + separator.size());
    return first;
  }
  if (position == 0) return std::exchange(text, QString());
  if (text.size() > 1) text.remove(0, 1);
  // A single character behind a leading separator is dropped; existing rows rely on it.
  if (text.size() == 1) text.clear();
  return u" "_s;
}

QString unsignedDec2Hex(const Value& number) {
  constexpr double kTwoTo32 = 4294967296.0;
  const double value = number.number();
  if (value < 0) return u"-1"_s;
  const double rounded = std::nearbyint(value);
  if (rounded >= kTwoTo32) return u"-1"_s;
  return QString::number(quint32(rounded), 16).toUpper();
}

Value hexStringToBinary(const QString& text) {
  if (text.isEmpty() || text.size() > 12) return {};
  double sum = 0;
  for (QChar c : text) {
    const int digit = QStringView(u"0123456789ABCDEF").indexOf(c.toUpper());
    sum = sum * 16 + (digit > 0 ? digit : 0);
  }
  return Value(sum);
}

// As replaceAllText() would, but within the text that it is given: of many megabytes there is never a second
// copy.
QString widenLineFeeds(QString text) {
  const qsizetype lineFeeds = text.count(u'\n');
  if (lineFeeds == 0) return text;
  qsizetype from = text.size();
  text.resize(text.size() + lineFeeds);
  QChar* const begin = text.data();
  // From the end on, until nothing has to move any more.
  for (QChar* out = begin + text.size(); out != begin + from;) {
    const QChar c = begin[--from];
    *--out = c;
    if (c == u'\n') *--out = u'\r';
  }
  return text;
}

QString trimBlanks(const QString& text) {
  qsizetype from = 0, to = text.size();
  while (from < to && text[from] == u' ') ++from;
  while (to > from && text[to - 1] == u' ') --to;
  return text.mid(from, to - from);
}

QString upperUnits(const QString& text) {
  QString result = text;
  for (QChar& c : result) c = c.toUpper();
  return result;
}

}  // namespace lens

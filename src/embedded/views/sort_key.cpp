#include "embedded/views/sort_key.h"

#include <QtEndian>
#include <cmath>
#include <cstring>

#include "embedded/formula/collation.h"

namespace lens {
namespace {

using formula::Type;

// In a view "Smith" and "SMITH" are one.
constexpr formula::CollationRules kRules{false, true, true};
constexpr quint64 kSignBit = quint64(1) << 63;

void appendBigEndian(QByteArray& key, quint64 number) {
  char bytes[8];
  qToBigEndian(number, bytes);
  key.append(bytes, 8);
}

// The bits of a double grow with it, but for the sign.
void appendNumber(QByteArray& key, double number) {
  if (number == 0) number = 0;  // there is a negative zero
  quint64 bits = 0;
  std::memcpy(&bits, &number, 8);
  key.append(char(sortkey::Number));
  appendBigEndian(key, bits & kSignBit ? ~bits : bits | kSignBit);
}

// What halves the time has stands behind the instant: 0 both, 1 a date, 2 a time of any day, 3 none.
void appendTime(QByteArray& key, const TimeDate& time, const formula::LocalZone& zone) {
  const formula::Civil civil = formula::civilOf(time, zone);
  key.append(char(sortkey::Time));
  appendBigEndian(key, quint64(formula::instantOf(time, zone)) ^ kSignBit);
  key.append(char((civil.hasTime ? 0 : 1) + (civil.hasDate ? 0 : 2)));
}

}  // namespace

void appendTextKey(QByteArray& key, QStringView text) {
  key.append(char(sortkey::Text));
  // A letter gives one byte or more, so the rest of a long text can change nothing before the cut.
  formula::appendCollationBytes(key, text.first(qMin(text.size(), kMostKeyBytes)), kRules);
}

void appendElementKey(QByteArray& key, const formula::Value& value, qsizetype element,
                      const formula::LocalZone& zone) {
  switch (value.type()) {
    case Type::Number:
      return appendNumber(key, value.number(element));
    case Type::Time:
      return appendTime(key, value.time(element), zone);
    case Type::TimeRange:
      appendTime(key, value.range(element).from, zone);
      return appendTime(key, value.range(element).to, zone);
    case Type::Text:
    case Type::Keyword:
      return appendTextKey(key, value.text(element));
    default:
      return appendTextKey(key, u"");
  }
}

void appendSortKey(QByteArray& key, const formula::Value& value, const formula::LocalZone& zone) {
  const qsizetype start = key.size();
  for (qsizetype i = 0; i < value.count() && key.size() - start <= kMostKeyBytes; ++i)
    appendElementKey(key, value, i, zone);
  if (value.count() == 0) appendTextKey(key, u"");
  key.append(char(sortkey::End));
  cut(key, start);
}

QByteArray textKeyBeginning(QStringView text) {
  QByteArray key;
  appendTextKey(key, text);
  key.chop(1);
  cut(key, 0);
  return key;
}

void invert(QByteArray& key, qsizetype from) {
  char* const bytes = key.data();
  for (qsizetype i = from; i < key.size(); ++i) bytes[i] = char(~bytes[i]);
}

void cut(QByteArray& key, qsizetype from) {
  if (key.size() > from + kMostKeyBytes) key.truncate(from + kMostKeyBytes);
}

QByteArray behindAll(QByteArray beginning) {
  while (!beginning.isEmpty() && quint8(beginning.back()) == 0xFF) beginning.chop(1);
  if (!beginning.isEmpty()) beginning.back() = char(quint8(beginning.back()) + 1);
  return beginning;
}

bool readNumberKey(QByteArrayView key, double& number) {
  if (key.size() < kNumberKeySize || quint8(key[0]) != sortkey::Number) return false;
  const quint64 bits = qFromBigEndian<quint64>(key.data() + 1);
  const quint64 stored = bits & kSignBit ? bits & ~kSignBit : ~bits;
  std::memcpy(&number, &stored, 8);
  return true;
}

bool readTimeKey(QByteArrayView key, const formula::LocalZone& zone, formula::Civil& time) {
  if (key.size() < kTimeKeySize || quint8(key[0]) != sortkey::Time) return false;
  const qint64 instant = qint64(qFromBigEndian<quint64>(key.data() + 1) ^ kSignBit);
  const quint8 halves = quint8(key[9]);
  const bool hasDate = (halves & 2) == 0, hasTime = (halves & 1) == 0;
  // A time of any day was counted as it is; everything else from GMT.
  const qint64 local = hasDate ? instant + 100 * qint64(zone.offsetAt(instant)) : instant;
  time = formula::civilAt(local);
  time.hasDate = hasDate;
  time.hasTime = hasTime;
  return true;
}

}  // namespace lens

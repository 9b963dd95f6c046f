#include "embedded/format/timedate.h"

#include <QtEndian>
#include <cstdlib>

#include "notes/literals.h"

namespace lens {
namespace {

constexpr quint32 kEast = 0x40000000;
constexpr quint32 kObservesDst = 0x80000000;

quint32 hundredthsOf(const QTime& time) {
  return quint32(time.msecsSinceStartOfDay() / 10);
}

// The standard offset is the smaller one of winter and summer; the system's zone data knows both.
Zone machineZone(int year) {
  const auto minutesAt = [year](int month) {
    return QDateTime(QDate(year, month, 1), QTime(0, 0), Qt::UTC).toLocalTime().offsetFromUtc() / 60;
  };
  const int january = minutesAt(1), july = minutesAt(7);
  return {qMin(january, july), january != july};
}

}  // namespace

quint32 zoneBits(Zone zone) {
  const quint32 quarters = quint32(std::abs(zone.offsetMinutes)) / 15;
  quint32 bits = (quarters / 4 & 0xF) << 24 | (quarters % 4) << 28;
  if (zone.offsetMinutes > 0) bits |= kEast;
  if (zone.observesDst) bits |= kObservesDst;
  return bits;
}

TimeDate timeDateOf(const QDateTime& instant, Zone zone) {
  if (!instant.isValid()) return {};
  const QDateTime utc = instant.toUTC();
  const qint64 day = utc.date().toJulianDay();
  if (day <= 0 || day >= kDayMask) return {};
  return {{hundredthsOf(utc.time()), quint32(day) | zoneBits(zone)}};
}

TimeDate timeDateOfDate(const QDate& date) {
  const qint64 day = date.isValid() ? date.toJulianDay() : 0;
  if (day <= 0 || day >= kDayMask) return {};
  return {{kAllDay, quint32(day)}};
}

TimeDate timeDateOfTime(const QTime& wallTime) {
  if (!wallTime.isValid()) return {};
  return {{hundredthsOf(wallTime), kAnyDay}};
}

TimeDate timeDateOf(const DateTime& local) {
  if (!local.date.isValid()) return timeDateOfTime(local.time);
  if (!local.time.isValid()) return timeDateOfDate(local.date);
  return timeDateOf(QDateTime(local.date, local.time, Qt::LocalTime), machineZone(local.date.year()));
}

TimeDate timeDateNow() {
  const QDateTime now = QDateTime::currentDateTimeUtc();
  return timeDateOf(now, machineZone(now.date().year()));
}

QDateTime instantOf(const TimeDate& time) {
  if (!hasDay(time) || !hasClock(time)) return {};
  return QDateTime(QDate::fromJulianDay(dayOf(time)),
                   QTime::fromMSecsSinceStartOfDay(int(time.innards[0]) * 10), Qt::UTC);
}

DateTime localOf(const TimeDate& time) {
  if (isClearedTime(time)) return {};
  if (time.innards[0] == kAllDay)
    return hasDay(time) ? DateTime{QDate::fromJulianDay(dayOf(time)), QTime()} : DateTime{};
  if (!hasClock(time)) return {};
  if (time.innards[1] == kAnyDay)
    return {QDate(), QTime::fromMSecsSinceStartOfDay(int(time.innards[0]) * 10)};
  const QDateTime local = instantOf(time).toLocalTime();
  return local.isValid() ? DateTime{local.date(), local.time()} : DateTime{};
}

Zone zoneOf(const TimeDate& time) {
  const quint32 word = time.innards[1];
  if (word == kAnyDay) return {};
  const int minutes = int(word >> 24 & 0xF) * 60 + int(word >> 28 & 3) * 15;
  return {word & kEast ? minutes : -minutes, (word & kObservesDst) != 0};
}

void appendTimeDate(QByteArray& bytes, const TimeDate& time) {
  char raw[8];
  qToLittleEndian(time.innards[0], raw);
  qToLittleEndian(time.innards[1], raw + 4);
  bytes.append(raw, sizeof raw);
}

TimeDate readTimeDate(const char* bytes) {
  return {{qFromLittleEndian<quint32>(bytes), qFromLittleEndian<quint32>(bytes + 4)}};
}

QString timeDateHex(const TimeDate& time) {
  return u"%1%2"_s.arg(time.innards[1], 8, 16, QLatin1Char('0'))
      .arg(time.innards[0], 8, 16, QLatin1Char('0'))
      .toUpper();
}

}  // namespace lens

#include "embedded/formula/times.h"

#include <algorithm>

#include "embedded/formula/whole_division.h"
#include "embedded/formula/zones.h"

namespace lens::formula {
namespace {

constexpr qint32 kEpochDay = 2440588;     // 1 January 1970
constexpr qint32 kMarchOfZero = 1721120;  // 1 March of the year 0, where a leap day ends its year
constexpr qint32 kFirstDay = 1721426;     // 1 January 1
constexpr qint32 kLastDay = 5373484;      // 31 December 9999

qint64 storedInstant(const TimeDate& time) {
  return (qint64(dayOf(time)) - kEpochDay) * kHundredthsOfDay + time.innards[0];
}

}  // namespace

qint32 julianDay(int year, int month, int day) {
  // Years begin in March here, in eras of 400 years.
  const int shifted = month <= 2 ? year - 1 : year;
  const int era = (shifted >= 0 ? shifted : shifted - 399) / 400;
  const int yearOfEra = shifted - era * 400;
  const int dayOfYear = (153 * (month + (month > 2 ? -3 : 9)) + 2) / 5 + day - 1;
  return era * 146097 + yearOfEra * 365 + yearOfEra / 4 - yearOfEra / 100 + dayOfYear + kMarchOfZero;
}

YearMonthDay yearMonthDay(qint32 julianDay) {
  const qint32 days = julianDay - kMarchOfZero;
  const qint32 era = (days >= 0 ? days : days - 146096) / 146097;
  const qint32 dayOfEra = days - era * 146097;
  const qint32 yearOfEra = (dayOfEra - dayOfEra / 1460 + dayOfEra / 36524 - dayOfEra / 146096) / 365;
  const qint32 dayOfYear = dayOfEra - (365 * yearOfEra + yearOfEra / 4 - yearOfEra / 100);
  const qint32 marchMonth = (5 * dayOfYear + 2) / 153;
  const int month = marchMonth < 10 ? marchMonth + 3 : marchMonth - 9;
  return {yearOfEra + era * 400 + (month <= 2 ? 1 : 0), month, dayOfYear - (153 * marchMonth + 2) / 5 + 1};
}

bool dateExists(int year, int month, int day) {
  if (year < 1 || year > 9999 || month < 1 || month > 12 || day < 1) return false;
  static constexpr int kLengths[] = {31, 28, 31, 30, 31, 30, 31, 31, 30, 31, 30, 31};
  const bool leap = year % 4 == 0 && (year % 100 != 0 || year % 400 == 0);
  return day <= kLengths[month - 1] + (month == 2 && leap ? 1 : 0);
}

int weekday(qint32 julianDay) {
  return int((julianDay + 1) % 7) + 1;
}

Civil civilAt(qint64 localHundredths) {
  const qint64 days = floorOf(localHundredths, kHundredthsOfDay);
  return {true, true, qint32(days) + kEpochDay, qint32(localHundredths - days * kHundredthsOfDay)};
}

qint64 hundredthsOf(const Civil& civil) {
  const qint64 days = civil.hasDate ? qint64(civil.day) - kEpochDay : 0;
  return days * kHundredthsOfDay + (civil.hasTime ? civil.hundredths : 0);
}

Civil civilOf(const TimeDate& time, const LocalZone& zone) {
  if (hasDay(time)) {
    if (hasClock(time)) {
      const qint64 instant = storedInstant(time);
      return civilAt(instant + 100 * qint64(zone.offsetAt(instant)));
    }
    if (time.innards[0] == kAllDay) return {true, false, qint32(dayOf(time)), 0};
  } else if (hasClock(time) && time.innards[1] == kAnyDay) {
    return {false, true, 0, qint32(time.innards[0])};
  }
  return {};
}

TimeDate timeDateAt(qint64 instant, Zone zone) {
  const qint64 days = floorOf(instant, kHundredthsOfDay), day = days + kEpochDay;
  // A day more on either side: the local clock may still show a day within the limits.
  if (day < kFirstDay - 1 || day > kLastDay + 1) return kBlankTime;
  return {{quint32(instant - days * kHundredthsOfDay), quint32(day) | zoneBits(zone)}};
}

TimeDate timeDateOf(const Civil& civil, const LocalZone& zone) {
  if (!civil.hasDate) return civil.hasTime ? TimeDate{{quint32(civil.hundredths), kAnyDay}} : kBlankTime;
  if (civil.day < kFirstDay || civil.day > kLastDay) return kBlankTime;
  if (!civil.hasTime) return {{kAllDay, quint32(civil.day)}};
  const qint64 local = hundredthsOf(civil);
  return timeDateAt(local - 100 * qint64(zone.offsetAtLocal(local)), zone.standard());
}

Civil civilInOwnZone(const TimeDate& time, const LocalZone& zone) {
  if (!hasDay(time) || !hasClock(time)) return civilOf(time, zone);
  const qint64 instant = storedInstant(time);
  return civilAt(instant + 100 * qint64(offsetIn(zoneOf(time), instant, zone)));
}

qint64 instantOf(const TimeDate& time, const LocalZone& zone) {
  if (hasDay(time) && hasClock(time)) return storedInstant(time);
  const Civil civil = civilOf(time, zone);
  const qint64 local = hundredthsOf(civil);
  return civil.hasDate ? local - 100 * qint64(zone.offsetAtLocal(local)) : local;
}

}  // namespace lens::formula

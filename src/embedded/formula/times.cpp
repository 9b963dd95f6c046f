#include "embedded/formula/times.h"

#include <algorithm>
#include <cstdlib>
#include <limits>

#include "embedded/formula/zones.h"

namespace lens::formula {
namespace {

constexpr qint32 kEpochDay = 2440588;     // 1 January 1970
constexpr qint32 kMarchOfZero = 1721120;  // 1 March of the year 0, where a leap day ends its year
constexpr qint32 kFirstDay = 1721426;     // 1 January 1
constexpr qint32 kLastDay = 5373484;      // 31 December 9999
constexpr quint32 kDayMask = 0x00FFFFFF;
constexpr quint32 kEastBit = 0x40000000, kSummerBit = 0x80000000;
constexpr qint64 kEver = std::numeric_limits<qint64>::max() / 4;
constexpr qsizetype kRememberedStretches = 4096;

constexpr qint64 floorOf(qint64 number, qint64 divisor) {
  return number / divisor - (number % divisor < 0 ? 1 : 0);
}

bool hasDay(const TimeDate& time) {
  return time.innards[1] != kAnyDay && (time.innards[1] & kDayMask) != 0;
}
bool hasClock(const TimeDate& time) {
  return time.innards[0] < quint32(kHundredthsOfDay);
}
qint64 storedInstant(const TimeDate& time) {
  return (qint64(time.innards[1] & kDayMask) - kEpochDay) * kHundredthsOfDay + time.innards[0];
}

quint32 zoneBits(Zone zone) {
  const quint32 quarters = quint32(std::abs(zone.offsetMinutes)) / 15;
  return (quarters / 4 & 0xF) << 24 | (quarters % 4) << 28 | (zone.offsetMinutes > 0 ? kEastBit : 0) |
         (zone.observesDst ? kSummerBit : 0);
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

LocalZone::LocalZone(const QTimeZone& zone) : zone_(zone.isValid() ? zone : QTimeZone::utc()) {
  const auto minutesIn = [this](int month) {
    const QDateTime first(QDate(QDate::currentDate().year(), month, 1), QTime(0, 0), Qt::UTC);
    return zone_.offsetFromUtc(first) / 60;
  };
  const int january = minutesIn(1), july = minutesIn(7);
  standard_ = {std::min(january, july), january != july};
}

int LocalZone::offsetByRules(qint64 instant) const {
  return zone_.offsetFromUtc(QDateTime::fromMSecsSinceEpoch(instant * 10, Qt::UTC));
}

LocalZone::Stretch LocalZone::stretchByRules(qint64 instant) const {
  const int offset = offsetByRules(instant);
  Stretch stretch{-kEver, kEver, -kEver, kEver, offset};
  if (!zone_.hasTransitions()) return stretch;
  const QDateTime at = QDateTime::fromMSecsSinceEpoch(instant * 10, Qt::UTC);
  const QDateTime next = zone_.nextTransition(at).atUtc;
  const QDateTime previous = zone_.previousTransition(at.addMSecs(1)).atUtc;
  if (next.isValid()) {
    stretch.until = std::max(floorOf(next.toMSecsSinceEpoch(), 10), instant + 1);
    stretch.localUntil = stretch.until + 100 * qint64(std::max(offset, offsetByRules(stretch.until)));
  }
  if (previous.isValid()) {
    stretch.from = std::min(floorOf(previous.toMSecsSinceEpoch(), 10), instant);
    stretch.localFrom = stretch.from + 100 * qint64(std::max(offset, offsetByRules(stretch.from - 1)));
  }
  return stretch;
}

const LocalZone::Stretch& LocalZone::findStretch(qint64 instant) const {
  if (known_.size() >= kRememberedStretches) known_.clear();
  const auto later = std::upper_bound(known_.constBegin(), known_.constEnd(), instant,
                                      [](qint64 at, const Stretch& stretch) { return at < stretch.from; });
  last_ = later - known_.constBegin() - 1;
  if (last_ < 0 || instant >= known_.at(last_).until) known_.insert(++last_, stretchByRules(instant));
  return known_.at(last_);
}

const LocalZone::Stretch& LocalZone::stretchAt(qint64 instant) const {
  if (last_ < known_.size()) {
    const Stretch& stretch = known_.at(last_);
    if (instant >= stretch.from && instant < stretch.until) return stretch;
  }
  return findStretch(instant);
}

int LocalZone::offsetAt(qint64 instant) const {
  return stretchAt(instant).offset;
}

int LocalZone::offsetAtLocal(qint64 localHundredths) const {
  if (last_ < known_.size()) {
    const Stretch& stretch = known_.at(last_);
    if (localHundredths >= stretch.localFrom && localHundredths < stretch.localUntil) return stretch.offset;
  }
  const Stretch& near = stretchAt(localHundredths - 6000 * qint64(standard_.offsetMinutes));
  if (localHundredths < near.localFrom) return stretchAt(near.from - 1).offset;
  if (localHundredths >= near.localUntil) return stretchAt(near.until).offset;
  return near.offset;
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
    if (time.innards[0] == kAllDay) return {true, false, qint32(time.innards[1] & kDayMask), 0};
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

// Moving times on and back, and counting the days between them.
#include <algorithm>
#include <bitset>
#include <vector>

#include "embedded/formula/functions/time_functions.h"

namespace lens::formula {
namespace {

struct Shift {
  qint64 years = 0, months = 0, days = 0, hundredths = 0;
};

// Whole numbers; beyond any calendar they stay there.
qint64 cutNumber(double number) {
  constexpr double kFar = 1e12;
  return qint64(std::clamp(number, -kFar, kFar));
}

// Days first, then months, then years. A day that the month lacks runs over into the next one. False
// outside the calendar.
bool shiftDays(qint32& day, const Shift& shift) {
  constexpr qint64 kMostDays = 4'000'000;
  const qint64 moved = day + shift.days;
  if (moved < 0 || moved > 2 * kMostDays) return false;
  day = qint32(moved);
  if (shift.months == 0 && shift.years == 0) return true;
  const auto addMonths = [&day](qint64 months) {
    const YearMonthDay date = yearMonthDay(day);
    const qint64 month = qint64(date.year) * 12 + date.month - 1 + months;
    if (month < 12 || month >= 10000 * 12) return false;
    day = julianDay(int(month / 12), int(month % 12) + 1, 1) + date.day - 1;
    return true;
  };
  return addMonths(shift.months) && addMonths(shift.years * 12);
}

// A wall clock moved on; a time alone goes round within its day.
bool shiftCivil(Civil& civil, Shift shift) {
  const qint64 hundredths = civil.hundredths + shift.hundredths % kHundredthsOfDay;
  const qint64 over = hundredths < 0 ? -1 : hundredths >= kHundredthsOfDay ? 1 : 0;
  civil.hundredths = qint32(hundredths - over * kHundredthsOfDay);
  shift.days += shift.hundredths / kHundredthsOfDay + over;
  return !civil.hasDate || shiftDays(civil.day, shift);
}

TimeDate adjusted(const TimeDate& time, const Shift& shift, bool localTime, const LocalZone& zone) {
  Civil civil = civilOf(time, zone);
  if (civil.isBlank()) return kBlankTime;
  const qint64 offset = hundredthsOf(civil) - instantOf(time, zone);
  if (!shiftCivil(civil, shift)) return kBlankTime;
  if (localTime || !civil.hasDate || !civil.hasTime) return timeDateOf(civil, zone);
  // Without regard to summer time: the offset stays what it was.
  return timeDateAt(hundredthsOf(civil) - offset, zone.standard());
}

}  // namespace

Value adjustTimes(const Call& call) {
  bool localTime = false;
  if (call.has(7))
    for (qsizetype i = 0; i < call[7].count(); ++i) {
      const QStringView word = call[7].text(i);
      if (word != u"INLOCALTIME" && word != u"INGMT") return Value::error(fault::WrongKeyword);
      localTime = word == u"INLOCALTIME";
    }
  const Value& times = call[0];
  const LocalZone& zone = call.zone();
  const auto adjustedAt = [&](qsizetype place) {
    const auto number = [&](int argument) {
      return cutNumber(call[argument].number(std::min(place, call[argument].count() - 1)));
    };
    Shift shift{number(1), number(2), number(3), 0};
    shift.hundredths = (number(4) * 3600 + number(5) * 60 + number(6)) * 100;
    return adjusted(times.time(place), shift, localTime, zone);
  };
  const qsizetype count = times.count();
  if (count == 1) return Value::time(adjustedAt(0));
  call.charge(count);
  ListBuilder result(Type::Time, count);
  for (qsizetype i = 0; i < count; ++i) result.addTime(adjustedAt(i));
  return result.take();
}

namespace {

// Days of the week that do not count, and other days, in order and each once.
struct FreeDays {
  std::bitset<8> weekdays;  // 1 to 7
  std::vector<qint32> days;
};

FreeDays freeDaysOf(const Call& call) {
  FreeDays free;
  if (call.has(2))
    for (qsizetype i = 0; i < call[2].count(); ++i) {
      const double number = call[2].number(i);
      if (number >= 1 && number < 8) free.weekdays.set(std::size_t(number));
    }
  if (call.has(3)) {
    for (qsizetype i = 0; i < call[3].count(); ++i) {
      const Civil civil = civilOf(call[3].time(i), call.zone());
      if (civil.hasDate && !free.weekdays.test(std::size_t(weekday(civil.day))))
        free.days.push_back(civil.day);
    }
    std::sort(free.days.begin(), free.days.end());
    free.days.erase(std::unique(free.days.begin(), free.days.end()), free.days.end());
  }
  return free;
}

int businessDaysBetween(qint32 from, qint32 to, const FreeDays& free) {
  const int days = to - from + 1;
  int count = days / 7 * int(7 - free.weekdays.count());
  for (int i = 0; i < days % 7; ++i) count += free.weekdays.test(std::size_t(weekday(from + i))) ? 0 : 1;
  const auto first = std::lower_bound(free.days.begin(), free.days.end(), from);
  const auto last = std::upper_bound(first, free.days.end(), to);
  return count - int(last - first);
}

}  // namespace

Value countBusinessDays(const Call& call) {
  const Value &starts = call[0], &ends = call[1];
  const FreeDays free = freeDaysOf(call);
  const qsizetype count = std::max(starts.count(), ends.count());
  call.charge(count + qsizetype(free.days.size()));
  ListBuilder result(Type::Number, count);
  for (qsizetype i = 0; i < count; ++i) {
    const Civil from = civilOf(starts.time(std::min(i, starts.count() - 1)), call.zone());
    const Civil to = civilOf(ends.time(std::min(i, ends.count() - 1)), call.zone());
    const bool counted = from.hasDate && to.hasDate && from.day <= to.day;
    result.addNumber(counted ? businessDaysBetween(from.day, to.day, free) : -1);
  }
  return result.take();
}

}  // namespace lens::formula

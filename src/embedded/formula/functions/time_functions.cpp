// Making and taking apart times, and reading them from text.
#include <algorithm>

#include "embedded/formula/function.h"
#include "embedded/formula/functions/time_functions.h"
#include "embedded/formula/time_text.h"

namespace lens::formula {
namespace {

// Applies to each element.
template <typename Each>
Value eachTime(const Value& list, Each&& time) {
  const qsizetype count = list.count();
  if (count == 1) return Value::time(time(list.time()));
  ListBuilder result(Type::Time, count);
  for (qsizetype i = 0; i < count; ++i) result.addTime(time(list.time(i)));
  return result.take();
}
template <typename Each>
Value eachCivil(const Call& call, Each&& number) {
  const Value& list = call[0];
  const LocalZone& zone = call.zone();
  const qsizetype count = list.count();
  if (count == 1) return Value::number(double(number(civilOf(list.time(), zone))));
  call.charge(count);
  ListBuilder result(Type::Number, count);
  for (qsizetype i = 0; i < count; ++i) result.addNumber(double(number(civilOf(list.time(i), zone))));
  return result.take();
}

// --- Parts ---------------------------------------------------------------------------------------------

Value year(const Call& call) {
  return eachCivil(call,
                   [](const Civil& civil) { return civil.hasDate ? yearMonthDay(civil.day).year : -1; });
}
Value month(const Call& call) {
  return eachCivil(call,
                   [](const Civil& civil) { return civil.hasDate ? yearMonthDay(civil.day).month : -1; });
}
Value day(const Call& call) {
  return eachCivil(call, [](const Civil& civil) { return civil.hasDate ? yearMonthDay(civil.day).day : -1; });
}
Value weekdayOf(const Call& call) {
  return eachCivil(call, [](const Civil& civil) { return civil.hasDate ? weekday(civil.day) : -1; });
}
Value hour(const Call& call) {
  return eachCivil(call, [](const Civil& civil) { return civil.hasTime ? civil.hundredths / 360000 : -1; });
}
Value minute(const Call& call) {
  return eachCivil(call,
                   [](const Civil& civil) { return civil.hasTime ? civil.hundredths / 6000 % 60 : -1; });
}
Value second(const Call& call) {
  return eachCivil(call, [](const Civil& civil) { return civil.hasTime ? civil.hundredths / 100 % 60 : -1; });
}

// --- Making --------------------------------------------------------------------------------------------

constexpr int kMostNumbers = 6;

// A number that no calendar holds becomes one that every check refuses.
int wholeNumber(double number) {
  return number > -1e6 && number < 1e6 ? int(number) : -1'000'000;
}

bool setDate(Civil& civil, const int* numbers) {
  if (!dateExists(numbers[0], numbers[1], numbers[2])) return false;
  civil.hasDate = true;
  civil.day = julianDay(numbers[0], numbers[1], numbers[2]);
  return true;
}
bool setClock(Civil& civil, const int* numbers) {
  const int hours = numbers[0], minutes = numbers[1], seconds = numbers[2];
  if (hours < 0 || hours > 23 || minutes < 0 || minutes > 59 || seconds < 0 || seconds > 59) return false;
  civil.hasTime = true;
  civil.hundredths = ((hours * 60 + minutes) * 60 + seconds) * 100;
  return true;
}

// Lists of numbers pair element by element. What make() refuses becomes a blank time.
template <typename Make>
Value eachOfNumbers(const Call& call, Make&& make) {
  qsizetype count = 0;
  for (int i = 0; i < call.count(); ++i) {
    if (!call[i].isNumber()) return Value::error(fault::NumberExpected);
    count = std::max(count, call[i].count());
  }
  const LocalZone& zone = call.zone();
  const auto timeAt = [&](qsizetype place) {
    int numbers[kMostNumbers];
    for (int i = 0; i < call.count(); ++i)
      numbers[i] = wholeNumber(call[i].number(std::min(place, call[i].count() - 1)));
    Civil civil;
    return make(civil, numbers) ? timeDateOf(civil, zone) : kBlankTime;
  };
  if (count == 1) return Value::time(timeAt(0));
  call.charge(count);
  ListBuilder result(Type::Time, count);
  for (qsizetype i = 0; i < count; ++i) result.addTime(timeAt(i));
  return result.take();
}

// One half of each time.
Value halfOf(const Call& call, bool date) {
  if (!call[0].isTime()) return Value::error(fault::TimeExpected);
  const LocalZone& zone = call.zone();
  call.charge(call[0].count());
  return eachTime(call[0], [&](const TimeDate& time) {
    Civil civil = civilOf(time, zone);
    (date ? civil.hasTime : civil.hasDate) = false;
    return timeDateOf(civil, zone);
  });
}

Value date(const Call& call) {
  switch (call.count()) {
    case 1:
      return halfOf(call, true);
    case 3:
    case 6:
      return eachOfNumbers(call, [](Civil& civil, const int* numbers) { return setDate(civil, numbers); });
    default:
      return Value::error(fault::DateArgumentCount);
  }
}

Value time(const Call& call) {
  switch (call.count()) {
    case 1:
      return halfOf(call, false);
    case 3:
      return eachOfNumbers(call, [](Civil& civil, const int* numbers) { return setClock(civil, numbers); });
    case 6:
      return eachOfNumbers(call, [](Civil& civil, const int* numbers) {
        return setDate(civil, numbers) && setClock(civil, numbers + 3);
      });
    default:
      return Value::error(fault::DateArgumentCount);
  }
}

// --- Now and its days ----------------------------------------------------------------------------------

Value now(const Call& call) {
  return Value::time(call.environment().now());
}

Value dayFromToday(const Call& call, int days) {
  Civil civil = civilOf(call.environment().now(), call.zone());
  civil.hasTime = false;
  civil.day += days;
  return Value::time(timeDateOf(civil, call.zone()));
}
Value today(const Call& call) {
  return dayFromToday(call, 0);
}
Value tomorrow(const Call& call) {
  return dayFromToday(call, 1);
}
Value yesterday(const Call& call) {
  return dayFromToday(call, -1);
}

Value created(const Call& call) {
  return Value::time(call.document().properties().created);
}
Value modified(const Call& call) {
  return Value::time(call.document().properties().modified);
}
Value accessed(const Call& call) {
  return Value::time(call.document().properties().accessed);
}

// --- From text -----------------------------------------------------------------------------------------

// Reads each text. An unreadable one is a blank time or, when they all have to be times, the error.
Value readTimes(const Call& call, bool strict) {
  const Value& texts = call[0];
  const TimeReading reading{call.region(), call.zone(), call.environment().now()};
  ListBuilder result;
  for (qsizetype i = 0; i < texts.count(); ++i) {
    call.charge(texts.text(i).size());
    Value time = Value::time(kBlankTime);
    if (!readTime(texts.text(i), reading, time) && strict) return Value::error(fault::NotATime);
    result.add(time);
  }
  return result.take();
}

Value textToTime(const Call& call) {
  return readTimes(call, false);
}
Value toTime(const Call& call) {
  if (call[0].isTime() || call[0].type() == Type::TimeRange) return call[0];
  if (!call[0].isText()) return Value::error(fault::NotATime);
  return readTimes(call, true);
}

constexpr const char* kSummerRules =
    "Summer time in other zones follows the rules most common at that distance from GMT; rules in the text "
    "of the zone are not read.";

constexpr const char* kCountNote =
    "Two, four or five numbers are an error when it runs, and none at all when it is compiled.";

constexpr Function kTimeFunctions[] = {
    {"@Accessed", 0, 0, "", "", "When the document was last read or written.", accessed},
    {"@Adjust", 7, 8, "dnnnnnnk", "time; years; months; days; hours; minutes; seconds; [keyword]",
     "Moves a time on, or back with negative numbers: seconds first, years last. A day that the month lacks "
     "runs over into the next month. With [INLOCALTIME] the clock keeps its hour when summer time begins or "
     "ends in between.",
     adjustTimes, 0, Form::Call, "INLOCALTIME INGMT"},
    {"@BusinessDays", 2, 4, "ddnd", "from; to; weekdays to leave out; dates to leave out",
     "How many days there are from one date to the other, both included. Weekdays count from 1 for Sunday "
     "to 7 for Saturday. -1 when the end lies before the start or a date is missing.",
     countBusinessDays},
    {"@Created", 0, 0, "", "", "When the document was made.", created},
    {"@Date", 1, kAnyCount, "v", "year; month; day",
     "A date. The year has all its digits. Three more numbers, for a time, are passed over; of a single "
     "time it gives the date. A day that does not exist gives a blank time.",
     date, trait::RaggedCount, Form::Call, nullptr, kCountNote},
    {"@Day", 1, 1, "d", "time", "The day of the month, 1 to 31; -1 for a time without a date.", day},
    {"@GetCurrentTimeZone", 0, 0, "", "",
     "The machine's zone as text: hours west of GMT behind Z, 1 behind DO when there is summer time, and "
     "behind DL when it begins and ends.",
     currentTimeZone, 0, Form::Call, nullptr,
     "The platform's number of the zone (ZX) is left out: no list of these numbers is published."},
    {"@Hour", 1, 1, "d", "time", "The hour, 0 to 23; -1 for a date without a time.", hour},
    {"@Minute", 1, 1, "d", "time", "The minute, 0 to 59; -1 for a date without a time.", minute},
    {"@Modified", 0, 0, "", "", "When the document was last written.", modified},
    {"@Month", 1, 1, "d", "time", "The month, 1 to 12; -1 for a time without a date.", month},
    {"@Now", 0, 2, "kt", "[keyword]; server", "The date and time now.", now, 0, Form::Call, nullptr,
     "Always the clock of this machine: there is no server whose clock could be asked."},
    {"@Second", 1, 1, "d", "time", "The second, 0 to 59; -1 for a date without a time.", second},
    {"@TextToTime", 1, 1, "t", "text",
     "The time that the text says, in the order of the machine's settings: a date, a time, both, a range, or "
     "one of the words Today, Tomorrow and Yesterday. Any other text gives a blank time.",
     textToTime},
    {"@Time", 1, kAnyCount, "v", "hour; minute; second",
     "A time of day. Six numbers, with year, month and day in front, give a date and time; of a single time "
     "it gives the time of day. Numbers that no clock shows give a blank time.",
     time, trait::RaggedCount, Form::Call, nullptr, kCountNote},
    {"@TimeMerge", 2, 3, "ddt", "date; time; zone",
     "A time with the date of the first and the clock of the second one, as clocks in the zone show it; "
     "without a zone, as they do here. The zone is a text that @GetCurrentTimeZone or a zone field gives.",
     mergeTimes, 0, Form::Call, nullptr, kSummerRules},
    {"@TimeToTextInZone", 2, 3, "dtt", "time; zone; format",
     "The time as text, as clocks in that zone show it, with the name of the zone. The format is that of "
     "@Text.",
     timeToTextInZone, 0, Form::Call, nullptr, kSummerRules},
    {"@TimeZoneToText", 1, 2, "tk", "zone; [keyword]",
     "A zone, given as the text of a zone field, as people read it: distance from GMT and name.",
     timeZoneToText, 0, Form::Call, nullptr,
     "Names zones by their short names; keywords change nothing, because what they do is not published."},
    {"@Today", 0, 0, "", "", "The date of today.", today},
    {"@Tomorrow", 0, 0, "", "", "The date of tomorrow.", tomorrow},
    {"@ToTime", 1, 1, "v", "value", "Texts as times; times stay as they are. Fails when one is no time.",
     toTime},
    {"@Weekday", 1, 1, "d", "time",
     "The day of the week, from 1 for Sunday to 7 for Saturday; -1 for a time without a date.", weekdayOf},
    {"@Year", 1, 1, "d", "time", "The year with all its digits; -1 for a time without a date.", year},
    {"@Yesterday", 0, 0, "", "", "The date of yesterday.", yesterday},
    {"@Zone", 0, 1, "d", "time",
     "The zone of the machine, or the one that a time was written in: hours west of GMT, without summer "
     "time.",
     zoneHours},
};

}  // namespace

std::span<const Function> timeFunctions() {
  return kTimeFunctions;
}

}  // namespace lens::formula

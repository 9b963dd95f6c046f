// Times in other zones, and zones as text: "Z=5$DO=1$DL=3 2 1 11 1 1$ZN=EST".
#include <QStringList>
#include <cstdlib>

#include "embedded/formula/functions/time_functions.h"
#include "embedded/formula/time_text.h"
#include "embedded/formula/zones.h"
#include "notes/literals.h"

namespace lens::formula {
namespace {

// Hours west; quarter hours stand in front as minutes: 3003 is three and a half hours.
QString zoneNumber(int minutesEast) {
  const int minutes = std::abs(minutesEast);
  const int number = minutes % 60 * 100 + minutes / 60;
  return QString::number(minutesEast > 0 ? -number : number);
}

// The zone that a text tells, "Z=..." or a name.
Zone zoneOfText(QStringView text) {
  Zone zone;
  bool summer = false, found = false;
  for (const QStringView part : text.split(u'$')) {
    bool isNumber = false;
    const QStringView value = part.sliced(qMin(part.size(), part.indexOf(u'=') + 1));
    const int number = value.trimmed().toInt(&isNumber);
    if (part.startsWith(u"Z=", Qt::CaseInsensitive) && isNumber) {
      const int size = qMin(std::abs(number), 4515), minutes = size % 100 % 16 * 60 + size / 100;
      zone.offsetMinutes = number > 0 ? -minutes : minutes;
      found = true;
    } else if (part.startsWith(u"DO=", Qt::CaseInsensitive) && isNumber) {
      zone.observesDst = number != 0;
    }
  }
  if (!found && !zoneByName(text.trimmed(), zone, summer)) throw Fault{fault::CannotCompute};
  return zone;
}

int daysInMonth(int year, int month) {
  int days = 31;
  while (!dateExists(year, month, days)) --days;
  return days;
}

// "3 2 1": month, week in the month (-1 for the last one) and weekday of a change of the clocks.
QString changeRule(qint32 day) {
  const YearMonthDay date = yearMonthDay(day);
  const bool last = date.day + 7 > daysInMonth(date.year, date.month);
  return u"%1 %2 %3"_s.arg(date.month).arg(last ? -1 : (date.day - 1) / 7 + 1).arg(weekday(day));
}

// When summer time begins and ends this year; "" where the clocks do not change twice.
QString summerRule(int year, const LocalZone& zone) {
  qint32 begin = 0, end = 0;
  const qint32 first = julianDay(year, 1, 1), last = julianDay(year, 12, 31);
  const auto offsetOn = [&zone](qint32 day) {
    return zone.offsetAtLocal(hundredthsOf({true, true, day, kHundredthsOfDay / 2}));
  };
  for (qint32 day = first + 1; day <= last; ++day) {
    const int change = offsetOn(day) - offsetOn(day - 1);
    if (change > 0) begin = day;
    if (change < 0) end = day;
  }
  return begin && end ? changeRule(begin) + u' ' + changeRule(end) : QString();
}

}  // namespace

Value currentTimeZone(const Call& call) {
  const LocalZone& local = call.zone();
  const Zone zone = local.standard();
  QString text =
      u"Z="_s + zoneNumber(zone.offsetMinutes) + u"$DO="_s + QString::number(zone.observesDst ? 1 : 0);
  const Civil now = civilOf(call.environment().now(), local);
  const QString rule = now.hasDate ? summerRule(yearMonthDay(now.day).year, local) : QString();
  if (!rule.isEmpty()) text += u"$DL="_s + rule;
  const QString name = zoneName(zone, false);
  return Value::text(text + u"$ZN="_s + (name.isEmpty() ? offsetName(zone.offsetMinutes) : name));
}

Value mergeTimes(const Call& call) {
  const Value &dates = call[0], &clocks = call[1];
  const LocalZone& local = call.zone();
  const Zone zone = call.has(2) ? zoneOfText(call[2].text()) : local.standard();
  const auto merged = [&](const TimeDate& date, const TimeDate& clock) {
    Civil civil = civilOf(date, local);
    const Civil time = civilOf(clock, local);
    if (!civil.hasDate) return kBlankTime;
    civil.hasTime = time.hasTime, civil.hundredths = time.hundredths;
    if (!civil.hasTime) return timeDateOf(civil, local);
    const qint64 wall = hundredthsOf(civil);
    return timeDateAt(wall - 100 * qint64(offsetInAtLocal(zone, wall, local)), zone);
  };
  const qsizetype count = qMax(dates.count(), clocks.count());
  call.charge(count);
  ListBuilder result(Type::Time, count);
  for (qsizetype i = 0; i < count; ++i)
    result.addTime(merged(dates.time(qMin(i, dates.count() - 1)), clocks.time(qMin(i, clocks.count() - 1))));
  return result.take();
}

Value timeToTextInZone(const Call& call) {
  const Zone zone = zoneOfText(call[1].text());
  TimeFormat format = readTimeFormat(call.has(2) ? call[2].text() : QStringView());
  format.zone = TimeFormat::Zone::Always;
  const LocalZone& local = call.zone();
  const TimeReading reading{call.region(), local, call.environment().now()};
  const Value& times = call[0];
  call.charge(times.count());
  ListBuilder result(Type::Text, times.count());
  for (qsizetype i = 0; i < times.count(); ++i) {
    TimeDate time = times.time(i);
    const Civil civil = civilOf(time, local);
    if (civil.hasDate && civil.hasTime) time = timeDateAt(instantOf(time, local), zone);
    result.addText(timeText(time, format, reading));
  }
  return result.take();
}

Value timeZoneToText(const Call& call) {
  call.charge(call[0].count());
  return eachText(call[0], [](QStringView text) {
    const Zone zone = zoneOfText(text);
    const QString name = zoneName(zone, false);
    const int minutes = std::abs(zone.offsetMinutes);
    const QString clock = u"(GMT%1%2:%3)"_s.arg(QChar(zone.offsetMinutes < 0 ? u'-' : u'+'))
                              .arg(minutes / 60, 2, 10, QLatin1Char('0'))
                              .arg(minutes % 60, 2, 10, QLatin1Char('0'));
    return Text(name.isEmpty() ? clock : clock + u' ' + name);
  });
}

Value zoneHours(const Call& call) {
  const LocalZone& local = call.zone();
  const auto hours = [](Zone zone) { return 0.0 - zone.offsetMinutes / 60.0; };
  if (!call.has(0)) return Value::number(hours(local.standard()));
  const Value& times = call[0];
  call.charge(times.count());
  ListBuilder result(Type::Number, times.count());
  for (qsizetype i = 0; i < times.count(); ++i) {
    // A date or a time alone has no zone of its own.
    const Civil civil = civilOf(times.time(i), local);
    result.addNumber(hours(civil.hasDate && civil.hasTime ? zoneOf(times.time(i)) : local.standard()));
  }
  return result.take();
}

}  // namespace lens::formula

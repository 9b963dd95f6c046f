#include "embedded/formula/time_text.h"

#include "embedded/formula/zones.h"
#include "notes/literals.h"

namespace lens::formula {
namespace {

void appendNumber(QString& text, int number, int digits) {
  const QString written = QString::number(number);
  for (qsizetype i = written.size(); i < digits; ++i) text += u'0';
  text += written;
}

QString dateText(qint32 day, TimeFormat::Date form, const TimeReading& reading) {
  const YearMonthDay date = yearMonthDay(day);
  if (form == TimeFormat::Date::WithoutCurrentYear) {
    const Civil now = civilOf(reading.now, reading.zone);
    const bool current = now.hasDate && yearMonthDay(now.day).year == date.year;
    form = current ? TimeFormat::Date::MonthDay : TimeFormat::Date::Full;
  }
  const bool withDay = form != TimeFormat::Date::YearMonth, withYear = form != TimeFormat::Date::MonthDay;
  QString text;
  const auto put = [&](int number, int digits, bool wanted) {
    if (!wanted) return;
    if (!text.isEmpty()) text += reading.region.dateSeparator;
    appendNumber(text, number, digits);
  };
  const Region::DateOrder order = reading.region.dateOrder;
  put(date.year, 4, withYear && order == Region::DateOrder::YearMonthDay);
  put(date.day, 2, withDay && order == Region::DateOrder::DayMonthYear);
  put(date.month, 2, true);
  put(date.day, 2, withDay && order != Region::DateOrder::DayMonthYear);
  put(date.year, 4, withYear && order != Region::DateOrder::YearMonthDay);
  return text;
}

QString clockText(qint32 hundredths, TimeFormat::Clock form, const Region& region) {
  const int seconds = hundredths / 100, hour = seconds / 3600;
  // Where dates have the same mark, "11.01.52" could be either.
  const QChar mark = region.timeSeparator == region.dateSeparator ? QChar(u':') : region.timeSeparator;
  QString text;
  appendNumber(text, region.twelveHours ? (hour + 11) % 12 + 1 : hour, 2);
  text += mark;
  appendNumber(text, seconds / 60 % 60, 2);
  if (form == TimeFormat::Clock::Seconds) {
    text += mark;
    appendNumber(text, seconds % 60, 2);
  }
  if (region.twelveHours) text += u' ' + (hour < 12 ? region.am : region.pm);
  return text;
}

// "Today" or "Yesterday"; "" for any other day.
QString dayWord(qint32 day, const TimeReading& reading) {
  const Civil now = civilOf(reading.now, reading.zone);
  if (!now.hasDate) return {};
  if (day == now.day) return u"Today"_s;
  if (day == now.day - 1) return u"Yesterday"_s;
  return {};
}

// The zone behind a time, by the clock that is shown.
QString shownZone(Zone zone, const Civil& shown, qint64 instant) {
  const int minutesEast = int((hundredthsOf(shown) - instant) / 6000);
  const int ahead = minutesEast - zone.offsetMinutes;
  const QString name = ahead == 0 || ahead == 60 ? zoneName(zone, ahead != 0) : QString();
  return name.isEmpty() ? offsetName(minutesEast) : name;
}

}  // namespace

TimeFormat readTimeFormat(QStringView letters) {
  TimeFormat format;
  QChar kind;
  for (const QChar character : letters) {
    if (character.isSpace()) continue;
    const QChar letter = character.toUpper();
    const int digit = letter.unicode() - u'0';
    const bool isDigit = digit >= 0 && digit <= 9;
    if (kind == u'D' && isDigit && digit <= 3)
      format.date = TimeFormat::Date(digit);
    else if (kind == u'T' && isDigit && digit <= 1)
      format.clock = TimeFormat::Clock(digit);
    else if (kind == u'Z' && isDigit && digit <= 2)
      format.zone = TimeFormat::Zone(digit);
    else if (kind == u'S' && isDigit && digit <= 3)
      format.show = TimeFormat::Show(digit);
    else if (kind == u'S' && letter == u'X')
      format.show = TimeFormat::Show::Present;
    kind = isDigit ? QChar() : letter;
  }
  return format;
}

QString timeText(const TimeDate& time, const TimeFormat& format, const TimeReading& reading) {
  Civil shown = civilOf(time, reading.zone);
  if (shown.isBlank()) return {};
  const bool moment = shown.hasDate && shown.hasTime;
  const Zone own = moment ? zoneOf(time) : reading.zone.standard(), local = reading.zone.standard();
  const bool foreign = own.offsetMinutes != local.offsetMinutes || own.observesDst != local.observesDst;
  const bool inOwnZone = moment && format.zone != TimeFormat::Zone::Local && foreign;
  if (inOwnZone) shown = civilInOwnZone(time, reading.zone);

  using Show = TimeFormat::Show;
  QString text;
  if (shown.hasDate && format.show != Show::Time) {
    if (format.show == Show::TodayAndTime) text = dayWord(shown.day, reading);
    if (text.isEmpty()) text = dateText(shown.day, format.date, reading);
  }
  if (shown.hasTime && format.show != Show::Date) {
    if (!text.isEmpty()) text += u' ';
    text += clockText(shown.hundredths, format.clock, reading.region);
    if (inOwnZone || (moment && format.zone == TimeFormat::Zone::Always))
      text += u' ' + shownZone(own, shown, instantOf(time, reading.zone));
  }
  return text;
}

QString rangeText(const TimePair& range, const TimeFormat& format, const TimeReading& reading) {
  const QString from = timeText(range.from, format, reading), to = timeText(range.to, format, reading);
  return from.isEmpty() && to.isEmpty() ? QString() : from + QLatin1String(" - ") + to;
}

}  // namespace lens::formula

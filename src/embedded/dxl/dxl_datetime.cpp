#include "embedded/dxl/dxl_datetime.h"

#include "embedded/format/unid.h"

namespace lens {

namespace {

// Takes digits off the front; false when there are fewer.
bool takeNumber(QStringView& text, int digits, int& number) {
  if (text.size() < digits) return false;
  number = 0;
  for (const QChar c : text.first(digits)) {
    if (c < u'0' || c > u'9') return false;
    number = number * 10 + (c.unicode() - u'0');
  }
  text = text.sliced(digits);
  return true;
}

bool takeDate(QStringView& text, QDate& date) {
  int year = 0, month = 0, day = 0;
  if (!takeNumber(text, 4, year) || !takeNumber(text, 2, month) || !takeNumber(text, 2, day)) return false;
  date = QDate(year, month, day);
  return date.isValid();
}

bool takeTime(QStringView& text, QTime& time) {
  int hour = 0, minute = 0, second = 0, hundredths = 0;
  if (!takeNumber(text, 2, hour) || !takeNumber(text, 2, minute)) return false;
  if (!text.isEmpty() && text[0].isDigit() && !takeNumber(text, 2, second)) return false;
  if (text.startsWith(u',') || text.startsWith(u'.')) {
    text = text.sliced(1);
    if (!takeNumber(text, 2, hundredths)) return false;
  }
  time = QTime(hour, minute, second, hundredths * 10);
  return time.isValid();
}

// Minutes east of GMT.
bool takeOffset(QStringView& text, int& minutes) {
  if (text == u"Z") {
    text = {};
    minutes = 0;
    return true;
  }
  int hours = 0, part = 0;
  const bool west = text.startsWith(u'-');
  if (!west && !text.startsWith(u'+')) return false;
  text = text.sliced(1);
  if (!takeNumber(text, 2, hours)) return false;
  if (text.startsWith(u':')) text = text.sliced(1);
  if (!text.isEmpty() && !takeNumber(text, 2, part)) return false;
  if (hours > 15 || part > 59 || part % 15 != 0) return false;
  minutes = hours * 60 + part;
  if (west) minutes = -minutes;
  return true;
}

bool parseInstant(QStringView text, const QDate& date, bool dst, TimeDate& time) {
  QTime wall;
  if (!takeTime(text, wall)) return false;
  if (text.isEmpty()) {
    time = timeDateOf(DateTime{date, wall});
    return true;
  }
  int offset = 0;
  if (!takeOffset(text, offset) || !text.isEmpty()) return false;
  const QDateTime utc = QDateTime(date, wall, Qt::UTC).addSecs(-qint64(offset) * 60);
  time = timeDateOf(utc, Zone{dst ? offset - 60 : offset, dst});
  return true;
}

QString dateText(const QDate& date) {
  return QString::asprintf("%04d%02d%02d", date.year(), date.month(), date.day());
}

QString timeText(const QTime& time) {
  return QString::asprintf("T%02d%02d%02d,%02d", time.hour(), time.minute(), time.second(), time.msec() / 10);
}

QString offsetText(int minutes) {
  const int size = qAbs(minutes);
  QString text = QString::asprintf("%c%02d", minutes < 0 ? '-' : '+', size / 60);
  if (size % 60 != 0) text += QString::asprintf("%02d", size % 60);
  return text;
}

// As it is meant to be read; whether it reads back is another question.
DxlTime written(const TimeDate& time) {
  if (time.innards[1] == kAnyDay)
    return {timeText(QTime::fromMSecsSinceStartOfDay(int(qMin(time.innards[0], kHundredthsPerDay) * 10))),
            false};
  if (time.innards[0] == kAllDay) return {dateText(QDate::fromJulianDay(dayOf(time))), false};
  const Zone zone = zoneOf(time);
  const int offset = zone.offsetMinutes + (zone.observesDst ? 60 : 0);
  const QDateTime wall = instantOf(time).addSecs(qint64(offset) * 60);
  if (!wall.isValid()) return {};
  return {dateText(wall.date()) + timeText(wall.time()) + offsetText(offset), zone.observesDst};
}

}  // namespace

bool parseDxlTime(QStringView text, bool dst, TimeDate& time) {
  text = text.trimmed();
  time = {};
  if (text.isEmpty()) return true;
  if (text.startsWith(u'T')) {
    QTime wall;
    text = text.sliced(1);
    int offset = 0;
    if (!takeTime(text, wall)) return false;
    // A time alone is wall time; a zone behind it says nothing then.
    if (!text.isEmpty() && (!takeOffset(text, offset) || !text.isEmpty())) return false;
    time = timeDateOfTime(wall);
    return true;
  }
  QDate date;
  if (!takeDate(text, date)) return false;
  if (text.isEmpty()) {
    time = timeDateOfDate(date);
    return true;
  }
  if (!text.startsWith(u'T')) return false;
  return parseInstant(text.sliced(1), date, dst, time);
}

DxlTime dxlTime(const TimeDate& time) {
  const DxlTime text = written(time);
  TimeDate again;
  const bool same =
      !text.text.isEmpty() && parseDxlTime(text.text, text.dst, again) && sameTimeDate(again, time);
  return same ? text : DxlTime{};
}

bool parseTimeDateHex(QStringView text, TimeDate& time) {
  quint64 number = 0;
  if (!parseHexId(text, number)) return false;
  time = unpackTime(number);
  return true;
}

}  // namespace lens

#include "embedded/dxl/dxl_datetime.h"

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

}  // namespace lens

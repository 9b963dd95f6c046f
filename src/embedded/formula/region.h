// How the host writes and reads numbers and dates. A plain record: tests use a fixed one, the program
// fills it from the system's settings.
#pragma once

#include <QChar>
#include <QLocale>
#include <QString>

#include "notes/literals.h"

namespace lens::formula {

struct Region {
  enum class DateOrder { MonthDayYear, DayMonthYear, YearMonthDay };
  DateOrder dateOrder = DateOrder::MonthDayYear;
  QChar dateSeparator = u'/';
  QChar timeSeparator = u':';
  bool twelveHours = true;
  QString am = u"AM"_s, pm = u"PM"_s;
  QChar decimalMark = u'.';
  QChar thousandsMark = u',';
  QString currency = u"$"_s;
  bool currencyBehind = false;
  // "0.5" rather than ".5".
  bool leadingZero = true;
};

Region regionOf(const QLocale& locale);

}  // namespace lens::formula

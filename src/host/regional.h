// Dates, times and values as the user's region writes them, and read back.
//
// Writing and reading are each the inverse of the other: regional order of day, month and year, a
// four-digit year, a blank, the time with seconds. Exact midnight is written as the date alone, a
// time of any day as the time alone, and both are read back as such.
#pragma once

#include <QLocale>
#include <QString>
#include <QStringView>

#include "notes/bridge.h"

namespace lens {

class Regional {
 public:
  explicit Regional(const QLocale& locale);

  QString text(const DateTime& moment) const;
  // Date and time in full, also at midnight: the time is written with seconds.
  QString timeText(const QTime& time) const;
  QString stampText(const QDateTime& moment) const;

  // Reads a text that text() wrote, or that a person would type: blanks, CR and LF at both ends are
  // passed over, seconds may lack, a year of two digits is 20xx up to 49 and 19xx from 50 on.
  // Raises 13 when the text is no date and no time.
  DateTime dateTime(QStringView text) const;

 private:
  QLocale locale_;
  QString dateFormat_;
  QString timeFormat_;
};

// A value as text: dates by the region, everything else as Value::text.
QString textOf(const Value& value, const Regional& regional);

}  // namespace lens

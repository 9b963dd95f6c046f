// Dates, times and values as the user's region writes them, and read back.
//
// Writing and reading are each the inverse of the other: regional order of day, month and year, a
// four-digit year, a blank, the time with seconds. Exact midnight is written as the date alone, a
// time of any day as the time alone, and both are read back as such.
#pragma once

#include <QLocale>
#include <QString>
#include <QStringList>
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

  // Date and time in the region's order, but in the digits 0 to 9 and signs of every character set, with a
  // clock of 24 hours: for where text() would lose characters.
  QString plainText(const DateTime& moment) const;

  // Reads a text that text() or plainText() wrote, or that a person would type: blanks, CR and LF at both
  // ends are passed over, seconds may lack, a year of two digits is 20xx up to 49 and 19xx from 50 on, a date
  // may begin with a year of four digits. Raises 13 when the text is no date and no time.
  DateTime dateTime(QStringView text) const;

 private:
  // Invalid when the text is no time, or something else than the literals parts its numbers.
  QTime readTime(QStringView text, const QStringList& literals) const;

  QLocale locale_;
  QString dateFormat_;
  QString timeFormat_;
  QString dateOrder_;             // the letters d, M and y
  QString forenoon_, afternoon_;  // as readers compare them
  QStringList timeLiterals_;      // what may part the numbers of a time, the same
};

// A value as text: dates by the region, everything else as Value::text.
QString textOf(const Value& value, const Regional& regional);

}  // namespace lens

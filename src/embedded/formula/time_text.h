// Times as text and back, by the region's rules.
#pragma once

#include <QStringView>

#include "embedded/formula/region.h"
#include "embedded/formula/times.h"
#include "embedded/formula/value.h"

namespace lens::formula {

// What reading needs to know beside the text.
struct TimeReading {
  const Region& region;
  const LocalZone& zone;
  TimeDate now;  // for a date without a year and for "Today"
};

// Reads what a time constant may hold between its brackets: a date, a time or both in either order, with
// AM/PM, seconds and a zone name optional; the words Today, Tomorrow, Yesterday; "d1 - d2" gives a range.
// False, and nothing written, when the whole text is none of these. Blanks around are passed over.
bool readTime(QStringView text, const TimeReading& reading, Value& time);

// The format letters of @Text for times ("D0T1Z2S3", any order, case and blanks ignored; an unknown
// letter is passed over). What is left out takes the default: all there is.
struct TimeFormat {
  enum class Date { Full, WithoutCurrentYear, MonthDay, YearMonth };
  enum class Clock { Seconds, Minutes };
  enum class Zone { Local, Foreign, Always };
  enum class Show { Date, Time, Both, TodayAndTime, Present };
  Date date = Date::Full;
  Clock clock = Clock::Seconds;
  Zone zone = Zone::Local;
  Show show = Show::Present;
};
TimeFormat readTimeFormat(QStringView letters);

// A blank time is an empty text.
QString timeText(const TimeDate& time, const TimeFormat& format, const TimeReading& reading);
QString rangeText(const TimePair& range, const TimeFormat& format, const TimeReading& reading);

}  // namespace lens::formula

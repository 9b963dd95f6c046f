// Times as formulas count with them: days and hundredths of a second of local time, with the zone rules
// of the machine behind it.
#pragma once

#include "embedded/format/timedate.h"
#include "embedded/formula/local_zone.h"

namespace lens::formula {

inline constexpr qint32 kHundredthsOfDay = qint32(kHundredthsPerDay);  // signed, for differences

// A moment as a wall clock and a calendar show it. Either half may be missing.
struct Civil {
  bool hasDate = false, hasTime = false;
  qint32 day = 0;         // Julian day number
  qint32 hundredths = 0;  // since midnight
  bool isBlank() const { return !hasDate && !hasTime; }
};

struct YearMonthDay {
  int year = 0, month = 0, day = 0;
};
// The proleptic Gregorian calendar, in whole numbers.
qint32 julianDay(int year, int month, int day);  // of a date that exists
YearMonthDay yearMonthDay(qint32 julianDay);
bool dateExists(int year, int month, int day);  // years 1 to 9999
// 1 Sunday to 7 Saturday.
int weekday(qint32 julianDay);

// A stored time as the local clock shows it, and back; blank when it is neither date nor time.
Civil civilOf(const TimeDate& time, const LocalZone& zone);
TimeDate timeDateOf(const Civil& civil, const LocalZone& zone);
// A stored time from an instant (hundredths of a second since 1970 GMT) and the zone word that it keeps;
// blank outside the years 1 to 9999.
TimeDate timeDateAt(qint64 instant, Zone zone);
// The clock and calendar at a count of hundredths since 1 January 1970, both halves there.
Civil civilAt(qint64 localHundredths);
qint64 hundredthsOf(const Civil& civil);  // back; a missing half counts 0
// As a clock in the time's own zone showed it (without summer time when the zone has none).
Civil civilInOwnZone(const TimeDate& time, const LocalZone& zone);
// Hundredths of a second since 1970 GMT; a date alone counts from its local midnight, a time alone from
// 1 January 1970. For comparing and for differences.
qint64 instantOf(const TimeDate& time, const LocalZone& zone);
// A blank time: what invalid numbers and unreadable texts give.
inline constexpr TimeDate kBlankTime{};

}  // namespace lens::formula

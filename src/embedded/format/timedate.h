// TIMEDATE: hundredths of a second since midnight GMT, then a Julian day with a zone byte.
#pragma once

#include <QByteArray>
#include <QDateTime>
#include <QString>

#include "notes/bridge.h"
#include "notes/capi.h"

namespace lens {

inline constexpr quint32 kAllDay = 0xFFFFFFFF;  // first word: a date without a time
inline constexpr quint32 kAnyDay = 0xFFFFFFFF;  // second word: a time without a date

// The zone of a stored time: standard offset east of GMT in minutes (quarter hours), and whether the
// zone observes daylight saving.
struct Zone {
  int offsetMinutes = 0;
  bool observesDst = false;
};

// A UTC instant with the zone that it was written in.
TimeDate timeDateOf(const QDateTime& instant, Zone zone);
TimeDate timeDateOfDate(const QDate& date);
TimeDate timeDateOfTime(const QTime& wallTime);
// A local date and time as a procedure gives it; the zone is the machine's.
TimeDate timeDateOf(const DateTime& local);
// Now, in the machine's zone.
TimeDate timeDateNow();

// The instant in UTC; invalid for a cleared or wildcard value and for a date or time alone.
QDateTime instantOf(const TimeDate& time);
// As users see it: local date and time, or one half of it. Both halves are invalid for a cleared,
// wildcard or malformed value.
DateTime localOf(const TimeDate& time);
Zone zoneOf(const TimeDate& time);

void appendTimeDate(QByteArray& bytes, const TimeDate& time);
// The 8 bytes at the place; they must be there.
TimeDate readTimeDate(const char* bytes);
// "%08X%08X" of the second and the first word: how replica IDs and halves of UNIDs are written.
QString timeDateHex(const TimeDate& time);

}  // namespace lens

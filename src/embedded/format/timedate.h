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

inline constexpr quint32 kHundredthsPerDay = 24 * 60 * 60 * 100;

// The two halves of a stored time. The day is a Julian day number; the zone stands in the byte above it.
inline constexpr quint32 kDayMask = 0x00FFFFFF;
inline quint32 dayOf(const TimeDate& time) {
  return time.innards[1] & kDayMask;
}
inline bool hasDay(const TimeDate& time) {
  return time.innards[1] != kAnyDay && dayOf(time) != 0;
}
inline bool hasClock(const TimeDate& time) {
  return time.innards[0] < kHundredthsPerDay;
}
// Neither date nor time: all zeros.
inline bool isClearedTime(const TimeDate& time) {
  return time.innards[0] == 0 && time.innards[1] == 0;
}
// Bit for bit, the zone included.
inline bool sameTimeDate(const TimeDate& a, const TimeDate& b) {
  return a.innards[0] == b.innards[0] && a.innards[1] == b.innards[1];
}
// One number for all bits, and back; and one that orders instants whatever their zones.
inline quint64 packTime(const TimeDate& time) {
  return quint64(time.innards[1]) << 32 | time.innards[0];
}
inline TimeDate unpackTime(quint64 packed) {
  return {{quint32(packed), quint32(packed >> 32)}};
}
inline quint64 instantOrder(const TimeDate& time) {
  return quint64(dayOf(time)) << 32 | time.innards[0];
}

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
// The zone as bits of the second word.
quint32 zoneBits(Zone zone);

void appendTimeDate(QByteArray& bytes, const TimeDate& time);
// The 8 bytes at the place; they must be there.
TimeDate readTimeDate(const char* bytes);
// "%08X%08X" of the second and the first word: how replica IDs and halves of UNIDs are written.
QString timeDateHex(const TimeDate& time);

}  // namespace lens

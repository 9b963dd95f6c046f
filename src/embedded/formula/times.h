// Times as formulas count with them: days and hundredths of a second of local time, with the zone rules
// of the machine behind it.
#pragma once

#include <QTimeZone>
#include <QVector>

#include "embedded/store/timedate.h"

namespace lens::formula {

inline constexpr qint32 kHundredthsOfDay = 24 * 60 * 60 * 100;

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

// The machine's zone: offsets from GMT with summer time, found fast for moments near those asked before.
// It remembers what it was asked, so each thread has its own.
class LocalZone {
 public:
  explicit LocalZone(const QTimeZone& zone);

  // East of GMT, in seconds, at an instant given in hundredths of a second since 1 January 1970 GMT.
  int offsetAt(qint64 instant) const;
  // The same for a wall clock; a time skipped in spring counts with the offset before it, a time that
  // comes twice in autumn with the first.
  int offsetAtLocal(qint64 localHundredths) const;
  // The zone word of times written here: offset without summer time, and whether there is one.
  Zone standard() const { return standard_; }

 private:
  // From one change of the clocks to the next; the local bounds share out the wall clock, skipped and
  // repeated hours included.
  struct Stretch {
    qint64 from = 0, until = 0;  // instants in hundredths
    qint64 localFrom = 0, localUntil = 0;
    int offset = 0;
  };
  const Stretch& stretchAt(qint64 instant) const;
  const Stretch& findStretch(qint64 instant) const;
  Stretch stretchByRules(qint64 instant) const;
  int offsetByRules(qint64 instant) const;
  QTimeZone zone_;
  Zone standard_;
  mutable QVector<Stretch> known_;
  mutable qsizetype last_ = 0;
};

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

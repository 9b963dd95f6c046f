// The zone that the machine's clock runs in.
#pragma once

#include <QTimeZone>
#include <QVector>

#include "embedded/format/timedate.h"

namespace lens::formula {

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
  struct Interval {
    qint64 from = 0, until = 0;  // instants in hundredths
    qint64 localFrom = 0, localUntil = 0;
    int offset = 0;
  };
  const Interval& intervalAt(qint64 instant) const;
  const Interval& findInterval(qint64 instant) const;
  Interval intervalByRules(qint64 instant) const;
  int offsetByRules(qint64 instant) const;
  QTimeZone zone_;
  Zone standard_;
  mutable QVector<Interval> known_;
  mutable qsizetype last_ = 0;
};

}  // namespace lens::formula

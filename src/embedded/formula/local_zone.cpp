#include "embedded/formula/local_zone.h"

#include <algorithm>
#include <limits>

#include "embedded/formula/whole_division.h"

namespace lens::formula {
namespace {

constexpr qint64 kEver = std::numeric_limits<qint64>::max() / 4;
constexpr qsizetype kRememberedIntervals = 4096;

}  // namespace

LocalZone::LocalZone(const QTimeZone& zone) : zone_(zone.isValid() ? zone : QTimeZone::utc()) {
  const auto minutesIn = [this](int month) {
    const QDateTime first(QDate(QDate::currentDate().year(), month, 1), QTime(0, 0), Qt::UTC);
    return zone_.offsetFromUtc(first) / 60;
  };
  const int january = minutesIn(1), july = minutesIn(7);
  standard_ = {std::min(january, july), january != july};
}

int LocalZone::offsetByRules(qint64 instant) const {
  return zone_.offsetFromUtc(QDateTime::fromMSecsSinceEpoch(instant * 10, Qt::UTC));
}

LocalZone::Interval LocalZone::intervalByRules(qint64 instant) const {
  const int offset = offsetByRules(instant);
  Interval interval{-kEver, kEver, -kEver, kEver, offset};
  if (!zone_.hasTransitions()) return interval;
  const QDateTime at = QDateTime::fromMSecsSinceEpoch(instant * 10, Qt::UTC);
  const QDateTime next = zone_.nextTransition(at).atUtc;
  const QDateTime previous = zone_.previousTransition(at.addMSecs(1)).atUtc;
  if (next.isValid()) {
    interval.until = std::max(floorOf(next.toMSecsSinceEpoch(), 10), instant + 1);
    interval.localUntil = interval.until + 100 * qint64(std::max(offset, offsetByRules(interval.until)));
  }
  if (previous.isValid()) {
    interval.from = std::min(floorOf(previous.toMSecsSinceEpoch(), 10), instant);
    interval.localFrom = interval.from + 100 * qint64(std::max(offset, offsetByRules(interval.from - 1)));
  }
  return interval;
}

const LocalZone::Interval& LocalZone::findInterval(qint64 instant) const {
  if (known_.size() >= kRememberedIntervals) known_.clear();
  const auto later = std::upper_bound(known_.constBegin(), known_.constEnd(), instant,
                                      [](qint64 at, const Interval& interval) { return at < interval.from; });
  last_ = later - known_.constBegin() - 1;
  if (last_ < 0 || instant >= known_.at(last_).until) known_.insert(++last_, intervalByRules(instant));
  return known_.at(last_);
}

const LocalZone::Interval& LocalZone::intervalAt(qint64 instant) const {
  if (last_ < known_.size()) {
    const Interval& interval = known_.at(last_);
    if (instant >= interval.from && instant < interval.until) return interval;
  }
  return findInterval(instant);
}

int LocalZone::offsetAt(qint64 instant) const {
  return intervalAt(instant).offset;
}

int LocalZone::offsetAtLocal(qint64 localHundredths) const {
  if (last_ < known_.size()) {
    const Interval& interval = known_.at(last_);
    if (localHundredths >= interval.localFrom && localHundredths < interval.localUntil)
      return interval.offset;
  }
  const Interval& near = intervalAt(localHundredths - 6000 * qint64(standard_.offsetMinutes));
  if (localHundredths < near.localFrom) return intervalAt(near.from - 1).offset;
  if (localHundredths >= near.localUntil) return intervalAt(near.until).offset;
  return near.offset;
}

}  // namespace lens::formula

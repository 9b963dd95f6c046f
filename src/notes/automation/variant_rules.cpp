#include "notes/automation/variant_rules.h"

#include <cmath>
#include <limits>

namespace lens {
namespace {

constexpr qint64 kMsecsOfDay = 86'400'000;
constexpr double kBeforeFirstDay = -657'435, kBehindLastDay = 2'958'466;

QDate dayZero() {
  return QDate(1899, 12, 30);
}

template <class Integer>
bool isHeldBy(double number) {
  return number >= std::numeric_limits<Integer>::min() && number <= std::numeric_limits<Integer>::max() &&
         number == std::trunc(number) && !(number == 0 && std::signbit(number));
}

}  // namespace

quint16 variantKindOf(const Value& value) {
  switch (value.kind()) {
    case Value::Kind::Empty:
      return variantkind::Empty;
    case Value::Kind::Text:
      return variantkind::Text;
    case Value::Kind::Number:
      if (isHeldBy<qint16>(value.number())) return variantkind::Int16;
      return isHeldBy<qint32>(value.number()) ? variantkind::Int32 : variantkind::Double;
    case Value::Kind::Boolean:
      return variantkind::Boolean;
    case Value::Kind::DateTime:
      return variantkind::Date;
    case Value::Kind::Array:
      return variantkind::Array | variantkind::Variant;
    case Value::Kind::Object:
      return variantkind::Dispatch;
  }
  return variantkind::Empty;
}

double variantDate(const DateTime& moment) {
  if (!moment.date.isValid() && !moment.time.isValid()) throw RuntimeError(err::TypeMismatch);
  const double days = moment.date.isValid() ? double(dayZero().daysTo(moment.date)) : 0;
  if (days <= kBeforeFirstDay || days >= kBehindLastDay) throw RuntimeError(err::Overflow);
  const double time = moment.time.isValid() ? double(moment.time.msecsSinceStartOfDay()) / kMsecsOfDay : 0;
  return days < 0 ? days - time : days + time;
}

DateTime momentOfVariant(double date) {
  if (!(date > kBeforeFirstDay && date < kBehindLastDay)) throw RuntimeError(err::Overflow);
  double day = std::trunc(date);
  qint64 msecs = qRound64(std::abs(date - day) * kMsecsOfDay);
  // A fraction that is a day but for its rounding.
  if (msecs == kMsecsOfDay) {
    msecs = 0;
    day += 1;
  }
  const QTime time = QTime::fromMSecsSinceStartOfDay(int(msecs));
  if (day == 0) return {QDate(), time};
  return {dayZero().addDays(qint64(day)), msecs == 0 ? QTime() : time};
}

}  // namespace lens

#include "embedded/formula/operators.h"

#include <cmath>

#include "embedded/formula/collation.h"
#include "embedded/formula/formula.h"

namespace lens::formula {
namespace {

// What stands for an operand.
const Value& readable(const Value& operand) {
  return readsAsEmpty(operand) ? emptyText() : operand;
}

// Fails with an error value where an operand is one, or is @Unavailable.
bool refused(const Value& operand, Value& error) {
  if (operand.isError())
    error = operand;
  else if (operand.type() == Type::Unavailable)
    error = Value::error(fault::UnavailableUsed);
  else
    return false;
  return true;
}

void charge(Evaluation* evaluation, qint64 steps) {
  if (evaluation) evaluation->charge(steps);
}

// Calls visit(i, j) for each pair that the operator looks at, until it returns true.
template <typename Visit>
bool anyPair(bool permuted, qsizetype lefts, qsizetype rights, Visit&& visit) {
  if (permuted) {
    for (qsizetype i = 0; i < lefts; ++i)
      for (qsizetype j = 0; j < rights; ++j)
        if (visit(i, j)) return true;
    return false;
  }
  for (qsizetype i = 0; i < qMax(lefts, rights); ++i)
    if (visit(qMin(i, lefts - 1), qMin(i, rights - 1))) return true;
  return false;
}

qint64 pairCount(bool permuted, qint64 lefts, qint64 rights) {
  return permuted ? lefts * rights : qMax(lefts, rights);
}

// --- Comparison ----------------------------------------------------------------------------------------

bool satisfied(Operator op, int order) {
  switch (op) {
    case Operator::Equal:
      return order == 0;
    case Operator::NotEqual:
      return order != 0;
    case Operator::Less:
      return order < 0;
    case Operator::Greater:
      return order > 0;
    case Operator::LessEqual:
      return order <= 0;
    default:
      return order >= 0;
  }
}

template <typename T>
int orderOf(T a, T b) {
  return a < b ? -1 : a > b ? 1 : 0;
}

// As numbers compare, where nothing equals what is no number.
bool numbersSatisfy(Operator op, double a, double b) {
  switch (op) {
    case Operator::Equal:
      return a == b;
    case Operator::NotEqual:
      return a != b;
    case Operator::Less:
      return a < b;
    case Operator::Greater:
      return a > b;
    case Operator::LessEqual:
      return a <= b;
    default:
      return a >= b;
  }
}

bool anyTextPair(Operator op, bool permuted, const Value& left, const Value& right, Evaluation* evaluation) {
  const bool forEquality = op == Operator::Equal || op == Operator::NotEqual;
  return anyPair(permuted, left.count(), right.count(), [&](qsizetype i, qsizetype j) {
    const QStringView a = left.text(i), b = right.text(j);
    charge(evaluation, qMin(a.size(), b.size()) / 16);
    // Equal means equal characters; only an order asks the collation.
    return satisfied(op, forEquality ? int(a != b) : compareTexts(a, b));
  });
}

bool anyTimePair(Operator op, bool permuted, const Value& left, const Value& right, Evaluation& evaluation) {
  const LocalZone& zone = evaluation.environment().zone();
  const auto pairOf = [](const Value& value, qsizetype i) {
    return value.isTime() ? TimePair{value.time(i), value.time(i)} : value.range(i);
  };
  return anyPair(permuted, left.count(), right.count(), [&](qsizetype i, qsizetype j) {
    const TimePair a = pairOf(left, i), b = pairOf(right, j);
    const int from = orderOf(instantOf(a.from, zone), instantOf(b.from, zone));
    return satisfied(op, from != 0 ? from : orderOf(instantOf(a.to, zone), instantOf(b.to, zone)));
  });
}

bool isTimes(const Value& value) {
  return value.type() == Type::Time || value.type() == Type::TimeRange;
}
bool isWords(const Value& value) {
  return value.type() == Type::Text || value.type() == Type::Keyword;
}
bool isEmptyText(const Value& value) {
  return value.isText() && value.count() == 1 && value.text().isEmpty();
}

Value compare(Operator op, const Value& left, const Value& right, Evaluation* evaluation) {
  const bool permuted = isPermuted(op);
  op = pairwise(op);
  const Value &a = readable(left), &b = readable(right);
  // A missing name is empty text beside text, and in no relation at all to a number or a time.
  if ((left.type() == Type::Missing && !isWords(b)) || (right.type() == Type::Missing && !isWords(a)))
    return Value::truth(false);
  charge(evaluation, pairCount(permuted, a.count(), b.count()));
  if (a.isNumber() && b.isNumber()) {
    const Cell *x = a.cells(), *y = b.cells();
    return Value::truth(anyPair(permuted, a.count(), b.count(), [&](qsizetype i, qsizetype j) {
      return numbersSatisfy(op, x[i].number, y[j].number);
    }));
  }
  if (isWords(a) && isWords(b)) return Value::truth(anyTextPair(op, permuted, a, b, evaluation));
  if (isTimes(a) && isTimes(b)) {
    if (!evaluation) throw Fault{fault::NotInContext};
    return Value::truth(anyTimePair(op, permuted, a, b, *evaluation));
  }
  // An empty field of another type is simply different.
  if (isEmptyText(a) || isEmptyText(b)) return Value::truth(op == Operator::NotEqual);
  return Value::error(fault::DifferentTypes);
}

// --- Arithmetic ----------------------------------------------------------------------------------------

double compute(Operator op, double a, double b, bool& failed) {
  switch (op) {
    case Operator::Add:
      return a + b;
    case Operator::Subtract:
      return a - b;
    case Operator::Multiply:
      return a * b;
    case Operator::And:
      return a != 0 && b != 0;
    case Operator::Or:
      return a != 0 || b != 0;
    default:
      failed = failed || b == 0;
      return a / b;
  }
}

Value computeNumbers(Operator op, bool permuted, const Value& left, const Value& right) {
  const Cell *a = left.cells(), *b = right.cells();
  ListBuilder result(Type::Number, pairCount(permuted, left.count(), right.count()));
  bool failed = false;
  anyPair(permuted, left.count(), right.count(), [&](qsizetype i, qsizetype j) {
    result.addNumber(compute(op, a[i].number, b[j].number, failed));
    return failed;
  });
  return failed ? Value::error(fault::CannotCompute) : result.take();
}

Value joinTexts(bool permuted, const Value& left, const Value& right, Evaluation* evaluation) {
  constexpr qsizetype kUnitsInStep = 32;
  if (left.count() == 1 && right.count() == 1) {
    charge(evaluation, (left.text().size() + right.text().size()) / kUnitsInStep);
    return Value::text(Text::joined(left.text(), right.text()));
  }
  ListBuilder result(Type::Text, pairCount(permuted, left.count(), right.count()));
  anyPair(permuted, left.count(), right.count(), [&](qsizetype i, qsizetype j) {
    charge(evaluation, (left.text(i).size() + right.text(j).size()) / kUnitsInStep);
    result.addText(Text::joined(left.text(i), right.text(j)));
    return false;
  });
  return result.take();
}

qint64 floorMod(qint64 a, qint64 b) {
  const qint64 rest = a % b;
  return rest < 0 ? rest + b : rest;
}

// Seconds later. A date stays a date as long as whole days are added, a time of any day turns round at
// midnight, and across a change of the clock the seconds count, not what the clock shows.
TimeDate later(const TimeDate& time, double seconds, const LocalZone& zone) {
  constexpr double kFurthest = 4e11;  // more seconds than the calendar has
  Civil civil = civilOf(time, zone);
  if (civil.isBlank() || !(std::abs(seconds) < kFurthest)) return kBlankTime;
  const qint64 hundredths = std::llround(seconds * 100);
  if (!civil.hasDate) {
    civil.hundredths = qint32(floorMod(civil.hundredths + hundredths, kHundredthsOfDay));
    return timeDateOf(civil, zone);
  }
  if (!civil.hasTime && hundredths % kHundredthsOfDay == 0) {
    const qint64 day = civil.day + hundredths / kHundredthsOfDay;
    if (day <= 0 || day > kDayMask) return kBlankTime;
    civil.day = qint32(day);
    return timeDateOf(civil, zone);
  }
  const qint64 instant = instantOf(time, zone) + hundredths;
  return lens::timeDateOf(QDateTime::fromMSecsSinceEpoch(instant * 10, Qt::UTC), zone.standard());
}

Value shiftTimes(bool permuted, const Value& times, const Value& seconds, double sign, bool timesLeft,
                 Evaluation& evaluation) {
  const LocalZone& zone = evaluation.environment().zone();
  ListBuilder result(Type::Time, pairCount(permuted, times.count(), seconds.count()));
  const auto shift = [&](qsizetype t, qsizetype s) {
    result.addTime(later(times.time(t), sign * seconds.number(s), zone));
    return false;
  };
  if (timesLeft)
    anyPair(permuted, times.count(), seconds.count(), shift);
  else
    anyPair(permuted, seconds.count(), times.count(), [&](qsizetype s, qsizetype t) { return shift(t, s); });
  return result.take();
}

// Between two dates lie whole days, also where the clock was changed between them.
double secondsBetween(const TimeDate& from, const TimeDate& to, const LocalZone& zone) {
  const Civil a = civilOf(from, zone), b = civilOf(to, zone);
  if (a.hasDate && b.hasDate && !a.hasTime && !b.hasTime) return (double(b.day) - a.day) * 86400;
  return double(instantOf(to, zone) - instantOf(from, zone)) / 100;
}

Value timeDifferences(bool permuted, const Value& left, const Value& right, Evaluation& evaluation) {
  const LocalZone& zone = evaluation.environment().zone();
  ListBuilder result(Type::Number, pairCount(permuted, left.count(), right.count()));
  anyPair(permuted, left.count(), right.count(), [&](qsizetype i, qsizetype j) {
    result.addNumber(secondsBetween(right.time(j), left.time(i), zone));
    return false;
  });
  return result.take();
}

Evaluation& needed(Evaluation* evaluation) {
  if (!evaluation) throw Fault{fault::NotInContext};
  return *evaluation;
}

Value sum(bool permuted, const Value& a, const Value& b, Evaluation* evaluation) {
  switch (a.type()) {
    case Type::Text:
      return b.isText() ? joinTexts(permuted, a, b, evaluation) : Value::error(fault::TextExpected);
    case Type::Number:
      if (b.isNumber()) return computeNumbers(Operator::Add, permuted, a, b);
      if (b.isTime()) return shiftTimes(permuted, b, a, 1, false, needed(evaluation));
      return Value::error(fault::NumberExpected);
    case Type::Time:
      if (b.isNumber()) return shiftTimes(permuted, a, b, 1, true, needed(evaluation));
      return Value::error(fault::NumberExpected);
    default:
      return Value::error(fault::ValueExpected);
  }
}

Value difference(bool permuted, const Value& a, const Value& b, Evaluation* evaluation) {
  if (a.isNumber() && b.isNumber()) return computeNumbers(Operator::Subtract, permuted, a, b);
  if (!a.isTime()) return Value::error(fault::NumberExpected);
  if (b.isTime()) return timeDifferences(permuted, a, b, needed(evaluation));
  if (b.isNumber()) return shiftTimes(permuted, a, b, -1, true, needed(evaluation));
  return Value::error(fault::TimeExpected);
}

}  // namespace

const Value& emptyText() {
  static const thread_local Value empty = Value::text(Text());
  return empty;
}

bool isComparison(Operator op) {
  return op >= Operator::Equal && op <= Operator::PermutedGreaterEqual;
}

bool isPermuted(Operator op) {
  switch (op) {
    case Operator::PermutedMultiply:
    case Operator::PermutedDivide:
    case Operator::PermutedAdd:
    case Operator::PermutedSubtract:
      return true;
    default:
      return op >= Operator::PermutedEqual && op <= Operator::PermutedGreaterEqual;
  }
}

Operator pairwise(Operator op) {
  switch (op) {
    case Operator::PermutedMultiply:
      return Operator::Multiply;
    case Operator::PermutedDivide:
      return Operator::Divide;
    case Operator::PermutedAdd:
      return Operator::Add;
    case Operator::PermutedSubtract:
      return Operator::Subtract;
    case Operator::PermutedEqual:
      return Operator::Equal;
    case Operator::PermutedNotEqual:
      return Operator::NotEqual;
    case Operator::PermutedLess:
      return Operator::Less;
    case Operator::PermutedGreater:
      return Operator::Greater;
    case Operator::PermutedLessEqual:
      return Operator::LessEqual;
    case Operator::PermutedGreaterEqual:
      return Operator::GreaterEqual;
    default:
      return op;
  }
}

Value applyBinary(Operator op, const Value& left, const Value& right, Evaluation* evaluation) {
  Value error;
  if (refused(left, error) || refused(right, error)) return error;
  if (isComparison(op)) return compare(op, left, right, evaluation);
  const Value &a = readable(left), &b = readable(right);
  const bool permuted = isPermuted(op);
  charge(evaluation, pairCount(permuted, a.count(), b.count()));
  switch (pairwise(op)) {
    case Operator::Concatenate:
      return concatenate(a, b);
    case Operator::Add:
      return sum(permuted, a, b, evaluation);
    case Operator::Subtract:
      return difference(permuted, a, b, evaluation);
    default:
      if (!a.isNumber() || !b.isNumber()) return Value::error(fault::NumberExpected);
      return computeNumbers(pairwise(op), permuted, a, b);
  }
}

Value concatenate(Value left, const Value& right) {
  Value error;
  if (refused(left, error) || refused(right, error)) return error;
  const Value& behind = readable(right);
  if (&readable(left) != &left) left = readable(left);
  ListBuilder list(std::move(left));
  list.add(behind);
  return list.take();
}

Value applyUnary(Operator op, const Value& operand) {
  Value error;
  if (refused(operand, error)) return error;
  if (!operand.isNumber()) return Value::error(fault::NumberExpected);
  if (op == Operator::Plus) return operand;
  return eachNumber(operand, [op](double n) { return op == Operator::Not ? double(n == 0) : -n; });
}

Value subscript(const Value& list, const Value& index) {
  Value error;
  if (refused(list, error) || refused(index, error)) return error;
  if (!index.isNumber()) return Value::error(fault::NumberExpected);
  const Value& values = readable(list);
  const double place = std::round(index.number());
  if (!(place >= 1 && place <= double(values.count()))) return Value::error(fault::OutOfBounds);
  return values.element(qsizetype(place) - 1);
}

Truth truthOf(const Value& value) {
  Truth truth;
  if (value.isNumber()) {
    for (qsizetype i = 0; i < value.count() && !truth.holds; ++i) truth.holds = value.number(i) != 0;
  } else if (!refused(value, truth.error)) {
    truth.error = Value::error(fault::NumberExpected);
  }
  return truth;
}

}  // namespace lens::formula

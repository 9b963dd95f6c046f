// Arithmetic, rounding, and the functions of school mathematics.
#include <QRandomGenerator>
#include <algorithm>
#include <cmath>
#include <numbers>

#include "embedded/formula/function.h"

namespace lens::formula {
namespace {

// A result that is no number ends the function with an error. Zero never has a sign.
double checked(double number) {
  if (!std::isfinite(number)) throw Fault{fault::CannotCompute};
  return number + 0.0;
}

// A single number is part of the call's own step.
void chargeElements(const Call& call) {
  for (int i = 0; i < call.count(); ++i)
    if (call[i].count() > 1) call.charge(call[i].count());
}

// Applies to each element.
template <double (*Formula)(double)>
Value each(const Call& call) {
  chargeElements(call);
  return eachNumber(call[0], [](double number) { return checked(Formula(number)); });
}
template <double (*Formula)(double, double)>
Value eachOfPairs(const Call& call) {
  chargeElements(call);
  return eachPair(call[0], call[1], [](double a, double b) { return checked(Formula(a, b)); });
}

double absolute(double number) {
  return std::abs(number);
}
double sign(double number) {
  return number > 0 ? 1 : number < 0 ? -1 : 0;
}
double integer(double number) {
  return std::trunc(number);
}
double sine(double angle) {
  return std::sin(angle);
}
double cosine(double angle) {
  return std::cos(angle);
}
double tangent(double angle) {
  return std::tan(angle);
}
double arcSine(double number) {
  return std::asin(number);
}
double arcCosine(double number) {
  return std::acos(number);
}
double arcTangent(double number) {
  return std::atan(number);
}
double angleOf(double x, double y) {
  // No direction leads from a point to itself.
  return x == 0 && y == 0 ? std::nan("") : std::atan2(y, x);
}
double exponential(double number) {
  return std::exp(number);
}
double naturalLogarithm(double number) {
  return std::log(number);
}
double decimalLogarithm(double number) {
  return std::log10(number);
}
double squareRoot(double number) {
  return std::sqrt(number);
}
double power(double base, double exponent) {
  return std::pow(base, exponent);
}
double modulo(double number, double divisor) {
  return std::fmod(std::trunc(number), std::trunc(divisor));
}

// Halves go away from zero. With decimals, what shows as a half counts as one, though its binary form may
// lie a trace below: 1.005 by 0.01 is 1.01.
double roundTo(double number, double factor) {
  factor = std::abs(factor);
  if (factor == 0) return std::nan("");
  if (factor == 1) return std::round(number);
  if (std::trunc(factor) == factor) return std::round(number / factor) * factor;
  // Parts of one are counted whole, so that tenths come out as they are written.
  const double parts = std::round(1 / factor);
  const bool even = std::abs(parts * factor - 1) < 1e-12;
  const double scaled = std::abs(even ? number * parts : number / factor);
  // Beyond the last binary place a number has no fraction to round.
  if (scaled >= 4503599627370496.0) return number;
  const double trace = std::min(scaled * 4e-16, 1e-6);
  const double steps = std::floor(scaled + trace + 0.5);
  return std::copysign(even ? steps / parts : steps * factor, number);
}

double whole(double number) {
  return std::round(number);
}
Value round(const Call& call) {
  if (!call.has(1)) return each<whole>(call);
  return eachOfPairs<roundTo>(call);
}

Value floatEq(const Call& call) {
  chargeElements(call);
  const Value &left = call[0], &right = call[1];
  const double range = call.has(2) ? std::abs(call[2].number()) : 0.0001;
  const qsizetype lefts = left.count(), rights = right.count();
  for (qsizetype i = 0; i < qMax(lefts, rights); ++i)
    if (std::abs(left.number(qMin(i, lefts - 1)) - right.number(qMin(i, rights - 1))) <= range)
      return Value::truth(true);
  return Value::truth(false);
}

template <typename Better>
Value extreme(const Call& call, Better&& better) {
  chargeElements(call);
  const auto choose = [&](double a, double b) { return better(b, a) ? b : a; };
  if (call.has(1)) return eachPair(call[0], call[1], choose);
  const Cell* cells = call[0].cells();
  double best = cells[0].number;
  for (qsizetype i = 1; i < call[0].count(); ++i) best = choose(best, cells[i].number);
  return Value::number(best);
}
Value largest(const Call& call) {
  return extreme(call, [](double a, double b) { return a > b; });
}
Value smallest(const Call& call) {
  return extreme(call, [](double a, double b) { return a < b; });
}

Value sum(const Call& call) {
  chargeElements(call);
  double total = 0;
  for (int i = 0; i < call.count(); ++i) {
    const Cell* cells = call[i].cells();
    for (qsizetype k = 0; k < call[i].count(); ++k) total += cells[k].number;
  }
  return Value::number(checked(total));
}

Value pi(const Call&) {
  return Value::number(std::numbers::pi);
}

// Of 2^53 steps, so that both ends can come out.
Value random(const Call&) {
  constexpr double kSteps = 9007199254740991.0;
  return Value::number(double(QRandomGenerator::global()->generate64() >> 11) / kSteps);
}

constexpr Function kNumberFunctions[] = {
    {"@Abs", 1, 1, "n", "number", "The number without its sign.", each<absolute>, trait::Pure},
    {"@ACos", 1, 1, "n", "number", "The angle in radians, 0 to pi, whose cosine is the number.",
     each<arcCosine>, trait::Pure},
    {"@ASin", 1, 1, "n", "number", "The angle in radians, -pi/2 to pi/2, whose sine is the number.",
     each<arcSine>, trait::Pure},
    {"@ATan", 1, 1, "n", "number", "The angle in radians, -pi/2 to pi/2, whose tangent is the number.",
     each<arcTangent>, trait::Pure},
    {"@ATan2", 2, 2, "n", "x; y", "The angle in radians, -pi to pi, under which the point x, y is seen.",
     eachOfPairs<angleOf>, trait::Pure},
    {"@Cos", 1, 1, "n", "angle", "The cosine of an angle in radians.", each<cosine>, trait::Pure},
    {"@Exp", 1, 1, "n", "number", "The number e raised to that power.", each<exponential>, trait::Pure},
    {"@FloatEq", 2, 3, "n", "number; number; range",
     "1 when the numbers differ by no more than the range, which is 0.0001 unless it is given. Of lists one "
     "such pair is enough.",
     floatEq, trait::Pure},
    {"@Integer", 1, 1, "n", "number", "The number without its decimals.", each<integer>, trait::Pure},
    {"@Ln", 1, 1, "n", "number", "The natural logarithm.", each<naturalLogarithm>, trait::Pure},
    {"@Log", 1, 1, "n", "number", "The logarithm to base 10.", each<decimalLogarithm>, trait::Pure},
    {"@Max", 1, 2, "n", "numbers; numbers",
     "Of one list its largest number; of two the larger number of each pair.", largest, trait::Pure},
    {"@Min", 1, 2, "n", "numbers; numbers",
     "Of one list its smallest number; of two the smaller number of each pair.", smallest, trait::Pure},
    {"@Modulo", 2, 2, "n", "number; divisor",
     "What a division without decimals leaves over. It has the sign of the first number.",
     eachOfPairs<modulo>, trait::Pure},
    {"@Pi", 0, 0, "", "", "The number pi, 3.14159265358979.", pi, trait::Pure},
    {"@Power", 2, 2, "n", "base; exponent", "The base raised to the power of the exponent.",
     eachOfPairs<power>, trait::Pure},
    {"@Random", 0, 0, "", "", "A random number from 0 to 1.", random},
    {"@Round", 1, 2, "n", "number; factor",
     "The nearest whole number or, with a factor, its nearest multiple. Halves go away from zero.", round,
     trait::Pure},
    {"@Sign", 1, 1, "n", "number", "-1 for a negative number, 1 for a positive one, otherwise 0.", each<sign>,
     trait::Pure},
    {"@Sin", 1, 1, "n", "angle", "The sine of an angle in radians.", each<sine>, trait::Pure},
    {"@Sqrt", 1, 1, "n", "number", "The square root.", each<squareRoot>, trait::Pure},
    {"@Sum", 1, kAnyCount, "n", "numbers...", "The sum of all numbers in all arguments.", sum, trait::Pure},
    {"@Tan", 1, 1, "n", "angle", "The tangent of an angle in radians.", each<tangent>, trait::Pure},
};

}  // namespace

std::span<const Function> numberFunctions() {
  return kNumberFunctions;
}

}  // namespace lens::formula

// How numbers become text and integers, the same everywhere and independent of the machine's region.
#pragma once

#include <QString>
#include <QStringView>

#include "notes/runtime_error.h"

namespace lens {

// 15 significant digits, "." as the decimal point, exponent as "1E+15" or "1E-05".
QString numberText(double number);

// The number that the whole text spells (blanks, CR and LF around it allowed); raises 13 otherwise.
double wholeNumberText(QStringView text);

// The number that the text begins with: blanks, a sign, digits, a point, an exponent. What follows is not
// looked at; 0 where no number stands in front.
double numberPrefix(QStringView text);

// Rounds to the nearest integer, halves to the even one. Raises 6 outside 32 bits.
qint32 roundToInt32(double number);
// The integer that the whole text spells, rounded the same way: 13 when it is no number.
qint32 toInt32(QStringView text);

// 1 to 8 hexadecimal digits read unsigned and reinterpreted as signed: "FFFF0010" is -65520,
// "8FA2" is 36770. Raises 13 for anything else.
qint32 hexToInt32(QStringView text);

// A signed 16-bit integer that raises Overflow (6) instead of wrapping. Positions and counters of
// the text routines have this width.
class Int16 {
 public:
  Int16() = default;
  Int16(qint64 value) : value_(checked(value)) {}
  operator int() const { return value_; }
  Int16& operator+=(qint64 step) {
    value_ = checked(value_ + step);
    return *this;
  }

 private:
  static qint16 checked(qint64 value) {
    if (value < -32768 || value > 32767) throw RuntimeError(err::Overflow);
    return qint16(value);
  }
  qint16 value_ = 0;
};

}  // namespace lens

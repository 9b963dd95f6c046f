// Numbers as text and back, by the region's rules.
#pragma once

#include <QString>
#include <QStringView>

#include "embedded/formula/region.h"
#include "embedded/formula/value.h"

namespace lens::formula {

// The general format: up to 15 significant digits without trailing zeros; from 1E+15 up and below 0.0001
// in E notation, which shows 11 digits.
QString numberText(double number, const Region& region);
// The same as a value's text, without a detour.
Text numberAsText(double number, const Region& region);

// The format letters of @Text for numbers, any mix of them in any order; what is no letter of it is
// passed over.
struct NumberFormat {
  enum class Style { General, Fixed, Scientific, Currency };
  Style style = Style::General;
  bool thousands = false, percent = false, parentheses = false;
  // Decimals, of General significant digits; -1: 15 significant digits, 2 decimals.
  int digits = -1;
};
NumberFormat readNumberFormat(QStringView letters);
QString numberText(double number, const NumberFormat& format, const Region& region);

// The number that a text begins with, blanks and the currency sign before it passed over; thousands may
// be marked, and what follows the number does not count ("12ABC" is 12). False, and nothing written, when
// it begins with none.
bool readNumber(QStringView text, const Region& region, double& number);

}  // namespace lens::formula

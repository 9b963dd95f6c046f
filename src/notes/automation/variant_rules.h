// How values of the object model and the platform's variants correspond, as far as that needs no Windows.
#pragma once

#include "notes/bridge.h"

namespace lens {

// Types of variants, as the platform numbers them.
namespace variantkind {
inline constexpr quint16 Empty = 0, Null = 1, Int16 = 2, Int32 = 3, Double = 5, Date = 7, Text = 8,
                         Dispatch = 9, Error = 10, Boolean = 11, Variant = 12, Array = 0x2000;
}  // namespace variantkind

// The type that a value crosses the door as. A number goes as the narrowest of 16 bits, 32 bits and floating
// point that holds it, which is how a script writes numbers that it calls members with.
quint16 variantKindOf(const Value& value);

// True has all of its 16 bits set.
constexpr qint16 variantBoolean(bool flag) {
  return flag ? -1 : 0;
}

// A date is the number of days since 30 December 1899 with the time as its fraction, which counts forward
// from the day also before that date. A time of any day has day 0, a date without a time no fraction. Raises
// 6 outside the years 100 to 9999, and 13 for a moment that has neither half.
double variantDate(const DateTime& moment);
DateTime momentOfVariant(double date);

}  // namespace lens

// The small text routines that most of the program's text work goes through.
//
// Positions are 1-based and 16 bits wide where a marker is looked for: a hit beyond 32767 raises
// Overflow (6). Comparison is binary. Their behaviour on "not found" differs on purpose; rows in the
// lists rely on each.
#pragma once

#include <QString>

#include "notes/bridge.h"
#include "notes/eight_digits.h"

namespace lens {

// The text before the first marker; empty when there is no marker.
QString leftFrom(const QString& text, const QString& marker);
// The text after the first marker; the whole text when there is no marker.
QString rightFrom(const QString& text, const QString& marker);
// Every occurrence, left to right; what was put in is not looked at again. An empty find changes
// nothing.
QString replaceAllText(const QString& text, const QString& find, const QString& replace);
// Cuts the first element off the text. A leading separator gives " ", which stands for an empty
// element.
QString element(QString& text, const QString& separator);
// Hexadecimal text of a number of 32 bits without leading zeros; "-1" outside 0 to 2^32 - 1. Raises
// 13 when a text is no number as a whole; fractions round half to even.
QString unsignedDec2Hex(const Value& number);
// The number that up to 12 hexadecimal digits spell, other characters counting as 0. Empty for an
// empty text and for a longer one.
Value hexStringToBinary(const QString& text);

// Each line feed as carriage return and line feed; an existing carriage return stays, so a line end
// that had both carries an extra one.
QString widenLineFeeds(QString text);
// Without the blanks at both ends; line ends and tabs stay.
QString trimBlanks(const QString& text);
// Upper case, one UTF-16 unit for one, so positions stay true.
QString upperUnits(const QString& text);

}  // namespace lens

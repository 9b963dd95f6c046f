// The item type that stands in the type box.
#pragma once

#include <QString>

namespace lens {

// What stands behind the first "(" and before the next ")": "TEXT (1280) means text" gives "1280". Without
// "(" the text counts from its start. Raises 5 when there is no ")".
QString typeText(const QString& sentence);
// Its numeric prefix as a 16-bit integer, halves to the even one; raises 6 beyond 16 bits.
int typeNumber(const QString& text);

}  // namespace lens

// Patterns over the letters of a design note's "$Flags".
#pragma once

#include <QStringView>

namespace lens {

// "+ab" holds when one of the letters is among the flags, "-ab" when none is, "*ab" when all are;
// "(+ab-cd*ef" when all of its parts hold. A part without letters holds, and so does an empty pattern.
// Letters count with their case, their order does not matter.
bool matchesFlags(QStringView pattern, QStringView flags);

}  // namespace lens

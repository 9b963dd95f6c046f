// u"text"_s is a QString that is made when the program is compiled; it works everywhere in our namespace.
#pragma once

#include <QString>

namespace lens {
using namespace Qt::StringLiterals;
}  // namespace lens

// Items in which an import keeps elements of DXL as they came: "$DXL_" and the name of the element, as text.
#pragma once

#include <QStringView>

namespace lens {

inline constexpr QStringView kKeptPrefix = u"$DXL_";

}  // namespace lens

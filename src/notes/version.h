#pragma once

#include <QString>

namespace lens {

// Major, minor and revision, joined with ".".
QString programVersion();

}  // namespace lens

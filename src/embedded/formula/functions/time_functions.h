// Implementations of time functions that stand in files of their own.
#pragma once

#include "embedded/formula/function.h"

namespace lens::formula {

// time_shifting.cpp
Value adjustTimes(const Call& call);
Value countBusinessDays(const Call& call);

// zone_functions.cpp
Value currentTimeZone(const Call& call);
Value mergeTimes(const Call& call);
Value timeToTextInZone(const Call& call);
Value timeZoneToText(const Call& call);
Value zoneHours(const Call& call);

}  // namespace lens::formula

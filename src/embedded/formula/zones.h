// Zones other than the machine's: their usual names, and their summer time as far as it is known.
#pragma once

#include <QString>

#include "embedded/formula/local_zone.h"

namespace lens::formula {

// East of GMT in seconds, as clocks in that zone run. The machine's own zone follows its rules; a zone
// that observes summer time follows the rules most common at its offset, and where there are none it
// changes with the machine's clock.
int offsetIn(Zone zone, qint64 instant, const LocalZone& local);
int offsetInAtLocal(Zone zone, qint64 localHundredths, const LocalZone& local);

// A name ("EST", "EDT", "GMT") in any case; false for an unknown one.
bool zoneByName(QStringView name, Zone& zone, bool& summer);

// Names of zones, as constants may hold them ("EST"): hours west of GMT with summer time in the name.
// "" for a zone that has none; such a zone is written "GMT+2", "GMT-5:30".
QString zoneName(Zone zone, bool summer);

// "GMT", "GMT+2", "GMT-5:30".
QString offsetName(int minutesEast);

}  // namespace lens::formula

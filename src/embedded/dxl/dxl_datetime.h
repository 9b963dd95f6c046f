// Times as DXL writes them: ISO 8601 basic with hundredths and zone, or a date or a time alone.
#pragma once

#include <QString>

#include "embedded/store/timedate.h"

namespace lens {

// False when the text is no time. dst tells that the printed offset holds an hour of summer time. An
// empty text is a cleared time; a time of no zone is in the machine's own.
bool parseDxlTime(QStringView text, bool dst, TimeDate& time);

}  // namespace lens

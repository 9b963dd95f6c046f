// Times as DXL writes them: ISO 8601 basic with hundredths and zone, or a date or a time alone.
#pragma once

#include <QString>

#include "embedded/format/timedate.h"

namespace lens {

// False when the text is no time. dst tells that the printed offset holds an hour of summer time. An
// empty text is a cleared time; a time of no zone is in the machine's own.
bool parseDxlTime(QStringView text, bool dst, TimeDate& time);

// The text that parseDxlTime reads as the same time, and the mark that goes with it. A time of a zone
// that observes summer time is written in summer time all the year: nothing else tells of the zone. An
// empty text when no text gives the time back.
struct DxlTime {
  QString text;
  bool dst = false;
};
DxlTime dxlTime(const TimeDate& time);

// The reverse of timeDateHex.
bool parseTimeDateHex(QStringView text, TimeDate& time);

}  // namespace lens

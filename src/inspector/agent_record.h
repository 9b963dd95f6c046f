// The schedule record of an agent as its note stores it in "$AssistInfo", and the text that shows it.
#pragma once

#include <QByteArrayView>
#include <QString>

#include "host/regional.h"
#include "notes/capi.h"

namespace lens {

struct AgentRecord {
  qint16 version = 0, triggerType = 0, searchType = 0, intervalType = 0, interval = 0;
  qint32 time1 = 0, time2 = 0;  // a day, or hundredths of a second since midnight
  TimeDate startTime, endTime;
  qint32 flags = 0;
};

// Reads a value with the type word in front, which may be any. Bytes that a short value lacks count as
// zeros; bytes behind the record are passed over.
AgentRecord readAgentRecord(QByteArrayView value);

// A number up to 31, which is a weekday or a day of the month; a larger one as the time of day.
QString dayOrTime(qint32 value, const Regional& regional);

// The record line by line, each value with its legend. The two dates come as text, since only the
// C library reads them.
QString agentRecordText(const AgentRecord& record, const QString& startTime, const QString& endTime,
                        const Regional& regional);

}  // namespace lens

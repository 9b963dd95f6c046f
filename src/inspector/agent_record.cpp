#include "inspector/agent_record.h"

#include <QStringList>

namespace lens {
namespace {

// A little-endian number that may lie beyond the end of the value, as a whole or in part.
quint32 numberAt(QByteArrayView value, qsizetype offset, int size) {
  quint32 number = 0;
  for (int i = 0; i < size && offset + i < value.size(); ++i)
    number |= quint32(quint8(value[offset + i])) << (8 * i);
  return number;
}

qint16 int16At(QByteArrayView value, qsizetype offset) {
  return qint16(numberAt(value, offset, 2));
}

qint32 int32At(QByteArrayView value, qsizetype offset) {
  return qint32(numberAt(value, offset, 4));
}

TimeDate timeAt(QByteArrayView value, qsizetype offset) {
  return {{numberAt(value, offset, 4), numberAt(value, offset + 4, 4)}};
}

}  // namespace

AgentRecord readAgentRecord(QByteArrayView value) {
  AgentRecord record;
  record.version = int16At(value, 2);
  record.triggerType = int16At(value, 4);
  record.searchType = int16At(value, 6);
  record.intervalType = int16At(value, 8);
  record.interval = int16At(value, 10);
  record.time1 = int32At(value, 12);
  record.time2 = int32At(value, 16);
  record.startTime = timeAt(value, 20);
  record.endTime = timeAt(value, 28);
  record.flags = int32At(value, 36);
  return record;
}

QString dayOrTime(qint32 value, const Regional& regional) {
  constexpr qint32 kLastDay = 31;
  constexpr qint64 kSecondsOfDay = 86400;
  if (value <= kLastDay) return QString::number(value);
  // "All day" ends with the 8640000th hundredth, which is midnight again.
  const qint64 seconds = (qint64(value) + 50) / 100 % kSecondsOfDay;
  return regional.timeText(QTime::fromMSecsSinceStartOfDay(int(seconds * 1000)));
}

QString agentRecordText(const AgentRecord& record, const QString& startTime, const QString& endTime,
                        const Regional& regional) {
  const auto number = [](qint32 value) { return QString::number(value); };
  const QStringList lines = {
      u"Version:           " + number(record.version),
      u"TriggerType:   " + number(record.triggerType) +
          u"   --> (0 none, 1 schedule, 2 new mail, 3 paste, 4 manual, 5 update, 6 router)",
      u"SearchType:   " + number(record.searchType) +
          u"   --> (0 none, 1 all, 2 new, 3 new/mod, 4 selected, 5 view, 6 unread, 7 prompt, 8 UI)",
      u"IntervalType:   " + number(record.intervalType) +
          u"   --> (0 none, 1 minutes, 2 days, 3 weeks, 4 months)",
      u"Interval:           " + number(record.interval),
      u"Time1:             " + dayOrTime(record.time1, regional) + u"   --> (Start time (ms since midnight))",
      u"Time2:             " + dayOrTime(record.time2, regional) +
          u"   --> (Long (weekday or day of month) or end time (ms since midnight))",
      u"StartTime:         " + startTime + u"   --> (Time/Date)",
      u"EndTime:           " + endTime + u"   --> (Time/Date)",
      u"Flags:              " + number(record.flags) +
          u"   --> (1 hidden, 2 no weekends, 4 store highlights, 8 mail/paste, 16 choose server)"};
  return lines.join(u'\n');
}

}  // namespace lens

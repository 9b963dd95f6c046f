// Agent records from the fuzzer: any bytes give ten lines, and the same as with zeros behind them.

#include "check.h"
#include "inspector/agent_record.h"

namespace lens {
namespace {

constexpr qsizetype kRecordSize = 40;

void tryRecord(QByteArrayView value) {
  static const Regional region(QLocale(QLocale::English, QLocale::UnitedStates));
  const AgentRecord record = readAgentRecord(value);
  const QString text = agentRecordText(record, QStringLiteral("<start>"), QStringLiteral("<end>"), region);
  check(text.count(u'\n') == 9 && !text.endsWith(u'\n'), "The text does not have ten lines.");
  const auto begins = [&](const QString& line, qint32 number) {
    return text.contains(QStringLiteral("\n%1%2").arg(line).arg(number) + QStringLiteral("   --> ("));
  };
  check(text.startsWith(QStringLiteral("Version:           %1\n").arg(record.version)),
        "The text does not begin with the version.");
  check(begins(QStringLiteral("TriggerType:   "), record.triggerType), "The trigger is missing.");
  check(begins(QStringLiteral("Flags:              "), record.flags), "The flags are missing.");
  for (const qint32 time : {record.time1, record.time2}) {
    bool isNumber = false;
    dayOrTime(time, region).toInt(&isNumber);
    check(isNumber == (time <= 31), "A day is shown as a time, or a time as a day.");
  }

  const auto shownAs = [&](QByteArrayView other) {
    const AgentRecord read = readAgentRecord(other);
    check(read.startTime.innards[0] == record.startTime.innards[0] &&
              read.startTime.innards[1] == record.startTime.innards[1] &&
              read.endTime.innards[0] == record.endTime.innards[0] &&
              read.endTime.innards[1] == record.endTime.innards[1],
          "The dates depend on what is no part of the record.");
    return agentRecordText(read, QStringLiteral("<start>"), QStringLiteral("<end>"), region);
  };
  check(shownAs(value.toByteArray().leftJustified(kRecordSize, '\0')) == text,
        "Missing bytes do not count as zeros.");
  check(shownAs(value.first(qMin(value.size(), kRecordSize))) == text, "Bytes behind the record count.");
}

}  // namespace
}  // namespace lens

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size) {
  lens::tryRecord(QByteArrayView(reinterpret_cast<const char*>(data), qsizetype(size)));
  return 0;
}

// The agent record read from bytes, and the text that shows it. No engine is asked: the dates of the text
// are given.
#include "inspector/agent_record.h"

#include <gtest/gtest.h>

#include "support/printers.h"

namespace lens {
namespace {
using namespace Qt::StringLiterals;

const Regional kGerman{QLocale(QLocale::German, QLocale::Germany)};

// Type word, then every field with bytes of its own.
const QByteArray kEveryField = QByteArray::fromHex(
    "1100"      // type word
    "0102"      // version 513
    "0304"      // trigger 1027
    "0506"      // search 1541
    "0708"      // interval type 2055
    "090a"      // interval 2569
    "11121314"  // time 1
    "21222324"  // time 2
    "3132333441424344"
    "5152535461626364"
    "71727374");

QString textOfRecord(const QByteArray& value) {
  return agentRecordText(readAgentRecord(value), u"<start>"_s, u"<end>"_s, kGerman);
}

TEST(AgentRecord, HasEachFieldAtItsPlace) {
  const AgentRecord record = readAgentRecord(kEveryField);
  EXPECT_EQ(record.version, 0x0201);
  EXPECT_EQ(record.triggerType, 0x0403);
  EXPECT_EQ(record.searchType, 0x0605);
  EXPECT_EQ(record.intervalType, 0x0807);
  EXPECT_EQ(record.interval, 0x0A09);
  EXPECT_EQ(record.time1, 0x14131211);
  EXPECT_EQ(record.time2, 0x24232221);
  EXPECT_EQ(record.startTime.innards[0], 0x34333231u);
  EXPECT_EQ(record.startTime.innards[1], 0x44434241u);
  EXPECT_EQ(record.endTime.innards[0], 0x54535251u);
  EXPECT_EQ(record.endTime.innards[1], 0x64636261u);
  EXPECT_EQ(record.flags, 0x74737271);
}

TEST(AgentRecord, IsSigned) {
  const AgentRecord record = readAgentRecord(QByteArray(40, '\xFF'));
  EXPECT_EQ(record.version, -1);
  EXPECT_EQ(record.triggerType, -1);
  EXPECT_EQ(record.searchType, -1);
  EXPECT_EQ(record.intervalType, -1);
  EXPECT_EQ(record.interval, -1);
  EXPECT_EQ(record.time1, -1);
  EXPECT_EQ(record.time2, -1);
  EXPECT_EQ(record.flags, -1);
}

TEST(AgentRecord, IsReadWhateverTypeWordStandsInFront) {
  for (const char* word : {"0000", "0005", "ffff", "1000"}) {
    QByteArray value = kEveryField;
    value.replace(0, 2, QByteArray::fromHex(word));
    EXPECT_EQ(textOfRecord(value), textOfRecord(kEveryField)) << word;
  }
}

TEST(AgentRecord, TakesBytesThatAShortValueLacksAsZeros) {
  for (int size = 0; size <= kEveryField.size(); ++size) {
    const QByteArray cut = kEveryField.first(size);
    const QByteArray padded = cut.leftJustified(kEveryField.size(), '\0');
    const AgentRecord read = readAgentRecord(cut), expected = readAgentRecord(padded);
    EXPECT_EQ(agentRecordText(read, {}, {}, kGerman), agentRecordText(expected, {}, {}, kGerman)) << size;
    EXPECT_EQ(read.startTime.innards[0], expected.startTime.innards[0]) << size;
    EXPECT_EQ(read.startTime.innards[1], expected.startTime.innards[1]) << size;
    EXPECT_EQ(read.endTime.innards[0], expected.endTime.innards[0]) << size;
    EXPECT_EQ(read.endTime.innards[1], expected.endTime.innards[1]) << size;
  }
  // The last byte of the flags is missing.
  EXPECT_EQ(readAgentRecord(kEveryField.first(39)).flags, 0x737271);
  EXPECT_EQ(readAgentRecord(QByteArray("\x11", 1)).version, 0);
}

TEST(AgentRecord, PassesOverWhatStandsBehindIt) {
  const QByteArray longValue = kEveryField + QByteArray(60000 - kEveryField.size(), '\x7F');
  ASSERT_EQ(longValue.size(), 60000);
  EXPECT_EQ(textOfRecord(longValue), textOfRecord(kEveryField));
}

// --- a day or a time ---

TEST(DayOrTime, IsANumberUpTo31) {
  EXPECT_EQ(dayOrTime(0, kGerman), "0");
  EXPECT_EQ(dayOrTime(31, kGerman), "31");
  EXPECT_EQ(dayOrTime(-5, kGerman), "-5");
  EXPECT_EQ(dayOrTime(std::numeric_limits<qint32>::min(), kGerman), "-2147483648");
}

TEST(DayOrTime, IsATimeFrom32OnRoundedToSeconds) {
  EXPECT_EQ(dayOrTime(32, kGerman), "00:00:00");
  EXPECT_EQ(dayOrTime(49, kGerman), "00:00:00");
  EXPECT_EQ(dayOrTime(50, kGerman), "00:00:01");
  EXPECT_EQ(dayOrTime(149, kGerman), "00:00:01");
  EXPECT_EQ(dayOrTime(7'920'000, kGerman), "22:00:00");
  EXPECT_EQ(dayOrTime(8'639'949, kGerman), "23:59:59");
  EXPECT_EQ(dayOrTime(8'639'950, kGerman), "00:00:00");
}

TEST(DayOrTime, OfAllDayIsMidnightInFull) {
  EXPECT_EQ(dayOrTime(8'640'000, kGerman), "00:00:00");
}

TEST(DayOrTime, BeyondADayBeginsAgain) {
  EXPECT_EQ(dayOrTime(8'640'000 + 360'000, kGerman), "01:00:00");
  EXPECT_EQ(dayOrTime(std::numeric_limits<qint32>::max(), kGerman), "13:13:56");
}

TEST(DayOrTime, IsWrittenByTheRegion) {
  const Regional american{QLocale(QLocale::English, QLocale::UnitedStates)};
  EXPECT_EQ(dayOrTime(7'920'000, american), american.timeText(QTime(22, 0)));
  EXPECT_TRUE(dayOrTime(7'920'000, american).startsWith(u"10:00:00"));
}

// --- the text ---

TEST(AgentRecordText, HasTheseBlanksAndLegends) {
  AgentRecord record;
  record.version = 1;
  record.triggerType = 2;
  record.searchType = 3;
  record.intervalType = 4;
  record.interval = 5;
  record.time1 = 6;
  record.time2 = 7;
  record.flags = 16;
  EXPECT_EQ(
      agentRecordText(record, u"11.03.2024 08:00:00"_s, u"12.03.2024"_s, kGerman),
      u"Version:           1\n"
      "TriggerType:   2   --> (0 none, 1 schedule, 2 new mail, 3 paste, 4 manual, 5 update, 6 router)\n"
      "SearchType:   3   --> (0 none, 1 all, 2 new, 3 new/mod, 4 selected, 5 view, 6 unread, 7 prompt, 8 "
      "UI)\n"
      "IntervalType:   4   --> (0 none, 1 minutes, 2 days, 3 weeks, 4 months)\n"
      "Interval:           5\n"
      "Time1:             6   --> (Start time (ms since midnight))\n"
      "Time2:             7   --> (Long (weekday or day of month) or end time (ms since midnight))\n"
      "StartTime:         11.03.2024 08:00:00   --> (Time/Date)\n"
      "EndTime:           12.03.2024   --> (Time/Date)\n"
      "Flags:              16   --> (1 hidden, 2 no weekends, 4 store highlights, 8 mail/paste, 16 choose "
      "server)"_s);
}

TEST(AgentRecordText, ShowsEmptyDatesAsNothing) {
  const QString text = agentRecordText(AgentRecord(), {}, {}, kGerman);
  EXPECT_TRUE(text.contains(u"\nStartTime:            --> (Time/Date)\nEndTime:              --> "));
}

TEST(AgentRecordText, SeparatesItsTenLinesBySingleLineFeeds) {
  const QString text = agentRecordText(AgentRecord(), {}, {}, kGerman);
  EXPECT_EQ(text.count(u'\n'), 9);
  EXPECT_FALSE(text.contains(u'\r'));
  EXPECT_FALSE(text.endsWith(u'\n'));
}

// --- records as they are met ---

TEST(AgentRecord, OfAnAgentThatIsRunByHandAndHidden) {
  QByteArray value = QByteArray::fromHex("11000100040004000000");
  value = value.leftJustified(36, '\0').append('\1').leftJustified(104, '\0');
  const AgentRecord record = readAgentRecord(value);
  EXPECT_EQ(record.version, 1);
  EXPECT_EQ(record.triggerType, 4);
  EXPECT_EQ(record.searchType, 4);
  EXPECT_EQ(record.intervalType, 0);
  EXPECT_EQ(record.flags, 1);
}

TEST(AgentRecord, OfAnAgentThatRunsEachWednesdayEvening) {
  const AgentRecord record = readAgentRecord(QByteArray::fromHex("11000100010001000300010080d9780004000000"));
  EXPECT_EQ(record.triggerType, 1);
  EXPECT_EQ(record.searchType, 1);
  EXPECT_EQ(record.intervalType, 3);
  EXPECT_EQ(record.interval, 1);
  EXPECT_EQ(dayOrTime(record.time1, kGerman), "22:00:00");
  EXPECT_EQ(dayOrTime(record.time2, kGerman), "4");
}

}  // namespace
}  // namespace lens

#include "embedded/format/timedate.h"

#include "embedded/support/store_test.h"
#include "support/in_zone.h"

namespace lens {
namespace {

constexpr char kNewYork[] = "EST5EDT,M3.2.0,M11.1.0";
constexpr char kIndia[] = "IST-5:30";

TimeDate fromHex(const char* hex) {
  return readTimeDate(QByteArray::fromHex(hex).constData());
}
QDateTime utc(int year, int month, int day, int hour, int minute, int second, int ms = 0) {
  return QDateTime(QDate(year, month, day), QTime(hour, minute, second, ms), Qt::UTC);
}
QByteArray bytesOf(const TimeDate& time) {
  QByteArray bytes;
  appendTimeDate(bytes, time);
  return bytes;
}

TEST(TimeDate, ReadsATimeWestOfGreenwichInSummer) {
  const TimeDate time = fromHex("C2085000A67A2585");
  EXPECT_EQ(instantOf(time), utc(2012, 10, 29, 14, 34, 11, 220));
  EXPECT_EQ(zoneOf(time).offsetMinutes, -300);
  EXPECT_TRUE(zoneOf(time).observesDst);
  EXPECT_EQ(timeDateHex(time), QStringLiteral("85257AA6005008C2"));
}

TEST(TimeDate, ReadsATimeOfAnotherCentury) {
  EXPECT_EQ(instantOf(fromHex("C0DC6C00FC632585")), utc(1996, 12, 10, 19, 49, 4));
  EXPECT_EQ(instantOf(fromHex("64B83200FC632585")), utc(1996, 12, 10, 9, 14, 0, 40));
}

TEST(TimeDate, WritesWhatItReads) {
  const TimeDate written = timeDateOf(utc(2012, 10, 29, 14, 34, 11, 229), {-300, true});
  EXPECT_EQ(bytesOf(written), QByteArray::fromHex("C2085000A67A2585"));
}

TEST(TimeDate, KeepsQuarterHoursEastOfGreenwich) {
  const TimeDate time = timeDateOf(utc(2020, 1, 1, 0, 0, 0), {345, false});
  EXPECT_EQ(time.innards[1] >> 24, 0x75u);
  EXPECT_EQ(zoneOf(time).offsetMinutes, 345);
  EXPECT_FALSE(zoneOf(time).observesDst);
}

TEST(TimeDate, LocalSummerTimeKeepsTheStandardOffset) {
  const InZone zone(kNewYork);
  const TimeDate summer = timeDateOf(DateTime{QDate(2012, 7, 1), QTime(10, 0)});
  EXPECT_EQ(instantOf(summer), utc(2012, 7, 1, 14, 0, 0));
  EXPECT_EQ(zoneOf(summer).offsetMinutes, -300);
  EXPECT_TRUE(zoneOf(summer).observesDst);
  EXPECT_EQ(localOf(summer), (DateTime{QDate(2012, 7, 1), QTime(10, 0)}));
}

TEST(TimeDate, LocalWinterTimeHasTheSameZone) {
  const InZone zone(kNewYork);
  const TimeDate winter = timeDateOf(DateTime{QDate(2012, 1, 1), QTime(22, 30, 15)});
  EXPECT_EQ(instantOf(winter), utc(2012, 1, 2, 3, 30, 15));
  EXPECT_EQ(winter.innards[1] >> 24, 0x85u);
  EXPECT_EQ(localOf(winter), (DateTime{QDate(2012, 1, 1), QTime(22, 30, 15)}));
}

TEST(TimeDate, ZoneWithoutDaylightSavingSaysSo) {
  const InZone zone(kIndia);
  const TimeDate time = timeDateOf(DateTime{QDate(2012, 7, 1), QTime(10, 0)});
  EXPECT_EQ(zoneOf(time).offsetMinutes, 330);
  EXPECT_FALSE(zoneOf(time).observesDst);
  EXPECT_EQ(instantOf(time), utc(2012, 7, 1, 4, 30, 0));
}

TEST(TimeDate, DateAloneHasNoInstant) {
  const TimeDate day = timeDateOf(DateTime{QDate(1999, 7, 13), QTime()});
  EXPECT_EQ(day.innards[0], kAllDay);
  EXPECT_EQ(day.innards[1], quint32(QDate(1999, 7, 13).toJulianDay()));
  EXPECT_FALSE(instantOf(day).isValid());
  EXPECT_EQ(localOf(day), (DateTime{QDate(1999, 7, 13), QTime()}));
}

TEST(TimeDate, TimeAloneIsWallTime) {
  const InZone zone(kNewYork);
  const TimeDate time = timeDateOf(DateTime{QDate(), QTime(6, 3, 6, 520)});
  EXPECT_EQ(time.innards[0], 2178652u);
  EXPECT_EQ(time.innards[1], kAnyDay);
  EXPECT_FALSE(instantOf(time).isValid());
  EXPECT_EQ(localOf(time), (DateTime{QDate(), QTime(6, 3, 6, 520)}));
}

TEST(TimeDate, ClearedWildcardAndMalformedValuesHaveNoHalves) {
  for (const TimeDate& time :
       {TimeDate{}, TimeDate{{kAllDay, kAnyDay}}, TimeDate{{8640000, 2440588}},
        TimeDate{{0x7FFFFFFF, kAnyDay}}, TimeDate{{kAllDay, 0}}, TimeDate{{5, 0x85000000}}}) {
    EXPECT_FALSE(instantOf(time).isValid());
    EXPECT_EQ(localOf(time), DateTime());
  }
}

TEST(TimeDate, NothingGivesTheClearedValue) {
  EXPECT_EQ(bytesOf(timeDateOf(DateTime{})), QByteArray(8, '\0'));
  EXPECT_EQ(bytesOf(timeDateOf(QDateTime(), {60, true})), QByteArray(8, '\0'));
}

TEST(TimeDate, LastHundredthOfTheDayStaysInItsDay) {
  const TimeDate time = timeDateOf(utc(2021, 12, 31, 23, 59, 59, 999), {});
  EXPECT_EQ(time.innards[0], 8639999u);
  EXPECT_EQ(instantOf(time), utc(2021, 12, 31, 23, 59, 59, 990));
}

TEST(TimeDate, NowIsNow) {
  const QDateTime before = QDateTime::currentDateTimeUtc().addMSecs(-10);
  const QDateTime now = instantOf(timeDateNow());
  EXPECT_GE(now, before);
  EXPECT_LE(now, QDateTime::currentDateTimeUtc());
}

}  // namespace
}  // namespace lens

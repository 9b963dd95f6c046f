// The calendar, zones with their summer time, and times as text in every region.
#include <gtest/gtest.h>

#include <QDate>
#include <QRandomGenerator>
#include <QTimeZone>

#include "embedded/formula/support/test_context.h"
#include "embedded/formula/time_text.h"

namespace lens::formula {
namespace {
using namespace Qt::StringLiterals;

const char* const kZones[] = {"America/New_York",    "America/St_Johns", "America/Sao_Paulo", "Asia/Kolkata",
                              "Asia/Kathmandu",      "Asia/Tokyo",       "Europe/Berlin",     "Europe/London",
                              "Australia/Lord_Howe", "Pacific/Apia",     "Pacific/Auckland",  "UTC"};

qint64 hundredthsAt(const QDateTime& time) {
  return time.toMSecsSinceEpoch() / 10;
}

// What a text means on a day in March 2024; a blank time when it means nothing.
Value read(const QString& text, const Region& region, const LocalZone& zone) {
  const TimeReading reading{region, zone,
                            timeDateOf(Civil{true, true, julianDay(2024, 3, 15), 3784500}, zone)};
  Value value = Value::time(kBlankTime);
  readTime(text, reading, value);
  return value;
}

// --- Calendar ------------------------------------------------------------------------------------------

void expectSameDay(const QDate& date) {
  const qint32 day = qint32(date.toJulianDay());
  const YearMonthDay parts = yearMonthDay(day);
  ASSERT_EQ(QDate(parts.year, parts.month, parts.day), date);
  ASSERT_EQ(julianDay(parts.year, parts.month, parts.day), day);
  ASSERT_EQ(weekday(day), date.dayOfWeek() % 7 + 1);
}

TEST(Calendar, AgreesWithAnotherOneOnEveryDayOfFiveCenturies) {
  for (QDate date(1700, 1, 1); date.year() < 2200; date = date.addDays(1)) {
    expectSameDay(date);
    if (HasFatalFailure()) return;
  }
}

TEST(Calendar, AgreesWithAnotherOneFromTheFirstYearToTheLast) {
  for (QDate date(1, 1, 1); date.year() < 10000; date = date.addDays(37)) {
    expectSameDay(date);
    if (HasFatalFailure()) return;
  }
  expectSameDay(QDate(9999, 12, 31));
}

TEST(Calendar, KnowsWhichDaysExist) {
  for (const int year : {1, 4, 100, 400, 1900, 2000, 2023, 2024, 9999})
    for (int month = -1; month <= 14; ++month)
      for (int day = -1; day <= 33; ++day)
        ASSERT_EQ(dateExists(year, month, day), QDate::isValid(year, month, day))
            << year << '-' << month << '-' << day;
  EXPECT_FALSE(dateExists(0, 1, 1));
  EXPECT_FALSE(dateExists(10000, 1, 1));
}

// --- Zones ---------------------------------------------------------------------------------------------

TEST(Zones, HaveTheOffsetsOfTheSystem) {
  for (const char* name : kZones) {
    const QTimeZone system{QByteArray(name)};
    if (!system.isValid()) continue;
    const LocalZone zone(system);
    QRandomGenerator random(7);
    for (int i = 0; i < 2000; ++i) {
      // 1900 to 2150, in no order, so that what is remembered is looked up too.
      const qint64 seconds = qint64(random.bounded(7889238000.0)) - 2208988800;
      ASSERT_EQ(zone.offsetAt(seconds * 100),
                system.offsetFromUtc(QDateTime::fromSecsSinceEpoch(seconds, Qt::UTC)))
          << name << ' ' << seconds;
    }
  }
}

TEST(Zones, LocalClocksLeadBackToTheInstant) {
  for (const char* name : kZones) {
    const QTimeZone system{QByteArray(name)};
    if (!system.isValid()) continue;
    const LocalZone zone(system);
    for (qint64 instant = -220898880000; instant < 410244480000; instant += 217'000'037) {
      const TimeDate time = timeDateAt(instant, zone.standard());
      ASSERT_EQ(instantOf(time, zone), instant) << name;
      const Civil shown = civilOf(time, zone);
      const TimeDate back = timeDateOf(shown, zone);
      // An hour that comes twice leads to the first one, which the clock shows the same.
      ASSERT_EQ(hundredthsOf(civilOf(back, zone)), hundredthsOf(shown)) << name << ' ' << instant;
      ASSERT_LE(instantOf(back, zone), instant) << name << ' ' << instant;
    }
  }
}

TEST(Zones, EveryMinuteAroundAChangeOfTheClocksLeadsForward) {
  const LocalZone zone{QTimeZone("America/New_York")};
  for (const QDate& date : {QDate(2024, 3, 10), QDate(2024, 11, 3)}) {
    const qint64 midnight = hundredthsAt(QDateTime(date, QTime(0, 0), Qt::UTC));
    qint64 last = 0;
    for (int minute = 0; minute < 24 * 60; ++minute) {
      const qint64 local = midnight + minute * 6000,
                   instant = local - 100 * qint64(zone.offsetAtLocal(local));
      const bool skipped = date.month() == 3 && minute >= 120 && minute < 180;
      // A skipped time is shown an hour later; any other is shown as it was written.
      ASSERT_EQ(instant + 100 * qint64(zone.offsetAt(instant)), local + (skipped ? 360000 : 0)) << minute;
      if (date.month() == 11) {
        ASSERT_GT(instant, last) << minute;
      }
      last = instant;
    }
  }
}

TEST(Zones, ATimeThatComesTwiceIsTheFirstOne) {
  const LocalZone zone{QTimeZone("America/New_York")};
  const Civil civil{true, true, julianDay(2024, 11, 3), (1 * 3600 + 30 * 60) * 100};
  const QDateTime first(QDate(2024, 11, 3), QTime(5, 30), Qt::UTC);
  EXPECT_EQ(instantOf(timeDateOf(civil, zone), zone), hundredthsAt(first));
}

TEST(Zones, StandardOffsetsLeaveSummerTimeOut) {
  const auto standard = [](const char* name) { return LocalZone{QTimeZone(name)}.standard(); };
  EXPECT_EQ(standard("America/New_York").offsetMinutes, -300);
  EXPECT_TRUE(standard("America/New_York").observesDst);
  EXPECT_EQ(standard("Australia/Sydney").offsetMinutes, 600);
  EXPECT_TRUE(standard("Australia/Sydney").observesDst);
  EXPECT_EQ(standard("Asia/Kathmandu").offsetMinutes, 345);
  EXPECT_FALSE(standard("Asia/Kathmandu").observesDst);
}

TEST(Zones, AStoredTimeKeepsTheZoneItWasWrittenIn) {
  const LocalZone york{QTimeZone("America/New_York")}, kolkata{QTimeZone("Asia/Kolkata")};
  const Civil civil{true, true, julianDay(2024, 7, 1), 4320000};
  const TimeDate time = timeDateOf(civil, kolkata);
  EXPECT_EQ(zoneOf(time).offsetMinutes, 330);
  const Civil there = civilInOwnZone(time, york), here = civilOf(time, york);
  EXPECT_EQ(there.hundredths, 4320000);
  // 12:00 in India is 06:30 GMT, in summer 02:30 in New York.
  EXPECT_EQ(here.hundredths, (2 * 60 + 30) * 6000);
}

TEST(Zones, AForeignZoneWithSummerTimeChangesByItsOwnRules) {
  const LocalZone kolkata{QTimeZone("Asia/Kolkata")}, york{QTimeZone("America/New_York")};
  const auto hourInYork = [&](int month, int day) {
    const Civil noon{true, true, julianDay(2024, month, day), 4320000};
    return civilInOwnZone(timeDateOf(noon, york), kolkata).hundredths / 360000;
  };
  EXPECT_EQ(hourInYork(1, 15), 12);
  EXPECT_EQ(hourInYork(3, 9), 12);
  EXPECT_EQ(hourInYork(3, 11), 12);
  EXPECT_EQ(hourInYork(7, 15), 12);
}

TEST(StoredTimes, HalvesAreToldApart) {
  const LocalZone zone{QTimeZone("America/New_York")};
  EXPECT_TRUE(civilOf(kBlankTime, zone).isBlank());
  EXPECT_TRUE(civilOf(TimeDate{{kAllDay, kAnyDay}}, zone).isBlank());
  EXPECT_TRUE(civilOf(TimeDate{{9000000, 2460000}}, zone).isBlank());
  const Civil date = civilOf(TimeDate{{kAllDay, 2460385}}, zone);
  EXPECT_TRUE(date.hasDate && !date.hasTime);
  EXPECT_EQ(date.day, 2460385);
  const Civil clock = civilOf(TimeDate{{360000, kAnyDay}}, zone);
  EXPECT_TRUE(!clock.hasDate && clock.hasTime);
  EXPECT_EQ(clock.hundredths, 360000);
}

TEST(StoredTimes, MidnightIsATime) {
  const LocalZone utc{QTimeZone::utc()};
  const TimeDate time = timeDateOf(Civil{true, true, julianDay(2024, 3, 15), 0}, utc);
  EXPECT_EQ(time.innards[0], 0U);
  EXPECT_TRUE(civilOf(time, utc).hasTime);
}

TEST(StoredTimes, OutsideTheCalendarAreBlank) {
  const LocalZone utc{QTimeZone::utc()};
  const auto stored = [&](qint32 day) { return timeDateOf(Civil{true, true, day, 0}, utc).innards[1]; };
  EXPECT_EQ(stored(julianDay(10000, 1, 1)), 0U);
  EXPECT_EQ(stored(julianDay(0, 12, 31)), 0U);
  EXPECT_NE(stored(julianDay(9999, 12, 31)), 0U);
  EXPECT_NE(stored(julianDay(1, 1, 1)), 0U);
}

// --- Regions -------------------------------------------------------------------------------------------

TEST(Regions, ReadADateInTheirOrder) {
  const LocalZone utc{QTimeZone::utc()};
  const auto dayOf = [&](const char* locale) {
    const Value value = read(u"01/02/03"_s, regionOf(QLocale(QString::fromLatin1(locale))), utc);
    const YearMonthDay date = yearMonthDay(civilOf(value.time(), utc).day);
    return QDate(date.year, date.month, date.day).toString(Qt::ISODate).toStdString();
  };
  EXPECT_EQ(dayOf("en_US"), "2003-01-02");
  EXPECT_EQ(dayOf("fr_FR"), "2003-02-01");
  EXPECT_EQ(dayOf("de_DE"), "2003-02-01");
  EXPECT_EQ(dayOf("ja_JP"), "2001-02-03");
  EXPECT_EQ(dayOf("sv_SE"), "2001-02-03");
}

TEST(Regions, AreTakenFromTheSystem) {
  const Region german = regionOf(QLocale(QLocale::German, QLocale::Germany));
  EXPECT_EQ(german.dateOrder, Region::DateOrder::DayMonthYear);
  EXPECT_EQ(german.dateSeparator, u'.');
  EXPECT_EQ(german.timeSeparator, u':');
  EXPECT_EQ(german.decimalMark, u',');
  EXPECT_EQ(german.thousandsMark, u'.');
  EXPECT_FALSE(german.twelveHours);
  EXPECT_TRUE(german.currencyBehind);
  const Region american = regionOf(QLocale(QLocale::English, QLocale::UnitedStates));
  EXPECT_EQ(american.dateOrder, Region::DateOrder::MonthDayYear);
  EXPECT_EQ(american.dateSeparator, u'/');
  EXPECT_TRUE(american.twelveHours);
  EXPECT_EQ(american.pm, u"PM");
  EXPECT_EQ(american.currency, u"$");
  EXPECT_FALSE(american.currencyBehind);
  EXPECT_EQ(regionOf(QLocale(QLocale::Finnish)).timeSeparator, u'.');
}

TEST(Regions, ReadWhatTheyWrite) {
  const LocalZone zone{QTimeZone("Europe/Berlin")};
  const QList<QLocale> locales =
      QLocale::matchingLocales(QLocale::AnyLanguage, QLocale::AnyScript, QLocale::AnyTerritory);
  const Civil moments[] = {{true, true, julianDay(2024, 3, 15), 3784500},
                           {true, true, julianDay(1999, 12, 31), 0},
                           {true, true, julianDay(2024, 2, 1), 4320000},
                           {true, false, julianDay(2011, 10, 12), 0},
                           {true, false, julianDay(1823, 4, 5), 0},
                           {false, true, 0, 8639900},
                           {false, true, 0, 100},
                           {false, true, 0, 3971200}};
  for (const QLocale& locale : locales) {
    const Region region = regionOf(locale);
    for (const Civil& moment : moments) {
      const TimeDate time = timeDateOf(moment, zone);
      const QString text = timeText(time, TimeFormat(), TimeReading{region, zone, time});
      const Value back = read(text, region, zone);
      ASSERT_TRUE(back.isTime() && packTime(back.time()) == packTime(time))
          << locale.name().toStdString() << ": " << text.toStdString();
    }
    const TimePair range{timeDateOf(moments[0], zone), timeDateOf(moments[1], zone)};
    const QString text = rangeText(range, TimeFormat(), TimeReading{region, zone, range.from});
    ASSERT_TRUE(read(text, region, zone).identical(Value::range(range)))
        << locale.name().toStdString() << ": " << text.toStdString();
  }
}

// --- Reading -------------------------------------------------------------------------------------------

TEST(ReadingTimes, LeavesTheValueAloneWhenTheTextIsNoTime) {
  const TestEnvironment environment;
  const TimeReading reading{environment.region(), environment.zone(), environment.now()};
  Value value = Value::number(7.0);
  for (const QString& text : {u""_s, u"CN"_s, u"10:30 XYZ"_s, u"1/2/3 - "_s, u" - "_s, u"--"_s, u"[10:30]"_s})
    EXPECT_FALSE(readTime(text, reading, value)) << text.toStdString();
  EXPECT_TRUE(value.isOneNumber() && value.number() == 7);
}

TEST(ReadingTimes, AnyTextEnds) {
  const TestEnvironment environment;
  const TimeReading reading{environment.region(), environment.zone(), environment.now()};
  const QStringList parts{u"1"_s,   u"12"_s, u"2024"_s, u"99999"_s, u"/"_s,  u"-"_s,
                          u":"_s,   u"."_s,  u" "_s,    u"AM"_s,    u"PM"_s, u"EST"_s,
                          u"GMT"_s, u"+5"_s, u"-3:"_s,  u"Today"_s, u"é"_s,  u"😀"_s};
  QRandomGenerator random(11);
  int read = 0;
  for (int i = 0; i < 30000; ++i) {
    QString text;
    for (int count = random.bounded(9); count > 0; --count) text += parts[random.bounded(parts.size())];
    Value value;
    if (readTime(text, reading, value)) ++read;
  }
  EXPECT_GT(read, 100);
  Value value;
  EXPECT_FALSE(readTime(QString(100000, u'-'), reading, value));
  EXPECT_FALSE(readTime(QString(150, u'-'), reading, value));
}

TEST(ReadingTimes, PointsSeparateHoursWhereTheRegionSaysSo) {
  Region region = regionOf(QLocale(QLocale::Finnish));
  const LocalZone utc{QTimeZone::utc()};
  const Civil clock = civilOf(read(u"10.30"_s, region, utc).time(), utc);
  EXPECT_TRUE(clock.hasTime && !clock.hasDate);
  const Civil date = civilOf(read(u"15.3.2024"_s, region, utc).time(), utc);
  EXPECT_TRUE(date.hasDate && date.day == julianDay(2024, 3, 15));
  const Civil both = civilOf(read(u"15.3.2024 10.30.45"_s, region, utc).time(), utc);
  EXPECT_EQ(both.hundredths, 3784500);
}

TEST(ReadingTimes, TheRegionsOwnWordsForMorningAndAfternoonAreKnown) {
  Region region;
  region.am = u"π.μ."_s, region.pm = u"μ.μ."_s;
  const LocalZone utc{QTimeZone::utc()};
  EXPECT_EQ(civilOf(read(u"10:30 μ.μ."_s, region, utc).time(), utc).hundredths / 360000, 22);
  EXPECT_EQ(civilOf(read(u"10:30 π.μ."_s, region, utc).time(), utc).hundredths / 360000, 10);
  EXPECT_EQ(civilOf(read(u"10:30 pm"_s, region, utc).time(), utc).hundredths / 360000, 22);
}

// --- Writing -------------------------------------------------------------------------------------------

class WritingTimes : public testing::Test {
 protected:
  std::string text(const TimeDate& time, const char* letters) const {
    const TimeReading reading{environment_.region(), environment_.zone(), environment_.now()};
    return timeText(time, readTimeFormat(QString::fromLatin1(letters)), reading).toStdString();
  }
  TestEnvironment environment_;
};

TEST_F(WritingTimes, FollowTheFormatLetters) {
  const TimeDate time = testTime(2023, 7, 4, 14, 5, 9);
  EXPECT_EQ(text(time, ""), "07/04/2023 02:05:09 PM");
  EXPECT_EQ(text(time, "D1"), "07/04/2023 02:05:09 PM");
  EXPECT_EQ(text(time, "D2T1"), "07/04 02:05 PM");
  EXPECT_EQ(text(time, "D3S0"), "07/2023");
  EXPECT_EQ(text(time, "s1 t1"), "02:05 PM");
  EXPECT_EQ(text(time, "S2"), "07/04/2023 02:05:09 PM");
  EXPECT_EQ(text(time, "SX"), "07/04/2023 02:05:09 PM");
  EXPECT_EQ(text(time, "Z2"), "07/04/2023 02:05:09 PM EDT");
  EXPECT_EQ(text(time, "Q7D9?"), "07/04/2023 02:05:09 PM");
  EXPECT_EQ(text(testDate(2024, 7, 4), "D1"), "07/04");
  EXPECT_EQ(text(testDate(2024, 7, 4), "S1"), "");
  EXPECT_EQ(text(kBlankTime, "S2"), "");
}

TEST_F(WritingTimes, NameTheDaysAroundToday) {
  EXPECT_EQ(text(testTime(2024, 3, 15, 9, 0), "S3T1"), "Today 09:00 AM");
  EXPECT_EQ(text(testTime(2024, 3, 14, 9, 0), "S3T1"), "Yesterday 09:00 AM");
  EXPECT_EQ(text(testTime(2024, 3, 13, 9, 0), "S3T1"), "03/13/2024 09:00 AM");
}

TEST_F(WritingTimes, ShowAForeignZoneOnRequest) {
  const TimeDate time =
      timeDateOf(Civil{true, true, julianDay(2024, 1, 15), 4320000}, LocalZone{QTimeZone("Asia/Kolkata")});
  EXPECT_EQ(text(time, "T1"), "01/15/2024 01:30 AM");
  EXPECT_EQ(text(time, "T1Z1"), "01/15/2024 12:00 PM GMT+5:30");
  EXPECT_EQ(text(testTime(2024, 1, 15, 12, 0), "T1Z1"), "01/15/2024 12:00 PM");
  EXPECT_EQ(text(testTime(2024, 1, 15, 12, 0), "T1Z2"), "01/15/2024 12:00 PM EST");
}

}  // namespace
}  // namespace lens::formula

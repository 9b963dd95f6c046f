// What the program writes as a date or time it reads back as the same one, in every region that the machine
// knows: what users leave as it is must be stored as it was.

#include <gtest/gtest.h>

#include <QHash>
#include <QSet>

#include "host/regional.h"
#include "notes/code_page.h"

namespace lens {
namespace {

const QVector<QLocale>& everyRegion() {
  static const QVector<QLocale> regions =
      QLocale::matchingLocales(QLocale::AnyLanguage, QLocale::AnyScript, QLocale::AnyCountry);
  return regions;
}

// One region for each way of writing, the commonest ways first.
QVector<QLocale> everyPattern() {
  QHash<QString, QVector<QLocale>> patterns;
  for (const QLocale& region : everyRegion()) {
    const Regional regional(region);
    patterns[regional.text({QDate(2024, 3, 7), QTime(1, 2, 3)}) +
             regional.text({QDate(1987, 11, 21), QTime(13, 45, 59)})]
        .append(region);
  }
  QVector<QVector<QLocale>> sorted = patterns.values();
  std::sort(sorted.begin(), sorted.end(), [](const auto& a, const auto& b) { return a.size() > b.size(); });
  QVector<QLocale> first;
  for (const QVector<QLocale>& regions : sorted) first.append(regions.first());
  return first;
}

constexpr int kSecondsOfDay = 24 * 60 * 60;
QTime timeAt(int second) {
  return QTime(0, 0).addSecs(second);
}

// What comes back, or why nothing does.
::testing::AssertionResult comesBack(const Regional& regional, const DateTime& moment, const QString& text) {
  try {
    const DateTime read = regional.dateTime(text);
    if (read == moment) return ::testing::AssertionSuccess();
    return ::testing::AssertionFailure()
           << '"' << text.toStdString() << "\" is read as " << read.date.toString(Qt::ISODate).toStdString()
           << ' ' << read.time.toString(Qt::ISODate).toStdString();
  } catch (const RuntimeError&) {
    return ::testing::AssertionFailure() << '"' << text.toStdString() << "\" is not read";
  }
}

// Midnight is written as the date alone, and read back as such.
DateTime asWritten(QDate date, QTime time) {
  return {date, time == QTime(0, 0) ? QTime() : time};
}

// False ends the region: one message for each is enough.
bool secondComesBack(const Regional& regional, const QLocale& region, int second, QDate date) {
  QVector<DateTime> moments{{QDate(), timeAt(second)}};
  if (date.isValid()) moments.append(asWritten(date, timeAt(second)));
  for (const DateTime& moment : std::as_const(moments)) {
    const auto result = comesBack(regional, moment, regional.text(moment));
    EXPECT_TRUE(result) << region.name().toStdString();
    if (!result) return false;
  }
  return true;
}

// Each second alone, and one in so many of them together with a date.
void expectEverySecond(const QLocale& region, int together) {
  const Regional regional(region);
  QDate date(1900, 1, 1);
  for (int second = 0; second < kSecondsOfDay; ++second) {
    date = date.addDays(1);
    if (date.year() > 2100) date = QDate(1900, 1, 1);
    if (!secondComesBack(regional, region, second, second % together == 0 ? date : QDate())) return;
  }
}

TEST(EveryRegion, ReadsTimesAndDatesAsItWroteThem) {
  constexpr int kSamples = 500;
  ASSERT_GT(everyRegion().size(), 300);
  for (const QLocale& region : everyRegion()) {
    const Regional regional(region);
    QDate date(1900, 1, 1);
    for (int sample = 0; sample < kSamples; ++sample) {
      date = date.addDays(147);
      if (!secondComesBack(regional, region, int(qint64(sample) * 7919 % kSecondsOfDay), date)) break;
      const auto result = comesBack(regional, {date, QTime()}, regional.text({date, QTime()}));
      EXPECT_TRUE(result) << region.name().toStdString();
      if (!result) break;
    }
  }
}

TEST(EveryRegion, ReadsEverySecondInTheTenCommonestPatterns) {
  const QVector<QLocale> patterns = everyPattern();
  ASSERT_GE(patterns.size(), 10);
  for (const QLocale& region : patterns.first(10)) expectEverySecond(region, 11);
}

// Takes minutes: for `make soak`.
TEST(EveryRegionSoak, ReadsEverySecondInEveryPattern) {
  if (!qEnvironmentVariableIsSet("LENS_SOAK")) GTEST_SKIP() << "LENS_SOAK is not set";
  const QVector<QLocale> patterns = everyPattern();
  for (const QLocale& region : patterns) expectEverySecond(region, 1);
  RecordProperty("patterns", int(patterns.size()));
}

TEST(EveryRegion, ReadsATimeWithoutSecondsAloneAndBehindADate) {
  int tried = 0;
  for (const QLocale& region : everyRegion()) {
    // Qt knows no word for this part of the format and writes its letter, which no person types.
    if (region.timeFormat(QLocale::ShortFormat).contains(u'B')) continue;
    const Regional regional(region);
    const QString date = regional.text({QDate(2024, 3, 4), QTime()});
    for (const QTime time : {QTime(5, 6), QTime(17, 6), QTime(12, 0), QTime(0, 30)}) {
      const QString typed = region.toString(time, QLocale::ShortFormat);
      EXPECT_TRUE(comesBack(regional, {QDate(), time}, typed)) << region.name().toStdString();
      EXPECT_TRUE(comesBack(regional, {QDate(2024, 3, 4), time}, date + u' ' + typed))
          << region.name().toStdString();
      ++tried;
    }
  }
  EXPECT_GT(tried, 4 * 600);
}

TEST(EveryRegion, HasAFormThatSurvivesTheCodePage) {
  for (const QLocale& region : everyRegion()) {
    const Regional regional(region);
    const DateTime moments[] = {
        {QDate(2024, 11, 21), QTime(14, 5, 9)}, {QDate(2003, 2, 1), QTime()}, {QDate(), QTime(0, 1)}};
    for (const DateTime& moment : moments)
      EXPECT_TRUE(comesBack(regional, moment, fromCodePage(toCodePage(regional.plainText(moment)))))
          << region.name().toStdString();
  }
}

// Found as lost: 08:05:00 in Germany became a day in May.
TEST(EveryRegion, ATimeOfDayIsNeverTakenForADate) {
  const Regional german(QLocale(QLocale::German, QLocale::Germany));
  EXPECT_EQ(german.dateTime(u"08:05:00"), (DateTime{QDate(), QTime(8, 5)}));
  // Typed, that is a day in Germany and a time in Finland, where the clock is written so.
  EXPECT_EQ(german.dateTime(u"08.05.00"), (DateTime{QDate(2000, 5, 8), QTime()}));
  const Regional finnish(QLocale(QLocale::Finnish, QLocale::Finland));
  EXPECT_EQ(finnish.dateTime(u"08.05.00"), (DateTime{QDate(), QTime(8, 5)}));
  EXPECT_EQ(finnish.dateTime(u"8.5.2000"), (DateTime{QDate(2000, 5, 8), QTime()}));
  const Regional american(QLocale(QLocale::English, QLocale::UnitedStates));
  EXPECT_EQ(american.dateTime(u"3/4/2024 5:06 PM"), (DateTime{QDate(2024, 3, 4), QTime(17, 6)}));
  EXPECT_EQ(american.dateTime(u"5:06:07 pm"), (DateTime{QDate(), QTime(17, 6, 7)}));
}

}  // namespace
}  // namespace lens

#include "host/regional.h"

#include <gtest/gtest.h>

#include "support/printers.h"

namespace lens {
namespace {

const QLocale kGerman(QLocale::German, QLocale::Germany);
const QLocale kAmerican(QLocale::English, QLocale::UnitedStates);
const QLocale kCzech(QLocale::Czech, QLocale::CzechRepublic);
const QLocale kJapanese(QLocale::Japanese, QLocale::Japan);

TEST(RegionalDates, KeepTheOrderOfTheRegionWithAFullYearAndSeconds) {
  const DateTime moment{QDate(2024, 11, 21), QTime(14, 5, 9)};
  EXPECT_EQ(Regional(kGerman).text(moment), "21.11.2024 14:05:09");
  EXPECT_EQ(Regional(kAmerican).text(moment), "11/21/2024 2:05:09 PM");
  EXPECT_EQ(Regional(kJapanese).text(moment), "2024/11/21 14:05:09");
}

TEST(RegionalDates, AreOneWordSoThatTheFirstBlankPartsDateAndTime) {
  for (const QLocale& locale : {kGerman, kCzech, kJapanese, QLocale::c(), QLocale(QLocale::Slovenian),
                                QLocale(QLocale::Bulgarian), QLocale(QLocale::Korean)}) {
    const QString text = Regional(locale).text({QDate(2024, 11, 21), QTime(14, 5, 9)});
    EXPECT_TRUE(Regional(locale).dateTime(text.left(text.indexOf(u' '))).date.isValid())
        << text.toStdString();
  }
  EXPECT_EQ(Regional(QLocale::c()).text({QDate(2024, 11, 21), QTime(14, 5, 9)}), "11/21/2024 14:05:09");
}

TEST(RegionalDates, LeaveOutMidnightAndAMissingHalf) {
  const Regional regional(kGerman);
  EXPECT_EQ(regional.text({QDate(2024, 3, 1), QTime(0, 0)}), "01.03.2024");
  EXPECT_EQ(regional.text({QDate(2024, 3, 1), QTime()}), "01.03.2024");
  EXPECT_EQ(regional.text({QDate(), QTime(7, 8, 9)}), "07:08:09");
  EXPECT_EQ(regional.text({}), "");
}

TEST(RegionalDates, ComeBackAsTheyWereWrittenInEveryRegion) {
  const QVector<DateTime> moments = {{QDate(1949, 5, 6), QTime(7, 8, 9)},
                                     {QDate(2024, 12, 31), QTime(23, 59, 59)},
                                     {QDate(2024, 2, 29), QTime()},
                                     {QDate(), QTime(0, 0, 1)},
                                     {QDate(2000, 1, 2), QTime(12, 0, 0)}};
  for (const QLocale& locale : {kGerman, kAmerican, kCzech, kJapanese, QLocale::c()}) {
    const Regional regional(locale);
    for (const DateTime& moment : moments) {
      const QString text = regional.text(moment);
      EXPECT_EQ(regional.dateTime(text), moment) << locale.name().toStdString() << ": " << text.toStdString();
    }
  }
}

TEST(RegionalDates, ReadWhatAPersonTypes) {
  const Regional regional(kGerman);
  EXPECT_EQ(regional.dateTime(u" 21.11.2024\r\n"), (DateTime{QDate(2024, 11, 21), QTime()}));
  EXPECT_EQ(regional.dateTime(u"1.2.2024 7:30"), (DateTime{QDate(2024, 2, 1), QTime(7, 30)}));
  EXPECT_EQ(regional.dateTime(u"21.11.49").date, QDate(2049, 11, 21));
  EXPECT_EQ(regional.dateTime(u"21.11.50").date, QDate(1950, 11, 21));
}

TEST(RegionalDates, RefuseWhatIsNoDate) {
  const Regional regional(kGerman);
  for (const char16_t* text : {u"", u"hello", u"32.01.2024", u"12345", u"1.2", u"21.11.2024 25:00:00"}) {
    try {
      regional.dateTime(QString::fromUtf16(text));
      ADD_FAILURE() << QString::fromUtf16(text).toStdString() << " was read as a date";
    } catch (const RuntimeError& error) {
      EXPECT_EQ(error.number(), err::TypeMismatch);
    }
  }
}

TEST(ValueText, IsRegionalForDatesOnly) {
  const Regional regional(kGerman);
  EXPECT_EQ(textOf(Value(1.5), regional), "1.5");
  EXPECT_EQ(textOf(Value(DateTime{QDate(2024, 11, 21), {}}), regional), "21.11.2024");
  EXPECT_EQ(textOf(Value(), regional), "");
}

}  // namespace
}  // namespace lens

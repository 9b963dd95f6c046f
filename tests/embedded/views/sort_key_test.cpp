// Values as bytes that compare as the values do.
#include "embedded/views/sort_key.h"

#include <random>

#include "embedded/formula/collation.h"
#include "embedded/support/view_fixture.h"

namespace lens::testbed {
namespace {

const formula::LocalZone& zone() {
  static const formula::LocalZone local{QTimeZone("Europe/Berlin")};
  return local;
}
QByteArray keyOf(const formula::Value& value) {
  QByteArray key;
  appendSortKey(key, value, zone());
  return key;
}
int signOf(int number) {
  return (number > 0) - (number < 0);
}

TEST(SortKeys, OfTextsCompareAsTheTexts) {
  constexpr formula::CollationRules rules{false, true, true};
  static const QString letters = u"aAbBzZäÄéßøłñ'-09 .:\\ΩЖж中ａ🙂́"_s;
  std::mt19937 random(5);
  const auto text = [&] {
    QString made;
    for (int size = int(random() % 5); size > 0; --size)
      made += letters[int(random() % quint32(letters.size()))];
    return made;
  };
  for (int turn = 0; turn < 20000; ++turn) {
    const QString a = text(), b = text();
    const int wanted = formula::compareTexts(a, b, rules);
    const QByteArray left = keyOf(formula::Value::text(a)), right = keyOf(formula::Value::text(b));
    ASSERT_EQ(signOf(left.compare(right)), wanted) << a.toStdString() << " and " << b.toStdString();
    QByteArray downLeft = left, downRight = right;
    invert(downLeft, 0);
    invert(downRight, 0);
    ASSERT_EQ(signOf(downLeft.compare(downRight)), -wanted) << a.toStdString() << " and " << b.toStdString();
    ASSERT_TRUE(keyOf(formula::Value::text(QString(a + b))).startsWith(textKeyBeginning(a)) ||
                (!b.isEmpty() && b.front().isLowSurrogate()))
        << a.toStdString() << " before " << b.toStdString();
  }
}

TEST(SortKeys, OfNumbersCompareAsTheNumbersAndReadBack) {
  const QVector<double> numbers{-1e300, -2, -1.5, -1e-300, 0, 1e-300, 0.1, 1, 1.5, 9, 10, 1e300};
  for (qsizetype i = 0; i < numbers.size(); ++i) {
    const QByteArray key = keyOf(formula::Value::number(numbers[i]));
    double read = 1;
    ASSERT_TRUE(readNumberKey(key, read));
    EXPECT_EQ(read, numbers[i]);
    if (i > 0) {
      EXPECT_LT(keyOf(formula::Value::number(numbers[i - 1])), key);
    }
  }
  EXPECT_EQ(keyOf(formula::Value::number(-0.0)), keyOf(formula::Value::number(0.0)));
}

TEST(SortKeys, OfTimesCompareByTheMomentAndReadBack) {
  const QVector<TimeDate> times{timeDateOfDate({1850, 5, 1}), timeDateOfDate({1999, 12, 31}),
                                timeDateOf(DateTime{{1999, 12, 31}, {8, 0}}), timeDateOfDate({2024, 7, 1})};
  for (qsizetype i = 0; i < times.size(); ++i) {
    const QByteArray key = keyOf(formula::Value::time(times[i]));
    formula::Civil read, wanted = formula::civilOf(times[i], zone());
    ASSERT_TRUE(readTimeKey(key, zone(), read));
    EXPECT_EQ(read.day, wanted.day);
    EXPECT_EQ(read.hasTime, wanted.hasTime);
    EXPECT_EQ(read.hundredths, wanted.hundredths);
    if (i > 0) {
      EXPECT_LT(keyOf(formula::Value::time(times[i - 1])), key);
    }
  }
  formula::Civil clock;
  ASSERT_TRUE(readTimeKey(keyOf(formula::Value::time(timeDateOfTime({7, 30}))), zone(), clock));
  EXPECT_TRUE(clock.hasTime && !clock.hasDate);
  EXPECT_EQ(clock.hundredths, (7 * 60 + 30) * 6000);
}

TEST(SortKeys, NoneIsTheBeginningOfAnotherAndNoneIsTooLong) {
  const std::vector<formula::Value> values{
      formula::Value::text(u""),       formula::Value::texts({u"a"_s, u""_s}),
      formula::Value::texts({u"a"_s}), formula::Value::texts({u"a"_s, u"b"_s}),
      formula::Value::number(1.0),     formula::Value::numbers({1, 2}),
      formula::Value::text(u"ab"),     formula::Value::text(QString(5000, u'a')),
      formula::Value::error(0x0534)};
  for (std::size_t i = 0; i < values.size(); ++i)
    for (std::size_t j = 0; j < values.size(); ++j) {
      const QByteArray a = keyOf(values[i]), b = keyOf(values[j]);
      EXPECT_LE(a.size(), kMostKeyBytes);
      EXPECT_TRUE(a == b || !b.startsWith(a)) << i << " and " << j;
    }
}

TEST(SortKeys, BehindAllEndsARange) {
  EXPECT_EQ(behindAll("ab"), QByteArray("ac"));
  EXPECT_EQ(behindAll("a\xFF\xFF"), QByteArray("b"));
  EXPECT_EQ(behindAll("\xFF"), QByteArray());
}

}  // namespace
}  // namespace lens::testbed

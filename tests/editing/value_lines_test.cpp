#include "editing/value_lines.h"

#include <gtest/gtest.h>

using namespace lens;
using namespace Qt::StringLiterals;

namespace {

const Regional& german() {
  static const Regional regional(QLocale(QLocale::German, QLocale::Germany));
  return regional;
}

int raisedBy(const std::function<void()>& body) {
  try {
    body();
  } catch (const RuntimeError& error) {
    return error.number();
  }
  return 0;
}

Value day(int year, int month, int day) {
  return Value(DateTime{QDate(year, month, day), QTime()});
}

}  // namespace

TEST(TextLines, AreTheValues) {
  EXPECT_EQ(textLines(u"a\r\nb"_s), QStringList({u"a"_s, u"b"_s}));
  EXPECT_EQ(textLines(u"a"_s), QStringList(u"a"_s));
  EXPECT_EQ(textLines(u""_s), QStringList());
}

TEST(TextLines, LastLineEndAddsNoValue) {
  EXPECT_EQ(textLines(u"a\r\n"_s), QStringList(u"a"_s));
  EXPECT_EQ(overwriteLines(u"a\r\nb\r\n"_s), QStringList({u"a"_s, u"b"_s}));
}

TEST(TextLines, EmptyLineBecomesABlankAndTheNextKeepsTheLineFeed) {
  EXPECT_EQ(textLines(u"a\r\n\r\nb"_s), QStringList({u"a"_s, u" "_s, u"\nb"_s}));
  EXPECT_EQ(overwriteLines(u"a\r\n\r\nb"_s), QStringList({u"a"_s, u" "_s, u"\nb"_s}));
}

TEST(TextLines, OnlyOverwritingCutsAtACarriageReturnToo) {
  EXPECT_EQ(textLines(u"a\r\r\nb"_s), QStringList({u"a\r"_s, u"b"_s}));
  EXPECT_EQ(overwriteLines(u"a\r\r\nb\r\r\n"_s), QStringList({u"a"_s, u"b"_s}));
  EXPECT_EQ(overwriteLines(u"a\rb\r\nc"_s), QStringList({u"a"_s, u"c"_s}));
}

TEST(TextLines, LineEndTooFarAwayOverflows) {
  const QString far = QString(33'000, u'x') + u"\r\nx";
  EXPECT_EQ(raisedBy([&] { textLines(far); }), err::Overflow);
  EXPECT_EQ(raisedBy([&] { overwriteLines(far); }), err::Overflow);
  EXPECT_EQ(textLines(QString(32'766, u'x') + u"\r\nx").size(), 2);
}

TEST(TextLines, LineCounterOverflows) {
  EXPECT_EQ(textLines(u"a\r\n"_s.repeated(32'767)).size(), 32'767);
  EXPECT_EQ(raisedBy([] { textLines(u"a\r\n"_s.repeated(32'768)); }), err::Overflow);
  EXPECT_EQ(raisedBy([] { overwriteLines(u"a\r\n"_s.repeated(32'768)); }), err::Overflow);
}

// The numbers of the lines, put into that many places.
QVector<double> numbersOf(const QString& content, int count) {
  Statements step;
  QVector<Value> places(count, Value(99));
  numberLines(step, content, places);
  QVector<double> numbers;
  for (const Value& place : places) numbers.push_back(place.number());
  return numbers;
}

TEST(NumberLines, AreAsManyAsThereArePlaces) {
  EXPECT_EQ(numbersOf(u"1\r\n2"_s, 3), QVector<double>({1, 2, 0}));
  EXPECT_EQ(numbersOf(u"1\r\n2\r\n3"_s, 2), QVector<double>({1, 2}));
  EXPECT_EQ(numbersOf(u""_s, 1), QVector<double>({0}));
}

TEST(NumberLines, TakeTheNumberThatALineBeginsWith) {
  EXPECT_EQ(numbersOf(u"12abc\r\n  -1.5e2x\r\nabc\r\n1,5\r\nnan"_s, 5), QVector<double>({12, -150, 0, 1, 0}));
}

TEST(NumberLines, PlacesAndLineEndsHaveSixteenBits) {
  EXPECT_EQ(numbersOf(QString(), 32'767).size(), 32'767);
  EXPECT_EQ(raisedBy([] { numbersOf(QString(), 32'768); }), err::Overflow);
  EXPECT_EQ(raisedBy([] { numbersOf(QString(33'000, u'1') + u"\r\n2", 2); }), err::Overflow);
}

// Wherever the line stands that cannot be cut: the places before it are written, the others stay.
TEST(NumberLines, WithTheTrapOffPlacesBeforeALineEndTooFarAwayAreWritten) {
  const QString tooLong = QString(33'000, u'1') + u"\r\n";
  for (int before = 0; before <= 4; ++before) {
    Statements step;
    step.switchTrapOff();
    QVector<Value> places = {10, 20, 30, 40}, expected = places;
    for (int place = 0; place < before; ++place) expected[place] = place + 1;
    QString content;
    for (int place = 0; place < before; ++place) content += QString::number(place + 1) + u"\r\n";
    numberLines(step, content + tooLong + u"7\r\n8", places);
    EXPECT_EQ(places, expected) << before;
    EXPECT_EQ(step.switchTrapOff().number(), before < 4 ? int(err::Overflow) : 0);
  }
  Statements step;
  step.switchTrapOff();
  QVector<Value> many(40'000, Value(5));
  numberLines(step, QString(), many);
  EXPECT_EQ(many[32'767], Value(0));
  EXPECT_EQ(many[32'768], Value(5));
}

TEST(NumberLines, LineEndsOfTheViewerDoNoHarm) {
  EXPECT_EQ(numbersOf(u"1.5\r\r\n2\r\r\n"_s, 2), QVector<double>({1.5, 2}));
}

TEST(DateLines, AreReadByTheRegion) {
  Statements step;
  EXPECT_EQ(dateLines(step, u"06.05.1949 07:08:09\r\n11.03.2024"_s, german()),
            QVector<Value>({Value(DateTime{QDate(1949, 5, 6), QTime(7, 8, 9)}), day(2024, 3, 11)}));
  EXPECT_EQ(step.switchTrapOff().number(), 0);
}

TEST(DateLines, OfTheViewerAreReadWithTheirCarriageReturns) {
  Statements step;
  EXPECT_EQ(dateLines(step, u"06.05.1949\r\r\n11.03.2024\r\r\n"_s, german()),
            QVector<Value>({day(1949, 5, 6), day(2024, 3, 11)}));
}

TEST(DateLines, LineThatIsNoDateIsDropped) {
  Statements step;
  EXPECT_EQ(dateLines(step, u"11.03.2024\r\nsoon\r\n12.03.2024"_s, german()),
            QVector<Value>({day(2024, 3, 11), day(2024, 3, 12)}));
  EXPECT_EQ(dateLines(step, u"11.03.2024\r\nsoon"_s, german()), QVector<Value>({day(2024, 3, 11)}));
}

TEST(DateLines, FirstBadLineLeavesAnEmptyPlaceForTheNextGoodOne) {
  Statements step;
  EXPECT_EQ(dateLines(step, u"soon"_s, german()), QVector<Value>(1));
  EXPECT_EQ(dateLines(step, u"soon\r\nlater\r\n12.03.2024"_s, german()), QVector<Value>({day(2024, 3, 12)}));
  EXPECT_EQ(dateLines(step, QString(), german()), QVector<Value>());
}

TEST(DateLines, EarlierFailureTakesTheNextGoodLineAlong) {
  Statements step;
  step.switchTrapOff();
  step([] { throw RuntimeError(err::ObjectNotSet); });
  // The first line is stored, but not counted; the second one takes its place.
  EXPECT_EQ(dateLines(step, u"11.03.2024\r\n12.03.2024"_s, german()), QVector<Value>({day(2024, 3, 12)}));
}

TEST(DateLines, SwitchTheTrapOffFromTheFirstLineOn) {
  Statements step;
  const auto fail = [&] { step([] { throw RuntimeError(err::ObjectNotSet); }); };
  dateLines(step, QString(), german());
  EXPECT_EQ(raisedBy(fail), err::ObjectNotSet);
  dateLines(step, u"soon"_s, german());
  EXPECT_EQ(raisedBy(fail), 0);
}

TEST(DateLines, CounterThatOverflowsIsSilentAndDropsWhatFollows) {
  const QString line = u"11.03.2024\r\n"_s;
  Statements step;
  EXPECT_EQ(dateLines(step, line.repeated(32'768), german()).size(), 32'768);
  EXPECT_EQ(step.switchTrapOff().number(), err::Overflow);
  Statements again;
  // The next line meets the noted failure, and its place goes with it.
  EXPECT_EQ(dateLines(again, line.repeated(32'769), german()).size(), 32'767);
}

TEST(DateLines, LineEndTooFarAwayEndsTheReading) {
  Statements step;
  EXPECT_EQ(dateLines(step, QString(33'000, u'x') + u"\r\n11.03.2024", german()), QVector<Value>(1));
  EXPECT_EQ(step.switchTrapOff().number(), 0);
}

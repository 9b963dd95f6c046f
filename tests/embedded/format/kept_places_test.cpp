#include "embedded/format/kept_places.h"

#include <random>

#include "embedded/format/lmbcs.h"
#include "embedded/format/written_value.h"
#include "embedded/support/store_test.h"
#include "support/in_zone.h"

namespace lens {
namespace {

constexpr char kBerlin[] = "CET-1CEST,M3.5.0,M10.5.0/3";

// Each place as procedures read and write it back: regional text has seconds, and midnight no time.
Value asShown(const Value& value, const Regional& regional) {
  if (value.kind() == Value::Kind::DateTime) return regional.dateTime(textOf(value, regional));
  if (value.kind() == Value::Kind::Number) return value.text().toDouble();
  return value;
}

QVector<Value> shownPlaces(const QByteArray& stored) {
  static const Regional regional(QLocale(QLocale::German, QLocale::Germany));
  QVector<Value> places;
  const Value values = itemValues(Item{u"A"_s, 0, stored});
  for (const Value& value : values.values()) places.push_back(asShown(value, regional));
  return places;
}

// Midnight, its first second and the day alone are one to a reader.
Value dayAtMidnight(const Value& value) {
  DateTime moment = value.dateTime();
  if (moment.date.isValid() && moment.time == QTime(0, 0)) moment.time = QTime();
  return moment;
}

QByteArray writtenBack(const QVector<Value>& places, const QByteArray& stored) {
  return withKeptPlaces(writtenValue(Value::array(places)), stored);
}

TimeDate moment(int day, int hour, int minute, int second = 0, int ms = 0, Zone zone = {60, true}) {
  return timeDateOf(QDateTime(QDate(2024, 10, day), QTime(hour, minute, second, ms), Qt::UTC), zone);
}

// All that a text leaves out: which of two equal hours, zones, hundredths, midnight beside the day alone.
QVector<TimeDate> oddTimes() {
  return {moment(27, 0, 30),
          moment(27, 1, 30),
          moment(27, 0, 30, 0, 0, {-300, true}),
          moment(27, 12, 0, 7, 370),
          moment(26, 22, 0),  // midnight
          moment(26, 22, 0, 0, 990),
          timeDateOfDate(QDate(2024, 10, 27)),
          timeDateOfTime(QTime(8, 5, 0, 120)),
          timeDateOfTime(QTime(0, 0))};
}

const QVector<double> kOddNumbers = {0.1 + 0.2, 1.0 / 3, 1e22 + 3e6, -0.0, 123456789.123456789, 7};

// Bytes that come from elsewhere: a group in front of a letter that needs none, what is no character, a line
// feed in place of a NUL.
QByteArray textList(const QVector<QByteArray>& texts) {
  QByteArray value;
  appendU16(value, itemtype::TextList);
  appendU16(value, quint16(texts.size()));
  for (const QByteArray& text : texts) appendU16(value, quint16(text.size()));
  for (const QByteArray& text : texts) value += text;
  return value;
}
const QVector<QByteArray> kOddTexts = {QByteArray("\x01\x84"
                                                  "b"),
                                       QByteArray("a\nb"),
                                       QByteArray("a\0b", 3),
                                       "plain",
                                       toLmbcs(u"Größe"),
                                       toLmbcs(u"日本"),
                                       ""};

TEST(KeptPlaces, WhatIsWrittenBackUntouchedKeepsEveryByte) {
  const InZone berlin(kBerlin);
  for (const TimeDate& time : oddTimes()) {
    const QByteArray stored = timeValue(time);
    EXPECT_EQ(writtenBack(shownPlaces(stored), stored), stored) << timeDateHex(time).toStdString();
  }
  const QByteArray times = timeListValue(oddTimes());
  EXPECT_EQ(writtenBack(shownPlaces(times), times), times);
  for (const double number : kOddNumbers) {
    const QByteArray stored = numberValue(number);
    EXPECT_EQ(writtenBack(shownPlaces(stored), stored), stored) << number;
  }
  const QByteArray numbers = numberListValue(kOddNumbers);
  EXPECT_EQ(writtenBack(shownPlaces(numbers), numbers), numbers);
  for (const QByteArray& text : kOddTexts) {
    const QByteArray stored = rawValue(itemtype::Text, text);
    EXPECT_EQ(writtenBack(shownPlaces(stored), stored), stored);
  }
  const QByteArray texts = textList(kOddTexts);
  EXPECT_EQ(writtenBack(shownPlaces(texts), texts), texts);
}

TEST(KeptPlaces, PairsStayPairsWhileTheirCountStays) {
  const InZone berlin(kBerlin);
  const QByteArray stored = timeListValue(
      {moment(27, 0, 30)}, {{moment(26, 8, 0), moment(27, 0, 30)}, {moment(1, 8, 0), moment(2, 8, 0)}});
  QVector<Value> places = shownPlaces(stored);
  EXPECT_EQ(writtenBack(places, stored), stored);
  places[3] = DateTime{QDate(2031, 1, 1), QTime(1, 2, 3)};
  QByteArray expected = stored;
  expected.replace(2 + 4 + 3 * 8, 8, timeValue(timeDateOf(places[3].dateTime())).sliced(2));
  EXPECT_EQ(writtenBack(places, stored), expected);
  places.removeLast();
  EXPECT_EQ(writtenBack(places, stored).size(), 2 + 4 + 4 * 8);
}

// A plain model beside it: places change, come and go, and each of the others keeps its bytes.
TEST(KeptPlaces, EveryEditOfAListLeavesTheOtherPlacesAlone) {
  const InZone berlin(kBerlin);
  const auto entry = [](const QByteArray& value) { return value.sliced(2); };
  const QByteArray list = timeListValue(oddTimes());
  const QVector<Value> shown = shownPlaces(list);
  const Value other = DateTime{QDate(2031, 1, 1), QTime(1, 2, 3)};
  for (qsizetype place = 0; place < shown.size(); ++place) {
    QVector<Value> changed = shown, longer = shown, shorter = shown;
    QVector<TimeDate> bytes = oddTimes(), more = oddTimes(), fewer = oddTimes();
    changed[place] = other;
    bytes[place] = timeDateOf(other.dateTime());
    EXPECT_EQ(writtenBack(changed, list), timeListValue(bytes)) << place;
    longer.insert(place, other);
    more.insert(place, timeDateOf(other.dateTime()));
    EXPECT_EQ(writtenBack(longer, list), timeListValue(more)) << place;
    shorter.removeAt(place);
    fewer.removeAt(place);
    // Of equal texts the earlier places are taken first, so only the count of each is sure.
    const QByteArray kept = writtenBack(shorter, list);
    ASSERT_EQ(kept.size(), timeListValue(fewer).size());
    for (qsizetype i = 0; i < shorter.size(); ++i)
      EXPECT_EQ(dayAtMidnight(shownPlaces(kept)[i]), dayAtMidnight(shorter[i])) << place << ' ' << i;
    for (qsizetype i = 0; i < shorter.size(); ++i)
      EXPECT_TRUE(list.contains(kept.mid(6 + i * 8, 8))) << place << ' ' << i;
  }
  EXPECT_EQ(entry(writtenBack({shown[1]}, timeValue(oddTimes()[1]))), entry(timeValue(oddTimes()[1])));
}

TEST(KeptPlaces, AnotherTextIsWrittenAsItIs) {
  for (const auto& [value, stored] :
       QVector<QPair<Value, QByteArray>>{{0.25, numberValue(0.1 + 0.2)},
                                         {u"a"_s, numberValue(1)},
                                         {1, textValue(u"1")},
                                         {u"ab"_s, textValue(u"aB")},
                                         {Value(DateTime{QDate(2024, 10, 27), QTime(2, 30)}),
                                          timeValue(timeDateOfDate(QDate(2024, 10, 27)))},
                                         {u"a"_s, QByteArray("\x00", 1)},
                                         {u"a"_s, rawValue(itemtype::TextList, "\xFF\xFF")},
                                         {2, rawValue(itemtype::NumberRange, "\xFF\xFF\x01")},
                                         {2, rawValue(itemtype::Number, "abc")}})
    EXPECT_EQ(withKeptPlaces(writtenValue(value), stored), writtenValue(value));
}

TEST(KeptPlaces, AnyBytesAreNoHarm) {
  std::mt19937 random(7);
  for (int round = 0; round < 20'000; ++round) {
    QByteArray stored(int(random() % 40), '\0');
    for (char& byte : stored) byte = char(random() % 4 == 0 ? random() : random() % 6);
    const quint16 types[] = {itemtype::Text,        itemtype::TextList, itemtype::Number,
                             itemtype::NumberRange, itemtype::Time,     itemtype::TimeRange};
    if (stored.size() >= 2) stored.replace(0, 2, rawValue(types[random() % 6], {}));
    for (const Value& value : {Value(u"a\nb"_s), Value::array({u""_s, u"x"_s}), Value(2.5),
                               Value::array({0, 0}), Value(DateTime{QDate(2024, 1, 1), QTime()})}) {
      const QByteArray kept = withKeptPlaces(writtenValue(value), stored);
      EXPECT_EQ(shownPlaces(kept), shownPlaces(writtenValue(value)));
    }
  }
}

}  // namespace
}  // namespace lens

// Values of items as formulas read them, and as they are written back.

#include "embedded/formula_context/item_conversion.h"

#include <gtest/gtest.h>

#include <random>

namespace lens {
namespace {

using formula::Type;
using formula::Value;

Item itemOf(const QByteArray& value) {
  return {QStringLiteral("Thing"), itemflag::Summary, value};
}

Value read(const QByteArray& stored) {
  Value value;
  EXPECT_TRUE(formulaValue(itemOf(stored), value));
  return value;
}

quint16 typeWord(const QByteArray& value) {
  return itemOf(value).type();
}

const TimeDate kNoon = timeDateOf(DateTime{QDate(2024, 3, 15), QTime(12, 0)});
const TimeDate kDay = timeDateOfDate(QDate(2024, 3, 1));
const TimeDate kClock = timeDateOfTime(QTime(9, 15));

TEST(ReadingItems, TextsAndLists) {
  EXPECT_TRUE(read(textValue(u"Köln")).identical(Value::text(u"Köln")));
  EXPECT_TRUE(read(textValue(u"")).identical(Value::text(u"")));
  const QStringList names{QStringLiteral("Ada"), QString(), QStringLiteral("Zoë")};
  EXPECT_TRUE(read(textListValue(names)).identical(Value::texts(names)));
  EXPECT_TRUE(read(textListValue({QStringLiteral("one")})).identical(Value::text(u"one")));
}

TEST(ReadingItems, AListWithoutEntriesIsTheEmptyText) {
  EXPECT_TRUE(read(textListValue({})).identical(Value::text(u"")));
  EXPECT_TRUE(read(numberListValue({})).identical(Value::text(u"")));
  EXPECT_TRUE(read(timeListValue({})).identical(Value::text(u"")));
}

TEST(ReadingItems, ANulIsALineFeed) {
  EXPECT_EQ(read(rawValue(itemtype::Text, QByteArray("a\0b", 3))).text().toString(), QStringLiteral("a\nb"));
}

TEST(ReadingItems, NumbersAndTimes) {
  EXPECT_EQ(read(numberValue(12.5)).number(), 12.5);
  EXPECT_TRUE(read(numberListValue({3, 1, 2})).identical(Value::numbers({3, 1, 2})));
  EXPECT_TRUE(read(timeValue(kNoon)).identical(Value::time(kNoon)));
  EXPECT_TRUE(read(timeListValue({kDay, kClock})).identical(Value::times({kDay, kClock})));
}

TEST(ReadingItems, TimesBesidePairsBecomeRanges) {
  const Value value = read(timeListValue({kDay}, {{kDay, kNoon}}));
  ASSERT_EQ(value.type(), Type::TimeRange);
  ASSERT_EQ(value.count(), 2);
  EXPECT_EQ(packTime(value.range(0).to), packTime(kDay));
  EXPECT_EQ(packTime(value.range(1).to), packTime(kNoon));
}

TEST(ReadingItems, NoteReferencesAreUnids) {
  const QString unid = QStringLiteral("0123456789ABCDEF0123456789ABCDEF");
  EXPECT_TRUE(read(noteRefsValue({Unid::fromText(unid)})).identical(Value::text(unid)));
}

TEST(ReadingItems, StoredErrorsAreErrors) {
  const Value value = read(rawValue(itemtype::Error, QByteArray("\x3C\x05", 2)));
  ASSERT_TRUE(value.isError());
  EXPECT_EQ(value.errorCode(), 0x053C);
}

TEST(ReadingItems, WhatFormulasCannotHoldReadsAsTheEmptyText) {
  for (quint16 type : {itemtype::RichText, itemtype::Object, itemtype::Formula, itemtype::ViewFormat}) {
    Value value = Value::number(1.0);
    EXPECT_FALSE(formulaValue(itemOf(rawValue(type, "abcd")), value));
    EXPECT_TRUE(value.identical(Value::text(u"")));
  }
  Value value;
  EXPECT_FALSE(formulaValue(itemOf(QByteArray("x")), value));
}

// Every value that is cut short anywhere is read up to its last whole element.
TEST(ReadingItems, CutValuesGiveTheWholeElements) {
  const QStringList names{QStringLiteral("Ada"), QStringLiteral("Bob")};
  const QByteArray whole = textListValue(names);
  EXPECT_TRUE(read(whole.chopped(1)).identical(Value::text(u"Ada")));
  EXPECT_TRUE(read(whole.chopped(6)).identical(Value::text(u"")));
  EXPECT_TRUE(read(numberListValue({1, 2}).chopped(3)).identical(Value::number(1.0)));
  EXPECT_TRUE(read(timeListValue({}, {{kDay, kNoon}, {kDay, kNoon}}).chopped(9)).count() == 1);
  Value value;
  EXPECT_FALSE(formulaValue(itemOf(numberValue(1).chopped(1)), value));
}

TEST(ReadingItems, CountsThatLieAreNotBelieved) {
  EXPECT_TRUE(read(rawValue(itemtype::TextList, "\xFF\xFF")).identical(Value::text(u"")));
  EXPECT_TRUE(read(rawValue(itemtype::NumberRange, "\xFF\xFF\xFF\xFF")).identical(Value::text(u"")));
  EXPECT_TRUE(read(rawValue(itemtype::TimeRange, "\xFF\xFF\xFF\xFF")).identical(Value::text(u"")));
  EXPECT_TRUE(read(rawValue(itemtype::NoteRefs, "\xFF\xFF")).identical(Value::text(u"")));
}

TEST(ReadingItems, RandomBytesNeverHarm) {
  std::mt19937 random(7);
  const QVector<quint16> types{itemtype::Text,        itemtype::TextList,  itemtype::Number,
                               itemtype::NumberRange, itemtype::Time,      itemtype::NoteRefs,
                               itemtype::Error,       itemtype::TimeRange, itemtype::Rfc822Text};
  for (int round = 0; round < 5000; ++round) {
    QByteArray bytes(int(random() % 60), Qt::Uninitialized);
    for (char& byte : bytes) byte = char(random() % 4 ? random() % 4 : random());
    Value value;
    formulaValue(itemOf(rawValue(types[random() % quint32(types.size())], bytes)), value);
    EXPECT_TRUE(value.isError() || value.count() > 0);
    if (!value.isError()) {
      EXPECT_TRUE(read(storedValue(value)).identical(value));
    }
  }
}

TEST(ReadingItems, ATextThatIsTooLongIsAnError) {
  const Value value = read(textValue(QString(70000, u'x')));
  ASSERT_TRUE(value.isError());
  EXPECT_EQ(value.errorCode(), formula::fault::TextTooLong);
}

TEST(WritingItems, AreAlwaysListsForACaller) {
  EXPECT_EQ(storedValue(Value::text(u"a")), textListValue({QStringLiteral("a")}));
  EXPECT_EQ(storedValue(Value::text(u"")), textListValue({QString()}));
  EXPECT_EQ(storedValue(Value::number(2.5)), numberListValue({2.5}));
  EXPECT_EQ(storedValue(Value::time(kDay)), timeListValue({kDay}));
  EXPECT_EQ(storedValue(Value::range({kDay, kNoon})), timeListValue({}, {{kDay, kNoon}}));
  EXPECT_EQ(storedValue(Value::keyword(u"CN")), textListValue({QStringLiteral("CN")}));
  for (const Value& none : {Value::nothing(), Value::missing(), Value::unavailable()})
    EXPECT_EQ(storedValue(none), textListValue({QString()}));
}

TEST(WritingItems, AFieldOfOneElementIsSingle) {
  EXPECT_EQ(fieldValue(Value::text(u"a")), textValue(u"a"));
  EXPECT_EQ(fieldValue(Value::number(2.5)), numberValue(2.5));
  EXPECT_EQ(fieldValue(Value::time(kDay)), timeValue(kDay));
  EXPECT_EQ(fieldValue(Value::range({kDay, kNoon})), timeListValue({}, {{kDay, kNoon}}));
  EXPECT_EQ(fieldValue(Value::numbers({1, 2})), numberListValue({1, 2}));
  EXPECT_EQ(fieldValue(Value::texts({QString(), QString()})), textListValue({QString(), QString()}));
  EXPECT_EQ(fieldValue(Value::nothing()), textValue(u""));
  EXPECT_EQ(typeWord(fieldValue(Value::error(0x0536))), itemtype::Error);
}

TEST(WritingItems, ALineFeedIsANul) {
  EXPECT_EQ(fieldValue(Value::text(u"a\nb")), rawValue(itemtype::Text, QByteArray("a\0b", 3)));
  EXPECT_TRUE(read(storedValue(Value::texts({QStringLiteral("a\nb"), QStringLiteral("\n")})))
                  .identical(Value::texts({QStringLiteral("a\nb"), QStringLiteral("\n")})));
}

TEST(WritingItems, WhatWasReadIsWrittenAlike) {
  const QVector<QByteArray> values{
      timeListValue({kDay, kClock}, {{kDay, kNoon}}), timeListValue({}, {{kDay, kNoon}, {kDay, kDay}}),
      timeListValue({}, {{kDay, kDay}}), textListValue({QStringLiteral("a"), QString(), QStringLiteral("c")}),
      numberListValue({1, -2.5, 1e300})};
  for (const QByteArray& value : values)
    EXPECT_EQ(storedValue(read(value)), value) << value.toHex(' ').data();
}

}  // namespace
}  // namespace lens

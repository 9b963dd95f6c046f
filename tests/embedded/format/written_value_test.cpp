#include "embedded/format/written_value.h"

#include "embedded/support/store_test.h"

using namespace lens;
using namespace Qt::Literals::StringLiterals;

namespace {

const DateTime kMoment{QDate(1949, 5, 6), QTime(7, 8, 9)};
const DateTime kDay{QDate(2031, 2, 28), QTime()};
const DateTime kTime{QDate(), QTime(23, 59, 58)};

Value list(QVector<Value> values) {
  return Value::array(std::move(values));
}

Value readBack(const QByteArray& value) {
  return itemValues(Item{u"A"_s, 0, value});
}

quint16 typeOf(const QByteArray& value) {
  return Item{u"A"_s, 0, value}.type();
}

}  // namespace

TEST(WrittenValue, OneValueHasTheSingleTypeAlsoInAList) {
  const struct {
    Value value;
    quint16 type;
    qsizetype size;
  } table[] = {
      {Value(u"abc"), itemtype::Text, 5},         {Value(u""), itemtype::Text, 2},
      {Value(u"é"), itemtype::Text, 3},           {Value(12.5), itemtype::Number, 10},
      {Value(-2147483647), itemtype::Number, 10}, {Value(kMoment), itemtype::Time, 10},
      {Value(kDay), itemtype::Time, 10},          {Value(kTime), itemtype::Time, 10},
  };
  for (const auto& row : table) {
    const QByteArray alone = writtenValue(row.value), listed = writtenValue(list({row.value}));
    EXPECT_EQ(typeOf(alone), row.type);
    EXPECT_EQ(alone.size(), row.size);
    EXPECT_EQ(listed, alone);
    EXPECT_EQ(readBack(alone), list({row.value}));
  }
}

TEST(WrittenValue, SeveralValuesHaveTheListType) {
  const struct {
    Value value;
    quint16 type;
  } table[] = {
      {list({u"a", u"", u"c d"}), itemtype::TextList},
      {list({1, 2.5, -3}), itemtype::NumberRange},
      {list({Value(kMoment), Value(kDay), Value(kTime)}), itemtype::TimeRange},
  };
  for (const auto& row : table) {
    EXPECT_EQ(typeOf(writtenValue(row.value)), row.type);
    EXPECT_EQ(readBack(writtenValue(row.value)), row.value);
  }
}

TEST(WrittenValue, WhatIsNoValueIsRefused) {
  const Value nothing{Object()}, empty;
  const struct {
    Value value;
    int number;
  } table[] = {
      {empty, err::TypeMismatch},
      {Value(true), err::TypeMismatch},
      {nothing, err::TypeMismatch},
      {list({}), err::InvalidCall},
      {list({empty}), err::TypeMismatch},
      {list({u"a", empty}), err::TypeMismatch},
      {list({u"a", 1}), err::TypeMismatch},
      {list({1, u"1"}), err::TypeMismatch},
      {list({1, Value(kDay)}), err::TypeMismatch},
      {list({Value(false), Value(true)}), err::TypeMismatch},
      {list({list({u"a"})}), err::TypeMismatch},
      {Value(DateTime{QDate(-9000, 1, 1), QTime()}), err::Overflow},
      {list({u"a", QString(70'000, u'x')}), err::Overflow},
      {list(QVector<Value>(65'536, Value(1))), err::Overflow},
  };
  int row = 0;
  for (const auto& [value, number] : table) {
    QString reason;
    EXPECT_EQ(errorNumber([&] { writtenValue(value); }, &reason), number) << "row " << row;
    EXPECT_FALSE(reason.isEmpty());
    ++row;
  }
}

TEST(WrittenValue, TheReasonNamesThePlace) {
  QString reason;
  errorNumber([] { writtenValue(Value::array({u"a", u"b", Value()})); }, &reason);
  EXPECT_TRUE(reason.contains(u"place 3"_s)) << reason.toStdString();
}

TEST(WrittenValue, LongestListAndTextAreKept) {
  const Value numbers = list(QVector<Value>(65'535, Value(7)));
  EXPECT_EQ(readBack(writtenValue(numbers)), numbers);
  const Value text(QString(5'000'000, u'x'));
  EXPECT_EQ(readBack(writtenValue(text)).at(0), text);
}

TEST(WrittenValue, LineEndsAreStoredAsOneByte) {
  EXPECT_EQ(writtenValue(u"a\r\nb\nc"_s).sliced(2), QByteArray("a\0b\0c", 5));
  EXPECT_EQ(readBack(writtenValue(u"\nsecond"_s)).at(0).text(), u"\nsecond"_s);
}

TEST(WrittenValue, AClearedTimeGoesBackAsItCame) {
  const QByteArray cleared = timeValue({});
  EXPECT_EQ(writtenValue(readBack(cleared)), cleared);
}

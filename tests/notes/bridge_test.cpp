#include "notes/bridge.h"

#include <gtest/gtest.h>

#include "support/printers.h"

namespace lens {
namespace {

template <class Statement>
int raised(Statement&& statement) {
  try {
    statement();
    return 0;
  } catch (const RuntimeError& error) {
    return error.number();
  }
}

TEST(EmptyObject, RaisesObjectNotSetOnAnyUse) {
  const Object nothing;
  EXPECT_TRUE(nothing.isNothing());
  EXPECT_EQ(raised([&] { nothing.get(QStringLiteral("Name")); }), err::ObjectNotSet);
  EXPECT_EQ(raised([&] { nothing.set(QStringLiteral("Name"), 1); }), err::ObjectNotSet);
  EXPECT_EQ(raised([&] { nothing.call(QStringLiteral("SAVE"), true, false); }), err::ObjectNotSet);
}

TEST(Value, NamesItsTypeAsProceduresTestIt) {
  EXPECT_EQ(Value().typeName(), "Empty");
  EXPECT_EQ(Value(QStringLiteral("x")).typeName(), "String");
  EXPECT_EQ(Value(1.5).typeName(), "Double");
  EXPECT_EQ(Value(true).typeName(), "Boolean");
  EXPECT_EQ(Value(DateTime{}).typeName(), "Date");
  EXPECT_EQ(Value::array({}).typeName(), "Variant()");
  EXPECT_EQ(Value(Object()).typeName(), "Nothing");
}

TEST(Value, ReadsNumbersFromTextsBooleansAndNothing) {
  EXPECT_EQ(Value(QStringLiteral("12")).number(), 12);
  EXPECT_EQ(Value(true).number(), -1);
  EXPECT_EQ(Value(false).number(), 0);
  EXPECT_EQ(Value().number(), 0);
  EXPECT_EQ(raised([] { Value(QStringLiteral("x")).number(); }), err::TypeMismatch);
  EXPECT_EQ(raised([] { Value(Object()).number(); }), err::TypeMismatch);
}

TEST(Value, GivesTextOfTextsAndNumbersOnly) {
  EXPECT_EQ(Value(1e15).text(), "1E+15");
  EXPECT_EQ(Value().text(), "");
  EXPECT_EQ(Value(true).text(), "True");
  EXPECT_EQ(raised([] { Value(DateTime{QDate(2024, 1, 1), {}}).text(); }), err::TypeMismatch);
  EXPECT_EQ(raised([] { Value::array({}).text(); }), err::TypeMismatch);
}

TEST(ArrayValue, HasPlacesFromZeroAndAnUpperBound) {
  const Value list = Value::array({Value(1), Value(QStringLiteral("b"))});
  EXPECT_EQ(list.upperBound(), 1);
  EXPECT_EQ(list.at(1).text(), "b");
  EXPECT_EQ(raised([&] { list.at(2); }), err::SubscriptOutOfRange);
  EXPECT_EQ(raised([&] { list.at(-1); }), err::SubscriptOutOfRange);
  EXPECT_EQ(Value::array({}).upperBound(), -1);
}

TEST(EmptyValue, IsNoArrayToIndexOrToBound) {
  EXPECT_EQ(raised([] { Value().at(0); }), err::TypeMismatch);
  EXPECT_EQ(raised([] { Value().upperBound(); }), err::TypeMismatch);
}

TEST(Value, IsAnObjectOrRaisesObjectRequired) {
  EXPECT_TRUE(Value(Object()).object().isNothing());
  EXPECT_EQ(raised([] { Value(1).object(); }), 424);
}

TEST(RuntimeError, TakesTheStandardTextOfItsNumber) {
  EXPECT_EQ(RuntimeError(err::ObjectNotSet).description(), "Object variable or With block variable not set");
  EXPECT_EQ(RuntimeError(err::Overflow).description(), "Overflow");
  EXPECT_EQ(RuntimeError(4711).description(), "Application-defined error");
  EXPECT_EQ(RuntimeError(4711, QStringLiteral("x.nsf: no room")).description(), "x.nsf: no room");
}

}  // namespace
}  // namespace lens

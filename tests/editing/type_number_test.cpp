#include "editing/type_number.h"

#include <gtest/gtest.h>

#include "notes/runtime_error.h"

using namespace lens;
using namespace Qt::StringLiterals;

namespace {

int raisedByType(const QString& sentence) {
  try {
    typeNumber(typeText(sentence));
  } catch (const RuntimeError& error) {
    return error.number();
  }
  return 0;
}

}  // namespace

TEST(TypeNumber, StandsInParentheses) {
  EXPECT_EQ(typeText(u"TEXT (1280) means text (any)"_s), u"1280"_s);
  EXPECT_EQ(typeNumber(typeText(u"TEXT (1280) means text"_s)), 1280);
  EXPECT_EQ(typeNumber(typeText(u"( 768x)"_s)), 768);
}

TEST(TypeNumber, OpeningParenthesisMayLack) {
  EXPECT_EQ(typeNumber(typeText(u"1280)"_s)), 1280);
}

TEST(TypeNumber, ClosingParenthesisMayNot) {
  EXPECT_EQ(raisedByType(u"1280"_s), err::InvalidCall);
  EXPECT_EQ(raisedByType(u"TEXT (1280"_s), err::InvalidCall);
  EXPECT_EQ(raisedByType(u""_s), err::InvalidCall);
}

TEST(TypeNumber, AnythingElseIsZero) {
  EXPECT_EQ(typeNumber(typeText(u"(text)"_s)), 0);
}

TEST(TypeNumber, HasSixteenBitsAndIsRounded) {
  EXPECT_EQ(raisedByType(u"(70000)"_s), err::Overflow);
  EXPECT_EQ(raisedByType(u"(-70000)"_s), err::Overflow);
  EXPECT_EQ(typeNumber(u"2.5"_s), 2);
  EXPECT_EQ(typeNumber(u"3.5"_s), 4);
}

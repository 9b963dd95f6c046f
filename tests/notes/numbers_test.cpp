#include "notes/numbers.h"

#include <gtest/gtest.h>

#include <QLocale>
#include <functional>

#include "support/printers.h"

namespace lens {
namespace {

int raisedNumber(const std::function<void()>& statement) {
  try {
    statement();
    return 0;
  } catch (const RuntimeError& error) {
    return error.number();
  }
}

TEST(NumberText, HasFifteenDigitsAPointAndAPlainExponent) {
  EXPECT_EQ(numberText(1.5), "1.5");
  EXPECT_EQ(numberText(0.1), "0.1");
  EXPECT_EQ(numberText(1.0 / 3), "0.333333333333333");
  EXPECT_EQ(numberText(281474976710655.0), "281474976710655");
  EXPECT_EQ(numberText(1e15), "1E+15");
  EXPECT_EQ(numberText(0.00001), "1E-05");
  EXPECT_EQ(numberText(-0.0), "0");
}

TEST(NumberText, DoesNotFollowTheRegion) {
  const QLocale before;
  QLocale::setDefault(QLocale(QLocale::German));
  EXPECT_EQ(numberText(1.5), "1.5");
  EXPECT_EQ(wholeNumberText(u"1.5"), 1.5);
  EXPECT_EQ(raisedNumber([] { wholeNumberText(u"1,5"); }), err::TypeMismatch);
  QLocale::setDefault(before);
}

TEST(WholeNumber, TakesBlanksAndLineEndsAroundIt) {
  EXPECT_EQ(wholeNumberText(u" 12\r"), 12);
  EXPECT_EQ(wholeNumberText(u"\r\n-3.5 "), -3.5);
}

TEST(WholeNumber, RefusesEverythingThatIsNoNumberAsAWhole) {
  for (const char16_t* text : {u"", u" ", u"12abc", u"nan", u"inf", u"0x10", u"1 2", u"1e999"})
    EXPECT_EQ(raisedNumber([&] { wholeNumberText(QString::fromUtf16(text)); }), err::TypeMismatch)
        << QString::fromUtf16(text).toStdString();
}

TEST(Rounding, GoesHalfToEvenAndOverflowsBeyond32Bits) {
  EXPECT_EQ(toInt32(u"2.5"), 2);
  EXPECT_EQ(toInt32(u"3.5"), 4);
  EXPECT_EQ(toInt32(u"-2.5"), -2);
  EXPECT_EQ(toInt32(u"2147483647"), 2147483647);
  EXPECT_EQ(raisedNumber([] { toInt32(u"2147483648"); }), err::Overflow);
}

TEST(NoteIdNumber, IsReadUnsignedAndReinterpreted) {
  EXPECT_EQ(hexToInt32(u"FFFF0010"), -65520);
  EXPECT_EQ(hexToInt32(u"8FA2"), 36770);
  EXPECT_EQ(hexToInt32(u"80000001"), -2147483647);
  EXPECT_EQ(hexToInt32(u"ffff0010"), -65520);
}

TEST(NoteIdNumber, RefusesOtherTexts) {
  for (const char16_t* text : {u"", u"123456789", u"12G4", u" 12", u"-1"})
    EXPECT_EQ(raisedNumber([&] { hexToInt32(QString::fromUtf16(text)); }), err::TypeMismatch);
}

TEST(Int16, RaisesOverflowInsteadOfWrapping) {
  EXPECT_EQ(Int16(32767), 32767);
  EXPECT_EQ(raisedNumber([] { Int16(32768); }), err::Overflow);
  EXPECT_EQ(raisedNumber([] { Int16(-32769); }), err::Overflow);
  Int16 counter(32767);
  EXPECT_EQ(raisedNumber([&] { counter += 1; }), err::Overflow);
  EXPECT_EQ(counter, 32767);
}

}  // namespace
}  // namespace lens

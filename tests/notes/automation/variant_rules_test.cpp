#include "notes/automation/variant_rules.h"

#include <gtest/gtest.h>

#include "notes/literals.h"

namespace lens {
namespace {

TEST(VariantKind, OfANumberIsTheNarrowestThatHoldsIt) {
  EXPECT_EQ(variantKindOf(1454), variantkind::Int16);
  EXPECT_EQ(variantKindOf(-32768), variantkind::Int16);
  EXPECT_EQ(variantKindOf(32767), variantkind::Int16);
  EXPECT_EQ(variantKindOf(32768), variantkind::Int32);
  EXPECT_EQ(variantKindOf(-32769), variantkind::Int32);
  EXPECT_EQ(variantKindOf(qint64(2147483647)), variantkind::Int32);
  EXPECT_EQ(variantKindOf(qint64(-2147483648)), variantkind::Int32);
  EXPECT_EQ(variantKindOf(qint64(2147483648)), variantkind::Double);
  EXPECT_EQ(variantKindOf(0.5), variantkind::Double);
  EXPECT_EQ(variantKindOf(-0.0), variantkind::Double);
  EXPECT_EQ(variantKindOf(qQNaN()), variantkind::Double);
  EXPECT_EQ(variantKindOf(qInf()), variantkind::Double);
}

TEST(VariantKind, OfEverythingElseIsItsOwn) {
  EXPECT_EQ(variantKindOf(Value()), variantkind::Empty);
  EXPECT_EQ(variantKindOf(u"1"_s), variantkind::Text);
  EXPECT_EQ(variantKindOf(true), variantkind::Boolean);
  EXPECT_EQ(variantKindOf(DateTime{QDate(2024, 1, 2), QTime()}), variantkind::Date);
  EXPECT_EQ(variantKindOf(Object()), variantkind::Dispatch);
  EXPECT_EQ(variantKindOf(Value::array({1, u"a"_s})), variantkind::Array | variantkind::Variant);
}

TEST(VariantBoolean, HasAllBitsSet) {
  EXPECT_EQ(variantBoolean(true), -1);
  EXPECT_EQ(variantBoolean(false), 0);
}

struct KnownDate {
  double number;
  DateTime moment;
};

// As the platform documents them.
const KnownDate kKnownDates[] = {
    {2.0, {QDate(1900, 1, 1), QTime()}},     {5.25, {QDate(1900, 1, 4), QTime(6, 0)}},
    {-1.0, {QDate(1899, 12, 29), QTime()}},  {-1.25, {QDate(1899, 12, 29), QTime(6, 0)}},
    {35065.0, {QDate(1996, 1, 1), QTime()}}, {0.75, {QDate(), QTime(18, 0)}},
    {0.0, {QDate(), QTime(0, 0)}},           {2958465.5, {QDate(9999, 12, 31), QTime(12, 0)}},
};

TEST(VariantDate, IsADayAndAFraction) {
  for (const KnownDate& known : kKnownDates) {
    EXPECT_EQ(variantDate(known.moment), known.number);
    EXPECT_EQ(momentOfVariant(known.number), known.moment) << known.number;
  }
}

TEST(VariantDate, KeepsEveryHundredthOfADay) {
  for (int hundredth = 1; hundredth < 8'640'000; hundredth += 997) {
    for (const QDate day :
         {QDate(1850, 6, 1), QDate(1899, 12, 29), QDate(1999, 12, 31), QDate(2024, 2, 29)}) {
      const DateTime moment{day, QTime::fromMSecsSinceStartOfDay(hundredth * 10)};
      ASSERT_EQ(momentOfVariant(variantDate(moment)), moment) << hundredth;
    }
  }
}

TEST(VariantDate, RoundsUpIntoTheNextDay) {
  EXPECT_EQ(momentOfVariant(35065.9999999999), (DateTime{QDate(1996, 1, 2), QTime()}));
}

TEST(VariantDate, OutsideOfItsYearsRaises) {
  const auto numberRaised = [](auto&& call) {
    try {
      call();
      return 0;
    } catch (const RuntimeError& error) {
      return error.number();
    }
  };
  EXPECT_EQ(numberRaised([] { variantDate({QDate(99, 12, 31), QTime()}); }), err::Overflow);
  EXPECT_EQ(numberRaised([] { variantDate({QDate(10000, 1, 1), QTime()}); }), err::Overflow);
  EXPECT_EQ(numberRaised([] { variantDate({QDate(), QTime()}); }), err::TypeMismatch);
  EXPECT_EQ(numberRaised([] { momentOfVariant(2958466); }), err::Overflow);
  EXPECT_EQ(numberRaised([] { momentOfVariant(-657435); }), err::Overflow);
  EXPECT_EQ(numberRaised([] { momentOfVariant(qQNaN()); }), err::Overflow);
  EXPECT_EQ(numberRaised([] { variantDate({QDate(100, 1, 1), QTime()}); }), 0);
}

}  // namespace
}  // namespace lens

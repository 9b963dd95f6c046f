#include "editing/place_replacement.h"

#include <gtest/gtest.h>

using namespace lens;
using namespace Qt::StringLiterals;

namespace {

struct PlaceReplacement : testing::Test {
  bool replace(int type, const QString& search, const QString& with, Places places = Places::All) {
    return replaceInValues(values, places, type, {search, with}, regional);
  }
  Regional regional{QLocale(QLocale::German, QLocale::Germany)};
  QVector<Value> values;
};

constexpr int kText = 1280, kNumber = 768, kDate = 1024;

}  // namespace

TEST_F(PlaceReplacement, ReplacesEachHitInEachPlaceWithExactCase) {
  values = {u"a pump, a Pump", u"none", u"pumppump"};
  EXPECT_TRUE(replace(kText, u"pump"_s, u"valve"_s));
  EXPECT_EQ(values, QVector<Value>({u"a valve, a Pump", u"none", u"valvevalve"}));
}

TEST_F(PlaceReplacement, ChangesNothingWithoutAHit) {
  values = {u"one", 12};
  EXPECT_FALSE(replace(kText, u"pump"_s, u"valve"_s));
  EXPECT_EQ(values, QVector<Value>({u"one", 12}));
}

TEST_F(PlaceReplacement, WhatWasPutInIsNotSearchedAgain) {
  values = {u"a"};
  EXPECT_TRUE(replace(kText, u"a"_s, u"aa"_s));
  EXPECT_EQ(values, QVector<Value>({u"aa"}));
}

TEST_F(PlaceReplacement, CollectionNeverSearchesTheLastOfSeveral) {
  values = {u"x", u"x"};
  EXPECT_TRUE(replace(kText, u"x"_s, u"y"_s, Places::AllButLast));
  EXPECT_EQ(values, QVector<Value>({u"y", u"x"}));
  values = {u"x"};
  EXPECT_TRUE(replace(kText, u"x"_s, u"y"_s, Places::AllButLast));
  EXPECT_EQ(values, QVector<Value>({u"y"}));
  values = {};
  EXPECT_FALSE(replace(kText, u"x"_s, u"y"_s, Places::AllButLast));
}

TEST_F(PlaceReplacement, NumberStaysANumber) {
  values = {12, 3.5};
  EXPECT_TRUE(replace(kNumber, u"1"_s, u"2"_s));
  EXPECT_EQ(values, QVector<Value>({22, 3.5}));
  EXPECT_TRUE(replace(kNumber, u"3.5"_s, u"many"_s));
  EXPECT_EQ(values[1], Value(0));
}

TEST_F(PlaceReplacement, DateStaysADate) {
  values = {DateTime{QDate(2024, 3, 11), QTime(14, 5, 9)}};
  EXPECT_TRUE(replace(kDate, u"2024"_s, u"2025"_s));
  EXPECT_EQ(values[0], Value(DateTime{QDate(2025, 3, 11), QTime(14, 5, 9)}));
}

TEST_F(PlaceReplacement, TextThatIsNoDateRaises) {
  values = {DateTime{QDate(2024, 3, 11), QTime()}};
  try {
    replace(kDate, u"11.03"_s, u"someday"_s);
    FAIL() << "no failure";
  } catch (const RuntimeError& error) {
    EXPECT_EQ(error.number(), err::TypeMismatch);
  }
}

// Functions on long lists: what they cost counts, and they stay in proportion to the lists.
#include <gtest/gtest.h>

#include "embedded/formula/support/test_context.h"

namespace lens::formula {
namespace {
using namespace Qt::StringLiterals;

constexpr int kElements = 2000;

Value run(const QString& source, TestContext& world, Limits limits = {}) {
  CompileOptions options;
  options.environment = &world.environment;
  const Compiled compiled = compile(source, options);
  if (!compiled) {
    ADD_FAILURE() << source.toStdString();
    return {};
  }
  return Evaluation(compiled.formula, world.environment, limits).run(&world.document, &world.database).value;
}

void putLists(TestContext& world, int elements) {
  QStringList texts;
  QVector<double> numbers;
  QVector<TimeDate> times;
  for (int i = 0; i < elements; ++i) {
    texts.append(u"text %1"_s.arg(i * 7919 % elements));
    numbers.append(i);
    times.append(testDate(2024, 1 + i % 12, 1 + i % 28));
  }
  world.document.put(u"LongTexts"_s, Value::texts(texts));
  world.document.put(u"LongNumbers"_s, Value::numbers(numbers));
  world.document.put(u"LongTimes"_s, Value::times(times));
}

class LongLists : public testing::TestWithParam<const char*> {};

// A loop of cheap looking calls ends by its work, long before it has gone round as often as it may.
TEST_P(LongLists, TheWorkOnThemCounts) {
  TestContext world;
  putLists(world, kElements);
  Limits limits;
  limits.steps = 100 * kElements;
  const QString loop = u"n := 0; @While(n < 5000; x := %1; n := n + 1); n"_s;
  const Value value = run(loop.arg(QString::fromLatin1(GetParam())), world, limits);
  EXPECT_TRUE(value.isError());
  EXPECT_EQ(value.errorCode(), fault::TooMuchTime);
}

INSTANTIATE_TEST_SUITE_P(
    Functions, LongLists,
    testing::Values("-LongNumbers", "!LongNumbers", "LongNumbers : 1", "LongNumbers * 2",
                    "LongTexts = \"zz\"", "LongTexts + \"x\"", "@Text(LongNumbers)", "@Length(LongTexts)",
                    "@IsMember(LongTexts; LongTexts)", "@IsNotMember(\"x\"; LongTexts)",
                    "@Member(\"x\"; LongTexts)", "@Unique(LongTexts)", "@Explode(LongTexts)",
                    "@Keywords(LongTexts; LongTexts)", "@Keywords(LongTexts; \"zz\"; \"\")",
                    "@Sort(LongTexts)", "@Sort(LongNumbers)", "@Subset(LongTexts; 1999)", "@Sum(LongNumbers)",
                    "@Max(LongNumbers)", "@Max(LongNumbers; 5)", "@Abs(LongNumbers)",
                    "@Round(LongNumbers; 5)", "@FloatEq(LongNumbers; -9)", "@Year(LongTimes)",
                    "@Date(LongTimes)", "@Date(LongNumbers; 1; 1)", "@Adjust(LongTimes; 0; 0; 1; 0; 0; 0)",
                    "@BusinessDays(LongTimes; [12/31/2024])", "@TextToTime(LongTexts)", "@Zone(LongTimes)",
                    "@TimeMerge(LongTimes; [10:30])", "@TimeToTextInZone(LongTimes; \"EST\")"));

// Two lists as long as lists can be: by trying all pairs this would be four thousand million comparisons.
TEST(LongestLists, AreSearchedInProportion) {
  TestContext world;
  putLists(world, kMaxElements);
  EXPECT_EQ(run(u"@IsMember(LongTexts; LongTexts)"_s, world).number(), 1);
  EXPECT_EQ(run(u"@Elements(@Unique(LongTexts))"_s, world).number(), kMaxElements);
  EXPECT_EQ(run(u"@Elements(@Keywords(LongTexts; LongTexts; \"\\n\"))"_s, world).number(), kMaxElements);
  EXPECT_EQ(run(u"@Subset(@Sort(LongTexts); 1)"_s, world).text(), u"text 0");
}

TEST(LongestLists, GrowNoFurther) {
  TestContext world;
  putLists(world, kMaxElements);
  const Value value = run(u"@Count(@Explode(LongTexts))"_s, world);
  EXPECT_TRUE(value.isError());
  EXPECT_EQ(value.errorCode(), fault::TooMuchMemory);
}

}  // namespace
}  // namespace lens::formula

// The list operators against their definition, one pair of elements at a time, on random lists.
#include <gtest/gtest.h>

#include <functional>

#include "embedded/formula/support/test_context.h"
#include "embedded/formula/support/tree_maker.h"

namespace lens::formula {
namespace {
using namespace Qt::StringLiterals;

constexpr int kRounds = 3000;

using Pairs = QVector<std::pair<int, int>>;

// Element i with element i; the shorter list repeats its last.
Pairs aligned(int lefts, int rights) {
  Pairs pairs;
  for (int i = 0; i < std::max(lefts, rights); ++i)
    pairs.append({std::min(i, lefts - 1), std::min(i, rights - 1)});
  return pairs;
}
// Every element with every element, the left one outermost.
Pairs permuted(int lefts, int rights) {
  Pairs pairs;
  for (int i = 0; i < lefts; ++i)
    for (int j = 0; j < rights; ++j) pairs.append({i, j});
  return pairs;
}

// A list of random elements; either as an item of the document or as a constant in the source.
struct Operand {
  QVector<double> numbers;
  QStringList texts;
  QString source;
};

Operand numberOperand(TreeMaker& maker, const QString& item, MemoryDocument& document) {
  Operand operand;
  for (int count = 1 + maker.below(5); count > 0; --count) operand.numbers.append(maker.below(9) / 2.0 - 2);
  document.put(item, Value::numbers(operand.numbers));
  QStringList parts;
  for (double number : operand.numbers) parts.append(u"(%1)"_s.arg(number));
  operand.source = maker.oneIn(2) ? item : u'(' + parts.join(u':') + u')';
  return operand;
}

Operand textOperand(TreeMaker& maker, const QString& item, MemoryDocument& document) {
  Operand operand;
  for (int count = 1 + maker.below(4); count > 0; --count) {
    QString text;
    for (int letters = maker.below(3); letters > 0; --letters) text += u"aAbBcC"_s[maker.below(6)];
    operand.texts.append(text);
  }
  document.put(item, Value::texts(operand.texts));
  operand.source = maker.oneIn(2) ? item : u"(\""_s + operand.texts.join(u"\":\""_s) + u"\")"_s;
  return operand;
}

Value valueOfFormula(const QString& source, MemoryDocument& document) {
  TestEnvironment environment;
  const Compiled compiled = compile(source, {&environment});
  EXPECT_TRUE(compiled) << source.toStdString();
  if (!compiled) return {};
  return Evaluation(compiled.formula, environment).run(&document, nullptr).value;
}

void expectValue(const QString& source, MemoryDocument& document, const Value& expected) {
  const LocalZone& zone = TestEnvironment().zone();
  const auto item = [&](const QString& name) {
    Value value;
    document.item(Name(name), value);
    return printValue(value, zone).toStdString();
  };
  EXPECT_EQ(printValue(valueOfFormula(source, document), zone).toStdString(),
            printValue(expected, zone).toStdString())
      << source.toStdString() << "\n  L is " << item(u"L"_s) << "\n  R is " << item(u"R"_s);
}

// --- Numbers -------------------------------------------------------------------------------------------

struct Arithmetic {
  QString sign;
  std::function<double(double, double)> compute;
  bool divides = false;
};

const QVector<Arithmetic>& arithmetic() {
  static const QVector<Arithmetic> all{
      {u"+"_s, [](double a, double b) { return a + b; }},
      {u"-"_s, [](double a, double b) { return a - b; }},
      {u"*"_s, [](double a, double b) { return a * b; }},
      {u"/"_s, [](double a, double b) { return a / b; }, true},
  };
  return all;
}

Value naiveNumbers(const Arithmetic& arithmetic, const Operand& left, const Operand& right,
                   const Pairs& pairs) {
  QVector<double> results;
  for (const auto& [i, j] : pairs) {
    if (arithmetic.divides && right.numbers[j] == 0) return Value::error(fault::CannotCompute);
    results.append(arithmetic.compute(left.numbers[i], right.numbers[j]));
  }
  return Value::numbers(results);
}

TEST(ListOperators, CountWithNumbersPairByPair) {
  TreeMaker maker(11);
  for (int round = 0; round < kRounds && !testing::Test::HasFailure(); ++round) {
    MemoryDocument document;
    const Operand left = numberOperand(maker, u"L"_s, document);
    const Operand right = numberOperand(maker, u"R"_s, document);
    const int lefts = int(left.numbers.size()), rights = int(right.numbers.size());
    const Arithmetic& sum = maker.oneOf(arithmetic());
    expectValue(left.source + u' ' + sum.sign + u' ' + right.source, document,
                naiveNumbers(sum, left, right, aligned(lefts, rights)));
    expectValue(left.source + u" *"_s + sum.sign + u' ' + right.source, document,
                naiveNumbers(sum, left, right, permuted(lefts, rights)));
  }
}

TEST(ListOperators, JoinTextsPairByPair) {
  TreeMaker maker(12);
  for (int round = 0; round < kRounds && !testing::Test::HasFailure(); ++round) {
    MemoryDocument document;
    const Operand left = textOperand(maker, u"L"_s, document);
    const Operand right = textOperand(maker, u"R"_s, document);
    const auto naive = [&](const Pairs& pairs) {
      QStringList results;
      for (const auto& [i, j] : pairs) results.append(left.texts[i] + right.texts[j]);
      return Value::texts(results);
    };
    const int lefts = int(left.texts.size()), rights = int(right.texts.size());
    expectValue(left.source + u" + "_s + right.source, document, naive(aligned(lefts, rights)));
    expectValue(left.source + u" *+ "_s + right.source, document, naive(permuted(lefts, rights)));
  }
}

TEST(ListOperators, CombineTruthPairByPair) {
  TreeMaker maker(13);
  for (int round = 0; round < kRounds && !testing::Test::HasFailure(); ++round) {
    MemoryDocument document;
    const Operand left = numberOperand(maker, u"L"_s, document);
    const Operand right = numberOperand(maker, u"R"_s, document);
    const bool both = maker.oneIn(2);
    QVector<double> results;
    for (const auto& [i, j] : aligned(int(left.numbers.size()), int(right.numbers.size()))) {
      const bool a = left.numbers[i] != 0, b = right.numbers[j] != 0;
      results.append(both ? a && b : a || b);
    }
    expectValue(left.source + (both ? u" & "_s : u" | "_s) + right.source, document, Value::numbers(results));
  }
}

TEST(ListOperators, ConcatenateInOrder) {
  TreeMaker maker(14);
  for (int round = 0; round < kRounds / 3 && !testing::Test::HasFailure(); ++round) {
    MemoryDocument document;
    const Operand left = textOperand(maker, u"L"_s, document);
    const Operand right = textOperand(maker, u"R"_s, document);
    expectValue(left.source + u" : "_s + right.source, document, Value::texts(left.texts + right.texts));
    const Operand first = numberOperand(maker, u"L"_s, document);
    const Operand second = numberOperand(maker, u"R"_s, document);
    expectValue(first.source + u" : "_s + second.source, document,
                Value::numbers(first.numbers + second.numbers));
  }
}

// --- Comparison ----------------------------------------------------------------------------------------

// Letter by letter in the order aAbBcC; a text goes behind its own beginning.
int naiveOrder(const QString& a, const QString& b) {
  static const QString kOrder = u"aAbBcC"_s;
  for (qsizetype i = 0; i < std::min(a.size(), b.size()); ++i)
    if (a[i] != b[i]) return kOrder.indexOf(a[i]) < kOrder.indexOf(b[i]) ? -1 : 1;
  return a.size() == b.size() ? 0 : a.size() < b.size() ? -1 : 1;
}
int naiveOrder(double a, double b) {
  return a < b ? -1 : a > b ? 1 : 0;
}

struct Comparison {
  QString sign;
  std::function<bool(int)> holds;
};

const QVector<Comparison>& comparisons() {
  static const QVector<Comparison> all{
      {u"="_s, [](int order) { return order == 0; }},  {u"!="_s, [](int order) { return order != 0; }},
      {u"<"_s, [](int order) { return order < 0; }},   {u">"_s, [](int order) { return order > 0; }},
      {u"<="_s, [](int order) { return order <= 0; }}, {u">="_s, [](int order) { return order >= 0; }},
  };
  return all;
}

template <typename List>
void checkComparison(TreeMaker& maker, const Operand& left, const Operand& right, const List& lefts,
                     const List& rights, MemoryDocument& document) {
  const Comparison& comparison = maker.oneOf(comparisons());
  const auto naive = [&](const Pairs& pairs) {
    for (const auto& [i, j] : pairs)
      if (comparison.holds(naiveOrder(lefts[i], rights[j]))) return Value::truth(true);
    return Value::truth(false);
  };
  const int leftCount = int(lefts.size()), rightCount = int(rights.size());
  expectValue(left.source + u' ' + comparison.sign + u' ' + right.source, document,
              naive(aligned(leftCount, rightCount)));
  expectValue(left.source + u" *"_s + comparison.sign + u' ' + right.source, document,
              naive(permuted(leftCount, rightCount)));
}

TEST(ListOperators, CompareUntilOnePairHolds) {
  TreeMaker maker(15);
  for (int round = 0; round < kRounds && !testing::Test::HasFailure(); ++round) {
    MemoryDocument document;
    const Operand left = textOperand(maker, u"L"_s, document);
    const Operand right = textOperand(maker, u"R"_s, document);
    checkComparison(maker, left, right, left.texts, right.texts, document);
    const Operand first = numberOperand(maker, u"L"_s, document);
    const Operand second = numberOperand(maker, u"R"_s, document);
    checkComparison(maker, first, second, first.numbers, second.numbers, document);
  }
}

}  // namespace
}  // namespace lens::formula

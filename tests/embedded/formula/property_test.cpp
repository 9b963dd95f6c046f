// What holds for every formula, tried on random ones: printing and reading back, places of errors in
// broken sources, and that no run leaves anything behind for the next.
#include <gtest/gtest.h>

#include "embedded/formula/support/case_table.h"
#include "embedded/formula/support/test_context.h"
#include "embedded/formula/support/tree_maker.h"
#include "embedded/formula/tree.h"

namespace lens::formula {
namespace {
using namespace Qt::StringLiterals;

constexpr int kTrees = 4000;
constexpr int kMutations = 6000;
// Enough for every case that ends, little enough for random loops that do not.
constexpr Limits kSmall{200'000, 8 * 1024 * 1024, 16};

std::string shownTree(const CompileError& error) {
  return u"%1 at %2 length %3"_s.arg(error.reason, 4, 16).arg(error.offset).arg(error.length).toStdString();
}

TEST(RandomFormulas, ReadBackAsTheyWerePrinted) {
  const TestEnvironment environment;
  TreeMaker maker(1);
  for (int i = 0; i < kTrees; ++i) {
    const Tree tree = maker.tree();
    const QString source = print(tree, environment);
    const Parsed parsed = parse(source, environment);
    ASSERT_EQ(parsed.error.reason, 0) << shownTree(parsed.error) << "\n" << source.toStdString();
    ASSERT_TRUE(sameTree(tree, parsed.tree)) << source.toStdString() << "\nread and printed again:\n"
                                             << print(parsed.tree, environment).toStdString();
  }
}

TEST(RandomFormulas, DifferentTreesAreToldApart) {
  const TestEnvironment environment;
  TreeMaker maker(2);
  Tree before = maker.tree();
  int differing = 0;
  for (int i = 0; i < kTrees; ++i) {
    Tree tree = maker.tree();
    const bool sameText = print(tree, environment) == print(before, environment);
    EXPECT_EQ(sameTree(tree, before), sameText) << print(tree, environment).toStdString();
    differing += !sameText;
    before = std::move(tree);
  }
  EXPECT_GT(differing, kTrees / 2);
}

TEST(CaseFormulas, ReadBackAsTheyWerePrinted) {
  const TestEnvironment environment;
  for (const Case& tested : allCases()) {
    const Parsed first = parse(tested.formula, environment);
    if (first.error.reason) continue;
    const QString source = print(first.tree, environment);
    const Parsed second = parse(source, environment);
    EXPECT_EQ(second.error.reason, 0) << shownTree(second.error) << "\n" << source.toStdString();
    EXPECT_TRUE(sameTree(first.tree, second.tree)) << source.toStdString();
  }
}

// --- Broken sources ------------------------------------------------------------------------------------

const QStringList kPieces{u"("_s,        u")"_s,      u"["_s,
                          u"]"_s,        u";"_s,      u":="_s,
                          u":"_s,        u"\""_s,     u"{"_s,
                          u"}"_s,        u"\\"_s,     u"@"_s,
                          u"@If("_s,     u"@Do("_s,   u"!"_s,
                          u"*"_s,        u"*="_s,     u"-"_s,
                          u"1E"_s,       u"FIELD "_s, u"SELECT "_s,
                          u"REM "_s,     u"\n"_s,     u"\r\n"_s,
                          u"DEFAULT "_s, u"\u00E9"_s, QString(QChar(0xD83D)),
                          u"."_s};

QString broken(QString source, TreeMaker& maker) {
  for (int changes = 1 + maker.below(3); changes > 0; --changes) {
    const int at = maker.below(int(source.size()) + 1);
    switch (maker.below(4)) {
      case 0:
        source.remove(at, 1 + maker.below(4));
        break;
      case 1:
        source.insert(at, maker.oneOf(kPieces));
        break;
      case 2:
        source.truncate(at);
        break;
      default:
        source.insert(at, source.mid(maker.below(int(source.size()) + 1), maker.below(12)));
        break;
    }
  }
  return source;
}

// Line and column counted the simple way.
std::pair<int, int> placeOf(const QString& source, int offset) {
  int line = 0, start = 0;
  for (int i = 0; i < offset; ++i) {
    const bool lineEnd =
        source[i] == u'\n' || (source[i] == u'\r' && (i + 1 >= source.size() || source[i + 1] != u'\n'));
    if (lineEnd) ++line, start = i + 1;
  }
  return {line, offset - start};
}

void checkPlace(const QString& source, const CompileError& error) {
  ASSERT_GE(error.reason, 0x0502);
  ASSERT_LE(error.reason, 0x056E);
  ASSERT_FALSE(faultText(error.reason).isEmpty());
  ASSERT_GE(error.offset, 0);
  ASSERT_GE(error.length, 0);
  ASSERT_LE(error.offset + error.length, source.size());
  ASSERT_EQ(std::make_pair(error.line, error.column), placeOf(source, error.offset));
}

TEST(BrokenFormulas, HaveTheirErrorsInsideTheSource) {
  TestContext world;
  TreeMaker maker(3);
  int refused = 0;
  for (int i = 0; i < kMutations; ++i) {
    const QString valid = maker.oneIn(2) || allCases().isEmpty() ? print(maker.tree(), world.environment)
                                                                 : maker.oneOf(allCases()).formula;
    const QString source = broken(valid, maker);
    SCOPED_TRACE(source.toStdString());
    const Compiled compiled = compile(source, {&world.environment});
    if (compiled) {
      EXPECT_EQ(compiled.error.reason, 0);
      Evaluation(compiled.formula, world.environment, kSmall).run(&world.document, &world.database);
    } else {
      ++refused;
      checkPlace(source, compiled.error);
    }
    if (testing::Test::HasFatalFailure()) return;
  }
  EXPECT_GT(refused, kMutations / 4);
  EXPECT_LT(refused, kMutations);
}

// --- Runs ----------------------------------------------------------------------------------------------

// Formulas whose value is another one each time.
bool isRandom(const Tree& tree) {
  static const QStringList kRandom{u"@Random"_s, u"@Unique"_s, u"@HashPassword"_s, u"@Password"_s};
  for (const Node& node : tree.nodes)
    if (node.function && kRandom.contains(QString::fromLatin1(node.function->name))) return true;
  return false;
}

void checkRepeatedRuns(const QString& source) {
  SCOPED_TRACE(source.toStdString());
  TestEnvironment environment;
  const Compiled compiled = compile(source, {&environment});
  if (!compiled) return;
  Evaluation evaluation(compiled.formula, environment, kSmall);
  const auto run = [&](Document* document) {
    environment.ini = TestEnvironment().ini;
    TestDatabase database;
    return evaluation.run(document, &database);
  };
  TestDocument first, again, afterOther;
  MemoryDocument other;
  other.put(u"Form"_s, Value::number(7.0));
  other.put(u"x1"_s, Value::text(u"elsewhere"));
  const Outcome outcome = run(&first);
  const auto same = [&](const Outcome& next) {
    EXPECT_TRUE(outcome.value.identical(next.value))
        << printValue(outcome.value, environment.zone()).left(200).toStdString() << " and "
        << printValue(next.value, environment.zone()).left(200).toStdString();
    EXPECT_EQ(outcome.matches, next.matches);
    EXPECT_EQ(outcome.modified, next.modified);
    EXPECT_EQ(outcome.deletes, next.deletes);
  };
  same(run(&again));
  run(&other);
  run(nullptr);
  same(run(&afterOther));
}

TEST(Runs, OfTheSameFormulaOverTheSameDocumentAgree) {
  const TestEnvironment environment;
  for (const Case& tested : allCases())
    if (!isRandom(parse(tested.formula, environment).tree)) checkRepeatedRuns(tested.formula);
  TreeMaker maker(4);
  for (int i = 0; i < kTrees; ++i) {
    const Tree tree = maker.tree();
    if (!isRandom(tree)) checkRepeatedRuns(print(tree, environment));
  }
}

TEST(Runs, GiveBackTheirMemory) {
  TreeMaker maker(5);
  const TestEnvironment environment;
  for (int i = 0; i < kTrees / 4; ++i) {
    const Tree tree = maker.tree();
    if (isRandom(tree)) continue;
    const QString source = print(tree, environment);
    const qsizetype before = ValueMemory::inUse();
    checkRepeatedRuns(source);
    ASSERT_EQ(ValueMemory::inUse(), before) << source.toStdString();
  }
}

}  // namespace
}  // namespace lens::formula

// The tables of cases, and that they cover the language.
#include <gtest/gtest.h>

#include <QHash>
#include <QSet>

#include "embedded/formula/function.h"
#include "embedded/formula/support/case_table.h"
#include "embedded/formula/support/test_context.h"
#include "embedded/formula/tree.h"

namespace lens::formula {
namespace {
using namespace Qt::StringLiterals;

class Cases : public testing::TestWithParam<Case> {};

TEST_P(Cases, GiveWhatTheTableSays) {
  const QString problem = complaint(GetParam());
  EXPECT_TRUE(problem.isEmpty()) << GetParam().file.toStdString() << ".txt:" << GetParam().line << "\n"
                                 << problem.toStdString();
}

INSTANTIATE_TEST_SUITE_P(Table, Cases, testing::ValuesIn(allCases().begin(), allCases().end()),
                         [](const testing::TestParamInfo<Case>& tested) {
                           QString name = u"%1_%2"_s.arg(tested.param.file).arg(tested.param.line);
                           for (QChar& c : name)
                             if (!c.isLetterOrNumber()) c = u'_';
                           return name.toStdString();
                         });

TEST(CaseTables, HoldAtLeastEightHundredCases) {
  EXPECT_GE(allCases().size(), 800);
}

TEST(CaseTables, HoldNoFormulaTwice) {
  QHash<QString, const Case*> seen;
  for (const Case& tested : allCases()) {
    const Case*& first = seen[tested.formula.trimmed()];
    if (first)
      ADD_FAILURE() << testing::PrintToString(tested) << "\n  is already in "
                    << testing::PrintToString(*first);
    else
      first = &tested;
  }
}

// Functions and operators of all cases that can be parsed.
QSet<QString> functionsInCases() {
  const TestContext world;
  QSet<QString> names;
  for (const Case& tested : allCases()) {
    const Parsed parsed = parse(tested.formula, world.environment);
    for (const Node& node : parsed.tree.nodes)
      if (node.function) names.insert(QString::fromLatin1(node.function->name));
  }
  return names;
}

TEST(CaseTables, UseEveryFunction) {
  const QSet<QString> used = functionsInCases();
  QStringList unused;
  for (const Function* function : allFunctions()) {
    const bool implemented = function->run || function->form != Form::Call;
    const QString name = QString::fromLatin1(function->name);
    if (implemented && !(function->traits & trait::NeedsClient) && !used.contains(name)) unused.append(name);
  }
  EXPECT_TRUE(unused.isEmpty()) << "No case uses " << unused.join(u' ').toStdString();
}

// Longest first, as the language reads them; the same operator may have several spellings.
const QStringList kSpellings{u"*<>"_s, u"*!="_s, u"*<="_s, u"*>="_s, u":="_s, u"*+"_s, u"*-"_s, u"**"_s,
                             u"*/"_s,  u"*="_s,  u"*<"_s,  u"*>"_s,  u"<>"_s, u"!="_s, u"=!"_s, u"><"_s,
                             u"<="_s,  u">="_s,  u":"_s,   u"+"_s,   u"-"_s,  u"*"_s,  u"/"_s,  u"="_s,
                             u"<"_s,   u">"_s,   u"!"_s,   u"&"_s,   u"|"_s};

// The source without what stands in text constants and brackets.
QString withoutConstants(const QString& formula) {
  QString rest;
  QChar end;
  for (qsizetype i = 0; i < formula.size(); ++i) {
    const QChar c = formula[i];
    if (!end.isNull()) {
      if (c == u'\\' && end != u']') ++i;
      if (c == end) end = QChar();
    } else if (c == u'"' || c == u'{' || c == u'[') {
      end = c == u'"' ? u'"' : c == u'{' ? u'}' : u']';
    } else {
      rest += c;
    }
  }
  return rest;
}

TEST(CaseTables, UseEveryOperatorInEverySpelling) {
  QSet<QString> used;
  for (const Case& tested : allCases()) {
    if (tested.expected.startsWith(u"compile")) continue;
    const QString source = withoutConstants(tested.formula);
    for (qsizetype i = 0; i < source.size();) {
      qsizetype step = 1;
      for (const QString& spelling : kSpellings) {
        if (!QStringView(source).sliced(i).startsWith(spelling)) continue;
        used.insert(spelling);
        step = spelling.size();
        break;
      }
      i += step;
    }
  }
  for (const QString& spelling : kSpellings) EXPECT_TRUE(used.contains(spelling)) << spelling.toStdString();
}

TEST(CaseRunner, ComplainsOfAWrongExpectation) {
  EXPECT_EQ(complaint({u"t"_s, 1, u"1 + 1"_s, u"2"_s}), QString());
  const QString problem = complaint({u"t"_s, 1, u"1 + 1"_s, u"3"_s});
  EXPECT_TRUE(problem.contains(u"expected: 3") && problem.contains(u"got:      2")) << problem.toStdString();
  EXPECT_NE(complaint({u"t"_s, 1, u"1 + 1"_s, u""_s}), QString());
  EXPECT_NE(complaint({u"t"_s, 1, u"1 + 1"_s, u"\"2\""_s}), QString());
  EXPECT_NE(complaint({u"t"_s, 1, u"1 + 1"_s, u"2"_s, false}), QString());
}

TEST(CaseRunner, ShowsThePlaceOfACompileError) {
  const QString problem = complaint({u"t"_s, 1, u"1 + @Nonesuch"_s, u"2"_s});
  EXPECT_TRUE(problem.contains(u">>@Nonesuch<<")) << problem.toStdString();
}

TEST(CaseRunner, ComparesAllThatIsExpectedOfAnError) {
  const QString result = u"compile 051B at 4 length 3 line 1 column 2"_s;
  EXPECT_TRUE(agrees(u"compile 051B at 4 length 3"_s, result));
  EXPECT_TRUE(agrees(result, result));
  EXPECT_FALSE(agrees(u"compile 051B at 4 length 30"_s, result));
  EXPECT_FALSE(agrees(u"compile 051B at 4"_s, result));
  EXPECT_FALSE(agrees(u"compile 051B at 5 length 3"_s, result));
  EXPECT_FALSE(agrees(u"compile 051B at 4 length 3 line 1 column 3"_s, result));
  EXPECT_FALSE(agrees(u"error 051B"_s, result));
  EXPECT_FALSE(agrees(u"compile 051B at 4 length 3"_s, u"error 051B"_s));
}

TEST(CaseRunner, PrintsValuesOfEveryType) {
  const LocalZone& zone = TestEnvironment().zone();
  const auto print = [&](const Value& value) { return printValue(value, zone).toStdString(); };
  EXPECT_EQ(print(Value::texts({u"a\"b"_s, u"c\\d"_s})), R"("a\"b" : "c\\d")");
  EXPECT_EQ(print(Value::numbers({1, 2.5, 1e20, -0.0})), "1 : 2.5 : 1e+20 : 0");
  EXPECT_EQ(print(Value::time(testTime(2024, 7, 4, 10, 30, 45))), "[2024-07-04 10:30:45]");
  EXPECT_EQ(print(Value::time(testDate(2024, 3, 15))), "[2024-03-15]");
  EXPECT_EQ(print(Value::time(kBlankTime)), "[]");
  EXPECT_EQ(print(Value::time(timeDateOf(Civil{false, true, 0, 4525}, zone))), "[00:00:45.25]");
  EXPECT_EQ(print(Value::range({testDate(2024, 3, 1), testDate(2024, 3, 5)})), "[2024-03-01 - 2024-03-05]");
  EXPECT_EQ(print(Value::keyword(u"CN")), "keyword CN");
  EXPECT_EQ(print(Value::error(fault::TextExpected)), "error 053C");
  EXPECT_EQ(print(Value::nothing()), "nothing");
  EXPECT_EQ(print(Value::missing()), "missing");
  EXPECT_EQ(print(Value::unavailable()), "unavailable");
}

}  // namespace
}  // namespace lens::formula

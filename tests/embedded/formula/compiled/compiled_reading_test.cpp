// Compiled formulas are read as what their authors wrote, or said to be unreadable; never as anything else.
#include <gtest/gtest.h>

#include "embedded/format/byte_reader.h"
#include "embedded/format/source_formula.h"
#include "embedded/formula/compiled/compiled_formula.h"
#include "embedded/formula/compiled/segments.h"
#include "embedded/formula/compiled/stored_formula.h"
#include "embedded/formula/compiled/vectors.h"
#include "embedded/formula/support/test_context.h"

namespace lens::formula {
namespace {
using namespace Qt::StringLiterals;
using State = CompiledReading::State;

CompiledReading readHex(const char* hex) {
  return readCompiled(QByteArray::fromHex(hex), TestEnvironment());
}

// --- Bytes of one's own -------------------------------------------------------------------------------

QByteArray words(std::initializer_list<int> numbers) {
  QByteArray bytes;
  for (const int number : numbers) appendU16(bytes, quint16(number));
  return bytes;
}

QByteArray countedText(const QByteArray& text) {
  QByteArray bytes = words({int(text.size())}) + text;
  if (bytes.size() % 2) bytes += '\0';
  return bytes;
}

QByteArray name(const QByteArray& text) {
  return words({5}) + countedText(text);
}

QByteArray number(double value) {
  QByteArray bytes = words({0});
  appendF64(bytes, value);
  return bytes;
}

QByteArray segmentOf(int type, const QByteArray& data) {
  return words({type, int(data.size()) + 4}) + data;
}

QByteArray formulaOf(const QByteArray& segments) {
  return words({int(segments.size()) + 2}) + segments;
}

// One main expression; the end of the code is added.
QByteArray expressionOf(const QByteArray& code) {
  return formulaOf(segmentOf(segment::Main, code + words({3})));
}

QByteArray withLayout(const QByteArray& code, const QByteArray& layout) {
  return formulaOf(segmentOf(segment::Main, code + words({3})) +
                   segmentOf(segment::Layout, countedText(QByteArray("\x09") + layout)));
}

CompiledReading readExpression(const QByteArray& code) {
  return readCompiled(expressionOf(code), TestEnvironment());
}

// --- What is read -------------------------------------------------------------------------------------

class Vectors : public testing::TestWithParam<CompiledVector> {};

TEST_P(Vectors, AreReadAsTheirSource) {
  const CompiledReading reading = readCompiled(GetParam().bytes, TestEnvironment());
  ASSERT_EQ(reading.state, State::Source) << reading.problem.toStdString();
  EXPECT_EQ(reading.source.toStdString(), GetParam().source.toStdString());
}

TEST_P(Vectors, GiveTheTreeThatTheParserMakesOfTheSource) {
  const TestEnvironment environment;
  const CompiledReading reading = readCompiled(GetParam().bytes, environment);
  if (reading.sureness == Sureness::Unnamed) {
    EXPECT_TRUE(reading.tree.statements.empty());
    return;
  }
  const Parsed parsed = parse(GetParam().source, environment);
  ASSERT_EQ(parsed.error.reason, 0) << parsed.error.offset;
  EXPECT_TRUE(sameTree(parsed.tree, reading.tree)) << print(reading.tree, environment).toStdString();
}

INSTANTIATE_TEST_SUITE_P(Compiled, Vectors,
                         testing::ValuesIn(compiledVectors().begin(), compiledVectors().end()),
                         [](const testing::TestParamInfo<CompiledVector>& tested) {
                           return "line_" + std::to_string(tested.param.line);
                         });

TEST(CompiledReading, MarksNamesThatAreNotProven) {
  const CompiledReading proven = readExpression(name("a") + words({0x015E}));
  EXPECT_EQ(proven.sureness, Sureness::Proven);
  EXPECT_TRUE(proven.unproven.isEmpty());
  const CompiledReading context = readExpression(name("a") + name("b") + words({0x0243, 0x0142, 0x0142}));
  EXPECT_EQ(context.source, u"@Round(@Round(@Min(a; b)))");
  EXPECT_EQ(context.sureness, Sureness::Context);
  EXPECT_EQ(context.unproven, QStringList({u"@Min"_s, u"@Round"_s}));
  EXPECT_TRUE(context.canRun());
  const CompiledReading guess = readExpression(name("a") + name("b") + words({0x0213, 0x017F}));
  EXPECT_EQ(guess.source, u"@Log(a *- b)");
  EXPECT_EQ(guess.sureness, Sureness::Guess);
  EXPECT_EQ(guess.unproven, QStringList({u"*-"_s, u"@Log"_s}));
  EXPECT_TRUE(guess.canRun());
  const CompiledReading keyword = readExpression(words({2, 14, 0, 0, 0}));
  EXPECT_EQ(keyword.source, u"[YesNo]");
  EXPECT_EQ(keyword.unproven, QStringList(u"[YesNo]"_s));
}

TEST(CompiledReading, NamesTheCodesThatHaveNoName) {
  const CompiledReading reading =
      readExpression(words({2, 6001, 0, 0, 0}) + name("a") + words({0x02ED, 0x00FB, 0x013D, 0x0222}));
  EXPECT_EQ(reading.state, State::Source);
  EXPECT_EQ(reading.source, u"@Command([#6001]; a) + @Function_13D");
  EXPECT_FALSE(reading.canRun());
  EXPECT_EQ(reading.unproven, QStringList({u"[#6001]"_s, u"@Function_13D"_s}));
  EXPECT_EQ(reading.problem, u"it uses codes without a known name: keyword 6001, function 13D");
}

TEST(CompiledReading, SaysThatAFormulaIsHidden) {
  for (const int size : {8, 16, 800}) {
    const QByteArray bytes = formulaOf(segmentOf(segment::Hidden, QByteArray(size, '\x5A')) +
                                       segmentOf(segment::Divider, {}) + segmentOf(segment::Divider, {}));
    const CompiledReading reading = readCompiled(bytes, TestEnvironment());
    EXPECT_EQ(reading.state, State::Hidden);
    EXPECT_EQ(reading.problem, u"Formula is hidden");
    EXPECT_TRUE(reading.source.isEmpty());
    EXPECT_TRUE(reading.tree.nodes.empty());
    EXPECT_FALSE(reading.canRun());
    EXPECT_EQ(shownFormula(bytes), u"Formula is hidden");
  }
}

TEST(CompiledReading, PutsSelectInFrontOfTheMainExpressionWhereItSelects) {
  const TestEnvironment environment;
  const QByteArray code = name("a") + words({3});
  const QByteArray bytes = formulaOf(segmentOf(segment::Variable, countedText("x") + number(1) + words({3})) +
                                     segmentOf(segment::Main, code) +
                                     segmentOf(segment::Layout, countedText("\x09"
                                                                            "0R")) +
                                     segmentOf(segment::Expression, name("b") + words({3})));
  EXPECT_EQ(readCompiled(bytes, environment).source, u"x := 1;\na;b");
  const CompiledReading shown = readCompiled(bytes, environment, ShownSelect::Always);
  EXPECT_EQ(shown.source, u"x := 1;SELECT \na;b");
  EXPECT_TRUE(sameTree(shown.tree, parse(shown.source, environment).tree));
  const QByteArray typed = withLayout(name("a"), "L1S");
  EXPECT_EQ(readCompiled(typed, environment, ShownSelect::Always).source, u"SELECT a");
}

TEST(CompiledReading, TakesALayoutOnlyWhereItIsOne) {
  const QByteArray code = name("a") + name("b") + words({0x0222});
  const auto source = [&](const QByteArray& layout) {
    return readCompiled(withLayout(code, layout), TestEnvironment()).source;
  };
  EXPECT_EQ(source("0S0E"), u"a+b");
  EXPECT_EQ(source("1S2E2T3E"), u"a  +\t\t\tb");
  EXPECT_EQ(source("2SR12S"), u"a+ \nb");
  // Anything else says nothing of the white space.
  for (const char* none :
       {"1X", "2S1S", "LL", "S1S0", "1S12", "1", "1S2L3L", "1s", "1 S", "1S99999999E", "1S9999999999E"})
    EXPECT_EQ(source(none), u"a + b") << none;
}

TEST(CompiledReading, LayoutsAskForAMillionBlanksAtMost) {
  QByteArray segments;
  for (int i = 0; i < 30; ++i)
    segments += segmentOf(segment::Expression, name("a") + name("b") + words({0x0222, 3})) +
                segmentOf(segment::Layout, countedText("\x09"
                                                       "1S50000E"));
  const CompiledReading reading = readCompiled(formulaOf(segments), TestEnvironment());
  EXPECT_EQ(reading.state, State::Source);
  EXPECT_EQ(reading.source.count(u' '), 20 * 50'000 + 10 * 2);
}

TEST(CompiledReading, CutsTheStampOfColumnsVariables) {
  const QByteArray stamp("\0\1\2\3\4\5\6\7\x08", 9);
  EXPECT_EQ(readExpression(name("_x" + stamp)).source, u"_x");
  // Too short for a stamp behind a name.
  EXPECT_EQ(readExpression(name(stamp)).state, State::Unreadable);
}

TEST(CompiledReading, TextsAreInTheCharacterSetOfStoredText) {
  const CompiledReading reading = readExpression(words({1}) + countedText("\x84\x01\x80 \x12\x88\xEA") +
                                                 name("gr\x94\xE1"
                                                      "e") +
                                                 words({0x021F}));
  ASSERT_EQ(reading.state, State::Source);
  EXPECT_TRUE(reading.source.startsWith(u"\"ä")) << reading.source.toStdString();
  EXPECT_TRUE(reading.source.endsWith(u": größe")) << reading.source.toStdString();
}

// --- What is not read ---------------------------------------------------------------------------------

void expectUnreadable(const QByteArray& bytes, QStringView reason) {
  const CompiledReading reading = readCompiled(bytes, TestEnvironment());
  EXPECT_EQ(reading.state, State::Unreadable) << reading.source.toStdString();
  EXPECT_TRUE(reading.source.isEmpty()) << reading.source.toStdString();
  EXPECT_TRUE(reading.tree.nodes.empty());
  EXPECT_TRUE(reading.problem.startsWith(reason)) << reading.problem.toStdString();
}

TEST(UnreadableFormulas, SayWhatIsWrongWithTheirFrame) {
  const QByteArray good = expressionOf(name("a"));
  EXPECT_EQ(readCompiled(good, TestEnvironment()).state, State::Source);
  expectUnreadable({}, u"its size is wrong");
  expectUnreadable("\x02", u"its size is wrong");
  expectUnreadable(good + '\0', u"its size is wrong");
  expectUnreadable(good.chopped(1), u"its size is wrong");
  expectUnreadable(words({2}), u"it is empty");
  expectUnreadable(formulaOf(words({0, 3})), u"a segment is longer than the formula");
  expectUnreadable(formulaOf(words({0, 6})), u"a segment is longer than the formula");
  expectUnreadable(formulaOf(words({0})), u"a segment is longer than the formula");
  expectUnreadable(formulaOf(segmentOf(11, {})), u"a segment of an unknown type");
  expectUnreadable(formulaOf(segmentOf(segment::FarFunctions, {})), u"it has no statement");
  expectUnreadable(formulaOf(segmentOf(segment::Divider, {}) + segmentOf(segment::Divider, {})),
                   u"it has two dividers");
  const QByteArray main = segmentOf(segment::Main, name("a") + words({3}));
  expectUnreadable(formulaOf(main + main), u"it has two main expressions");
  expectUnreadable(formulaOf(main + segmentOf(segment::Layout, words({9}) + "12345678")),
                   u"a text is longer than its segment");
  expectUnreadable(formulaOf(segmentOf(segment::Variable, words({0xFFFF}))),
                   u"a text is longer than its segment");
}

TEST(UnreadableFormulas, SayWhatIsWrongWithTheirCode) {
  const struct {
    QByteArray code;
    QStringView reason;
  } cases[] = {
      {{}, u"values are left over"},
      {words({0x0222}), u"an operation lacks its values"},
      {name("a") + words({0x0222}), u"an operation lacks its values"},
      {words({0x011E}), u"an operation lacks its values"},
      {words({4}), u"parentheses round nothing"},
      {words({0x025F}), u"a function lacks its arguments"},
      {name("a") + words({0xFF5F}), u"a function lacks its arguments"},
      {name("a") + name("b"), u"values are left over"},
      {name("a") + words({0x0122}), u"a code that is none"},
      {name("a") + words({0x0006}), u"a code that is none"},
      {name("a") + words({0x0105}), u"a code that is none"},
      {words({0x00FB, 0x0066}), u"a code that is none"},
      {words({0x00FB}), u"the end"},
      {words({5, 0x7FFF}), u"a text is longer than its code"},
      {words({1, 0xFFFF}), u"a text is longer than its code"},
      {words({0, 0, 0}), u"the code ends early"},
      {words({2, 1}), u"the code ends early"},
      {name("a") + words({3}), u"bytes behind the end of the code"},
      {number(-1), u"a number that no formula can have"},
      {number(-0.0), u"a number that no formula can have"},
      {number(qQNaN()), u"a number that no formula can have"},
      {number(qInf()), u"a number that no formula can have"},
      {words({2, 0xFFFF, 0xFFFF, 0xFFFF, 0xFFFF}), u"a time that is none"},
      {words({2, 0, 0, 0, 0x4000}), u"a time that is none"},
      {words({2, 0xFFFF, 0xFFFF, 0xFFFF, 0x00FF}), u"a time that is none"},
      {number(1) + number(2) + words({0x0209}), u"a value is assigned to what is no name"},
      {name("a") + words({4}) + number(2) + words({0x0209}), u"a value is assigned to what is no name"},
      {name("a") + number(2) + words({0x0209}), u"an assignment stands where a value has to"},
  };
  for (const auto& [code, reason] : cases) {
    SCOPED_TRACE(code.toHex().toStdString());
    if (reason == u"the end")
      expectUnreadable(expressionOf(code), u"a code that is none");
    else
      expectUnreadable(expressionOf(code), reason);
  }
}

TEST(UnreadableFormulas, HaveNamesThatWouldBeReadAsSomethingElse) {
  for (const char* bad : {"", "a b", "1a", "a;@DeleteDocument", "@All", "\"a\"", "a.", "..", "select", "Rem",
                          "FIELD", "default", "Environment", "a\n", "a+b", "{", "]"}) {
    expectUnreadable(expressionOf(name(bad)), u"a name that no formula can have");
    expectUnreadable(formulaOf(segmentOf(segment::Variable, countedText(bad) + number(1) + words({3})) +
                               segmentOf(segment::Main, number(1) + words({3}))),
                     u"a name that no formula can have");
  }
  expectUnreadable(expressionOf(name(QByteArray(256, 'a'))), u"a name that no formula can have");
  expectUnreadable(expressionOf(name(QByteArray(0xFFE0, 'a'))), u"a name that no formula can have");
  EXPECT_EQ(readExpression(name(QByteArray(255, 'a'))).state, State::Source);
}

// Jumps have to lead where the source would put them: @If(a; 1; 2).
TEST(UnreadableFormulas, HaveJumpsThatLeadElsewhere) {
  const QByteArray good = QByteArray::fromHex(
      "050001006100 af00 2200 1000 0000 000000000000f03f ae00 1200 0000 0000000000000040 ae00 0400 b503");
  const auto withWord = [&](qsizetype at, int value) {
    QByteArray changed = good;
    changed[at] = char(value & 0xFF);
    changed[at + 1] = char(value >> 8);
    return changed;
  };
  const CompiledReading reading = readExpression(good);
  ASSERT_EQ(reading.source, u"@If(a; 1; 2)") << reading.problem.toStdString();
  for (const qsizetype at : {8, 10, 24, 38}) {
    for (const int value : {0, 1, 0x7FFF, 0xFFFF})
      expectUnreadable(expressionOf(withWord(at, value)), u"a jump out of @If");
  }
  const QByteArray jump = words({0xAE, 4}), unless = words({0xAF, 4, 4});
  expectUnreadable(expressionOf(jump), u"a jump behind nothing");
  expectUnreadable(expressionOf(name("a") + jump), u"a jump outside @If");
  expectUnreadable(expressionOf(name("a") + jump + words({0x015E})), u"a jump outside @If");
  expectUnreadable(expressionOf(name("a") + name("b") + unless + words({0x0222})), u"a jump outside @If");
  expectUnreadable(expressionOf(name("a") + unless + name("b") + words({0x0222})), u"a jump outside @If");
  expectUnreadable(expressionOf(name("a") + jump + jump + words({0x01B5})), u"a jump behind nothing");
  expectUnreadable(expressionOf(name("a") + jump + words({4})), u"parentheses round nothing");
  expectUnreadable(expressionOf(name("a") + words({0x01B5})), u"@If without its jumps");
  expectUnreadable(expressionOf(name("a") + unless + words({0x01B5})), u"@If without its jumps");
  expectUnreadable(expressionOf(name("a") + unless + name("b") + jump + words({0x02B5})),
                   u"a jump out of @If");
}

TEST(UnreadableFormulas, AreNestedTooDeep) {
  const auto nested = [](int depth, int instruction) {
    QByteArray code = name("a");
    for (int i = 0; i < depth; ++i) code += words({instruction});
    return code;
  };
  for (const int instruction : {0x0004, 0x011E, 0x015E}) {
    const CompiledReading deepest = readExpression(nested(kMaxDepth, instruction));
    ASSERT_EQ(deepest.state, State::Source) << deepest.problem.toStdString();
    EXPECT_EQ(parse(deepest.source, TestEnvironment()).error.reason, 0);
    expectUnreadable(expressionOf(nested(kMaxDepth + 1, instruction)), u"it is nested too deep");
    expectUnreadable(expressionOf(nested(30'000, instruction)), u"it is nested too deep");
  }
  // Without the parentheses that it needs, a - (b - (c - ...)).
  QByteArray right;
  for (int i = 0; i < 6000; ++i) right += name("a");
  for (int i = 1; i < 6000; ++i) right += words({0x0223});
  expectUnreadable(expressionOf(right), u"it is nested too deep");
}

TEST(CompiledReading, LongChainsAreNotDeep) {
  QByteArray code = name("a");
  for (int i = 0; i < 6000; ++i) code += name("b") + words({0x021F});
  const CompiledReading reading = readExpression(code);
  ASSERT_EQ(reading.state, State::Source) << reading.problem.toStdString();
  EXPECT_EQ(reading.source.count(u':'), 6000);
  EXPECT_TRUE(sameTree(reading.tree, parse(reading.source, TestEnvironment()).tree));
}

// As many as 64 KB hold, in a time that grows with them.
TEST(CompiledReading, TakesVeryManyStatementsRemarksAndNames) {
  const QByteArray statement = segmentOf(segment::Expression, name("a") + words({3}));
  const QByteArray remark = segmentOf(segment::Layout, countedText("r"));
  QByteArray statements, remarks, keywords;
  constexpr int kMany = 4000;
  for (int i = 0; i < kMany; ++i) statements += statement;
  EXPECT_EQ(readCompiled(formulaOf(statements), TestEnvironment()).source.count(u'a'), kMany);
  for (int i = 0; i < kMany; ++i) remarks += remark;
  const CompiledReading read = readCompiled(formulaOf(remarks + statement), TestEnvironment());
  EXPECT_EQ(read.source.count(u"REM"), kMany);
  EXPECT_EQ(int(read.tree.statements.size()), kMany + 1);
  for (int i = 0; i < kMany; ++i) {
    keywords += words({2, 20'000 + i, 0, 0, 0});
    if (i > 0) keywords += words({0x021F});
  }
  const CompiledReading nameless = readExpression(keywords);
  EXPECT_EQ(nameless.unproven.size(), kMany);
  EXPECT_FALSE(nameless.canRun());
}

TEST(UnreadableFormulas, LeaveVeryManyValuesOver) {
  QByteArray values;
  for (int i = 0; i < 9000; ++i) values += name("");
  expectUnreadable(expressionOf(values), u"a name that no formula can have");
  values.clear();
  for (int i = 0; i < 9000; ++i) values += name("a");
  expectUnreadable(expressionOf(values), u"values are left over");
  // 255 arguments are the most that a function can take from them.
  const CompiledReading call = readExpression(values.first(255 * 6) + words({0xFF43}));
  EXPECT_EQ(call.source.count(u'a'), 255) << call.problem.toStdString();
  expectUnreadable(expressionOf(values.first(254 * 6) + words({0xFF43})), u"a function lacks its arguments");
}

// --- Both forms ---------------------------------------------------------------------------------------

TEST(StoredFormulas, AreReadInEitherForm) {
  EXPECT_EQ(readStored(sourceFormula(u"a+b")).source, u"a+b");
  EXPECT_TRUE(readStored(sourceFormula(u"a+b")).canRun());
  EXPECT_EQ(readStored(expressionOf(name("a"))).source, u"a");
  EXPECT_EQ(shownFormula(expressionOf(name("a"))), u"a");
  EXPECT_EQ(shownFormula("\x12\x01"), u"");
  QString source;
  EXPECT_TRUE(
      formulaSource({u"$Formula"_s, 0, rawValue(itemtype::Formula, expressionOf(name("a")))}, source));
  EXPECT_EQ(source, u"a");
  EXPECT_TRUE(formulaSource({u"F"_s, 0, textValue(u"plain")}, source));
  EXPECT_EQ(source, u"plain");
  EXPECT_FALSE(formulaSource({u"F"_s, 0, numberValue(1)}, source));
  EXPECT_FALSE(formulaSource({u"F"_s, 0, rawValue(itemtype::Formula, "\x12\x01")}, source));
}

TEST(StoredFormulas, TellTheirSizeInALongerStretch) {
  const QByteArray bytes = expressionOf(name("a"));
  EXPECT_EQ(compiledSize(bytes + "more"), bytes.size());
  EXPECT_EQ(compiledSize(bytes.chopped(1)), 0);
  EXPECT_EQ(compiledSize("\0\0abc"), 0);
  EXPECT_EQ(compiledSize({}), 0);
}

TEST(CompiledReading, ReadsTheFactsOfTheFormat) {
  EXPECT_EQ(readHex("0a000000080089000300").source, u"@IsNewDoc");
}

}  // namespace
}  // namespace lens::formula

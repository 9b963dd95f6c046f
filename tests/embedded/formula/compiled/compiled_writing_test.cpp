// Source is written as the platform would have written it, or not at all.
#include <gtest/gtest.h>

#include <QSet>

#include "embedded/format/byte_reader.h"
#include "embedded/format/source_formula.h"
#include "embedded/formula/compiled/compiled_formula.h"
#include "embedded/formula/compiled/compiled_writer.h"
#include "embedded/formula/compiled/segments.h"
#include "embedded/formula/compiled/stored_formula.h"
#include "embedded/formula/compiled/vectors.h"
#include "embedded/formula/spelling.h"
#include "embedded/formula/support/case_table.h"
#include "embedded/formula/support/test_context.h"
#include "embedded/formula/support/tree_maker.h"
#include "embedded/formula/token.h"

namespace lens::formula {
namespace {
using namespace Qt::StringLiterals;
using State = CompiledReading::State;

const int kTrees = qEnvironmentVariableIsSet("LENS_SOAK") ? 20'000 : 2'000;

QByteArray write(QStringView source) {
  return writeCompiled(source, TestEnvironment()).bytes;
}

std::string sourceOf(QByteArrayView bytes) {
  return readCompiled(bytes, TestEnvironment()).source.toStdString();
}

// --- Vectors ------------------------------------------------------------------------------------------

class WrittenVectors : public testing::TestWithParam<CompiledVector> {};

TEST_P(WrittenVectors, AreWhatTheTableSays) {
  if (GetParam().written)
    EXPECT_EQ(write(GetParam().source).toHex(), GetParam().bytes.toHex());
  else
    EXPECT_NE(write(GetParam().source).toHex(), GetParam().bytes.toHex());
}

INSTANTIATE_TEST_SUITE_P(Compiled, WrittenVectors,
                         testing::ValuesIn(compiledVectors().begin(), compiledVectors().end()),
                         [](const testing::TestParamInfo<CompiledVector>& tested) {
                           return "line_" + std::to_string(tested.param.line);
                         });

// Names as the source of a reading spells them.
QSet<QString> wordsOfVectors() {
  QSet<QString> words;
  for (const CompiledVector& vector : compiledVectors())
    for (const Token& token : readTokens(vector.source))
      words.insert(vector.source.mid(token.offset, token.length));
  return words;
}

TEST(CompiledVectors, HoldEveryCodeOfTheTable) {
  ASSERT_GT(compiledVectors().size(), 250);
  const QSet<QString> words = wordsOfVectors();
  for (const FunctionCode& row : functionCodes())
    EXPECT_TRUE(words.contains(QString::fromLatin1(row.name))) << row.name;
  for (const KeywordCode& row : keywordCodes())
    EXPECT_TRUE(words.contains(u'[' + QString::fromLatin1(row.name) + u']')) << row.name;
  for (const OperatorCode& row : operatorCodes())
    EXPECT_TRUE(words.contains(signOf(row.op).toString())) << row.code;
}

TEST(CodeTable, IsInOrderAndNamesFunctionsOfTheLanguage) {
  int last = -1;
  for (const FunctionCode& row : functionCodes()) {
    EXPECT_GT(int(row.code), last) << row.name;
    last = row.code;
    ASSERT_NE(functionOf(row), nullptr) << row.name;
    EXPECT_STREQ(functionOf(row)->name, row.name);
    EXPECT_EQ(findFunctionCode(row.code), &row);
    EXPECT_EQ(functionCodeOf(*functionOf(row)), &row);
  }
  qint64 number = -1;
  for (const KeywordCode& row : keywordCodes()) {
    EXPECT_GT(qint64(row.number), number) << row.name;
    number = row.number;
    EXPECT_EQ(findKeyword(row.number), &row);
    EXPECT_EQ(keywordCodeOf(QString::fromLatin1(row.name).toUpper()), &row);
  }
  int code = -1;
  for (const OperatorCode& row : operatorCodes()) {
    EXPECT_GT(int(row.code), code);
    code = row.code;
    EXPECT_EQ(findOperator(row.code), &row);
    EXPECT_EQ(&operatorCodeOf(row.op), &row);
  }
  EXPECT_EQ(findFunctionCode(0xC1), nullptr);
  EXPECT_EQ(findFunctionCode(0xFFFF), nullptr);
  EXPECT_EQ(findKeyword(3), nullptr);
  EXPECT_EQ(findOperator(0x20), nullptr);
}

// --- Random formulas ----------------------------------------------------------------------------------

// The same words with other white space between them.
QString withOtherBlanks(const QString& source, TreeMaker& maker) {
  static const QStringList kBlanks{u" "_s, u"  "_s, u"\n"_s, u"\n\t"_s, u"\t"_s, u"\n\n    "_s, u" \n"_s};
  QString other;
  qsizetype end = 0;
  for (const Token& token : readTokens(source)) {
    const bool apart = token.offset > end;
    if (apart ? !maker.oneIn(3) : maker.oneIn(12))
      other += maker.oneOf(kBlanks);
    else if (apart)
      other += u' ';
    other += QStringView(source).mid(token.offset, token.length);
    end = token.end();
  }
  return other;
}

TEST(RandomCompiledFormulas, ComeBackAsTheSameTree) {
  const TestEnvironment environment;
  TreeMaker maker(11, TreeMaker::Words::Compiled);
  int written = 0;
  for (int i = 0; i < kTrees; ++i) {
    const Tree tree = maker.tree();
    const QString source = withOtherBlanks(print(tree, environment), maker);
    SCOPED_TRACE(source.toStdString());
    const Written first = writeCompiled(source, environment);
    ASSERT_EQ(first.error.reason, 0);
    // DEFAULT and ENVIRONMENT inside an expression have no code.
    if (first.bytes.isEmpty()) continue;
    ++written;
    const CompiledReading reading = readCompiled(first.bytes, environment);
    ASSERT_EQ(reading.state, State::Source) << reading.problem.toStdString();
    ASSERT_TRUE(sameTree(tree, reading.tree)) << reading.source.toStdString();
    const Parsed parsed = parse(reading.source, environment);
    ASSERT_EQ(parsed.error.reason, 0) << reading.source.toStdString();
    ASSERT_TRUE(sameTree(tree, parsed.tree)) << reading.source.toStdString();
    ASSERT_EQ(writeCompiled(reading.source, environment).bytes.toHex(), first.bytes.toHex())
        << reading.source.toStdString();
  }
  EXPECT_GT(written, kTrees * 9 / 10);
}

// Formulas with any words at all: what has no form stays what it was.
TEST(RandomCompiledFormulas, AreKeptAsSourceWhereTheyHaveNoForm) {
  const TestEnvironment environment;
  TreeMaker maker(12);
  int kept = 0;
  for (int i = 0; i < kTrees; ++i) {
    const Tree tree = maker.tree();
    const QString source = print(tree, environment);
    const QByteArray stored = storedFormula(source, environment);
    const CompiledReading reading = readStored(stored);
    ASSERT_EQ(reading.state, State::Source);
    QString text;
    if (readSourceFormula(stored, text)) {
      ++kept;
      ASSERT_EQ(text.toStdString(), source.toStdString());
      continue;
    }
    const CompiledReading again = readCompiled(stored, environment);
    ASSERT_TRUE(sameTree(tree, again.tree)) << source.toStdString();
    ASSERT_LE(int(again.sureness), int(Sureness::Context)) << source.toStdString();
  }
  EXPECT_GT(kept, kTrees / 10);
  EXPECT_LT(kept, kTrees * 9 / 10);
}

TEST(CaseFormulas, ComeBackCompiledAsTheSameTree) {
  const TestEnvironment environment;
  int written = 0;
  for (const Case& tested : allCases()) {
    const Parsed parsed = parse(tested.formula, environment);
    const Written stored = writeCompiled(tested.formula, environment);
    EXPECT_EQ(stored.error.reason, parsed.error.reason);
    if (stored.bytes.isEmpty()) continue;
    ++written;
    const CompiledReading reading = readCompiled(stored.bytes, environment);
    EXPECT_EQ(reading.state, State::Source) << tested.formula.toStdString() << reading.problem.toStdString();
    EXPECT_TRUE(sameTree(parsed.tree, reading.tree)) << tested.formula.toStdString() << "\n"
                                                     << reading.source.toStdString();
  }
  EXPECT_GT(written, 500);
}

// --- What has no form ---------------------------------------------------------------------------------

TEST(CompiledWriting, LeavesOutWhatHasNoSureCode) {
  const QStringList sources{u"@Log(a)"_s,
                            u"@DeleteDocument"_s,
                            u"@Sqrt(a)"_s,
                            u"@Tomorrow"_s,
                            u"[OU1]"_s,
                            u"@Name([OU1]; a)"_s,
                            u"a ** b"_s,
                            u"a *- b"_s,
                            u"@If(a; b *< c; d)"_s,
                            u"[03/01/2024 - 03/05/2024]"_s,
                            u"@Do(DEFAULT x := 1; x)"_s,
                            u"x := @Pi; x"_s,
                            u"a; @Cos(b)"_s,
                            u"\"a\0b\""_s,
                            u"\"a\rb\""_s,
                            u"REM {a\0b}; 1"_s};
  for (const QString& source : sources) {
    const Written written = writeCompiled(source, TestEnvironment());
    EXPECT_EQ(written.error.reason, 0) << source.toStdString();
    EXPECT_TRUE(written.bytes.isEmpty()) << source.toStdString();
    EXPECT_EQ(storedFormula(source, TestEnvironment()), sourceFormula(source));
  }
}

TEST(CompiledWriting, TellsMistakesAsTheCompilerDoes) {
  const TestEnvironment environment;
  for (const QStringView source : {u"", u"1 +", u"a b", u"@Nope", u"\n\nx := (1", u"x := 1", u"\"open"}) {
    const CompileError expected = compile(source, {&environment}).error;
    const Written written = writeCompiled(source, environment);
    EXPECT_TRUE(written.bytes.isEmpty());
    EXPECT_EQ(written.error.reason, expected.reason);
    EXPECT_EQ(written.error.offset, expected.offset);
    EXPECT_EQ(written.error.line, expected.line);
    EXPECT_EQ(storedFormula(source, environment), sourceFormula(source));
  }
}

TEST(CompiledWriting, WritesNoMoreThanSixtyFourKilobytes) {
  QString source = u"\"%1\""_s.arg(QString(65'000, u'x'));
  const QByteArray bytes = write(source);
  ASSERT_FALSE(bytes.isEmpty());
  EXPECT_EQ(sourceOf(bytes), source.toStdString());
  EXPECT_TRUE(write(source + u" + \"%1\""_s.arg(QString(2'000, u'y'))).isEmpty());
  EXPECT_TRUE(write(source + u";\"%1\""_s.arg(QString(2'000, u'y'))).isEmpty());
  EXPECT_TRUE(write(u"REM \"%1\"; 1"_s.arg(QString(65'530, u'x'))).isEmpty());
  // Jumps of an @If lead no further than that.
  QString choice = u"@If("_s;
  for (int i = 0; i < 49; ++i) choice += u"a; \"%1\"; "_s.arg(QString(1'400, u'z'));
  EXPECT_TRUE(write(choice + u"0)"_s).isEmpty());
}

TEST(CompiledWriting, LineBreaksOfEveryKindAreOne) {
  EXPECT_EQ(sourceOf(write(u"\"a\r\nb\nc\"\r\n+\rx")), "\"a\nb\nc\"\n+\nx");
}

// Names, texts and remarks hold any character, also two that LMBCS has no place for.
TEST(CompiledWriting, ComesBackWithEveryCharacterOrHasNoForm) {
  constexpr char32_t kEnd = 0x11000, kStep = 89;
  QVector<char32_t> characters{0xF600, 0xFFFD, 0xFFFE, 0xFFFF, 0x1F4A7};
  for (char32_t c = 0x80; c < kEnd; c += kStep)
    if (!QChar::isSurrogate(c) && !QChar::isSpace(c)) characters += c;
  for (const char32_t c : std::as_const(characters)) {
    const QString letter = QString::fromUcs4(&c, 1);
    for (const char16_t* pattern : {u"a%1", u"b%1 := 1; 2", u"\"%1\"", u"REM {%1}; 1"}) {
      const QString source = QString::fromUtf16(pattern).arg(letter);
      const QByteArray bytes = write(source);
      const bool hasNoPlace = c == 0xFFFE || c == 0xFFFF;
      EXPECT_EQ(bytes.isEmpty(), hasNoPlace) << unsigned(c);
      EXPECT_EQ(sourceOf(bytes), hasNoPlace ? std::string() : source.toStdString()) << unsigned(c);
    }
  }
}

TEST(CompiledWriting, ParenthesesWithNothingInThemAreNotCounted) {
  EXPECT_EQ(sourceOf(write(u"@Unique() + @Unique ( )  +  1")), "@Unique + @Unique  +  1");
}

TEST(CompiledWriting, RemarksThatLookLikeALayoutStayRemarks) {
  for (const QStringView source : {u"1;REM {\t0S};2", u"REM {\t0S}; 1", u"a := 1;REM{\t};REM{\t1S};b"})
    EXPECT_EQ(sourceOf(write(source)), source.toString().toStdString());
}

// A semicolon at the end, and white space in front of one, are not kept.
TEST(CompiledWriting, ForgetsWhatEndsAStatement) {
  EXPECT_EQ(sourceOf(write(u"x := 1 ;\ny ; ")), "x := 1;\ny");
}

// --- Views --------------------------------------------------------------------------------------------

TEST(CompiledViews, HoldTheirColumnsTheNamesOfTheirItemsAndTheSelection) {
  const TestEnvironment environment;
  const QByteArray joined = writeCompiledColumn(u"sep := \"@\"; A + sep", u"$0", environment).bytes;
  const QByteArray plain = writeCompiledColumn(u"@Left(B; 2)", u"$1", environment).bytes;
  const QByteArray constant = writeCompiledColumn(u"158", u"$2", environment).bytes;
  const QByteArray place = writeCompiledColumn(u"@DocNumber", u"$3", environment).bytes;
  EXPECT_EQ(sourceOf(joined), "sep := \"@\"; A + sep");
  EXPECT_EQ(sourceOf(plain), "@Left(B; 2)");
  EXPECT_EQ(sourceOf(constant), "158");
  EXPECT_EQ(place, write(u"@DocNumber"));
  const Written view = writeCompiledSelection(
      u"SELECT Form = \"x\"",
      {{u"$0"_s, joined}, {u"Form"_s, {}}, {u"$1"_s, plain}, {u"$2"_s, constant}, {u"$3"_s, place}},
      environment);
  const CompiledReading reading = readCompiled(view.bytes, environment);
  EXPECT_EQ(reading.source, u"SELECT Form = \"x\"") << reading.problem.toStdString();
  ByteReader reader(view.bytes);
  EXPECT_EQ(reader.u16(), view.bytes.size());
  QVector<int> types;
  QByteArray table;
  while (reader.left() > 0) {
    types += reader.u16();
    const QByteArrayView data = reader.take(reader.u16() - segment::kHead);
    if (types.last() == segment::Columns) table = data.toByteArray();
  }
  EXPECT_EQ(types, QVector<int>({1, 2, 2, 5, 4, 0, 7}));
  EXPECT_EQ(table.toHex(),
            "230005000200040002000900"
            "0400" +
                QByteArray("$0Form$1$Conflict$REF").toHex() + "00");
}

// A column's own expression is stored as DEFAULT is, so that only one of them can stand there.
TEST(CompiledViews, ColumnsWithDefaultHaveNoForm) {
  const TestEnvironment environment;
  for (const QStringView source : {u"DEFAULT b := 1; a + b", u"a + b; DEFAULT b := 1"}) {
    EXPECT_TRUE(writeCompiledColumn(source, u"$0", environment).bytes.isEmpty());
    EXPECT_FALSE(writeCompiled(source, environment).bytes.isEmpty());
  }
}

TEST(CompiledViews, MarkFunctionsOfLaterReleasesOfTheirColumnsToo) {
  const TestEnvironment environment;
  const QByteArray column = writeCompiledColumn(u"@ServerName", u"$0", environment).bytes;
  const QByteArray view = writeCompiledSelection(u"SELECT a", {{u"$0"_s, column}}, environment).bytes;
  EXPECT_TRUE(view.sliced(2).startsWith(QByteArray("\x0A\0\x04\0", 4)));
  EXPECT_TRUE(writeCompiledSelection(u"SELECT @Pi", {}, environment).bytes.isEmpty());
  EXPECT_NE(writeCompiledSelection(u"SELECT (", {}, environment).error.reason, 0);
}

}  // namespace
}  // namespace lens::formula

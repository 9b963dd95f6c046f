// What the tables of cases cannot show of the text functions: other regions, patterns made at random, and
// work that must not get out of hand.
#include <gtest/gtest.h>

#include <random>

#include "embedded/formula/functions/names.h"
#include "embedded/formula/functions/number_text.h"
#include "embedded/formula/functions/patterns.h"
#include "embedded/formula/support/test_context.h"

namespace lens::formula {
namespace {
using namespace Qt::StringLiterals;

Region germany() {
  Region region;
  region.decimalMark = u',';
  region.thousandsMark = u'.';
  region.currency = u"€"_s;
  region.currencyBehind = true;
  return region;
}

QString formatted(double number, const char16_t* letters, const Region& region) {
  return numberText(number, readNumberFormat(letters), region);
}

TEST(NumberText, FollowsTheRegion) {
  EXPECT_EQ(numberText(1234.5, germany()), u"1234,5");
  EXPECT_EQ(formatted(1234567.891, u"F,2", germany()), u"1.234.567,89");
  EXPECT_EQ(formatted(-1234.5, u"C,", germany()), u"-1.234,50 €");
  Region bare;
  bare.leadingZero = false;
  EXPECT_EQ(numberText(0.25, bare), u".25");
  EXPECT_EQ(numberText(-0.25, bare), u"-.25");
  EXPECT_EQ(numberText(0, bare), u"0");
  EXPECT_EQ(formatted(0.25, u"F1", bare), u".3");
  EXPECT_EQ(formatted(0.25, u"F0", bare), u"0");
}

TEST(NumberText, ReadsBackWhatItWrites) {
  const Region american, german = germany();
  std::mt19937_64 random(7);
  for (int i = 0; i < 2000; ++i) {
    const double number = std::ldexp(double(qint64(random())), int(random() % 80) - 60);
    for (const Region& region : {american, german}) {
      const QString text = numberText(number, region);
      double read = 0;
      ASSERT_TRUE(readNumber(text, region, read)) << text.toStdString();
      const double precision = text.contains(u'E') ? 1e-10 : 1e-14;
      EXPECT_NEAR(read, number, std::abs(number) * precision) << text.toStdString();
    }
  }
}

TEST(NumberText, ReadsByTheRegion) {
  double number = 0;
  EXPECT_TRUE(readNumber(u"1.234,5", germany(), number));
  EXPECT_EQ(number, 1234.5);
  EXPECT_TRUE(readNumber(u"1.5", germany(), number));
  EXPECT_EQ(number, 1);
  EXPECT_TRUE(readNumber(u"€ -3", germany(), number));
  EXPECT_EQ(number, -3);
  EXPECT_FALSE(readNumber(u"--3", germany(), number));
  EXPECT_EQ(number, -3);
}

TEST(NumberText, ShowsTheLargestAndTheSmallest) {
  const Region region;
  EXPECT_EQ(numberText(std::numeric_limits<double>::max(), region), u"1.7976931349E+308");
  EXPECT_EQ(numberText(std::numeric_limits<double>::denorm_min(), region), u"4.9406564584E-324");
  EXPECT_EQ(formatted(std::numeric_limits<double>::max(), u"F2", region).size(), 309 + 3);
  EXPECT_EQ(formatted(std::numeric_limits<double>::denorm_min(), u"F99", region).size(), 2 + 30);
  EXPECT_EQ(numberText(999999999999999.9, region), u"1E+15");
}

// The plain meaning of a pattern of @Like, found by trying everything.
bool likeByTrying(QStringView text, QStringView pattern) {
  if (pattern.isEmpty()) return text.isEmpty();
  const QChar sign = pattern[0];
  if (sign == u'%') {
    for (qsizetype skipped = 0; skipped <= text.size(); ++skipped)
      if (likeByTrying(text.sliced(skipped), pattern.sliced(1))) return true;
    return false;
  }
  return !text.isEmpty() && (sign == u'_' || sign == text[0]) &&
         likeByTrying(text.sliced(1), pattern.sliced(1));
}

// The same for a row of @Matches, given as its parts: each a letter, "?" or a set, and "+" before one that
// may stand any number of times.
bool rowByTrying(QStringView text, const QStringList& parts, qsizetype at = 0) {
  if (at == parts.size()) return text.isEmpty();
  const QString& part = parts[at];
  const bool repeated = part[0] == u'+';
  if (repeated && rowByTrying(text, parts, at + 1)) return true;
  if (text.isEmpty()) return false;
  const QStringView one = QStringView(part).sliced(repeated ? 1 : 0);
  const bool fits = one == u"?"       ? true
                    : one == u"{ab}"  ? text[0] == u'a' || text[0] == u'b'
                    : one == u"{!ab}" ? text[0] != u'a' && text[0] != u'b'
                                      : text[0] == one[0];
  return fits && rowByTrying(text.sliced(1), parts, repeated ? at : at + 1);
}

QString randomText(std::mt19937& random, QStringView letters, int most) {
  QString text;
  for (int size = int(random() % unsigned(most + 1)); size > 0; --size)
    text += letters[qsizetype(random() % unsigned(letters.size()))];
  return text;
}

TEST(LikePatterns, MeanWhatTryingEverythingFinds) {
  std::mt19937 random(11);
  int matches = 0;
  for (int i = 0; i < 20000; ++i) {
    const QString pattern = randomText(random, u"ab%_", 7), text = randomText(random, u"ab", 7);
    const bool wanted = likeByTrying(text, pattern);
    matches += wanted;
    ASSERT_EQ(likePattern(pattern, 0).matches(text, false), wanted)
        << text.toStdString() << " like " << pattern.toStdString();
  }
  EXPECT_GT(matches, 1000);
}

TEST(MatchPatterns, MeanWhatTryingEverythingFinds) {
  const QStringList kParts{u"a"_s,  u"b"_s,     u"c"_s,     u"?"_s,      u"{ab}"_s,
                           u"+a"_s, u"+{ab}"_s, u"{!ab}"_s, u"+{!ab}"_s, u"+?"_s};
  std::mt19937 random(13);
  int matches = 0;
  for (int i = 0; i < 20000; ++i) {
    QStringList parts;
    for (unsigned count = random() % 6; count > 0; --count)
      parts.append(kParts[qsizetype(random() % unsigned(kParts.size()))]);
    const QString text = randomText(random, u"abc", 7);
    const bool wanted = rowByTrying(text, parts);
    matches += wanted;
    ASSERT_EQ(MatchPattern(parts.join(QString())).matches(text), wanted)
        << text.toStdString() << " matches " << parts.join(u' ').toStdString();
  }
  EXPECT_GT(matches, 1000);
}

TEST(MatchPatterns, OfAnyMakeAreReadSomehow) {
  std::mt19937 random(17);
  for (int i = 0; i < 50000; ++i) {
    const QString pattern = randomText(random, u"ab?*+{}!&|\\-\xD83D\xDE00", 12);
    const QString text = randomText(random, u"ab{}\\-\xD83D\xDE00", 8);
    const MatchPattern read(pattern);
    EXPECT_GT(read.work(text.size()), 0);
    read.matches(text);
    // A whole pattern turned round matches where it did not, unless it is made of several.
    if (!pattern.contains(u'&') && !pattern.contains(u'|')) {
      EXPECT_NE(read.matches(text), MatchPattern(u'!' + pattern).matches(text)) << pattern.toStdString();
    }
  }
}

Value valueOf(const QString& source, Limits limits = {}) {
  TestContext world;
  const CompileOptions options{&world.environment};
  const Compiled compiled = compile(source, options);
  EXPECT_TRUE(compiled) << source.toStdString();
  if (!compiled) return {};
  Evaluation evaluation(compiled.formula, world.environment, limits);
  return evaluation.run(&world.document, &world.database).value;
}

// A text of 64,000 characters that no compiler can make beforehand.
const QString kLongText =
    u"t := @Left(Form; 1) + @Repeat(\"a\"; 1000); t := t + t + t + t; t := t + t + t + t; "
    "t := t + t + t + t; "_s;

class CostlyText : public testing::TestWithParam<const char16_t*> {};

TEST_P(CostlyText, EndsAtTheLimitOfSteps) {
  const QString source = kLongText + QStringView(GetParam()).toString();
  Limits few;
  few.steps = 2000;
  const Value ended = valueOf(source, few);
  ASSERT_TRUE(ended.isError()) << source.toStdString();
  EXPECT_EQ(ended.errorCode(), fault::TooMuchTime);
  EXPECT_FALSE(valueOf(source).isError()) << source.toStdString();
}

INSTANTIATE_TEST_SUITE_P(Functions, CostlyText,
                         testing::Values(u"@Contains(t; \"ab\")", u"@Matches(t; \"*a*a*a*b\")",
                                         u"@Matches(t; \"+{a-c}+{a-b}d\")", u"@Like(t; \"%a%a%b\")",
                                         u"@Length(@ReplaceSubstring(t; \"a\"; \"b\"))",
                                         u"@Length(@UpperCase(t))", u"@Length(@ProperCase(t))",
                                         u"@Word(t; \"a\"; -1)", u"@Length(@Trim(t))", u"@Length(@Ascii(t))",
                                         u"@Length(@Password(t))", u"@Compare(t; t)",
                                         u"@Length(@URLDecode(\"Domino\"; t))", u"@LeftBack(t; \"Ma\")"));

TEST(TextFunctions, RefuseResultsThatAreTooLong) {
  EXPECT_EQ(valueOf(kLongText + u"@ReplaceSubstring(t; \"a\"; \"bcd\")"_s).errorCode(), fault::TextTooLong);
  EXPECT_EQ(valueOf(kLongText + u"@Implode(t:t; \"-\")"_s).errorCode(), fault::TextTooLong);
  EXPECT_EQ(valueOf(kLongText + u"@URLEncode(\"Domino\"; @ReplaceSubstring(t; \"a\"; \" \"))"_s).errorCode(),
            fault::TextTooLong);
  // As stored text: three bytes for each of these characters.
  EXPECT_EQ(valueOf(kLongText + u"@ReplaceSubstring(t; \"a\"; \"日\")"_s).errorCode(), fault::TextTooLong);
}

TEST(Abstracts, NeedADocument) {
  TestContext world;
  const Compiled compiled = compile(u"@AbstractSimple(\"Subject\")", {&world.environment});
  ASSERT_TRUE(compiled);
  Evaluation evaluation(compiled.formula, world.environment);
  EXPECT_EQ(evaluation.run(nullptr, nullptr).value.errorCode(), fault::NotInContext);
}

TEST(Abstracts, SeeWhatTheFormulaAssigned) {
  EXPECT_EQ(valueOf(u"FIELD Subject := \"Changed\"; @AbstractSimple(\"Subject\")"_s).text(), u"Changed");
}

TEST(Names, OfAnyMakeAreReadSomehow) {
  std::mt19937 random(19);
  for (int i = 0; i < 20000; ++i) {
    const QString text = randomText(random, u"aO=/CU1@<>()\" ", 14);
    const HierarchicalName name(text);
    EXPECT_LE(name.abbreviated().size(), text.size()) << text.toStdString();
    // Canonical names read as themselves.
    if (const QString canonical = name.canonical(); !canonical.isEmpty()) {
      EXPECT_EQ(HierarchicalName(canonical).canonical(), canonical) << text.toStdString();
    }
    const InternetName internet = readInternetName(text);
    EXPECT_EQ(internet.local.isEmpty(), internet.address.isEmpty()) << text.toStdString();
  }
}

}  // namespace
}  // namespace lens::formula

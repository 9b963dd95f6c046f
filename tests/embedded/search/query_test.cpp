// Full-text queries: what they mean, and where they are wrong.
#include "embedded/search/query.h"

#include <gtest/gtest.h>

#include "embedded/search/words.h"
#include "notes/runtime_error.h"

namespace lens {
namespace {
using namespace Qt::StringLiterals;

struct Meaning {
  const char16_t* query;
  const char16_t* tree;
};

void PrintTo(const Meaning& meaning, std::ostream* out) {
  *out << QString::fromUtf16(meaning.query).toStdString();
}

const Meaning kMeanings[] = {
    {u"pump", u"\"pump\""},
    {u"  pump   house ", u"\"pump house\""},
    {u"\"pump house\"", u"\"pump house\""},
    {u"a and b", u"(\"a\" AND \"b\")"},
    {u"a & b AND c", u"(\"a\" AND \"b\" AND \"c\")"},
    {u"a | b or c", u"(\"a\" OR \"b\" OR \"c\")"},
    {u"a, b ACCRUE c", u"(\"a\" OR \"b\" OR \"c\")"},
    {u"not a", u"NOT \"a\""},
    {u"!a", u"NOT \"a\""},
    {u"not not a", u"NOT NOT \"a\""},
    {u"a b not c", u"(\"a b\" AND NOT \"c\")"},
    {u"a or b and c", u"(\"a\" OR (\"b\" AND \"c\"))"},
    {u"a, b and c", u"(\"a\" OR (\"b\" AND \"c\"))"},
    {u"a or b, c", u"(\"a\" OR (\"b\" OR \"c\"))"},
    {u"(a or b) and c", u"((\"a\" OR \"b\") AND \"c\")"},
    {u"(a) (b)", u"(\"a\" AND \"b\")"},
    {u"\"a b\" c d", u"(\"a b\" AND \"c d\")"},
    {u"rock \"and\" roll", u"(\"rock\" AND \"and\" AND \"roll\")"},
    {u"\"rock and roll\"", u"\"rock and roll\""},
    {u"FIELD Subject CONTAINS pump house", u"Subject:\"pump house\""},
    {u"field Subject contains pump and b", u"(Subject:\"pump\" AND \"b\")"},
    {u"FIELD Subject CONTAINS (a or not b)", u"(Subject:\"a\" OR NOT Subject:\"b\")"},
    {u"FIELD Subject CONTAINS (a) and b", u"(Subject:\"a\" AND \"b\")"},
    {u"[Subject] contains \"x y\"", u"Subject:\"x y\""},
    {u"FIELD \"My Field\" CONTAINS a", u"My Field:\"a\""},
    {u"[Amount] = 10", u"Amount = \"10\""},
    {u"FIELD Amount >= -2.5 and a", u"(Amount >= \"-2.5\" AND \"a\")"},
    {u"field When<03/18/2024", u"When < \"03/18/2024\""},
    {u"field $Name <= 1", u"$Name <= \"1\""},
    {u"field x > 5 or field y contains z", u"(x > \"5\" OR y:\"z\")"},
    {u"pum* h?use", u"\"pum* h?use\""},
    {u"e-mail C++", u"\"e-mail C++\""},
    {u"\u0416\u0443\u043A & \u4E2D", u"(\"\u0416\u0443\u043A\" AND \"\u4E2D\")"},
};

struct Understood : ::testing::TestWithParam<Meaning> {};
TEST_P(Understood, AsItIsMeant) {
  EXPECT_EQ(shownQuery(parseQuery(GetParam().query)), QString::fromUtf16(GetParam().tree));
}
INSTANTIATE_TEST_SUITE_P(Query, Understood, ::testing::ValuesIn(kMeanings));

struct Mistake {
  const char16_t* query;
  const char16_t* end;  // of the message
};

void PrintTo(const Mistake& mistake, std::ostream* out) {
  *out << QString::fromUtf16(mistake.query).toStdString();
}

const Mistake kMistakes[] = {
    {u"a and", u"The query ends too early (character 6)"},
    {u"and a", u"A word is missing before (character 1): 'and'"},
    {u"a and or b", u"A word is missing before (character 7): 'or'"},
    {u"(a", u"The query ends too early (character 3)"},
    {u"a)", u"Something is missing before (character 2): ')'"},
    {u"()", u"A word is missing before (character 2): ')'"},
    {u"\"a", u"The closing \" is missing (character 1): '\"a'"},
    {u"a \"\"", u"There is no word in (character 3)"},
    {u"- & a", u"There is no word in (character 1): '-'"},
    {u"a & *", u"A wildcard needs a letter beside it in (character 5): '*'"},
    {u"?\?", u"A wildcard needs a letter beside it in (character 1): '?\?'"},
    {u"field", u"The query ends too early (character 6)"},
    {u"field and a", u"The name of a field is missing before (character 7): 'and'"},
    {u"field Subject pump", u"CONTAINS or a comparison is missing before (character 15): 'pump'"},
    {u"field Subject contains", u"The query ends too early (character 23)"},
    {u"field a contains (field b contains c)", u"There is a field within a field at (character 19): 'field'"},
    {u"[ ] contains a", u"The name of a field is missing at (character 1): ' '"},
    {u"[a contains b", u"The closing ] is missing (character 1): '[a contains b'"},
    {u"a]", u"There is no [ before (character 2): ']'"},
    {u"a = b", u"Something is missing before (character 3): '='"},
    {u"[a] > (1)", u"A word is missing before (character 7): '('"},
    {u"a sentence b",
     u"SENTENCE cannot be answered by the index; in quotes it is a word (character 3): 'sentence'"},
    {u"termweight 5 a",
     u"TERMWEIGHT cannot be answered by the index; in quotes it is a word (character 1): 'termweight'"},
    {u"", u"The query ends too early (character 1)"},
};

QString errorOf(QStringView query) {
  try {
    parseQuery(query);
  } catch (const RuntimeError& error) {
    EXPECT_EQ(error.number(), kQueryError);
    return error.description();
  }
  return u"(none)"_s;
}

struct Refused : ::testing::TestWithParam<Mistake> {};
TEST_P(Refused, WithReasonAndPlace) {
  EXPECT_EQ(errorOf(GetParam().query),
            u"The query cannot be understood. "_s + QString::fromUtf16(GetParam().end));
}
INSTANTIATE_TEST_SUITE_P(Query, Refused, ::testing::ValuesIn(kMistakes));

TEST(Query, GroupsWithinEachOtherAreCounted) {
  EXPECT_EQ(shownQuery(parseQuery(QString(60, u'(') + u'a' + QString(60, u')'))), u"\"a\""_s);
  EXPECT_TRUE(errorOf(QString(5000, u'(')).contains(u"too many groups"_s));
  EXPECT_TRUE(errorOf(QString(5000, u'!') + u'a').contains(u"too many groups"_s));
}

TEST(Query, OfAMegabyteIsRefused) {
  EXPECT_TRUE(errorOf(QString(1024 * 1024, u'a')).contains(u"longer than 16384 characters"_s));
}

TEST(Words, AreFoldedRunsOfLettersAndDigits) {
  const auto words = [](const QString& text) {
    QStringList found;
    forEachWord(text, [&](QStringView word) { found.append(word.toString()); });
    return found.join(u'|');
  };
  EXPECT_EQ(words(u"Pump-House 3.5, it's_done!"_s), u"pump|house|3|5|it|s|done"_s);
  EXPECT_EQ(words(u"\u00C9t\u00E9 E\u0301te\u0301 \u00C5NGSTR\u00D6M"_s), u"ete|ete|angstrom"_s);
  EXPECT_EQ(words(u"Stra\u00DFe STRASSE"_s), u"strasse|strasse"_s);
  EXPECT_EQ(words(u"\u039B\u03CC\u03B3\u03BF\u03C2 \u039B\u039F\u0393\u039F\u03A3"_s),
            u"\u03BB\u03BF\u03B3\u03BF\u03C3|\u03BB\u03BF\u03B3\u03BF\u03C3"_s);
  EXPECT_EQ(words(u"\uFF21\uFF22\uFF11 \uFB01n"_s), u"ab1|fin"_s) << "full width and ligature";
  EXPECT_EQ(words(u"\u4E2D\u6587abc\u6587"_s), u"\u4E2D|\u6587|abc|\u6587"_s) << "ideographs stand alone";
  EXPECT_EQ(words(u"\u041C\u041E\u0421\u041A\u0412\u0410 \u0915\u093F\u0924\u093E\u092C"_s),
            u"\u043C\u043E\u0441\u043A\u0432\u0430|\u0915\u093F\u0924\u093E\u092C"_s);
  EXPECT_EQ(words(u"a\0b \uE000c\uE001 \xD800 *?"_s), u"a|b|c"_s) << "nothing else is a letter";
  EXPECT_EQ(words(QString(200, u'x')).size(), 64);
  EXPECT_EQ(words(QString(200, u'\u00E9')).size(), 64);
}

TEST(Words, FitPatterns) {
  EXPECT_TRUE(fitsPattern(u"house", u"h*s?"));
  EXPECT_TRUE(fitsPattern(u"house", u"*"));
  EXPECT_TRUE(fitsPattern(u"house", u"house*"));
  EXPECT_TRUE(fitsPattern(u"aabaab", u"*aab"));
  EXPECT_FALSE(fitsPattern(u"house", u"h?se"));
  EXPECT_FALSE(fitsPattern(u"house", u"hous"));
  EXPECT_FALSE(fitsPattern(u"hous", u"house?"));
  EXPECT_FALSE(fitsPattern(QString(64, u'a'), QStringLiteral("a*").repeated(30) + u'b'));
}

}  // namespace
}  // namespace lens

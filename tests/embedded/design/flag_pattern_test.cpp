#include "embedded/design/flag_pattern.h"

#include <gtest/gtest.h>

#include <QString>

using namespace lens;
using namespace Qt::Literals::StringLiterals;

TEST(FlagPattern, PlusWantsOneOfItsLettersMinusNoneAndStarAll) {
  EXPECT_TRUE(matchesFlags(u"+ab", u"xb"));
  EXPECT_FALSE(matchesFlags(u"+ab", u"xyz"));
  EXPECT_FALSE(matchesFlags(u"+ab", u""));
  EXPECT_TRUE(matchesFlags(u"-ab", u"xyz"));
  EXPECT_TRUE(matchesFlags(u"-ab", u""));
  EXPECT_FALSE(matchesFlags(u"-ab", u"xyza"));
  EXPECT_TRUE(matchesFlags(u"*ab", u"bxa"));
  EXPECT_FALSE(matchesFlags(u"*ab", u"bx"));
}

TEST(FlagPattern, ParenthesisWantsAllItsParts) {
  for (const QString& fits : {u"ae f"_s, u"fbe"_s, u"eafx"_s}) EXPECT_TRUE(matchesFlags(u"(+ab-cd*ef", fits));
  for (const QString& fails : {u"ef"_s, u"aef c"_s, u"ae"_s, u""_s})
    EXPECT_FALSE(matchesFlags(u"(+ab-cd*ef", fails)) << fails.toStdString();
  EXPECT_TRUE(matchesFlags(u"(+s-jh.*", u"s34Q"));
  EXPECT_FALSE(matchesFlags(u"(+s-jh.*", u"sj"));
}

TEST(FlagPattern, APartWithoutLettersHolds) {
  for (const QString& pattern : {u""_s, u"+"_s, u"-"_s, u"*"_s, u"("_s, u"(+-*"_s, u"(+-c*"_s})
    for (const QString& flags : {u""_s, u"ab"_s})
      EXPECT_TRUE(matchesFlags(pattern, flags)) << pattern.toStdString();
}

TEST(FlagPattern, LettersCountWithTheirCase) {
  EXPECT_FALSE(matchesFlags(u"+F", u"f"));
  EXPECT_TRUE(matchesFlags(u"-F", u"f"));
  EXPECT_FALSE(matchesFlags(u"*g~", u"G~"));
}

TEST(FlagPattern, SignsAmongTheLettersOfASinglePartAreLetters) {
  EXPECT_TRUE(matchesFlags(u"+a-", u"-"));
  EXPECT_FALSE(matchesFlags(u"-a*", u"*"));
}

TEST(FlagPattern, WithoutASignNothingMatches) {
  EXPECT_FALSE(matchesFlags(u"ab", u"ab"));
}

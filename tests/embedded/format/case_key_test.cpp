#include "embedded/format/case_key.h"

#include <gtest/gtest.h>

namespace lens {
namespace {
using namespace Qt::StringLiterals;

QString text(char32_t character) {
  return QString::fromUcs4(&character, 1);
}

TEST(CaseKeys, AreTheSameExactlyForNamesThatMatch) {
  int matching = 0;
  for (char32_t c = 0x20; c < 0x11000; ++c) {
    if (QChar::isSurrogate(c)) continue;
    for (const char32_t other :
         {QChar::toUpper(c), QChar::toLower(c), QChar::toTitleCase(c), char32_t(c + 1)}) {
      const QString a = u"x"_s + text(c), b = u"X"_s + text(other);
      ASSERT_EQ(caseKey(a) == caseKey(b), sameCaseKey(a, b)) << uint(c) << " " << uint(other);
      matching += other != c && caseKey(a) == caseKey(b);
    }
  }
  EXPECT_GT(matching, 1000);
}

TEST(CaseKeys, DoNotMakeTwoLettersOfOne) {
  EXPECT_EQ(caseKey(u"Stra\u00DFe"), u"stra\u00DFe"_s);
  EXPECT_NE(caseKey(u"Stra\u00DFe"), caseKey(u"Strasse"));
  EXPECT_EQ(caseKey(u"$REF"), caseKey(u"$ref"));
  EXPECT_EQ(caseKey(u"\U00010400"), caseKey(u"\U00010428")) << "letters beyond the first plane";
  EXPECT_EQ(caseKey({}), QString());
  const char16_t half[] = {0xD801, u'A', 0};
  EXPECT_EQ(caseKey(half).size(), 2) << "half a character is kept as it is";
}

}  // namespace
}  // namespace lens

#include "notes/code_page.h"

#include <gtest/gtest.h>

#include "notes/note_reading.h"
#include "support/printers.h"

namespace lens {
namespace {

TEST(CodePage, IsOneByteForOneUnit) {
  EXPECT_EQ(toCodePage(u"Gr\u00f6\u00dfe"), QByteArray("Gr\xf6\xdf"
                                                       "e"));
  EXPECT_EQ(toCodePage(u"\u20ac\u201e"), QByteArray("\x80\x84"));
  EXPECT_EQ(toCodePage(u"a\u4e00b"), QByteArray("a?b"));
  EXPECT_EQ(toCodePage(u"\U0001F600").size(), 2);
}

TEST(CodePage, GivesEveryByteBack) {
  for (int byte = 0; byte < 256; ++byte) {
    const QByteArray one(1, char(byte));
    EXPECT_EQ(toCodePage(fromCodePage(one)), one) << byte;
  }
}

TEST(ActionText, TurnsControlBytesAndBytesAbove125IntoBlanks) {
  EXPECT_EQ(legibleText("a}~b\x01\x7f\xe9", 7), "a} b   ");
  EXPECT_EQ(legibleText("l1\r\nl2", 6), "l1\r\nl2");
}

TEST(ActionText, EndsAtAZeroByteAtTheCountAndAtTheEndOfTheBytes) {
  EXPECT_EQ(legibleText(QByteArray("ab\0cd", 5), 5), "ab");
  EXPECT_EQ(legibleText("abcdef", 3), "abc");
  EXPECT_EQ(legibleText("abc", 32767), "abc");
  EXPECT_EQ(legibleText("abc", -1), "");
}

TEST(StoredLength, IsWithoutTheWordsThatAreNoContent) {
  EXPECT_EQ(contentLength(0x501, 16), 10);
  EXPECT_EQ(contentLength(4, 20), 18);
  EXPECT_EQ(contentLength(0x500, 12), 12);
  EXPECT_EQ(contentLength(0x501, 4), -2);
}

}  // namespace
}  // namespace lens

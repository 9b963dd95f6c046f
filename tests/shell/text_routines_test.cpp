#include "shell/text_routines.h"

#include <gtest/gtest.h>

#include <random>

#include "notes/abbreviate_name.h"
#include "notes/numbers.h"
#include "support/printers.h"

namespace lens {
using namespace Qt::StringLiterals;
namespace {

template <class Statement>
int raised(Statement&& statement) {
  try {
    statement();
    return 0;
  } catch (const RuntimeError& error) {
    return error.number();
  }
}

TEST(LeftFrom, IsTheTextBeforeTheFirstMarkerAndEmptyWithoutOne) {
  EXPECT_EQ(leftFrom(u"ACME-HUB01/O=Acme"_s, u"/"_s), "ACME-HUB01");
  EXPECT_EQ(leftFrom(u"a/b/c"_s, u"/"_s), "a");
  EXPECT_EQ(leftFrom(u"FLAT"_s, u"/"_s), "");
  EXPECT_EQ(leftFrom(u"/x"_s, u"/"_s), "");
}

TEST(RightFrom, IsTheTextBehindTheFirstMarkerAndAllOfItWithoutOne) {
  EXPECT_EQ(rightFrom(u"CN=Hub/O=Acme"_s, u"CN="_s), "Hub/O=Acme");
  EXPECT_EQ(rightFrom(u"Hub/O=Acme"_s, u"CN="_s), "Hub/O=Acme");
  EXPECT_EQ(rightFrom(u"a:b:c"_s, u":"_s), "b:c");
}

TEST(ServerCommonName, ComesFromBothAndIsEmptyForAFlatName) {
  const auto commonName = [](const QString& server) { return leftFrom(rightFrom(server, u"CN="_s), u"/"_s); };
  EXPECT_EQ(commonName(u"CN=ACME-HUB01/O=Acme"_s), "ACME-HUB01");
  EXPECT_EQ(commonName(u"FLATSERVER"_s), "");
  EXPECT_EQ(commonName(QString()), "");
}

TEST(MarkerPosition, OverflowsBehind32767) {
  const QString fits = QString(32766, u'x') + u"#tail";
  const QString tooFar = QString(32767, u'x') + u"#tail";
  EXPECT_EQ(leftFrom(fits, u"#"_s).size(), 32766);
  EXPECT_EQ(rightFrom(fits, u"#"_s), "tail");
  EXPECT_EQ(raised([&] { leftFrom(tooFar, u"#"_s); }), err::Overflow);
  EXPECT_EQ(raised([&] { rightFrom(tooFar, u"#"_s); }), err::Overflow);
  QString text = tooFar;
  EXPECT_EQ(raised([&] { element(text, u"#"_s); }), err::Overflow);
}

TEST(ReplaceAll, DoesNotLookAgainAtWhatItPutIn) {
  EXPECT_EQ(replaceAllText(u"aXbX"_s, u"X"_s, u"XX"_s), "aXXbXX");
  EXPECT_EQ(replaceAllText(u"aaa"_s, u"aa"_s, u"b"_s), "ba");
  EXPECT_EQ(replaceAllText(u"abc"_s, QString(), u"x"_s), "abc");
  EXPECT_EQ(replaceAllText(QString(), u"a"_s, u"x"_s), "");
  EXPECT_EQ(replaceAllText(u"Aa"_s, u"a"_s, u"x"_s), "Ax");
}

TEST(ReplaceAll, IsNotLimitedTo16Bits) {
  const QString text = QString(40000, u'x') + u"#";
  EXPECT_EQ(replaceAllText(text, u"#"_s, u"!"_s), QString(40000, u'x') + u"!");
}

TEST(ReplaceAll, AgreesWithANaiveWalkOverRandomTexts) {
  std::mt19937 random(7);
  const auto any = [&](int most) {
    QString text;
    for (int i = int(random() % (most + 1)); i > 0; --i) text += QChar(char16_t(u'a' + random() % 3));
    return text;
  };
  for (int round = 0; round < 2000; ++round) {
    const QString text = any(30), find = any(3), replace = any(4);
    QString naive, rest = text;
    while (!find.isEmpty() && !rest.isEmpty()) {
      if (rest.startsWith(find)) {
        naive += replace;
        rest.remove(0, find.size());
      } else {
        naive += rest[0];
        rest.remove(0, 1);
      }
    }
    naive += rest;
    EXPECT_EQ(replaceAllText(text, find, replace), naive)
        << text.toStdString() << " / " << find.toStdString() << " / " << replace.toStdString();
  }
}

struct ElementCase {
  const char16_t* text;
  const char16_t* separator;
  const char16_t* first;
  const char16_t* rest;
};

TEST(Element, CutsTheFirstPieceWithItsOddities) {
  const ElementCase cases[] = {
      {u"", u";", u"", u""},        // nothing to cut
      {u"abc", u";", u"abc", u""},  // no separator: all of it
      {u"a;b;c", u";", u"a", u"b;c"},
      {u"a;", u";", u"a", u""},
      {u";x", u";", u" ", u""},  // the single character behind a leading separator is lost
      {u";xy", u";", u" ", u"xy"},
      {u";", u";", u" ", u""},
      {u"\r\nabc", u"\r\n", u" ", u"\nabc"},  // one character is dropped, whatever the separator's length
      {u"ab\r\ncd", u"\r\n", u"ab", u"cd"},
  };
  for (const ElementCase& row : cases) {
    QString text = QString::fromUtf16(row.text);
    EXPECT_EQ(element(text, QString::fromUtf16(row.separator)), QString::fromUtf16(row.first))
        << QString::fromUtf16(row.text).toStdString();
    EXPECT_EQ(text, QString::fromUtf16(row.rest)) << QString::fromUtf16(row.text).toStdString();
  }
}

TEST(AbbreviateName, RemovesTheLabelsWhereverTheyStand) {
  EXPECT_EQ(abbreviateName(u"CN=Karin Meier/OU=Sales/O=Acme/C=DE"_s), "Karin Meier/Sales/Acme/DE");
  EXPECT_EQ(abbreviateName(QString()), "");
  EXPECT_EQ(abbreviateName(u"CN=RADIO=X/O=Acme"_s), "RADIX/Acme");
}

TEST(UnsignedDec2Hex, Covers32BitsAndGivesMinusOneOutside) {
  EXPECT_EQ(unsignedDec2Hex(4294967295.0), "FFFFFFFF");
  EXPECT_EQ(unsignedDec2Hex(4294967296.0), "-1");
  EXPECT_EQ(unsignedDec2Hex(0), "0");
  EXPECT_EQ(unsignedDec2Hex(-1), "-1");
  EXPECT_EQ(unsignedDec2Hex(-0.4), "-1");
  EXPECT_EQ(unsignedDec2Hex(2147483648.0), "80000000");
  EXPECT_EQ(unsignedDec2Hex(u"4294901776"_s), "FFFF0010");
  EXPECT_EQ(unsignedDec2Hex(u"2.5"_s), "2");
  EXPECT_EQ(raised([] { unsignedDec2Hex(u"abc"_s); }), err::TypeMismatch);
}

TEST(HexStringToBinary, ReadsUpToTwelveDigits) {
  EXPECT_EQ(hexStringToBinary(u"FFFFFFFFFFFF"_s).text(), "281474976710655");
  EXPECT_EQ(hexStringToBinary(u"8fa2"_s).text(), "36770");
  EXPECT_EQ(hexStringToBinary(u"1G"_s).text(), "16");
  EXPECT_EQ(hexStringToBinary(QString()).text(), "");
  EXPECT_EQ(hexStringToBinary(u"0000000000001"_s).text(), "");
  EXPECT_TRUE(hexStringToBinary(u"0000000000001"_s).isEmpty());
}

TEST(NoteIdText, IsPaddedToEightAndCutToItsLastEight) {
  EXPECT_EQ(eightDigits(u"902"_s), "00000902");
  EXPECT_EQ(eightDigits(u"123456789AB"_s), "456789AB");
  EXPECT_EQ(eightDigits(QString()), "00000000");
}

TEST(WidenLineFeeds, LeavesAnExtraCarriageReturnWhereThereWasOne) {
  EXPECT_EQ(widenLineFeeds(u"a\nb\r\nc\rd"_s), "a\r\nb\r\r\nc\rd");
  for (int bits = 0; bits < 1 << 10; ++bits) {
    QString text(10, u'a');
    for (int place = 0; place < 10; ++place)
      if (bits >> place & 1) text[place] = u'\n';
    const QString kept = text;
    EXPECT_EQ(widenLineFeeds(text), replaceAllText(text, u"\n"_s, u"\r\n"_s));
    EXPECT_EQ(text, kept);
  }
  EXPECT_EQ(widenLineFeeds(QString()), QString());
}

TEST(TrimBlanks, LeavesLineEndsAndTabs) {
  EXPECT_EQ(trimBlanks(u"  \r\na b\t "_s), "\r\na b\t");
  EXPECT_EQ(trimBlanks(u"   "_s), "");
}

TEST(UpperUnits, IsOneUnitForOne) {
  EXPECT_EQ(upperUnits(u"Straße"_s), u"STRAßE"_s);
  EXPECT_EQ(upperUnits(u"é"_s), u"É"_s);
}

}  // namespace
}  // namespace lens

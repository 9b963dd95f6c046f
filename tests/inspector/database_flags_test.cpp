// Which parts of the legend the letters of "$Flags" name, with all the oddities of the search.
#include "inspector/database_flags.h"

#include <gtest/gtest.h>

#include <QCryptographicHash>
#include <QStringList>

#include "support/printers.h"

namespace lens {
namespace {
using namespace Qt::StringLiterals;

// The named parts themselves.
QStringList named(const QString& flags) {
  const QString legend = databaseLegend();
  QStringList parts;
  for (const Stretch& stretch : flagStretches(flags, legend))
    parts += legend.mid(stretch.start, stretch.length);
  return parts;
}

// The first words of the named parts, up to the first blank behind " = ".
QStringList heads(const QString& flags) {
  QStringList result;
  for (const QString& part : named(flags)) result += part.section(u' ', 0, 2);
  return result;
}

TEST(DatabaseLegend, EndsEachLineInALoneCarriageReturn) {
  const QString legend = databaseLegend();
  EXPECT_FALSE(legend.contains(u'\n'));
  EXPECT_EQ(legend.count(u'\r'), 61 + 6);
  EXPECT_TRUE(legend.endsWith(u"standard sorting.\r"));
  EXPECT_TRUE(
      legend.startsWith(u"The content below details the majority of Database Properties that are recorded "
                        "in the $Flags item in the icon design element. Note that not all database "
                        "property settings are recorded in the $Flags item.\r\rBasics tab\rJ = Use "));
}

TEST(DatabaseLegend, HasItsBlankLinesInThesePlaces) {
  QStringList behind;
  const QStringList lines = databaseLegend().split(u'\r');
  for (int i = 1; i + 1 < lines.size(); ++i)
    if (lines[i].isEmpty()) behind += lines[i - 1].left(26);
  EXPECT_EQ(behind, QStringList({u"The content below details "_s, u"r = Type: MailFile."_s,
                                 u"4 = Allow soft deletes."_s, u"    The following Advanced"_s,
                                 u"-v = Enable 'Compress docu"_s, u"y = Maximize document prev"_s}));
}

// People look these lines up word by word: no letter of them changes unnoticed.
TEST(DatabaseLegend, IsWordForWordAsItWas) {
  const QByteArray legend = databaseLegend().toUtf8();
  EXPECT_EQ(legend.size(), 4667);
  EXPECT_EQ(QCryptographicHash::hash(legend, QCryptographicHash::Sha256).toHex(),
            "fef48ecbbbf03ed12ef3e636e96203cd0d19d5f67ac81127d01a3bf79ac4cb01");
}

TEST(DatabaseLegend, KeepsItsUnusualWords) {
  const QString legend = databaseLegend();
  EXPECT_TRUE(
      legend.contains(u"\r\r    The following Advanced tab settings were introduced in Notes 8.0:\r\r"));
  EXPECT_TRUE(legend.contains(u"'Restore as lasted viewed by user'.\r"));
  EXPECT_TRUE(legend.contains(u"Open designated docLink. Note:"));
  EXPECT_TRUE(legend.contains(u"(neither Q or QU) = Replicate Unread Marks: Never."));
}

TEST(FlagStretches, OfNoFlagsAreNone) {
  EXPECT_EQ(heads(QString()), QStringList());
}

TEST(FlagStretches, ReachToTheEndOfTheLine) {
  EXPECT_EQ(named(u"J"_s), QStringList(u"J = Use JavaScript when generating pages."_s));
  EXPECT_EQ(named(u"u"_s), QStringList(u"u = Type: Portfolio."_s));
}

// Every line that explains a single letter is the one that its letter finds, save those told below.
TEST(FlagStretches, FindTheLineOfEachLetter) {
  const QString letters = u"JX85figjbBmuArQ231Z74qNHnCFlpadPSELDTVwxy6hGM"_s;
  for (const QChar letter : letters) {
    const QStringList found = named(QString(letter));
    ASSERT_EQ(found.size(), 1) << letter.toLatin1();
    EXPECT_TRUE(found[0].startsWith(letter + u" = "_s)) << found[0].toStdString();
    EXPECT_TRUE(databaseLegend().contains(u'\r' + found[0] + u'\r')) << found[0].toStdString();
  }
}

TEST(FlagStretches, ComeInTheOrderOfTheFlags) {
  EXPECT_EQ(heads(u"rJA"_s), QStringList({u"r = Type:"_s, u"J = Use"_s, u"A = Type:"_s}));
  EXPECT_EQ(heads(u"JJ"_s).size(), 2);
}

TEST(FlagStretches, TellLettersByCase) {
  EXPECT_EQ(named(u"b"_s), QStringList(u"b = Type: Domino Directory."_s));
  EXPECT_EQ(named(u"B"_s), QStringList(u"B = Type: Directory Catalog."_s));
  EXPECT_EQ(named(u"R"_s), QStringList());
}

TEST(FlagStretches, OfLettersWithoutALineAreNone) {
  EXPECT_EQ(named(u"zK!09cO"_s), QStringList());
  EXPECT_EQ(named(u"\u00E9\u4E2D\U0001F600\r\n "_s + QChar(0)), QStringList());
}

TEST(FlagStretches, OfALetterWithTwoLinesIsTheFirst) {
  EXPECT_EQ(named(u"Z"_s), QStringList(u"Z = Don't maintain unread marks."_s));
}

TEST(FlagStretches, OfALoneSAreTheTailOfAnotherLine) {
  EXPECT_EQ(named(u"s"_s),
            QStringList(u"s = When opened in Notes: Launch designated navigator in its own window. "
                        "Note: Requires $DefaultNavigator be set to desired navigator."_s));
  EXPECT_EQ(heads(u"ls"_s), QStringList({u"l = When"_s, u"s = When"_s}));
}

TEST(FlagStretches, OfABracketAreTheTailOfTheLineThatHoldsIt) {
  EXPECT_EQ(heads(u")"_s), QStringList(u") = Replicate"_s));
}

TEST(FlagStretches, TakeQuTogether) {
  EXPECT_EQ(heads(u"QU"_s), QStringList(u"QU = Replicate"_s));
  EXPECT_EQ(heads(u"aQUb"_s), QStringList({u"a = When"_s, u"QU = Replicate"_s, u"b = Type:"_s}));
  EXPECT_EQ(named(u"Q"_s)[0].left(48), "Q = Replicate Unread Marks: Clustered Servers On");
}

TEST(FlagStretches, OfUqAreATailAndTheLineOfQ) {
  EXPECT_EQ(
      named(u"UQ"_s),
      QStringList({u"U = Replicate Unread Marks: All Servers. Note: $FlagsNoRefresh should also be set to "
                   "include QU and remove 'v' if present."_s,
                   u"Q = Replicate Unread Marks: Clustered Servers Only. Note: $FlagsNoRefresh should also "
                   "be set to include Q and remove 'v' if present."_s}));
}

// --- minus pairs ---

TEST(FlagStretches, OfAPairAtTheStartIsItsLine) {
  EXPECT_EQ(heads(u"-C"_s), QStringList(u"-C = Copy-style"_s));
  EXPECT_EQ(heads(u"-N"_s), QStringList(u"-N = Disable"_s));
  EXPECT_EQ(heads(u"-n"_s), QStringList(u"-n = Enable"_s));
  EXPECT_EQ(named(u"-V"_s)[0].left(35), "-V = Disable 'Compress document dat");
  EXPECT_EQ(named(u"-v"_s)[0].left(34), "-v = Enable 'Compress document dat");
  EXPECT_EQ(heads(u"-Cx"_s), QStringList({u"-C = Copy-style"_s, u"x = Preview"_s}));
}

TEST(FlagStretches, OfALaterPairAreNoneWhereLettersFollow) {
  EXPECT_EQ(heads(u"a-Cx"_s), QStringList({u"a = When"_s, u"x = Preview"_s}));
  EXPECT_EQ(heads(u"ab-Cxy"_s),
            QStringList({u"a = When"_s, u"b = Type:"_s, u"x = Preview"_s, u"y = Maximize"_s}));
}

TEST(FlagStretches, OfALaterPairAtTheEndIsItsLine) {
  EXPECT_EQ(heads(u"a-C"_s), QStringList({u"a = When"_s, u"-C = Copy-style"_s}));
  EXPECT_EQ(heads(u"abJ-v"_s).last(), "-v = Enable");
}

TEST(FlagStretches, OfTwoPairsAreTheFirstAndTheLast) {
  EXPECT_EQ(heads(u"-C-N"_s), QStringList({u"-C = Copy-style"_s, u"-N = Disable"_s}));
  EXPECT_EQ(heads(u"-C-N-V"_s), QStringList({u"-C = Copy-style"_s, u"-V = Disable"_s}));
}

TEST(FlagStretches, OfALoneMinusAreNone) {
  EXPECT_EQ(named(u"-"_s), QStringList());
  EXPECT_EQ(named(u"J-"_s), QStringList(u"J = Use JavaScript when generating pages."_s));
  EXPECT_EQ(named(u"--"_s), QStringList());
  EXPECT_EQ(named(u"-x"_s), QStringList());
}

TEST(FlagStretches, PassTheMinusLineOfALetter) {
  EXPECT_TRUE(named(u"C"_s)[0].startsWith(u"C = Show 'About Database' document if modified"));
  EXPECT_TRUE(named(u"n"_s)[0].startsWith(u"n = disables Show 'About Database'"));
  EXPECT_TRUE(named(u"V"_s)[0].startsWith(u"V = When opened in a browser:"));
  // Its line stands above the minus line.
  EXPECT_EQ(named(u"N"_s), QStringList(u"N = Compress document data."_s));
}

TEST(FlagStretches, OfALetterWithAMinusLineOnlyAreNone) {
  EXPECT_EQ(named(u"v"_s), QStringList());
}

// --- other texts than the legend ---

TEST(FlagStretches, PassOneMinusLineAndNoMore) {
  EXPECT_EQ(flagStretches(u"C", u"-C = a\r-C = b\rC = c\r"), QVector<Stretch>({{8, 5}}));
}

TEST(FlagStretches, HaveANegativeLengthWhereNoLineEndFollows) {
  EXPECT_EQ(flagStretches(u"J", u"\rJ = x"), QVector<Stretch>({{1, -2}}));
}

TEST(FlagStretches, OfAVeryLongTextAreFoundInTime) {
  EXPECT_EQ(flagStretches(QString(32767, u'r'), databaseLegend()).size(), 32767);
  EXPECT_EQ(flagStretches(QString(32767, u'-'), databaseLegend()).size(), 0);
}

}  // namespace
}  // namespace lens

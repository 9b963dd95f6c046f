// Search and replace across runs, and joining runs.
#include <gtest/gtest.h>

#include <QRandomGenerator>
#include <limits>

#include "embedded/richtext/rich_text.h"

namespace lens {
namespace {

using namespace Qt::Literals::StringLiterals;
using Kind = RichElement::Kind;

constexpr int kEverywhere = std::numeric_limits<int>::max();
constexpr RichFont kPlain{1, 0, 0, 10}, kBold{1, 1, 0, 10};

// Paragraphs parted by "¶", runs by "|"; every second run of a paragraph is bold.
RichText rich(const QString& picture) {
  RichText text;
  for (const QString& paragraph : picture.split(u'¶')) {
    text.beginParagraph();
    bool bold = false;
    for (const QString& run : paragraph.split(u'|')) {
      text.appendText(run, bold ? kBold : kPlain);
      bold = !bold;
    }
  }
  return text;
}

// The same picture of a text: a bold run stands between bars.
QString picture(const RichText& text) {
  QString drawn;
  bool first = true, bold = false;
  for (const RichElement& element : text.elements()) {
    if (element.kind == Kind::Paragraph) {
      if (!first) drawn += u'¶';
      first = bold = false;
    } else if (element.kind == Kind::Text || element.kind == Kind::Break) {
      const bool now = element.font.attributes & 1;
      if (now != bold) drawn += u'|';
      bold = now;
      drawn += element.kind == Kind::Break ? u"\n"_s : element.text;
    }
  }
  return drawn;
}

struct Row {
  const char16_t* before;
  const char16_t* search;
  const char16_t* replacement;
  Qt::CaseSensitivity cs;
  int most;
  int found;
  const char16_t* after;
};

constexpr Qt::CaseSensitivity kExact = Qt::CaseSensitive, kIgnore = Qt::CaseInsensitive;

const Row kRows[] = {
    {u"one two one", u"one", u"1", kExact, kEverywhere, 2, u"1 two 1"},
    {u"one two one", u"one", u"1", kExact, 1, 1, u"1 two one"},
    {u"One oNE", u"one", u"1", kIgnore, kEverywhere, 2, u"1 1"},
    {u"One oNE one", u"one", u"1", kExact, kEverywhere, 1, u"One oNE 1"},
    {u"One oNE", u"one", u"1", kIgnore, 1, 1, u"1 oNE"},
    {u"abc", u"", u"x", kExact, kEverywhere, 0, u"abc"},
    {u"", u"a", u"b", kExact, kEverywhere, 0, u""},
    {u"abc", u"abcd", u"x", kExact, kEverywhere, 0, u"abc"},
    {u"aaaa", u"aa", u"a", kExact, kEverywhere, 2, u"aa"},
    {u"a", u"a", u"aa", kExact, kEverywhere, 1, u"aa"},
    {u"aaa", u"a", u"aa", kExact, kEverywhere, 3, u"aaaaaa"},
    {u"abab", u"ab", u"", kExact, kEverywhere, 2, u""},
    {u"abc", u"b", u"", kExact, kEverywhere, 1, u"ac"},
    // Half of the hit is bold: the first half's look.
    {u"the old na|me here", u"name", u"title", kExact, kEverywhere, 1, u"the old title| here"},
    {u"x|NA|me", u"name", u"title", kIgnore, kEverywhere, 1, u"x|title"},
    {u"a|b|c", u"abc", u"x", kExact, kEverywhere, 1, u"x"},
    {u"a|b|c", u"b", u"x", kExact, kEverywhere, 1, u"a|x|c"},
    {u"a|ba|b", u"ab", u"-", kExact, kEverywhere, 2, u"-|-"},
    {u"a|b", u"b", u"", kExact, kEverywhere, 1, u"a"},
    // Paragraphs are borders, cells too.
    {u"ab¶cd", u"bc", u"x", kExact, kEverywhere, 0, u"ab¶cd"},
    {u"ab¶ab", u"ab", u"x", kExact, kEverywhere, 2, u"x¶x"},
    {u"ab¶ab", u"ab", u"x", kExact, 1, 1, u"x¶ab"},
    {u"¶¶a¶", u"a", u"b", kExact, kEverywhere, 1, u"¶¶b¶"},
    // A line end inside a paragraph is a character like others, however it is written.
    {u"a\nb", u"a\r\nb", u"x", kExact, kEverywhere, 1, u"x"},
    {u"a|\n|b", u"a\nb", u"x", kExact, kEverywhere, 1, u"x"},
    {u"ab", u"a", u"1\r\n2", kExact, kEverywhere, 1, u"1\n2b"},
    {u"Ärger ärger", u"ÄRGER", u"Spaß", kIgnore, kEverywhere, 2, u"Spaß Spaß"},
    {u"\U0001F600x\U0001F600", u"\U0001F600", u"y", kExact, kEverywhere, 2, u"yxy"},
    {u"100% (a+b)", u"(a+b)", u"c", kExact, kEverywhere, 1, u"100% c"},
};

TEST(ReplaceInRuns, DoesWhatTheTableSays) {
  int number = 0;
  for (const Row& row : kRows) {
    RichText text = rich(QString::fromUtf16(row.before));
    EXPECT_EQ(
        text.replace(QString::fromUtf16(row.search), QString::fromUtf16(row.replacement), row.cs, row.most),
        row.found)
        << "row " << number;
    EXPECT_EQ(picture(text), QString::fromUtf16(row.after)) << "row " << number;
    const RichText again = RichText::fromBytes(text.toBytes());
    EXPECT_TRUE(again.complete());
    EXPECT_EQ(picture(again), picture(text)) << "row " << number;
    ++number;
  }
}

TEST(ReplaceInRuns, RecordsBetweenThemStayWhereTheyAre) {
  RichText text;
  text.appendText(u"see "_s);
  text.appendAttachment(u"A1"_s, u"see.pdf"_s);
  text.appendText(u"see"_s);
  EXPECT_EQ(text.replace(u"see"_s, u"read"_s, kExact, kEverywhere), 2);
  QVector<Kind> kinds;
  for (const RichElement& element : text.elements()) kinds.push_back(element.kind);
  EXPECT_EQ(kinds, (QVector<Kind>{Kind::Paragraph, Kind::Text, Kind::Attachment, Kind::Raw, Kind::Text}));
  EXPECT_EQ(text.elements()[2].caption, u"see.pdf"_s);
}

TEST(ReplaceInRuns, AReplacementLongerThanARecordIsSpread) {
  RichText text = rich(u"x"_s);
  const QString longText(200'000, u'ä');
  EXPECT_EQ(text.replace(u"x"_s, longText, kExact, kEverywhere), 1);
  EXPECT_EQ(RichText::fromBytes(text.toBytes()).plainText(), longText);
}

// The plain text of one paragraph is replaced as a plain text is, whatever the runs.
TEST(ReplaceInRuns, AgreesWithPlainTextForRandomTexts) {
  QRandomGenerator random(20'240);
  const auto letters = [&](int most) {
    QString text;
    for (int i = random.bounded(most + 1); i > 0; --i) text += u"abA"[random.bounded(3)];
    return text;
  };
  for (int round = 0; round < 3000; ++round) {
    QString plain;
    RichText text;
    text.beginParagraph();
    for (int run = random.bounded(6); run > 0; --run) {
      const QString part = letters(4);
      text.appendText(part, random.bounded(2) ? kBold : kPlain);
      plain += part;
    }
    const QString search = letters(2) + u'a', replacement = letters(3);
    const Qt::CaseSensitivity cs = random.bounded(2) ? kExact : kIgnore;
    const int expected = int(plain.count(search, cs));
    const int found = text.replace(search, replacement, cs, kEverywhere);
    // count() tells overlapping hits too.
    EXPECT_LE(found, expected);
    EXPECT_EQ(found == 0, expected == 0);
    ASSERT_EQ(text.plainText(), plain.replace(search, replacement, cs)) << round;
    text.compact();
    ASSERT_EQ(text.plainText(), plain);
    ASSERT_EQ(RichText::fromBytes(text.toBytes()).plainText(), plain);
  }
}

TEST(CompactRuns, NeighboursOfOneFontBecomeOne) {
  RichText text;
  text.appendText(u"a"_s, kPlain);
  text.appendText(u"b"_s, kPlain);
  text.appendBreak();
  text.appendText(u"c"_s, kBold);
  text.appendText(u"d"_s, kBold);
  text.beginParagraph();
  text.appendText(u"e"_s, kBold);
  const QString before = text.plainText(), drawn = picture(text);
  EXPECT_TRUE(text.compact());
  EXPECT_EQ(text.plainText(), before);
  EXPECT_EQ(picture(text), drawn);
  ASSERT_EQ(text.elements().size(), 5);
  EXPECT_EQ(text.elements()[1].text, u"ab\n"_s);
  EXPECT_EQ(text.elements()[2].text, u"cd"_s);
  EXPECT_EQ(RichText::fromBytes(text.toBytes()).plainText(), before);
  EXPECT_FALSE(text.compact());
}

TEST(CompactRuns, WithoutNeighboursTheBytesStay) {
  const QByteArray bytes = QByteArray::fromHex("8102 85FF0B00 0100000A 610D62 77 D203AA");
  RichText text = RichText::fromBytes(bytes);
  EXPECT_FALSE(text.compact());
  EXPECT_EQ(text.toBytes(), bytes);
}

TEST(CompactRuns, NothingIsJoinedThatWouldReadOtherwise) {
  // A CR at one end and a LF at the next beginning are two line ends, joined they would be one.
  const QByteArray twoEnds = QByteArray::fromHex("8102 85FF0A00 0100000A 610D 85FF0A00 0100000A 0A62");
  RichText text = RichText::fromBytes(twoEnds);
  EXPECT_FALSE(text.compact());
  EXPECT_EQ(text.toBytes(), twoEnds);
  // Half a character at the end would swallow the beginning of the next run.
  const QByteArray half = QByteArray::fromHex("8102 85FF0A00 0100000A 6114 85FF0A00 0100000A 6262");
  text = RichText::fromBytes(half);
  const QString before = text.plainText();
  text.compact();
  EXPECT_EQ(text.plainText(), before);
}

TEST(CompactRuns, BytesOfEveryCharacterSetAreKept) {
  // A Japanese character as its own group writes it.
  const QByteArray bytes = QByteArray::fromHex("8102 85FF0B00 0100000A 1088EA 00 85FF0A00 0100000A 6162");
  RichText text = RichText::fromBytes(bytes);
  EXPECT_TRUE(text.compact());
  EXPECT_TRUE(text.toBytes().contains(QByteArray::fromHex("1088EA6162")));
}

TEST(CompactRuns, ManyRunsFillRecordsToTheirLimit) {
  RichText text;
  text.beginParagraph();
  for (int i = 0; i < 200'000; ++i) text.appendText(u"x"_s);
  EXPECT_TRUE(text.compact());
  EXPECT_EQ(text.elements().size(), 5);
  EXPECT_EQ(RichText::fromBytes(text.toBytes()).plainText(), QString(200'000, u'x'));
}

TEST(CompactRuns, RandomBytesKeepTheirText) {
  QRandomGenerator random(99);
  for (int round = 0; round < 3000; ++round) {
    QByteArray bytes = QByteArray::fromHex("8102");
    for (int run = random.bounded(5); run > 0; --run) {
      QByteArray text(random.bounded(5), '\0');
      for (char& byte : text) byte = char(QByteArray("a\r\n\0\x14\x10\x0F\xF6", 8)[random.bounded(8)]);
      const qsizetype length = 8 + text.size();
      bytes += QByteArray::fromHex("85FF") + char(length) + QByteArray::fromHex("000100000A") + text;
      if (length % 2) bytes += '\0';
    }
    RichText text = RichText::fromBytes(bytes);
    const QString before = text.plainText();
    text.compact();
    ASSERT_EQ(text.plainText(), before) << bytes.toHex().constData();
    ASSERT_EQ(RichText::fromBytes(text.toBytes()).plainText(), before) << bytes.toHex().constData();
  }
}

}  // namespace
}  // namespace lens

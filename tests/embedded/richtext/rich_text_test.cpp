#include "embedded/richtext/rich_text.h"

#include <gtest/gtest.h>

#include <QRandomGenerator>
#include <limits>

#include "embedded/format/lmbcs.h"
#include "notes/runtime_error.h"

namespace lens {
namespace {

using Kind = RichElement::Kind;

constexpr int kAll = std::numeric_limits<int>::max();

QByteArray hex(const char* digits) {
  return QByteArray::fromHex(digits);
}

QByteArray label() {
  return hex("8102 83040100 85FF1700 0101000A") + "\x8E" + "nderungsdatum:" + QByteArray(1, '\0');
}

// One of everything that the writer knows.
RichText sample() {
  RichText text;
  text.beginParagraph();
  text.appendText(QStringLiteral("Offer"), {1, 1, 0, 12});
  text.appendBreak();
  text.appendAttachment(QStringLiteral("ATT0001"), QStringLiteral("plan.pdf"));
  text.appendDocLink(QStringLiteral("C12570A1004D2E3F"), {}, {}, QStringLiteral("Archive"));
  text.beginTable(1, 2);
  text.beginCell(0, 0);
  text.appendText(QStringLiteral("left"));
  text.beginCell(0, 1);
  text.appendText(QStringLiteral("right"));
  text.endTable();
  text.appendText(QStringLiteral("end"));
  return text;
}

QVector<Kind> kinds(const RichText& text) {
  QVector<Kind> all;
  for (const RichElement& element : text.elements()) all.push_back(element.kind);
  return all;
}

TEST(RichTextReader, ReadsParagraphReferenceAndText) {
  const RichText text = RichText::fromBytes(label());
  EXPECT_TRUE(text.complete());
  EXPECT_EQ(kinds(text), (QVector<Kind>{Kind::Paragraph, Kind::Raw, Kind::Text}));
  EXPECT_EQ(text.elements()[2].text, QStringLiteral("Änderungsdatum:"));
  EXPECT_EQ(text.elements()[2].font, (RichFont{1, 1, 0, 10}));
  EXPECT_EQ(text.plainText(), QStringLiteral("Änderungsdatum:"));
}

TEST(RichTextWriter, WritesTheSameBytes) {
  RichText text;
  text.beginParagraph();
  text.appendRaw(hex("83040100"));
  text.appendText(QStringLiteral("Änderungsdatum:"), {1, 1, 0, 10});
  EXPECT_EQ(text.toBytes(), label());
}

TEST(RichTextReader, EmptyDataIsEmptyText) {
  const RichText text = RichText::fromBytes({});
  EXPECT_TRUE(text.complete());
  EXPECT_TRUE(text.elements().isEmpty());
  EXPECT_EQ(text.plainText(), QString());
  EXPECT_EQ(text.toBytes(), QByteArray());
}

TEST(RichTextReader, UnknownRecordsOfAllWidthsAreKept) {
  const QByteArray bytes = hex("D203AA00 99FF0600BBCC 7D0008000000DDEE DE02");
  const RichText text = RichText::fromBytes(bytes);
  EXPECT_TRUE(text.complete());
  EXPECT_EQ(kinds(text), (QVector<Kind>{Kind::Raw, Kind::Raw, Kind::Raw, Kind::Raw}));
  EXPECT_EQ(text.toBytes(), bytes);
}

TEST(RichTextReader, LengthBelowItsHeaderEndsTheReading) {
  for (const char* bad : {"8101", "85FF0300", "990005000000"}) {
    const QByteArray bytes = label() + hex(bad) + hex("8102");
    const RichText text = RichText::fromBytes(bytes);
    EXPECT_FALSE(text.complete()) << bad;
    EXPECT_EQ(text.elements().size(), 3) << bad;
    EXPECT_EQ(text.toBytes(), bytes) << bad;
  }
}

TEST(RichTextReader, LengthThatLeadsOutsideEndsTheReading) {
  for (const char* bad : {"8104", "85FFFFFF0101000A", "9900FFFFFFFF", "85FF", "81"}) {
    const RichText text = RichText::fromBytes(label() + hex(bad));
    EXPECT_FALSE(text.complete()) << bad;
    EXPECT_EQ(text.plainText(), QStringLiteral("Änderungsdatum:")) << bad;
  }
}

TEST(RichTextReader, AppendingKeepsTheUnreadableEnd) {
  RichText text = RichText::fromBytes(label() + hex("8104"));
  text.beginParagraph();
  EXPECT_EQ(text.toBytes(), label() + hex("8102 8104"));
}

TEST(RichTextReader, PadByteIsKeptWhateverItIs) {
  for (const char* bytes : {"D203AA77 8102", "D203AA", "D203AA00"}) {
    EXPECT_EQ(RichText::fromBytes(hex(bytes)).toBytes(), hex(bytes)) << bytes;
  }
}

TEST(RichTextReader, MissingPadByteIsAddedBeforeAnAppendedRecord) {
  RichText text = RichText::fromBytes(hex("D203AA"));
  text.beginParagraph();
  EXPECT_EQ(text.toBytes(), hex("D203AA00 8102"));
}

TEST(RichTextReader, NulInTextIsALineEnd) {
  const RichText text = RichText::fromBytes(hex("8102 85FF0B00 0100000A 610062 00 85FF0900 0100000A 00 00"));
  EXPECT_EQ(kinds(text), (QVector<Kind>{Kind::Paragraph, Kind::Text, Kind::Break}));
  EXPECT_EQ(text.elements()[1].text, QStringLiteral("a\nb"));
  EXPECT_EQ(text.plainText(), QStringLiteral("a\r\nb\r\n"));
}

TEST(RichTextReader, TextRecordWithoutFontIsRaw) {
  EXPECT_EQ(kinds(RichText::fromBytes(hex("85FF0600 0100"))), QVector<Kind>{Kind::Raw});
}

TEST(RichTextReader, AllCutsOfASampleAreRead) {
  const QByteArray bytes = sample().toBytes();
  for (qsizetype size = 0; size <= bytes.size(); ++size) {
    const RichText text = RichText::fromBytes(bytes.first(size));
    EXPECT_EQ(text.toBytes(), bytes.first(size)) << size;
    EXPECT_LE(text.plainText().size(), sample().plainText().size()) << size;
  }
}

TEST(RichTextReader, RandomBytesRoundTrip) {
  QRandomGenerator random(4711);
  const QByteArray known = hex("81828385A3A4A5A9AA9192CFD0D1FF00047EAD");
  int complete = 0;
  for (int round = 0; round < 10000; ++round) {
    QByteArray bytes(random.bounded(301), '\0');
    for (char& byte : bytes) {
      byte = random.bounded(2) == 0 ? char(random.bounded(256)) : known[random.bounded(int(known.size()))];
    }
    RichText text = RichText::fromBytes(bytes);
    complete += text.complete() ? 1 : 0;
    ASSERT_EQ(text.toBytes(), bytes) << bytes.toHex().constData();
    text.formattedText(true, 5);
    text.replace(QStringLiteral("a"), QStringLiteral("bb"), Qt::CaseInsensitive, kAll);
  }
  EXPECT_GT(complete, 0);
}

TEST(RichTextWriter, WhatItWritesIsReadBack) {
  const RichText text = RichText::fromBytes(sample().toBytes());
  EXPECT_TRUE(text.complete());
  EXPECT_EQ(kinds(text), kinds(sample()));
  EXPECT_EQ(text.plainText(), QStringLiteral("Offer\r\n\r\nleft\r\nright\r\nend"));
}

TEST(RichTextWriter, AppendingKeepsWhatWasRead) {
  RichText text = RichText::fromBytes(label());
  text.appendText(QStringLiteral(" x"));
  EXPECT_TRUE(text.toBytes().startsWith(label()));
  EXPECT_EQ(RichText::fromBytes(text.toBytes()).plainText(), QStringLiteral("Änderungsdatum: x"));
}

TEST(RichTextWriter, AttachmentIsAHotspotWithBothNames) {
  RichText text;
  text.beginParagraph();
  text.appendAttachment(QStringLiteral("A1"), QStringLiteral("b.c"));
  EXPECT_EQ(text.toBytes(), hex("8102 A9FF1300 0400 00000000 0700 413100 622E6300 00 AA02"));
  const RichElement element = RichText::fromBytes(text.toBytes()).elements()[1];
  EXPECT_EQ(element.kind, Kind::Attachment);
  EXPECT_EQ(element.text, QStringLiteral("A1"));
  EXPECT_EQ(element.caption, QStringLiteral("b.c"));
}

TEST(RichTextReader, HotspotOfAnotherTypeIsNoAttachment) {
  EXPECT_EQ(kinds(RichText::fromBytes(hex("A9FF0E00 0300 00000000 0200 4100"))), QVector<Kind>{Kind::Raw});
}

TEST(RichTextReader, AttachmentNamesEndWithTheRecord) {
  const RichText text = RichText::fromBytes(hex("A9FF0E00 0400 00000000 FFFF 4142"));
  EXPECT_EQ(text.elements()[0].text, QStringLiteral("AB"));
  EXPECT_EQ(text.elements()[0].caption, QString());
}

TEST(RichTextWriter, DocLinkHoldsItsTargetLowEndFirst) {
  RichText text;
  text.beginParagraph();
  text.appendDocLink(QStringLiteral("0102030405060708"), QStringLiteral("1112131415161718191A1B1C1D1E1F20"),
                     QString(), QStringLiteral("go"));
  EXPECT_EQ(text.toBytes(), hex("8102 92FF3000 0807060504030201 1817161514131211 201F1E1D1C1B1A19"
                                "0000000000000000 0000000000000000 676F00 00"));
  EXPECT_EQ(text.elements()[1].kind, Kind::Link);
  EXPECT_EQ(text.elements()[1].caption, QStringLiteral("go"));
}

TEST(RichTextWriter, MalformedIdsAreRefused) {
  RichText text;
  EXPECT_THROW(text.appendDocLink(QStringLiteral("12"), {}, {}, {}), RuntimeError);
  EXPECT_THROW(text.appendDocLink(QStringLiteral("+102030405060708"), {}, {}, {}), RuntimeError);
  EXPECT_THROW(text.appendDocLink({}, {}, QStringLiteral("0102030405060708"), {}), RuntimeError);
  EXPECT_TRUE(text.elements().isEmpty());
}

TEST(RichTextWriter, TooLongNamesAreRefused) {
  RichText text;
  EXPECT_THROW(text.appendAttachment(QString(70000, u'a'), {}), RuntimeError);
  EXPECT_TRUE(text.elements().isEmpty());
}

TEST(RichTextWriter, RawRecordsMustTellTheirLength) {
  RichText text;
  EXPECT_THROW(text.appendRaw(hex("8104")), RuntimeError);
  EXPECT_THROW(text.appendRaw(hex("810200")), RuntimeError);
  EXPECT_THROW(text.appendRaw({}), RuntimeError);
  text.appendRaw(hex("D203AA"));
  EXPECT_EQ(text.toBytes(), hex("D203AA00"));
}

TEST(RichTextWriter, TextWithoutParagraphBeginsOne) {
  RichText text;
  text.appendText(QStringLiteral("a"));
  text.appendText(QStringLiteral("b"));
  EXPECT_EQ(kinds(text), (QVector<Kind>{Kind::Paragraph, Kind::Text, Kind::Text}));
  text.beginParagraph();
  text.appendText(QStringLiteral("c"));
  EXPECT_EQ(text.plainText(), QStringLiteral("ab\r\nc"));
}

TEST(RichTextWriter, EmptyTextWritesNothing) {
  RichText text;
  text.appendText({});
  EXPECT_EQ(text.toBytes(), QByteArray());
}

TEST(RichTextWriter, LineEndsOfEveryKindAreStoredAsNul) {
  RichText text;
  text.beginParagraph();
  text.appendText(QStringLiteral("a\r\nb\nc\rd"));
  EXPECT_EQ(text.toBytes().right(8), hex("6100620063006400"));
  EXPECT_EQ(text.plainText(), QStringLiteral("a\r\nb\r\nc\r\nd"));
}

TEST(RichTextWriter, LongTextIsSpreadOverRecordsAtCharacterBorders) {
  QString longText;
  for (int i = 0; i < 50000; ++i) longText.append(QStringLiteral("x\U0001F600"));
  RichText text;
  text.appendText(longText);
  const RichText read = RichText::fromBytes(text.toBytes());
  EXPECT_TRUE(read.complete());
  EXPECT_GT(read.elements().size(), 5);
  EXPECT_EQ(read.plainText(), longText);
  for (const RichElement& element : read.elements()) EXPECT_FALSE(element.text.contains(QChar(0xFFFD)));
}

TEST(RichTextWriter, ItemLargerThan64KbIsReadBack) {
  RichText text;
  for (int i = 0; i < 20000; ++i) {
    text.beginParagraph();
    text.appendText(QStringLiteral("line"));
  }
  const RichText read = RichText::fromBytes(text.toBytes());
  EXPECT_TRUE(read.complete());
  EXPECT_EQ(read.plainText().count(u'\n'), 19999);
}

TEST(RichTextTables, CellsTellRowAndColumn) {
  const RichText text = RichText::fromBytes(sample().toBytes());
  QVector<QPair<int, int>> cells;
  for (const RichElement& element : text.elements()) {
    if (element.kind == Kind::TableCell) cells.push_back({element.row, element.column});
  }
  EXPECT_EQ(cells, (QVector<QPair<int, int>>{{0, 0}, {0, 1}}));
}

TEST(RichTextTables, TableInACellIsNested) {
  RichText text;
  text.beginTable(1, 1);
  text.beginCell(0, 0);
  text.beginTable(1, 1);
  text.beginCell(0, 0);
  text.endTable();
  text.endTable();
  QByteArray signs;
  for (const RichElement& element : text.elements()) signs.append(element.record[0]);
  EXPECT_EQ(signs.toHex(), QByteArray("a3a4cfd0d1a5"));
}

TEST(RichTextTables, CellsAndEndsNeedATable) {
  RichText text;
  EXPECT_THROW(text.beginCell(0, 0), RuntimeError);
  EXPECT_THROW(text.endTable(), RuntimeError);
  EXPECT_THROW(text.beginTable(0, 1), RuntimeError);
  text.beginTable(2, 2);
  EXPECT_THROW(text.beginCell(0, 255), RuntimeError);
  text.endTable();
  EXPECT_THROW(text.endTable(), RuntimeError);
}

RichText lines(const QString& text) {
  RichText rich;
  rich.appendText(text);
  return rich;
}

TEST(FormattedText, LineBreaksAtTheLastBlankBeforeTheLength) {
  EXPECT_EQ(lines(QStringLiteral("one two three")).formattedText(false, 9),
            QStringLiteral("one two\r\nthree"));
  EXPECT_EQ(lines(QStringLiteral("one two three")).formattedText(false, 7),
            QStringLiteral("one two\r\nthree"));
  EXPECT_EQ(lines(QStringLiteral("one two")).formattedText(false, 7), QStringLiteral("one two"));
}

TEST(FormattedText, LongWordIsCutAtTheLength) {
  EXPECT_EQ(lines(QStringLiteral("abcdefg hi")).formattedText(false, 3),
            QStringLiteral("abc\r\ndef\r\ng\r\nhi"));
}

TEST(FormattedText, CutNeverParts2HalvesOfACharacter) {
  EXPECT_EQ(lines(QStringLiteral("a\U0001F600b")).formattedText(false, 2),
            QStringLiteral("a\r\n\U0001F600\r\nb"));
  EXPECT_EQ(lines(QStringLiteral("\U0001F600b")).formattedText(false, 1), QStringLiteral("\U0001F600\r\nb"));
}

TEST(FormattedText, TabsAreRemovedOnlyWhenAsked) {
  EXPECT_EQ(lines(QStringLiteral("a\tb")).formattedText(true, 0), QStringLiteral("ab"));
  EXPECT_EQ(lines(QStringLiteral("a\tb")).formattedText(false, 0), QStringLiteral("a\tb"));
}

TEST(FormattedText, ZeroMeansNoLimit) {
  const QString word(5000, u'x');
  EXPECT_EQ(lines(word).formattedText(true, 0), word);
  EXPECT_EQ(lines(word).formattedText(true, 1000).count(u'\n'), 4);
}

TEST(RichTextReplace, FindsTextAcrossChangesOfFont) {
  RichText text;
  text.appendText(QStringLiteral("old na"), {1, 0, 0, 10});
  text.appendText(QStringLiteral("me here"), {1, 1, 0, 10});
  EXPECT_EQ(text.replace(QStringLiteral("NAME"), QStringLiteral("title"), Qt::CaseInsensitive, kAll), 1);
  EXPECT_EQ(text.elements()[1].text, QStringLiteral("old title"));
  EXPECT_EQ(text.elements()[2].text, QStringLiteral(" here"));
  EXPECT_EQ(text.elements()[2].font.attributes, 1);
  EXPECT_EQ(RichText::fromBytes(text.toBytes()).plainText(), QStringLiteral("old title here"));
}

TEST(RichTextReplace, DoesNotReachOverParagraphs) {
  RichText text;
  text.appendText(QStringLiteral("ab"));
  text.beginParagraph();
  text.appendText(QStringLiteral("cd"));
  EXPECT_EQ(text.replace(QStringLiteral("bc"), QStringLiteral("x"), Qt::CaseSensitive, kAll), 0);
}

TEST(RichTextReplace, ReplacementIsNotSearchedAgain) {
  RichText text = lines(QStringLiteral("aaa"));
  EXPECT_EQ(text.replace(QStringLiteral("a"), QStringLiteral("aa"), Qt::CaseSensitive, kAll), 3);
  EXPECT_EQ(text.plainText(), QStringLiteral("aaaaaa"));
}

TEST(RichTextReplace, RunThatBecomesEmptyGoesAway) {
  RichText text = lines(QStringLiteral("gone"));
  EXPECT_EQ(text.replace(QStringLiteral("gone"), QString(), Qt::CaseSensitive, kAll), 1);
  EXPECT_EQ(text.toBytes(), hex("8102"));
}

TEST(RichTextReplace, WithoutAHitTheBytesStay) {
  RichText text = RichText::fromBytes(hex("8102 85FF0B00 0100000A 610D62 77"));
  EXPECT_EQ(text.replace(QStringLiteral("z"), QStringLiteral("y"), Qt::CaseSensitive, kAll), 0);
  EXPECT_EQ(text.replace(QString(), QStringLiteral("y"), Qt::CaseSensitive, kAll), 0);
  EXPECT_EQ(text.toBytes(), hex("8102 85FF0B00 0100000A 610D62 77"));
}

}  // namespace
}  // namespace lens

#include "embedded/dxl/export/export_fixture.h"
#include "embedded/dxl/rich_text_records.h"
#include "embedded/richtext/rich_records.h"
#include "embedded/richtext/rich_text.h"

namespace lens {
namespace {

class RichTextExport : public DxlExport {
 protected:
  QByteArray trip(const RichText& text) { return trip(text.toBytes()); }
  QByteArray trip(const QByteArray& data) {
    source_ = create();
    return itemTrip(0, rawValue(itemtype::RichText, data));
  }

  void expectElement(const RichText& text, const QByteArray& element) {
    const QByteArray dxl = trip(text);
    EXPECT_TRUE(dxl.contains(element)) << element.toStdString() << "\nin\n" << dxl.toStdString();
    EXPECT_FALSE(dxl.contains("rawitemdata")) << dxl.toStdString();
  }
  static RichText paragraph() {
    RichText text;
    text.beginParagraph();
    return text;
  }
};

TEST_F(RichTextExport, ParagraphsAndRunsAreElements) {
  RichText text;
  text.appendText(u"plain "_s);
  text.appendText(u"bold"_s, {4, 3, 2, 14});
  text.beginParagraph();
  text.beginParagraph();
  text.appendText(u" <second> \t "_s, {0, 0x90, 15, 8});
  expectElement(
      text,
      "<par><run><font size=\"10pt\"/>plain </run><run><font name=\"monospace\" size=\"14pt\" "
      "style=\"bold italic\" color=\"red\"/>bold</run></par>\n<par/>\n<par><run><font "
      "name=\"serif\" size=\"8pt\" style=\"emboss\" color=\"silver\"/> &lt;second&gt; \t </run></par>");
}

TEST_F(RichTextExport, BreaksAreElements) {
  RichText text = paragraph();
  text.appendText(u"one\ntwo"_s);
  text.appendBreak();
  text.appendBreak();
  text.appendText(u"  three"_s);
  expectElement(text, "one<break/>two</run>");
}

TEST_F(RichTextExport, TextsOfTheSameFontStayApart) {
  RichText text = paragraph();
  text.appendText(u"a"_s);
  text.appendText(u"b"_s);
  expectElement(text, "a</run><run>");
}

TEST_F(RichTextExport, TextOfSeveralRecordsStaysSo) {
  RichText text = paragraph();
  text.appendText(QString(150000, u'x'));
  EXPECT_TRUE(trip(text).contains("<par>"));
}

TEST_F(RichTextExport, FontsWithoutANameAreRecords) {
  for (const RichFont& font : {RichFont{77, 0, 0, 10}, RichFont{1, 0x40, 0, 10}, RichFont{1, 0, 99, 10},
                               RichFont{1, 0, 0, 0}, RichFont{1, 0, 0, 255}}) {
    RichText text = paragraph();
    text.appendText(u"odd"_s, font);
    text.appendText(u"ordinary"_s);
    expectElement(text, "<compositedata type=\"65413\">");
  }
}

TEST_F(RichTextExport, CharactersThatXmlCannotHoldAreElements) {
  RichText text = paragraph();
  text.appendText(u"bell \a"_s);
  text.appendText(u"ordinary"_s);
  expectElement(text, "bell <nonxmlchar value=\"7\"/></run>");
}

TEST_F(RichTextExport, ParagraphLayoutIsAnElement) {
  RichText text;
  text.appendRaw(paragraphDefinition(7, 3));
  text.beginParagraph();
  text.appendRaw(paragraphReference(7));
  text.appendText(u"centred"_s);
  expectElement(text, "<pardef id=\"7\" align=\"center\"/>\n<par def=\"7\"><run>");
}

TEST_F(RichTextExport, LayoutWithinAParagraphIsARecord) {
  RichText text = paragraph();
  text.appendRaw(paragraphDefinition(1, 0));
  text.appendRaw(paragraphReference(1));
  text.appendText(u"x"_s);
  text.appendRaw(paragraphReference(1));
  expectElement(text, "<compositedata type=\"131\">");
}

TEST_F(RichTextExport, AttachmentsLinksAndAnchorsAreElements) {
  RichText text = paragraph();
  text.appendAttachment(u"ATT1.pdf"_s, u"price & list.pdf"_s);
  text.appendRaw(linkRecord(u"85257AA6004F5595"_s, {}, {}, {}, {}));
  text.appendRaw(linkRecord(u"85257AA6004F5595"_s, u"00000000000000010000000000000002"_s, {}, u"V"_s, {}));
  text.appendRaw(linkRecord(u"85257AA6004F5595"_s, u"00000000000000010000000000000002"_s,
                            u"00000000000000030000000000000004"_s, u"Draft"_s, u"CN=HUB/O=Acme"_s));
  text.appendRaw(anchorRecord(u"here"_s));
  text.appendRaw(urlHotspot(u"http://a.example/?a=1&b=2"_s));
  text.appendText(u"the page"_s);
  text.appendRaw(hotspotEnd());
  text.appendText(u"."_s);
  const QByteArray dxl = trip(text);
  for (const char* element :
       {"<attachmentref name=\"ATT1.pdf\" displayname=\"price &amp; list.pdf\"/>",
        "<databaselink database=\"85257AA6004F5595\"/>",
        "<viewlink database=\"85257AA6004F5595\" view=\"00000000000000010000000000000002\" "
        "description=\"V\"/>",
        "document=\"00000000000000030000000000000004\" description=\"Draft\" server=\"CN=HUB/O=Acme\"/>",
        "<anchor name=\"here\"/>", "<urllink href=\"http://a.example/?a=1&amp;b=2\"><run>"})
    EXPECT_TRUE(dxl.contains(element)) << element << "\n" << dxl.toStdString();
  EXPECT_FALSE(dxl.contains("compositedata"));
}

TEST_F(RichTextExport, HotspotsThatDoNotEndInTheirParagraphAreRecords) {
  RichText text = paragraph();
  text.appendRaw(hotspotEnd());
  text.appendRaw(urlHotspot(u"http://a.example/"_s));
  text.appendText(u"x"_s);
  text.beginParagraph();
  text.appendRaw(hotspotEnd());
  text.appendRaw(urlHotspot(u"http://b.example/"_s));
  expectElement(text, "<compositedata type=\"65449\">");
  RichText attachment = paragraph();
  attachment.appendAttachment(u"a.pdf"_s, u""_s);
  attachment.appendAttachment(u"dir/a.pdf"_s, u"a.pdf"_s);
  expectElement(attachment, "<compositedata type=\"65449\">");
}

TEST_F(RichTextExport, TablesAreElements) {
  RichText text = paragraph();
  text.appendText(u"before"_s);
  text.beginTable(3, 4);
  text.beginCell(0, 0);
  text.appendText(u"a"_s);
  text.beginCell(0, 2);
  text.appendText(u"b"_s);
  text.beginCell(2, 0);
  text.beginTable(1, 1);
  text.beginCell(0, 0);
  text.appendText(u"nested"_s);
  text.endTable();
  text.appendText(u"c"_s);
  text.endTable();
  text.appendText(u"behind"_s);
  const QByteArray dxl = trip(text);
  EXPECT_TRUE(dxl.contains("<tablecell columnspan=\"2\">")) << dxl.toStdString();
  EXPECT_TRUE(dxl.contains("<tablerow/>"));
  EXPECT_EQ(dxl.count("<table>"), 2);
  EXPECT_FALSE(dxl.contains("compositedata"));
}

TEST_F(RichTextExport, TablesThatElementsDoNotTellAreRecords) {
  for (const int kind : {0, 1, 2}) {
    RichText text = paragraph();
    text.beginTable(2, 2);
    if (kind == 0) text.appendText(u"before the first cell"_s);
    text.beginCell(0, kind == 1 ? 1 : 0);
    text.appendText(u"a"_s);
    text.beginCell(0, kind == 2 ? 0 : 1);
    text.appendText(u"b"_s);
    text.endTable();
    expectElement(text, "<compositedata type=\"163\">");
  }
}

TEST_F(RichTextExport, UnknownRecordsStandBetweenTheOthers) {
  RichText text;
  text.appendRaw(QByteArray("\xDD\x06\x01\x00\x86\x00", 6));
  text.beginParagraph();
  text.appendText(u"x"_s);
  text.appendRaw(
      QByteArray("\x8A\xFF\x07\x00"
                 "odd",
                 7));
  text.appendRaw(
      QByteArray("\x99\x00\x08\x00\x00\x00"
                 "lg",
                 8));
  text.appendText(u"y"_s);
  expectElement(text, "<compositedata type=\"153\">");
}

// Other readers look for the type with the form of its length.
TEST_F(RichTextExport, TypesOfRecordsTellTheFormOfTheirLength) {
  for (const auto& [record, type] : {std::pair<QByteArray, int>("\xAD\xFF\x06\x00xy"_ba, 65453),
                                     {"\x8A\x04xy"_ba, 138},
                                     {"\x99\x00\x08\x00\x00\x00xy"_ba, 153},
                                     {"\xFF\xFF\x06\x00xy"_ba, 65535}}) {
    RichText text = paragraph();
    text.appendRaw(record);
    expectElement(text, QStringLiteral("<compositedata type=\"%1\">").arg(type).toUtf8());
  }
}

TEST_F(RichTextExport, RichTextWithoutAParagraphIsRaw) {
  RichText text;
  text.appendRaw(QByteArray("\xDD\x06\x01\x00\x86\x00", 6));
  EXPECT_TRUE(trip(text).contains("<rawitemdata type=\"1\">"));
  EXPECT_TRUE(trip(RichText()).contains("<rawitemdata type=\"1\"/>"));
}

TEST_F(RichTextExport, RecordsThatAreCutOrOddlyPaddedAreRaw) {
  RichText text = paragraph();
  text.appendText(u"odd"_s);
  const QByteArray whole = text.toBytes();
  for (const QByteArray& bytes : {whole.chopped(1), whole.chopped(3), whole.chopped(1) + 'p', whole + 'x'})
    EXPECT_TRUE(trip(bytes).contains("<rawitemdata type=\"1\""));
}

TEST_F(RichTextExport, TwoRichTextsOfOneNameStayTwo) {
  RichText text;
  text.appendText(u"x"_s);
  Note note;
  for (const char16_t* name : {u"Body", u"BODY", u"Other", u"body"})
    note.add(QString::fromUtf16(name), 0, rawValue(itemtype::RichText, text.toBytes()));
  save(note);
  EXPECT_EQ(roundTrip().count("<richtext>"), 4);
}

TEST_F(RichTextExport, TablesNestedDeeperThanAnImportGoesAreRaw) {
  RichText text;
  for (int i = 0; i < 100; ++i) {
    text.beginTable(1, 1);
    text.beginCell(0, 0);
    text.appendText(u"x"_s);
  }
  for (int i = 0; i < 100; ++i) text.endTable();
  EXPECT_TRUE(trip(text).contains("<rawitemdata type=\"1\">"));
}

}  // namespace
}  // namespace lens

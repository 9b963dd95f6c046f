#include "embedded/richtext/rich_text.h"
#include "import_fixture.h"

namespace lens {
namespace {

using Kind = RichElement::Kind;

class DxlRichText : public DxlImport {
 protected:
  RichText body(const QByteArray& blocks) {
    note_ = onlyNote(
        run("<document><noteinfo unid='00000000000000010000000000000002'/><item name='Body'><richtext>" +
            blocks + "</richtext></item></document>"),
        noteclass::Document);
    const Item* item = note_.find(u"Body");
    if (!item) return {};
    EXPECT_EQ(item->type(), itemtype::RichText);
    return RichText::fromBytes(item->data());
  }
  std::string plain(const QByteArray& blocks) { return body(blocks).plainText().toStdString(); }

  Note note_;
};

const RichElement* first(const RichText& text, Kind kind) {
  for (const RichElement& element : text.elements()) {
    if (element.kind == kind) return &element;
  }
  return nullptr;
}

TEST_F(DxlRichText, ParagraphsAndBreaksAreLines) {
  EXPECT_EQ(plain("<pardef id='1'/>\n<par def='1'><run>a<break/>b</run></par>\n<par>c</par><par/>"),
            "a\r\nb\r\nc\r\n");
  EXPECT_TRUE(last_.keptRaw.isEmpty());
}

TEST_F(DxlRichText, LineEndsOfTheFileAreOneBlankOrNothing) {
  EXPECT_EQ(plain("<par>\n  Hello\n   world\n</par>"), "Hello world");
  EXPECT_EQ(plain("<par><run>\nHello \n world\n</run><run>again</run></par>"), "Hello worldagain");
  EXPECT_EQ(plain("<par><run>a</run>\n<run>b</run></par>"), "a b");
  EXPECT_EQ(plain("<par>a<break/>\n  b</par>"), "a\r\nb");
  EXPECT_EQ(plain("<par>two  blanks\tand a tab</par>"), "two  blanks\tand a tab");
}

TEST_F(DxlRichText, KeptIndentationKeepsLineEnds) {
  EXPECT_EQ(plain("<par keepindentation='true'>a\n  b</par><par>c\n  d</par>"), "a\r\n  b\r\nc d");
  EXPECT_EQ(plain("<par keepindentation='true'><run>a\n b</run></par>"), "a\r\n b");
}

TEST_F(DxlRichText, FontOfARunIsItsOwn) {
  const RichText text =
      body("<par><run><font name='sans-serif' size='14pt' style='bold italic' color='red'/>a</run>b</par>");
  QVector<RichFont> fonts;
  for (const RichElement& element : text.elements()) {
    if (element.kind == Kind::Text) fonts.push_back(element.font);
  }
  ASSERT_EQ(fonts.size(), 2);
  EXPECT_EQ(fonts[0], (RichFont{1, 3, 2, 14}));
  EXPECT_EQ(fonts[1], RichFont());
}

TEST_F(DxlRichText, FontWithoutANumberIsNamedInTheReport) {
  body("<par><run><font name='Verdana' color='#123456'/>a</run></par>");
  EXPECT_TRUE(last_.ignored.join(u' ').contains(u"font name \"Verdana\""));
  EXPECT_TRUE(last_.ignored.join(u' ').contains(u"text color \"#123456\""));
}

TEST_F(DxlRichText, ParagraphDefinitionIsARecordWithItsReference) {
  body("<pardef id='7' align='center'/><par def='7'>x</par>");
  EXPECT_EQ(hex(note_.find(u"Body")->data().first(8)), "82 ff 46 00 07 00 03 00");
  EXPECT_EQ(hex(note_.find(u"Body")->data().sliced(70, 6)), "81 02 83 04 07 00");
  EXPECT_FALSE(note_.has(u"$DXL_pardef"));
  body("<pardef id='7' leftmargin='2in'/>");
  EXPECT_TRUE(note_.has(u"$DXL_pardef"));
}

TEST_F(DxlRichText, ParagraphDefinitionWithAHideWhenFormulaIsKept) {
  body("<pardef id='7'><code event='hidewhen'><formula>Form = \"A\"</formula></code></pardef><par def='7'/>");
  EXPECT_EQ(
      note_.text(u"$DXL_pardef").toStdString(),
      "<pardef id=\"7\"><code event=\"hidewhen\"><formula>Form = &quot;A&quot;</formula></code></pardef>");
  body("<pardef id='7'><parstyle name='Base'/></pardef>");
  EXPECT_TRUE(note_.text(u"$DXL_pardef").contains(u"parstyle"));
}

TEST_F(DxlRichText, LayoutOfTablesIsKeptWithoutTheTextOfItsCells) {
  EXPECT_EQ(
      plain(
          "<table><tablerow tablabel='T'><tablecell bgcolor='red'><cellbackground repeat='tile'/>"
          "<par>secret <picture><gif>R0lG</gif></picture></par><table leftmargin='1in'><tablerow><tablecell>"
          "<par>inner</par></tablecell></tablerow></table></tablecell></tablerow></table>"),
      "secret \r\ninner");
  QStringList kept;
  for (const Item& item : note_.items) {
    if (item.name.startsWith(u"$DXL_") && item.type() == itemtype::Text)
      kept.push_back(item.name + u' ' + itemValues(item).values().first().text());
  }
  EXPECT_EQ(
      kept.join(u'\n').toStdString(),
      "$DXL_picture <picture><gif>R0lG</gif></picture>\n"
      "$DXL_table <table leftmargin=\"1in\"><tablerow><tablecell></tablecell></tablerow></table>\n"
      "$DXL_table <table><tablerow tablabel=\"T\"><tablecell bgcolor=\"red\"><cellbackground repeat=\"tile\">"
      "</cellbackground></tablecell></tablerow></table>");
  // Begin and end of the picture and of the two tables, the inner one first.
  EXPECT_EQ(valuesText(note_, u"$DXL_places"), "36|36|36|72|0|74");
}

TEST_F(DxlRichText, FontsAndRunsTellWhatTheyHaveNoPlaceFor) {
  body("<par><run html='true'><font style='bold blink' size='300pt' pitch='fixed'/>x</run></par>");
  const QString told = last_.ignored.join(u' ');
  for (const char* part : {"attribute \"html\" of \"run\"", "attribute \"pitch\" of \"font\"",
                           "text style \"bold blink\"", "text size \"300pt\""})
    EXPECT_TRUE(told.contains(QLatin1String(part))) << part << " in " << told.toStdString();
}

TEST_F(DxlRichText, TableCellsHaveRowAndColumn) {
  const RichText text = body(
      "<table><tablecolumn width='1in'/><tablerow><tablecell><par>a</par></tablecell><tablecell "
      "columnspan='2'><par>b</par>"
      "</tablecell><tablecell><par>c</par></tablecell></tablerow><tablerow><tablecell><par>d</par></"
      "tablecell></tablerow></table>");
  QString cells;
  for (const RichElement& element : text.elements()) {
    if (element.kind == Kind::TableCell)
      cells += QStringLiteral("%1,%2 ").arg(element.row).arg(element.column);
  }
  EXPECT_EQ(cells.toStdString(), "0,0 0,1 0,3 1,0 ");
  ASSERT_TRUE(first(text, Kind::TableEnd));
  EXPECT_EQ(note_.text(u"$DXL_table").toStdString(),
            "<table><tablecolumn width=\"1in\"></tablecolumn><tablerow><tablecell></tablecell><tablecell "
            "columnspan=\"2\"></tablecell><tablecell></tablecell></tablerow><tablerow><tablecell></tablecell>"
            "</tablerow></table>");
}

TEST_F(DxlRichText, TableOfMoreRowsThanANumberHoldsGoesOn) {
  const RichText text =
      body("<table>" + QByteArray("<tablerow><tablecell><par>x</par></tablecell></tablerow>").repeated(300) +
           "</table>");
  int cells = 0;
  for (const RichElement& element : text.elements()) cells += element.kind == Kind::TableCell ? 1 : 0;
  EXPECT_EQ(cells, 300);
}

TEST_F(DxlRichText, AttachmentReferenceNamesTheFile) {
  const RichText text = body("<par><attachmentref name='x/a.pdf' displayname='A.pdf'/></par>");
  const RichElement* element = first(text, Kind::Attachment);
  ASSERT_TRUE(element);
  EXPECT_EQ(element->text.toStdString(), "x/a.pdf");
  EXPECT_EQ(element->caption.toStdString(), "A.pdf");
  EXPECT_EQ(text.plainText().toStdString(), "");
}

TEST_F(DxlRichText, LinksKeepTargetDescriptionAndServer) {
  const RichText text = body(
      "<par><doclink database='85257AA6004F5595' view='00000000000000010000000000000002' "
      "document='00000000000000030000000000000004' description='Draft' server='CN=HUB/O=Acme'/></par>");
  const RichElement* link = first(text, Kind::Link);
  ASSERT_TRUE(link);
  EXPECT_EQ(link->caption.toStdString(), "Draft");
  EXPECT_EQ(hex(QByteArrayView(link->record).sliced(4, 8)), "95 55 4f 00 a6 7a 25 85");
  EXPECT_TRUE(link->record.endsWith(QByteArray("Draft\0CN=HUB/O=Acme\0", 20)));
  EXPECT_TRUE(first(
      body("<par><viewlink database='85257AA6004F5595' view='00000000000000010000000000000002'/></par>"),
      Kind::Link));
  EXPECT_TRUE(first(body("<par><databaselink database='85257AA6004F5595'/></par>"), Kind::Link));
}

TEST_F(DxlRichText, LinkWithAMalformedIdIsRefused) {
  EXPECT_TRUE(refusal("<item name='B'><richtext><par><doclink document='12'/></par></richtext></item>")
                  .contains(u"malformed ID"));
}

TEST_F(DxlRichText, WebLinkKeepsTextAndAddress) {
  EXPECT_EQ(plain("<par>see <urllink href='http://a.example/'>the page</urllink>.</par>"), "see the page.");
  EXPECT_TRUE(note_.find(u"Body")->value.contains("http://a.example/"));
  EXPECT_FALSE(note_.has(u"$DXL_urllink"));
}

TEST_F(DxlRichText, SectionLeavesTitleAndText) {
  EXPECT_EQ(plain("<section><sectiontitle>Title</sectiontitle><par>inside</par></section>"),
            "Title\r\ninside");
  EXPECT_TRUE(last_.ignored.join(u' ').contains(u"folding of sections"));
}

TEST_F(DxlRichText, RawRecordIsTakenAsItIs) {
  EXPECT_EQ(plain("<par>a<compositedata type='98'>\nYg4BAIQAAAAAAAAAAAA=\n</compositedata>b</par>"), "ab");
  EXPECT_TRUE(note_.find(u"Body")->value.contains(QByteArray("\x62\x0e\x01\x00\x84", 5)));
}

// A record of each kind in each form of its length; the number of the type may tell the form or not.
TEST_F(DxlRichText, RawRecordsOfEveryTypeAndFormAreTakenAsTheyAre) {
  for (int kind = 0; kind < 256; ++kind) {
    const char low = char(kind);
    const QByteArray forms[] = {QByteArray(1, low) + QByteArray("\x06\x00\x00zz", 5),
                                QByteArray(1, low) + QByteArray("\xFF\x08\x00zzzz", 7),
                                QByteArray(1, low) + QByteArray("\x00\x08\x00\x00\x00zz", 7)};
    QByteArray blocks, records;
    for (const QByteArray& record : forms) {
      for (const int type : {kind, kind | quint8(record[1]) << 8}) {
        blocks += "<compositedata type='" + QByteArray::number(type) + "'>" + record.toBase64() +
                  "</compositedata>";
        records += record;
      }
    }
    body("<par>" + blocks + "</par>");
    EXPECT_EQ(hex(note_.find(u"Body")->data()), hex("\x81\x02" + records)) << kind;
  }
}

TEST_F(DxlRichText, NumbersOfCharactersThatXmlCannotHoldAreHexadecimal) {
  EXPECT_EQ(plain("<par>a<nonxmlchar value='10'/>b<run><nonxmlchar value='0x1b'/></run></par>"),
            "a\x10"
            "b\x1B");
}

TEST_F(DxlRichText, RawRecordOfAnotherTypeOrLengthIsRefused) {
  const auto with = [this](const QByteArray& data) {
    return refusal("<item name='B'><richtext><par><compositedata type='98'>" + data +
                   "</compositedata></par></richtext></item>");
  };
  EXPECT_TRUE(with("gQI=").contains(u"not of the type"));
  EXPECT_TRUE(with("YhABAA==").contains(u"another length"));
  for (const char* type : {"65378", "4450", "65634", "-1", ""})
    EXPECT_TRUE(refusal("<item name='B'><richtext><par><compositedata type='" + QByteArray(type) +
                        "'>Yg4BAIQAAAAAAAAAAAA=</compositedata></par></richtext></item>")
                    .contains(u"not of the type"))
        << type;
  EXPECT_TRUE(with("").contains(u"not of the type"));
}

TEST_F(DxlRichText, ElementWithoutACounterpartLeavesItsTextAndItsXml) {
  EXPECT_EQ(plain("<par>press <button width='1in'>the <run>button</run><code "
                  "event='click'><formula>@Ok</formula></code></button> now</par>"),
            "press the button now");
  EXPECT_EQ(note_.text(u"$DXL_button").toStdString(),
            "<button width=\"1in\">the <run>button</run><code "
            "event=\"click\"><formula>@Ok</formula></code></button>");
  EXPECT_TRUE(last_.keptRaw.join(u' ').contains(u"element \"button\""));
}

TEST_F(DxlRichText, PictureLeavesNoTextButIsKept) {
  EXPECT_EQ(plain("<par>a<picture width='1px'><gif>R0lGODlh</gif></picture>b</par>"), "ab");
  EXPECT_TRUE(note_.text(u"$DXL_picture").contains(u"R0lGODlh"));
}

TEST_F(DxlRichText, AnchorIsARecord) {
  EXPECT_EQ(plain("<par><anchor name='here'/>x</par>"), "x");
  EXPECT_TRUE(
      note_.find(u"Body")->value.contains(QByteArray("\xCB\xFF\x0E\x00\x04\x00\x00\x00\x00\x00here", 14)));
}

}  // namespace
}  // namespace lens

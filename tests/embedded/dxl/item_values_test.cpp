#include "embedded/format/source_formula.h"
#include "import_fixture.h"

namespace lens {
namespace {

QByteArray item(const QByteArray& value, const QByteArray& attributes = {}) {
  return "<item name='F' " + attributes + ">" + value + "</item>";
}

TEST_F(DxlImport, TextKeepsLinesTabsAndCharactersThatXmlCannotHold) {
  const Note note = document(item("<text\n>a\n\tb<nonxmlchar value='0x7'/><break/>\n</text>"));
  EXPECT_EQ(hex(note.find(u"F")->value), "00 05 61 00 09 62 0f 27 00");
  EXPECT_EQ(valuesText(note, u"F"), "a\n\tb\a\n");
}

TEST_F(DxlImport, NumbersOfCharactersThatXmlCannotHoldAreHexadecimal) {
  EXPECT_TRUE(refusal(item("<text><nonxmlchar value='g'/></text>")).contains(u"no proper value"));
  EXPECT_TRUE(refusal(item("<text><nonxmlchar value='10000'/></text>")).contains(u"no proper value"));
  const Note note = document(item("<text>a<nonxmlchar value='10'/><nonxmlchar value='1b'/></text>"));
  EXPECT_EQ(valuesText(note, u"F"), "a\x10\x1B");
}

TEST_F(DxlImport, EntitiesAndCharacterDataAreText) {
  EXPECT_EQ(valuesText(document(item("<text>a&amp;b&#233;<![CDATA[<c>]]></text>")), u"F"), "a&b\xC3\xA9<c>");
}

TEST_F(DxlImport, ListsMayBeEmptyAndKeepTheirType) {
  EXPECT_EQ(hex(document(item("<textlist/>")).find(u"F")->value), "01 05 00 00");
}

TEST_F(DxlImport, TextListKeepsItsEntriesInOrder) {
  const Note note = document(item("<textlist>\n<text>a</text>\n<text>b</text></textlist>"));
  EXPECT_EQ(hex(note.find(u"F")->value), "01 05 02 00 01 00 01 00 61 62");
}

TEST_F(DxlImport, NumbersAreReadWithAPoint) {
  EXPECT_EQ(valuesText(document(item("<number>-1.5e3</number>")), u"F"), "-1500");
}

TEST_F(DxlImport, NumberListsHoldSinglesAndPairs) {
  const Note note =
      document(item("<numberlist><number>5</number><numberpair><number>1</number><number>2</number></"
                    "numberpair></numberlist>"));
  EXPECT_EQ(hex(note.find(u"F")->value.first(6)), "01 03 01 00 01 00");
  EXPECT_EQ(valuesText(note, u"F"), "5|1|2");
}

TEST_F(DxlImport, WhatIsNoNumberNamesItsItem) {
  EXPECT_TRUE(
      refusal(item("<number>12 apples</number>")).contains(u"item \"F\": \"12 apples\" is no number"));
}

TEST_F(DxlImport, SummerTimeGivesTheStandardOffset) {
  const Note note = document(item("<datetime dst='true'>20121029T103411,22-04</datetime>"));
  EXPECT_EQ(hex(note.find(u"F")->data()), "c2 08 50 00 a6 7a 25 85");
}

TEST_F(DxlImport, ZonesOfQuarterHoursAndGreenwichAreKept) {
  const Note note = document(item(
      "<datetimelist><datetime>20240101T000000,00+0530</datetime><datetime>20240101T000000,00+00</datetime>"
      "<datetime>20240101T000000Z</datetime></datetimelist>"));
  ByteReader reader(note.find(u"F")->data());
  EXPECT_EQ(reader.u16(), 3);
  EXPECT_EQ(reader.u16(), 0);
  EXPECT_EQ(zoneOf(reader.time()).offsetMinutes, 330);
  const TimeDate greenwich = reader.time();
  EXPECT_EQ(zoneOf(greenwich).offsetMinutes, 0);
  EXPECT_EQ(greenwich.innards[0], 0u);
  EXPECT_EQ(reader.time().innards[1], greenwich.innards[1]);
}

TEST_F(DxlImport, DatesAndTimesAloneLackTheOtherHalf) {
  const Note note = document(item("<datetime>19990713</datetime>") +
                             "<item name='T'><datetime>T060306,52</datetime></item>");
  EXPECT_EQ(localOf(readTimeDate(note.find(u"F")->data().data())).date, QDate(1999, 7, 13));
  EXPECT_FALSE(localOf(readTimeDate(note.find(u"F")->data().data())).time.isValid());
  const TimeDate time = readTimeDate(note.find(u"T")->data().data());
  EXPECT_EQ(time.innards[1], kAnyDay);
  EXPECT_EQ(time.innards[0], quint32((6 * 3600 + 3 * 60 + 6) * 100 + 52));
}

TEST_F(DxlImport, PairsOfTimesStandBehindTheSingles) {
  const Note note =
      document(item("<datetimelist><datetime>20240101</datetime><datetimepair><datetime>20240102</datetime>"
                    "<datetime>20240103</datetime></datetimepair></datetimelist>"));
  EXPECT_EQ(hex(note.find(u"F")->value.first(6)), "01 04 01 00 01 00");
}

TEST_F(DxlImport, WhatIsNoTimeIsRefused) {
  for (const QByteArray bad :
       {"20241301", "20240101X", "T2503", "20240101T101010,00+99", "20240101T1010,00+01x"})
    EXPECT_TRUE(refusal(item("<datetime>" + bad + "</datetime>")).contains(u"is no time"))
        << bad.toStdString();
}

TEST_F(DxlImport, CompiledFormulaKeepsItsBytes) {
  const Note note = document(item("<formula compiled='true'>\nVAAF\nAA==\n</formula>"));
  EXPECT_EQ(hex(note.find(u"F")->value), "00 06 54 00 05 00");
  QString source;
  EXPECT_FALSE(readSourceFormula(note.find(u"F")->data(), source));
}

TEST_F(DxlImport, FormulaSourceIsToldFromCompiledBytes) {
  const Note note = document(item("<formula>SELECT @All &amp;\n Größe = 1</formula>"));
  QString source;
  ASSERT_TRUE(readSourceFormula(note.find(u"F")->data(), source));
  EXPECT_EQ(source.toStdString(),
            "SELECT @All &\n Gr\xC3\xB6\xC3\x9F"
            "e = 1");
  EXPECT_TRUE(last_.keptRaw.join(u' ').contains(u"formula as source text"));
}

TEST_F(DxlImport, RawTypeIsHexadecimal) {
  EXPECT_EQ(document(item("<rawitemdata type='19'>\nAgAAAAAAAgAAAAAAAAAAAAAAAAA=\n</rawitemdata>"))
                .find(u"F")
                ->type(),
            0x19);
}

TEST_F(DxlImport, EmptyRawElementHasNoBytes) {
  EXPECT_EQ(hex(document(item("<rawitemdata type='6'>\n</rawitemdata>")).find(u"F")->value), "06 00");
}

TEST_F(DxlImport, HostFormIsTheSameBytes) {
  EXPECT_EQ(hex(document(item("<itemdata type='300'>AAAAAAAAFEA=</itemdata>")).find(u"F")->value),
            "00 03 00 00 00 00 00 00 14 40");
}

TEST_F(DxlImport, SummaryIsTheDefaultOfTextNumbersAndTimesOnly) {
  const Note note = document(
      "<item name='a'><text>x</text></item><item name='b' summary='false'><text>x</text></item>"
      "<item name='c'><rawitemdata type='400'>AAAAAAAAAAA=</rawitemdata></item>"
      "<item name='d'><rawitemdata type='5'>AQ==</rawitemdata></item>"
      "<item name='e' summary='true'><rawitemdata type='5'>AQ==</rawitemdata></item>");
  EXPECT_EQ(note.items[0].flags, itemflag::Summary);
  EXPECT_EQ(note.items[1].flags, 0);
  EXPECT_EQ(note.items[2].flags, itemflag::Summary);
  EXPECT_EQ(note.items[3].flags, 0);
  EXPECT_EQ(note.items[4].flags, itemflag::Summary);
}

TEST_F(DxlImport, FlagAttributesBecomeFlags) {
  const Note note = document(
      item("<text>x</text>", "summary='false' sign='true' seal='true' protected='true' unchanged='true'"));
  EXPECT_EQ(note.items[0].flags, itemflag::Sign | itemflag::Seal | itemflag::Protected | itemflag::Unchanged);
}

TEST_F(DxlImport, AuthorsAndReadersAreNames) {
  const Note note = document(
      "<item name='a' authors='true'><text>x</text></item>"
      "<item name='r' readers='true'><text>x</text></item>");
  EXPECT_EQ(objectModelType(note.items[0]), 1076);
  EXPECT_EQ(objectModelType(note.items[1]), 1075);
  EXPECT_TRUE(note.items[0].flags & itemflag::Names);
}

TEST_F(DxlImport, PlaceholderIsANameWithoutAValue) {
  const Note note =
      document("<item name='p' placeholder='true'><rawitemdata type='0'>\n</rawitemdata></item>");
  EXPECT_EQ(note.items[0].flags, itemflag::Placeholder);
  EXPECT_EQ(note.items[0].type(), itemtype::Unknown);
}

TEST_F(DxlImport, ItemsOfOneNameStayInOrder) {
  const Note note = document(
      "<item name='a'><text>1</text></item><item name='b'><text>2</text></item>"
      "<item name='a'><text>3</text></item>");
  EXPECT_EQ(namesText(note), "a b a");
}

// A form's body over 64 KB, and lists that one name has many of: none is lost, none grows.
TEST_F(DxlImport, PiecesOfOneRichTextStayItemsOfTheirOwn) {
  const Note note = document(
      "<item name='Body'><rawitemdata type='1'>gQI=</rawitemdata></item><item name='x'><text/></item>"
      "<item name='Body'><rawitemdata type='1'>hf8FAAA=</rawitemdata></item>"
      "<item name='Body'><rawitemdata type='1'>gQI=</rawitemdata></item>");
  ASSERT_EQ(namesText(note), "Body x Body Body");
  EXPECT_EQ(hex(note.items[0].data()), "81 02");
  EXPECT_EQ(hex(note.items[2].data()), "85 ff 05 00 00");
  EXPECT_EQ(hex(note.items[3].data()), "81 02");
}

// Whatever the form in which the values come.
TEST_F(DxlImport, ItemsOfOneNameStayApartInEveryForm) {
  const QByteArrayList forms = {"<text>t</text>",
                                "<textlist><text>t</text></textlist>",
                                "<number>1</number>",
                                "<datetime>20240501</datetime>",
                                "<richtext><pardef id='1'/><par def='1'>t</par></richtext>",
                                "<formula>1</formula>",
                                "<rawitemdata type='1'>gQI=</rawitemdata>",
                                "<rawitemdata type='e'>gQI=</rawitemdata>",
                                "<rawitemdata type='0'></rawitemdata>",
                                "<object><file name='t'><filedata>YWJj</filedata></file></object>"};
  for (const QByteArray& first : forms) {
    for (const QByteArray& second : forms) {
      QByteArray items;
      for (const QByteArray& value : {first, second, first, second})
        items += "<item name='$OLEOBJINFO'>" + value + "</item>";
      for (const QByteArray& value : {first, second}) items += "<item name='Alone'>" + value + "</item>";
      const Note note = document("<noteinfo unid='0123456789ABCDEF0123456789ABCDEF'/>" + items);
      ASSERT_EQ(namesText(note), "$OLEOBJINFO $OLEOBJINFO $OLEOBJINFO $OLEOBJINFO Alone Alone");
      for (int i = 0; i < 4; ++i) {
        EXPECT_EQ(note.items[i].type(), note.items[4 + i % 2].type()) << first.data() << second.data();
        EXPECT_EQ(note.items[i].value.size(), note.items[4 + i % 2].value.size())
            << first.data() << second.data();
      }
    }
  }
}

TEST_F(DxlImport, RawLengthsThatLeadOutsideAreRefused) {
  const std::pair<const char*, const char*> cases[] = {
      {"501", "AgACAAIAYQ=="},  // texts of 4 bytes, one there
      {"301", "//8AAA=="},      // 65535 numbers
      {"401", "AAD//w=="},      // 65535 pairs
      {"4", "//8="},            // 65535 UNIDs
      {"1", "mQAAAACA"},        // a record of 2 GB
      {"1", "hf8BAA=="},        // a record shorter than its head
      {"19", "AgAAAAAAAgD///8A/wA="},
      {"400", "AAAA"},
      {"300", "AAAA"},
  };
  for (const auto& [type, data] : cases) {
    const QString reason =
        refusal(item(QByteArray("<rawitemdata type='") + type + "'>" + data + "</rawitemdata>"));
    EXPECT_TRUE(reason.contains(u"item \"F\"") && reason.contains(u"does not fit")) << type << data;
  }
}

TEST_F(DxlImport, ObjectWithItsBytesInsideBecomesAnObject) {
  // Descriptor of type 8, then the object's bytes "hello".
  QByteArray raw("\x06\x00\x01\x00\x00\x00\x08\x00\x63\x00\x00\x00hello", 17);
  const Note note = document(item("<rawitemdata type='3'>" + raw.toBase64() + "</rawitemdata>"));
  ByteReader reader(note.find(u"F")->data());
  EXPECT_EQ(reader.u16(), 8);
  EXPECT_EQ(attachment(reader.u32()).toStdString(), "hello");
}

TEST_F(DxlImport, UnknownValueIsKeptAsXmlAndReported) {
  const Note note = document(item("<novelty a='1&lt;'>text<b/></novelty>"));
  EXPECT_EQ(note.text(u"$DXL_novelty").toStdString(), "<novelty a=\"1&lt;\">text<b></b></novelty>");
  EXPECT_TRUE(last_.keptRaw.join(u' ').contains(u"element \"novelty\" (once)"));
}

TEST_F(DxlImport, ItemWithoutANameIsRefused) {
  EXPECT_TRUE(refusal("<item><text>x</text></item>").contains(u"no name"));
}

TEST_F(DxlImport, JunkInBase64NamesTheItem) {
  EXPECT_TRUE(
      refusal(item("<rawitemdata type='5'>AB*D</rawitemdata>")).contains(u"item \"F\": \"*\" is no base64"));
  EXPECT_TRUE(refusal(item("<rawitemdata type='5'>ABC</rawitemdata>")).contains(u"cut short"));
  EXPECT_TRUE(refusal(item("<rawitemdata type='5'>AA==AAAA</rawitemdata>")).contains(u"is no base64"));
  EXPECT_TRUE(refusal(item("<rawitemdata type='5'>A===</rawitemdata>")).contains(u"is no base64"));
}

TEST_F(DxlImport, MimeMessageBecomesItems) {
  const Note note = document("<mime>\nContent-Type: text/plain\n\nHello\n</mime>");
  ASSERT_TRUE(note.has(u"Body"));
  EXPECT_EQ(note.find(u"Body")->type(), itemtype::MimePart);
}

}  // namespace
}  // namespace lens

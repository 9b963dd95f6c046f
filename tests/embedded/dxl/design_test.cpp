#include "embedded/format/source_formula.h"
#include "embedded/richtext/rich_text.h"
#include "import_fixture.h"

namespace lens {
namespace {

std::string sourceOf(const Note& note, QStringView name) {
  const Item* item = note.find(name);
  QString source;
  if (!item || item->type() != itemtype::Formula || !readSourceFormula(item->data(), source)) return "(none)";
  return source.toStdString();
}

TEST_F(DxlImport, DesignElementGetsTitleFlagsAndCommonItems) {
  const Note note = design(
      "<form name='Order' alias='Ord|O' comment='c' designerversion='8.5.3' fromtemplate='T' "
      "language='de' publicaccess='true' noreplace='true' nocompose='true' hide='v3 web' "
      "treatashtml='true' default='true'/>",
      noteclass::Form);
  EXPECT_EQ(note.header.noteClass, noteclass::Form | noteclass::Default);
  EXPECT_EQ(valuesText(note, u"$TITLE"), "Order|Ord|O");
  EXPECT_EQ(valuesText(note, u"$Flags"), "PC3w");
  EXPECT_EQ(valuesText(note, u"$WebFlags"), "H");
  EXPECT_EQ(valuesText(note, u"$Comment"), "c");
  EXPECT_EQ(valuesText(note, u"$DesignerVersion"), "8.5.3");
  EXPECT_EQ(valuesText(note, u"$Class"), "T");
  EXPECT_EQ(valuesText(note, u"$Language"), "de");
  EXPECT_EQ(valuesText(note, u"$PublicAccess"), "1");
  EXPECT_TRUE(last_.keptRaw.isEmpty());
}

TEST_F(DxlImport, AttributesWithoutAnItemAreKept) {
  const Note note = design("<page name='P' bgcolor='white'/>", noteclass::Form);
  EXPECT_EQ(valuesText(note, u"$DXL_attributes"), "bgcolor=white");
  EXPECT_TRUE(last_.keptRaw.join(u' ').contains(u"attribute \"bgcolor\" of page"));
}

// What keeps a formula from being shown is named; one that can be shown is not.
TEST_F(DxlImport, FormulasThatNobodyCanRunAreReported) {
  const Note note = design(
      "<note class='form'><item name='a'><formula compiled='true'>CgAAAAgAiQADAA==</formula></item>"
      "<item name='b'><formula compiled='true'>CgAAAAgAwQADAA==</formula></item>"
      "<item name='c'><formula compiled='true'>FgAJAAwAWlpaWlpaWloEAAQABAAEAA==</formula></item>"
      "<item name='d'><formula compiled='true'>EgABAg==</formula></item></note>",
      noteclass::Form);
  EXPECT_EQ(QByteArrayView(note.find(u"a")->value).sliced(2), QByteArray::fromHex("0a000000080089000300"));
  EXPECT_EQ(note.find(u"d")->value.size(), 2 + 4);
  QStringList told;
  for (const QString& line : last_.keptRaw) told += line.section(QStringLiteral(": "), 1);
  EXPECT_EQ(told.join(u'|').toStdString(),
            "formula in compiled form only: it uses codes without a known name: function C1, in b (once)|"
            "formula in compiled form only: its size is wrong (byte 0), in d (once)|hidden formula (once)");
}

TEST_F(DxlImport, FormulasThatNobodyCanRunAreNamedByTheirPlace) {
  const QByteArray unnamed = "<formula compiled='true'>CgAAAAgAwQADAA==</formula></code>";
  design(
      "<form name='Memo|m'><code event='windowtitle'>" + unnamed +
          "<actionbar><action title='Send'><code event='click'>" + unnamed +
          "</action></actionbar><body><richtext><pardef id='1'><code event='hidewhen'>" + unnamed +
          "</pardef><par def='1'><field name='Kind' type='text' kind='computed'><code event='defaultvalue'>" +
          unnamed + "</field></par></richtext></body></form>",
      noteclass::Form);
  QStringList places;
  for (const QString& line : last_.keptRaw)
    if (line.contains(QStringLiteral("compiled form only")))
      places += line.section(QStringLiteral("C1, in "), 1);
  EXPECT_EQ(
      places.join(u'|').toStdString(),
      "$Body, field Kind, default value of Memo (once)|$DXL_actionbar, action Send, click of Memo (once)|"
      "$DXL_pardef, pardef 1, hide-when of Memo (once)|$WindowTitle of Memo (once)");
}

// A report that nobody could read to its end would tell less.
TEST_F(DxlImport, VeryManyFormulasThatNobodyCanRunAreCounted) {
  QByteArray items;
  for (int i = 0; i < 150; ++i)
    items += "<item name='i" + QByteArray::number(i) + "'><formula compiled='true'>EgABAg==</formula></item>";
  design("<note class='form'>" + items + "</note>", noteclass::Form);
  EXPECT_EQ(last_.keptRaw.size(), 101);
  EXPECT_TRUE(last_.keptRaw.join(u'\n').contains(
      QStringLiteral("formula in compiled form only: its size is wrong (byte 0) (50 times)")));
}

TEST_F(DxlImport, EveryDesignRootHasItsClassAndLetter) {
  const std::tuple<const char*, quint16, const char*> kinds[] = {{"form", 0x4, ""},
                                                                 {"subform", 0x4, "U"},
                                                                 {"page", 0x4, "W"},
                                                                 {"frameset", 0x4, "#"},
                                                                 {"view", 0x8, ""},
                                                                 {"folder", 0x8, "F"},
                                                                 {"sharedfield", 0x400, ""},
                                                                 {"sharedactions", 0x4, "y"},
                                                                 {"sharedcolumn", 0x8, "^"},
                                                                 {"imageresource", 0x4, "i"},
                                                                 {"fileresource", 0x4, "g"},
                                                                 {"stylesheetresource", 0x4, "="},
                                                                 {"appletresource", 0x4, "@"},
                                                                 {"agent", 0x200, "f"},
                                                                 {"agentdata", 0x200, "X"},
                                                                 {"webservice", 0x200, "{"},
                                                                 {"scriptlibrary", 0x200, "s"},
                                                                 {"databasescript", 0x200, "t"},
                                                                 {"helpusingdocument", 0x100, ""},
                                                                 {"helpaboutdocument", 0x2, ""},
                                                                 {"dataconnection", 0x200, "k"},
                                                                 {"outline", 0x200, "m"},
                                                                 {"db2accessview", 0x4, "z"}};
  for (const auto& [element, noteClass, letters] : kinds) {
    run(QByteArray("<") + element +
        " xmlns='http://www.lotus.com/dxl' name='N'><noteinfo "
        "unid='00000000000000010000000000000009'/></" +
        element + ">");
    Note note;
    Unid unid;
    Unid::parse(u"00000000000000010000000000000009", unid);
    ASSERT_TRUE(database_->notes().read(unid, note)) << element;
    EXPECT_EQ(note.header.noteClass, noteClass) << element;
    EXPECT_EQ(valuesText(note, u"$Flags"), letters) << element;
  }
}

TEST_F(DxlImport, ViewKeepsSelectionAsSourceAndColumnsAsRecords) {
  const Note note = design(
      "<view name='($Inbox)' showinmenu='false' defaultdesign='true'><code event='selection'><formula>"
      "SELECT Form = \"Memo\"</formula></code><column itemname='Subject' width='12.5' sort='descending'>"
      "<columnheader title='Topic'/><code event='value'><formula>Subject</formula></code></column></view>",
      noteclass::View);
  EXPECT_EQ(sourceOf(note, u"$Formula"), "SELECT Form = \"Memo\"");
  EXPECT_EQ(valuesText(note, u"$Flags"), "Yd");
  EXPECT_EQ(valuesText(note, u"$FormulaClass"), "1");
  const QByteArrayView format = note.find(u"$ViewFormat")->data();
  EXPECT_EQ(hex(format.first(26)),
            "01 00 01 00 00 00 00 00 00 00 56 43 05 00 07 00 05 00 09 00 00 00 64 00 01 00");
  EXPECT_EQ(format.sliced(42).toByteArray(), QByteArray("SubjectTopic\0\0Subject", 21));
  EXPECT_EQ(hex(note.find(u"$Collation")->data().first(13)), "14 00 01 00 00 44 01 66 00 00 00 07 00");
  EXPECT_FALSE(note.has(u"$DXL_column"));
}

TEST_F(DxlImport, ViewKeepsWhatItsIndexNeeds) {
  const Note note = design(
      "<view name='v' showresponsehierarchy='false'><column itemname='Kind' categorized='true' "
      "sort='ascending'/><column itemname='Who' sort='ascending' separatemultiplevalues='true'/><column "
      "itemname='$3' responsesonly='true'><code "
      "event='value'><formula>Subject</formula></code></column></view>",
      noteclass::View);
  const QByteArrayView format = note.find(u"$ViewFormat")->data();
  EXPECT_EQ(hex(format.first(10)), "01 00 03 00 00 00 02 00 00 00") << "no hierarchy of responses";
  EXPECT_EQ(hex(format.sliced(10, 4)), "56 43 03 00");
  EXPECT_EQ(hex(format.sliced(42 + 18, 2)), "00 01") << "each value a row";
  EXPECT_EQ(hex(format.sliced(74, 4)), "56 43 10 00");
  EXPECT_EQ(hex(note.find(u"$Collation")->data().first(20)),
            "1b 00 02 00 00 44 08 66 07 00 00 04 00 08 66 00 04 00 03 00");
  EXPECT_FALSE(note.has(u"$DXL_column"));
  EXPECT_FALSE(note.has(u"$DXL_attributes"));
}

TEST_F(DxlImport, ColumnOfMoreThanARecordHoldsIsKeptToo) {
  const Note note = design(
      "<view name='v'><column itemname='a' align='right'/><column "
      "itemname='b'><numberformat/></column></view>",
      noteclass::View);
  EXPECT_TRUE(note.text(u"$DXL_column").startsWith(u"<column itemname=\"a\" align=\"right\">"));
  EXPECT_TRUE(last_.keptRaw.join(u' ').contains(u"element \"column\" (2 times)"));
}

TEST_F(DxlImport, ViewWithoutAFormatHasNone) {
  const Note note = design("<view noviewformat='true'/>", noteclass::View);
  EXPECT_FALSE(note.has(u"$ViewFormat"));
  EXPECT_EQ(valuesText(note, u"$TITLE"), "");
}

TEST_F(DxlImport, FormFieldsBecomeRecordsPlaceholdersAndAList) {
  const Note note = design(
      "<form name='F'><code event='windowtitle'><formula>\"T\"</formula></code><body><richtext><pardef "
      "id='1'/>"
      "<par def='1'>Name: <run><field name='NID' type='text' kind='editable'/></run>"
      "<field name='When' type='datetime' kind='computed'><code event='defaultvalue'><formula>@Now"
      "</formula></code></field><field name='Sum' type='number' "
      "kind='editable'/></par></richtext></body></form>",
      noteclass::Form);
  EXPECT_EQ(valuesText(note, u"$Fields"), "NID|When|Sum");
  EXPECT_EQ(note.find(u"NID")->flags, itemflag::Placeholder);
  EXPECT_EQ(hex(note.find(u"When")->value), "00 04 00 00 00 00 00 00 00 00");
  EXPECT_EQ(note.find(u"Sum")->type(), itemtype::Number);
  EXPECT_EQ(sourceOf(note, u"$WindowTitle"), "\"T\"");
  const QByteArray& body = note.find(u"$Body")->value;
  EXPECT_TRUE(body.contains(QByteArray::fromHex("8aff2700020000053002")));
  EXPECT_TRUE(body.contains(QByteArray("\0\0@NowWhen", 10)));
  EXPECT_EQ(RichText::fromBytes(QByteArrayView(body).sliced(2)).plainText().toStdString(), "Name: ");
  EXPECT_FALSE(note.has(u"$DXL_field"));
}

TEST_F(DxlImport, FieldOfMoreThanARecordHoldsIsKeptToo) {
  const Note note = design(
      "<subform name='S'><body><richtext><par><field name='K' type='keyword' kind='editable'><keywords>"
      "<textlist><text>a</text></textlist></keywords></field></par></richtext></body></subform>",
      noteclass::Form);
  EXPECT_TRUE(note.text(u"$DXL_field").contains(u"<keywords>"));
  EXPECT_EQ(valuesText(note, u"$Fields"), "K");
}

TEST_F(DxlImport, SharedFieldHoldsItsField) {
  const Note note =
      design("<sharedfield name='S'><field name='S' type='names' kind='editable'/></sharedfield>",
             noteclass::SharedField);
  EXPECT_TRUE(note.has(u"$Body"));
  EXPECT_EQ(valuesText(note, u"$Fields"), "S");
}

TEST_F(DxlImport, ScriptLibraryJoinsItsParts) {
  const Note note = design(
      "<scriptlibrary name='L'><code event='options'><lotusscript>Option Public\n</lotusscript></code>"
      "<code event='helper'><lotusscript>Sub Helper\n\tPrint 1\nEnd Sub</lotusscript></code></scriptlibrary>",
      noteclass::Filter);
  const std::string text = valuesText(note, u"$ScriptLib");
  EXPECT_NE(text.find(":(Options):0:2\nOption Public\n'++"), std::string::npos) << text;
  EXPECT_NE(text.find("Sub Helper\n\tPrint 1\nEnd Sub\n"), std::string::npos);
}

TEST_F(DxlImport, JavaScriptLibraryIsMarkedAsSuch) {
  const Note note = design(
      "<scriptlibrary name='L'><code event='library'><javascript>var a;</javascript></code></scriptlibrary>",
      noteclass::Filter);
  EXPECT_EQ(valuesText(note, u"$Flags"), "h");
  EXPECT_EQ(valuesText(note, u"$JavaScriptLibrary"), "var a;");
}

TEST_F(DxlImport, ResourceDataBecomesRecords) {
  const Note image =
      design("<imageresource name='i.gif'><gif>R0lGODlh</gif></imageresource>", noteclass::Form);
  EXPECT_TRUE(image.find(u"$ImageData")->value.endsWith("GIF89a"));
  EXPECT_TRUE(RichText::fromBytes(image.find(u"$ImageData")->data()).complete());
  EXPECT_EQ(valuesText(image, u"$ImageNames"), "i.gif");
  EXPECT_EQ(valuesText(image, u"$FileSize"), "6");
}

TEST_F(DxlImport, StyleSheetDataHasAnItemOfItsOwn) {
  const Note note = design(
      "<stylesheetresource name='a.css'><filedata>YSB7fQ==</filedata></stylesheetresource>", noteclass::Form);
  EXPECT_TRUE(note.find(u"$StyleSheetData")->value.endsWith("a {}"));
}

TEST_F(DxlImport, DesignPartsWithoutAnItemAreKept) {
  const Note note = design("<outline name='O'><outlineentry label='a'/></outline>", noteclass::Filter);
  EXPECT_EQ(note.text(u"$DXL_outlineentry").toStdString(), "<outlineentry label=\"a\"></outlineentry>");
}

class DxlAgent : public DxlImport {
 protected:
  Note agent(const QByteArray& content, const QByteArray& attributes = {}) {
    return design("<agent name='A' " + attributes + "><noteinfo unid='00000000000000010000000000000008'/>" +
                      content + "</agent>",
                  noteclass::Filter);
  }
  std::string info(const QByteArray& content) {
    const Note note = agent(content);
    const Item* item = note.find(u"$AssistInfo");
    if (!item) return "(missing)";
    EXPECT_EQ(item->value.size(), 104);
    return hex(item->data().first(38));
  }
  static QByteArray scheduled(const QByteArray& schedule) {
    return "<trigger type='scheduled'>" + schedule + "</trigger><documentset type='all'/>";
  }
};

const std::string kNoTimes = " 00 00 00 00 00 00 00 00 00 00 00 00 00 00 00 00";

TEST_F(DxlAgent, AgentOfTheListRunsOnSelectedDocuments) {
  EXPECT_EQ(info("<trigger type='agentlist'/><documentset type='selected'/>"),
            "01 00 04 00 04 00 00 00 00 00 00 00 00 00 00 00 00 00" + kNoTimes + " 01 00 00 00");
  EXPECT_EQ(valuesText(agent("<trigger type='agentlist'/>"), u"$AssistFlags"), "EHs");
}

TEST_F(DxlAgent, WeeklyAgentHasTimeAndWeekday) {
  EXPECT_EQ(info(scheduled(
                "<schedule type='weekly' dayofweek='wednesday'><starttime><datetime>T220000,00</datetime>"
                "</starttime></schedule>")),
            "01 00 01 00 01 00 03 00 01 00 80 d9 78 00 04 00 00 00" + kNoTimes + " 00 00 00 00");
}

TEST_F(DxlAgent, MonthlyAgentHasADay) {
  EXPECT_EQ(info(scheduled("<schedule type='monthly' dateinmonth='15'/>")).substr(0, 53),
            "01 00 01 00 01 00 04 00 01 00 00 00 00 00 0f 00 00 00");
}

TEST_F(DxlAgent, MinutesCountHoursAndRunAllDay) {
  EXPECT_EQ(info(scheduled("<schedule type='byminutes' hours='1' minutes='30' onweekends='false'/>")),
            "01 00 01 00 01 00 01 00 5a 00 00 00 00 00 00 d6 83 00" + kNoTimes + " 02 00 00 00");
}

TEST_F(DxlAgent, DailyAndNeverDiffer) {
  EXPECT_EQ(info(scheduled("<schedule type='daily'/>")).substr(18, 11), "02 00 01 00");
  EXPECT_EQ(info(scheduled("<schedule type='never'/>")).substr(18, 11), "00 00 00 00");
}

TEST_F(DxlAgent, TriggersHaveTheirNumbers) {
  const std::pair<const char*, const char*> triggers[] = {
      {"actionsmenu", "4"}, {"beforenewmail", "6"}, {"afternewmail", "2"}, {"docupdate", "5"},
      {"docpaste", "3"},    {"scheduled", "1"},     {"serverstart", "8"}};
  for (const auto& [type, number] : triggers)
    EXPECT_EQ(valuesText(agent(QByteArray("<trigger type='") + type + "'/>"), u"$AssistTrigger"), number)
        << type;
}

TEST_F(DxlAgent, SettingsBecomeItems) {
  const Note note = agent(
      "<designchange><datetime>20240102T100000,00+00</datetime></designchange>"
      "<trigger type='scheduled'><schedule type='daily' runlocation='specific' runserver='CN=HUB/O=Acme'/>"
      "</trigger>",
      "enabled='false' runaswebuser='true' restrictions='unrestricted'");
  EXPECT_EQ(valuesText(note, u"$AssistFlags"), "Du");
  EXPECT_EQ(valuesText(note, u"$Restricted"), "0");
  EXPECT_EQ(valuesText(note, u"$MachineName"), "CN=HUB/O=Acme");
  EXPECT_EQ(note.find(u"$AssistVersion")->type(), itemtype::Time);
  EXPECT_EQ(valuesText(note, u"$AssistType"), "-1");
  EXPECT_EQ(hex(note.find(u"$AssistAction")->value), "10 00 81 02");
  EXPECT_EQ(valuesText(note, u"$Flags"), "fS");
}

TEST_F(DxlAgent, ScriptIsARecordWithItsLength) {
  const Note note =
      agent("<code event='initialize'><lotusscript>Sub Initialize\nEnd Sub</lotusscript></code>");
  EXPECT_EQ(valuesText(note, u"$AssistType"), "65413");
  EXPECT_EQ(valuesText(note, u"$Flags"), "fL");
  const QByteArrayView data = note.find(u"$AssistAction")->data();
  EXPECT_EQ(hex(data.first(4)), "81 02 85 ff");
  EXPECT_TRUE(data.toByteArray().contains("Sub Initialize\nEnd Sub\n"));
}

TEST_F(DxlAgent, FormulaIsARecordAsSource) {
  const Note note = agent("<code event='action'><formula>@All</formula></code>");
  EXPECT_EQ(valuesText(note, u"$AssistType"), "65412");
  EXPECT_EQ(hex(note.find(u"$AssistAction")->data()),
            "81 02 84 ff 10 00 00 00 00 00 06 00 00 00 40 41 6c 6c");
}

TEST_F(DxlAgent, SimpleActionIsKept) {
  const Note note = agent("<code event='action'><simpleaction action='x'/></code>");
  EXPECT_EQ(note.text(u"$DXL_code").toStdString(),
            "<code event=\"action\"><simpleaction action=\"x\"></simpleaction></code>");
}

}  // namespace
}  // namespace lens

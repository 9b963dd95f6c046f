// Every formula of a design note is found where it stands.
#include <gtest/gtest.h>

#include "embedded/dxl/record_writer.h"
#include "embedded/dxl/rich_text_records.h"
#include "embedded/dxl/view_elements.h"
#include "embedded/format/source_formula.h"
#include "embedded/formula_context/note_formulas.h"
#include "embedded/richtext/rich_records.h"
#include "notes/literals.h"
#include "support/compiled_formula.h"

namespace lens {
namespace {

QStringList shown(const Note& note) {
  QStringList lines;
  for (const NoteFormula& found : formulasOf(note))
    lines += u"%1|%2|%3"_s.arg(found.item, found.place,
                               found.reading.source.isEmpty() ? found.reading.problem : found.reading.source);
  return lines;
}

// A record with a formula at the place, and something behind it.
QByteArray recordWith(quint8 kind, qsizetype offset, const QByteArray& formula,
                      const QByteArray& behind = {}) {
  return richrecord::wordRecord(kind, QByteArray(offset - 4, '\1') + formula + behind);
}

TEST(NoteFormulas, OfItemsAreReadInEitherForm) {
  Note note;
  note.add(u"$TITLE"_s, 0, textValue(u"@All"));
  note.add(u"$Formula"_s, 0, rawValue(itemtype::Formula, compiled(u"SELECT Form = \"Memo\"")));
  note.add(u"$WindowTitle"_s, 0, sourceFormulaValue(u"\"Title\""));
  note.add(u"$Odd"_s, 0, rawValue(itemtype::Formula, "\x12\x01"));
  note.add(u"$None"_s, 0, rawValue(itemtype::Formula, {}));
  EXPECT_EQ(shown(note), QStringList({u"$Formula||SELECT Form = \"Memo\""_s, u"$WindowTitle||\"Title\""_s,
                                      u"$Odd||its size is wrong (byte 0)"_s}));
}

TEST(NoteFormulas, OfColumnsNameTheirItem) {
  ViewColumn plain, sorted;
  plain.item = u"Subject"_s;
  sorted.item = u"$0"_s;
  sorted.formula = compiled(u"@Left(Subject; 2)");
  Note note;
  note.add(u"$ViewFormat"_s, 0, viewFormatValue({plain, sorted}, false));
  EXPECT_EQ(shown(note), QStringList(u"$ViewFormat|column $0|@Left(Subject; 2)"_s));
}

TEST(NoteFormulas, OfFieldsTellWhatTheyAreFor) {
  FieldRecord field;
  field.name = u"Größe"_s;
  field.defaultValue = compiled(u"@Now");
  field.inputTranslation = sourceFormula(u"@Trim(Size)");
  field.inputValidation = compiled(u"@Success");
  field.keywords = QByteArray(2, '\0') + compiled(u"@DbColumn(\"\"; \"\"; \"All\"; 1)");
  RecordWriter body;
  body.appendInline(fieldRecord(field, {}));
  Note note;
  note.add(u"$Body"_s, 0, rawValue(itemtype::RichText, body.bytes()));
  EXPECT_EQ(shown(note), QStringList({u"$Body|field Größe, default value|@Now"_s,
                                      u"$Body|field Größe, input translation|@Trim(Size)"_s,
                                      u"$Body|field Größe, input validation|@Success"_s,
                                      u"$Body|field Größe, keywords|@DbColumn(\"\"; \"\"; \"All\"; 1)"_s}));
}

TEST(NoteFormulas, OfRecordsAreFoundAtTheirPlaces) {
  const QByteArray formula = compiled(u"Status = \"Done\"");
  const struct {
    quint8 kind;
    qsizetype offset;
    QStringView place;
  } places[] = {{187, 14, u"hide-when"}, {169, 12, u"hotspot"}, {173, 12, u"button"},  {94, 28, u"action"},
                {176, 24, u"formula"},   {120, 34, u"formula"}, {113, 34, u"formula"}, {246, 34, u"formula"},
                {237, 32, u"formula"},   {126, 12, u"formula"}, {254, 80, u"formula"}, {249, 32, u"formula"},
                {186, 72, u"formula"},   {242, 12, u"formula"}};
  for (const auto& [kind, offset, place] : places) {
    Note note;
    note.add(
        u"$Body"_s, 0,
        rawValue(itemtype::RichText, recordWith(kind, offset, formula, "more") + QByteArray("\x81\x02")));
    EXPECT_EQ(shown(note), QStringList(u"$Body|%1|Status = \"Done\""_s.arg(place))) << int(kind);
    Note elsewhere;
    elsewhere.add(u"$Body"_s, 0, rawValue(itemtype::RichText, recordWith(kind, offset + 2, formula)));
    EXPECT_EQ(shown(elsewhere), QStringList()) << int(kind);
  }
  // Here it stands at the end, behind something of any length.
  for (const qsizetype offset : {4, 9, 60}) {
    Note note;
    note.add(u"$V5ACTIONS"_s, 0, rawValue(itemtype::RichText, recordWith(190, offset, formula)));
    EXPECT_EQ(shown(note), QStringList(u"$V5ACTIONS|action|Status = \"Done\""_s)) << offset;
  }
}

TEST(NoteFormulas, OfAgentsSelect) {
  const QByteArray formula = compiled(u"FIELD A := 1; @All");
  for (const char kind : {'\x84', '\x92'}) {
    QByteArray record("\x84\xFF\0\0\0\0\0\0\0\0", 10);
    record[0] = kind;
    record[2] = char(record.size() + formula.size());
    record[8] = char(formula.size());
    Note note, text;
    note.add(u"$AssistAction"_s, 0, rawValue(itemtype::Action, QByteArray("\x81\x02") + record + formula));
    EXPECT_EQ(shown(note), QStringList(u"$AssistAction|agent|FIELD A := 1;SELECT  @All"_s));
    // Records of these kinds are something else in a text.
    text.add(u"Body"_s, 0, rawValue(itemtype::RichText, record + formula));
    EXPECT_EQ(shown(text), QStringList());
  }
}

// The place in the order of the tabulator key is a number, and measures nothing.
TEST(NoteFormulas, OfFieldsStandBehindTheirOrder) {
  FieldRecord field;
  field.name = u"Amount"_s;
  field.defaultValue = compiled(u"@Now");
  field.inputValidation = compiled(u"@Success");
  QByteArray record = fieldRecord(field, {});
  record[26] = 7;
  Note note;
  note.add(u"$Body"_s, 0, rawValue(itemtype::RichText, record));
  EXPECT_EQ(shown(note), QStringList({u"$Body|field Amount, default value|@Now"_s,
                                      u"$Body|field Amount, input validation|@Success"_s}));
}

TEST(NoteFormulas, OfNavigatorsLieInRecords) {
  Note note;
  note.add(u"$ViewMapLayout"_s, 0,
           rawValue(itemtype::ViewMapLayout, recordWith(176, 24, compiled(u"Status = \"Done\""))));
  EXPECT_EQ(shown(note), QStringList(u"$ViewMapLayout|formula|Status = \"Done\""_s));
}

TEST(NoteFormulas, OfOutlinesAreFoundInTheirEntries) {
  const QByteArray first = compiled(u"@IsNewDoc"), second = compiled(u"Status = \"Done\"");
  for (int shift = 0; shift < 5; ++shift) {
    Note note;
    note.add(u"$SiteMapList"_s, 0,
             rawValue(itemtype::OutlineFormat,
                      QByteArray(shift, '\x0A') + "Entry" + first + second + QByteArray(3, '\0') + first));
    EXPECT_EQ(shown(note),
              QStringList({u"$SiteMapList|entry|@IsNewDoc"_s, u"$SiteMapList|entry|Status = \"Done\""_s,
                           u"$SiteMapList|entry|@IsNewDoc"_s}))
        << shift;
  }
  Note none;
  none.add(u"$SiteMapList"_s, 0, rawValue(itemtype::OutlineFormat, first.chopped(1)));
  EXPECT_EQ(shown(none), QStringList());
}

TEST(NoteFormulas, TellWhichOfSeveralItemsHoldsThem) {
  Note note;
  note.add(u"A"_s, 0, textValue(u"x"));
  for (const char16_t* source : {u"1", u"2"}) note.add(u"A"_s, 0, sourceFormulaValue(source));
  const QVector<NoteFormula> found = formulasOf(note);
  ASSERT_EQ(found.size(), 2);
  EXPECT_EQ(found[0].itemPlace, 1);
  EXPECT_EQ(found[1].itemPlace, 2);
  EXPECT_TRUE(found[1].reading.keptAsSource);
}

// --- Elements that an import keeps --------------------------------------------------------------------

Note keeping(const QString& element, const QString& xml) {
  Note note;
  note.add(u"$DXL_"_s + element, 0, textValue(xml));
  return note;
}

TEST(KeptFormulas, TellWhatTheyBelongTo) {
  EXPECT_EQ(
      shown(keeping(u"actionbar"_s,
                    u"<actionbar bgcolor='red'><action title='Save'><code event='click'><formula>@Command("
                    "[FileSave])</formula></code><code event='hidewhen'><formula>@IsNewDoc</formula></code>"
                    "</action><action><code event='click'><formula>1 &lt; 2</formula></code></action>"
                    "</actionbar>"_s)),
      QStringList({u"$DXL_actionbar|action Save, click|@Command([FileSave])"_s,
                   u"$DXL_actionbar|action Save, hide-when|@IsNewDoc"_s,
                   u"$DXL_actionbar|action, click|1 < 2"_s}));
  EXPECT_EQ(shown(keeping(u"pardef"_s,
                          u"<pardef id='3'><code event='hidewhen'><formula>a</formula></code>"
                          "</pardef>"_s)),
            QStringList(u"$DXL_pardef|pardef 3, hide-when|a"_s));
  EXPECT_EQ(shown(keeping(u"field"_s,
                          u"<field name='Kind'><keywords><formula>\"a\":\"b\"</formula></keywords>"
                          "</field>"_s)),
            QStringList(u"$DXL_field|field Kind, keywords|\"a\":\"b\""_s));
  EXPECT_EQ(shown(keeping(u"code"_s, u"<code event='queryopen'><formula>@True</formula></code>"_s)),
            QStringList(u"$DXL_code|queryopen|@True"_s));
}

TEST(KeptFormulas, MayBeCompiled) {
  const QString bytes = QString::fromLatin1(compiled(u"@IsNewDoc").toBase64());
  EXPECT_EQ(shown(keeping(u"button"_s,
                          u"<button><code event='click'><formula compiled='true'>\n%1\n</formula>"
                          "</code></button>"_s.arg(bytes))),
            QStringList(u"$DXL_button|button, click|@IsNewDoc"_s));
  EXPECT_EQ(
      shown(keeping(u"button"_s, u"<button><formula compiled='true'>CgAAAAgAwQADAA==</formula></button>"_s)),
      QStringList(u"$DXL_button|button|@Function_0C1"_s));
}

TEST(KeptFormulas, AreToldOnceWhereTheImportReadThemToo) {
  ViewColumn column;
  column.item = u"$0"_s;
  column.formula = sourceFormula(u"@Now");
  Note note = keeping(u"column"_s,
                      u"<column itemname='$0' align='right'><code event='value'><formula>@Now</formula>"
                      "</code><code event='hidewhen'><formula>@Now</formula></code></column>"_s);
  note.add(u"$ViewFormat"_s, 0, viewFormatValue({column}, false));
  EXPECT_EQ(shown(note),
            QStringList({u"$ViewFormat|column $0|@Now"_s, u"$DXL_column|column $0, hide-when|@Now"_s}));
}

TEST(KeptFormulas, OfDamagedXmlAreThoseBeforeTheFault) {
  const QString xml =
      u"<action title='a'><code event='click'><formula>1</formula></code><code event='label'>"
      "<formula>2<break/>3</formula></code></action>"_s;
  for (qsizetype size = 0; size <= xml.size(); ++size) {
    const QStringList lines = shown(keeping(u"action"_s, xml.first(size)));
    ASSERT_EQ(lines.size(), size < xml.indexOf(u"1</formula>") + 11   ? 0
                            : size < xml.indexOf(u"3</formula>") + 11 ? 1
                                                                      : 2)
        << size << lines.join(u'\n').toStdString();
    if (lines.size() == 2) {
      EXPECT_EQ(lines[1], u"$DXL_action|action a, label|2\n3");
    }
  }
  QString deep;
  for (int i = 0; i < 100'000; ++i) deep += u"<a>"_s;
  EXPECT_EQ(shown(keeping(u"a"_s, deep.first(20'000))), QStringList());
  EXPECT_EQ(shown(keeping(u"a"_s, u"<!DOCTYPE a [<!ENTITY x 'y'>]><a><formula>&x;</formula></a>"_s)),
            QStringList());
}

TEST(NoteFormulas, OfDamagedRecordsEndTheirItem) {
  const QByteArray record = recordWith(187, 14, compiled(u"Status = \"Done\""));
  for (qsizetype size = 0; size < record.size(); ++size) {
    Note note;
    note.add(u"$Body"_s, 0, rawValue(itemtype::RichText, record.first(size)));
    note.add(u"$Formula"_s, 0, rawValue(itemtype::Formula, compiled(u"@All")));
    EXPECT_EQ(shown(note), QStringList(u"$Formula||@All"_s)) << size;
  }
}

}  // namespace
}  // namespace lens

#include "embedded/design/form_fields.h"

#include "embedded/dxl/import_fixture.h"
#include "embedded/dxl/rich_text_records.h"

namespace lens {
namespace {

std::string told(const Note& form) {
  QStringList rows;
  for (const DesignField& field : fieldsOf(form))
    rows.append(QStringLiteral("%1 %2").arg(field.name).arg(field.type));
  return rows.join(u", ").toStdString();
}

class FormFields : public DxlImport {};

TEST_F(FormFields, HaveTheTypesThatTheFormGivesThem) {
  const Note form = design(
      "<form name='F'><body><richtext><pardef id='1'/><par def='1'>"
      "<field name='Subject' type='text' kind='editable'/><field name='Price' type='number' kind='computed'/>"
      "<field name='Due' type='datetime' kind='editable'/><field name='Body' type='richtext' "
      "kind='editable'/>"
      "<field name='Lite' type='richtextlite' kind='editable'/>"
      "<field name='To' type='names' kind='editable'/><field name='From' type='authors' kind='computed'/>"
      "<field name='Team' type='readers' kind='editable'/><field name='Kind' type='keyword' kind='editable'/>"
      "<field name='Pin' type='password' kind='editable'/><field name='Rule' type='formula' kind='editable'/>"
      "<field name='Hue' type='color' kind='editable'/></par></richtext></body></form>",
      noteclass::Form);
  EXPECT_EQ(told(form),
            "Subject 1280, Price 768, Due 1024, Body 1, Lite 1, To 1074, From 1076, Team 1075, Kind 1280, "
            "Pin 1280, Rule 1280, Hue 1280");
}

TEST_F(FormFields, AreReadBehindLongFormulas) {
  const Note form = design(
      "<form name='F'><body><richtext><pardef id='1'/><par def='1'>"
      "<field name='Sum' type='number' kind='computed' description='all of it'><code event='defaultvalue'>"
      "<formula>Price * Count</formula></code></field>"
      "<field name='Zip' type='text' kind='editable'><code event='inputtranslation'><formula>@Trim(Zip)"
      "</formula></code><code event='inputvalidation'><formula>@Success</formula></code></field>"
      "</par></richtext></body></form>",
      noteclass::Form);
  EXPECT_EQ(told(form), "Sum 768, Zip 1280");
}

TEST_F(FormFields, OfAFormWithoutAnyAreNone) {
  EXPECT_EQ(told(design("<form name='Empty'/>", noteclass::Form)), "");
  EXPECT_EQ(told(Note()), "");
}

TEST_F(FormFields, OfASharedFieldAreThatOne) {
  const Note note = design(
      "<sharedfield name='Reviewer'><field name='Reviewer' type='names' kind='editable'/></sharedfield>",
      noteclass::SharedField);
  EXPECT_EQ(told(note), "Reviewer 1074");
}

TEST_F(FormFields, ComeFromTheItemsWhereTheFormListsNone) {
  Note form;
  form.add(QStringLiteral("$TITLE"), itemflag::Summary, textValue(u"F"));
  form.add(QStringLiteral("Subject"), itemflag::Placeholder, rawValue(itemtype::Unknown, {}));
  form.add(QStringLiteral("Team"), itemflag::Placeholder | itemflag::Names | itemflag::Readers,
           rawValue(itemtype::Unknown, {}));
  form.add(QStringLiteral("$Hidden"), itemflag::Placeholder, rawValue(itemtype::Unknown, {}));
  EXPECT_EQ(told(form), "Subject 1280, Team 1075");
  form.add(QStringLiteral("$Fields"), itemflag::Summary,
           textListValue({QStringLiteral("Price"), QStringLiteral("SUBJECT"), QString()}));
  form.add(QStringLiteral("price"), 0, numberValue(0));
  EXPECT_EQ(told(form), "Price 768, SUBJECT 1280, Team 1075") << "each name once, in any case of letters";
}

TEST_F(FormFields, OfABodyInSeveralItemsAreAllFound) {
  Note form;
  for (const char16_t* name : {u"A", u"B"}) {
    FieldRecord record;
    record.name = QString::fromUtf16(name);
    record.type = itemtype::Number;
    form.add(QStringLiteral("$Body"), 0, rawValue(itemtype::RichText, fieldRecord(record, {})));
  }
  EXPECT_EQ(told(form), "A 768, B 768");
}

TEST_F(FormFields, OfDamagedBytesAreThoseThatCanBeRead) {
  FieldRecord record;
  record.name = QStringLiteral("Price");
  record.type = itemtype::Number;
  record.defaultValue = QByteArray(20, '\x7F');
  const QByteArray whole = fieldRecord(record, {});
  const auto formOf = [](const QByteArray& body) {
    Note form;
    form.add(QStringLiteral("$Body"), 0, rawValue(itemtype::RichText, body));
    return form;
  };
  ASSERT_EQ(told(formOf(whole)), "Price 768");
  for (qsizetype length = 0; length < whole.size() - 1; ++length)
    ASSERT_EQ(told(formOf(whole.first(length))), "") << length;
  for (qsizetype at = 4; at < whole.size(); ++at) {
    for (const char byte : {'\0', '\x7F', '\xFF'}) {
      QByteArray bytes = whole;
      bytes[at] = byte;
      ASSERT_LE(fieldsOf(formOf(bytes)).size(), 1) << at;
    }
  }
}

}  // namespace
}  // namespace lens

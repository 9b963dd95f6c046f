// Notes of a design that go out raw hold formulas as other programs run them, and come back as they were.
#include "embedded/dxl/compiled_values.h"
#include "embedded/dxl/export/export_fixture.h"
#include "embedded/dxl/record_writer.h"
#include "embedded/dxl/rich_text_records.h"
#include "embedded/dxl/view_elements.h"
#include "embedded/format/agent_records.h"
#include "embedded/format/source_formula.h"
#include "embedded/format/view_records.h"
#include "embedded/formula/compiled/compiled_writer.h"
#include "embedded/formula/compiled/stored_formula.h"
#include "embedded/formula_context/note_formulas.h"
#include "support/compiled_formula.h"

namespace lens {
namespace {

// A note that belongs to another one is no design element.
Note rawNote(quint16 noteClass) {
  Note note;
  note.header.noteClass = noteClass;
  note.header.parent = Unid::fromText(u"0123456789ABCDEF0123456789ABCDEF"_s);
  note.add(u"$TITLE"_s, itemflag::Summary, textValue(u"Raw"));
  return note;
}

ViewColumn column(const QString& item, QStringView source) {
  ViewColumn column;
  column.item = item;
  column.title = item + u"!"_s;
  if (!source.isEmpty()) column.formula = sourceFormula(source);
  return column;
}

Note view(QStringView selection, const QVector<ViewColumn>& columns) {
  Note note = rawNote(noteclass::View);
  note.add(u"$FORMULA"_s, itemflag::Summary, sourceFormulaValue(selection));
  note.add(u"$VIEWFORMAT"_s, itemflag::Summary, viewFormatValue(columns));
  return note;
}

class CompiledExport : public DxlExport {
 protected:
  // The export as a program takes it that knows nothing of our marks.
  Note asOthersRead(QByteArray dxl, quint16 noteClass) {
    for (qsizetype at = dxl.indexOf(" lens:stored="); at >= 0; at = dxl.indexOf(" lens:stored=", at)) {
      const qsizetype end = dxl.indexOf('"', dxl.indexOf('"', at) + 1);
      dxl.remove(at, end + 1 - at);
    }
    return onlyNote(*imported(dxl), noteClass);
  }
  static Note onlyNote(Database& database, quint16 noteClass) {
    Note note;
    EXPECT_TRUE(database.notes().read(database.notes().list(noteClass).value(0).id, note));
    return note;
  }
  static QStringList formulas(const Note& note) {
    QStringList lines;
    for (const NoteFormula& found : formulasOf(note))
      lines += u"%1|%2|%3%4"_s.arg(found.item, found.place, found.reading.keptAsSource ? u"source: " : u"",
                                   found.reading.source);
    return lines;
  }
};

TEST_F(CompiledExport, ViewsHaveTheirSelectionWithTheNamesOfTheirColumns) {
  save(view(u"SELECT Form = \"Memo\"",
            {column(u"Subject"_s, {}), column(u"$0"_s, u"@Left(Subject; 2)"), column(u"$1"_s, u"158")}));
  const QByteArray dxl = roundTrip();
  EXPECT_TRUE(dxl.contains("<note class=\"view\"")) << dxl.toStdString();
  const Note note = asOthersRead(dxl, noteclass::View);
  EXPECT_EQ(formulas(note),
            QStringList({u"$FORMULA||SELECT Form = \"Memo\""_s, u"$VIEWFORMAT|column $0|@Left(Subject; 2)"_s,
                         u"$VIEWFORMAT|column $1|158"_s}));
  const formula::MachineEnvironment machine;
  const QByteArray column = formula::writeCompiledColumn(u"@Left(Subject; 2)", u"$0", machine).bytes,
                   constant = formula::writeCompiledColumn(u"158", u"$1", machine).bytes;
  EXPECT_EQ(
      note.find(u"$Formula")->data(),
      formula::writeCompiledSelection(u"SELECT Form = \"Memo\"",
                                      {{u"Subject"_s, {}}, {u"$0"_s, column}, {u"$1"_s, constant}}, machine)
          .bytes);
  // All else of the columns is as it was.
  StoredViewFormat format;
  ASSERT_TRUE(readViewFormat(note.find(u"$ViewFormat")->data(), format));
  ASSERT_EQ(format.columns.size(), 3);
  EXPECT_EQ(format.columns[1].title, u"$0!");
  EXPECT_EQ(format.columns[2].item, u"$1");
}

// No code is made up for what has none.
TEST_F(CompiledExport, WhatHasNoCompiledFormStaysSource) {
  save(view(u"SELECT @Sqrt(A) = 2", {column(u"$0"_s, u"@Left(Subject; 2)"), column(u"$1"_s, u"@Sqrt(A)")}));
  const Note note = asOthersRead(roundTrip(), noteclass::View);
  EXPECT_EQ(formulas(note), QStringList({u"$FORMULA||source: SELECT @Sqrt(A) = 2"_s,
                                         u"$VIEWFORMAT|column $0|@Left(Subject; 2)"_s,
                                         u"$VIEWFORMAT|column $1|source: @Sqrt(A)"_s}));
}

TEST_F(CompiledExport, WhatIsCompiledAlreadyStaysAsItIs) {
  ViewColumn known = column(u"$0"_s, {});
  known.formula = compiled(u"@Now");
  Note note = view(u"SELECT @All", {known});
  note.find(u"$Formula")->value = rawValue(itemtype::Formula, compiled(u"SELECT @All"));
  save(note);
  const QByteArray dxl = roundTrip();
  EXPECT_FALSE(dxl.contains("lens:stored")) << dxl.toStdString();
}

TEST_F(CompiledExport, FieldsAndAgentsAreCompiledToo) {
  FieldRecord field;
  field.name = u"Amount"_s;
  field.description = u"odd size"_s;
  field.defaultValue = sourceFormula(u"@Now");
  field.inputValidation = sourceFormula(u"@If(Amount > 0; @Success; @Failure(\"no\"))");
  RecordWriter body;
  body.appendInline(fieldRecord(field, {}));
  Note form = rawNote(noteclass::Form);
  form.add(u"$Body"_s, 0, rawValue(itemtype::RichText, body.bytes()));
  save(form);
  Note agent = rawNote(noteclass::Filter);
  agent.add(u"$AssistAction"_s, 0, formulaActionValue(sourceFormula(u"FIELD A := 1; SELECT @All")));
  save(agent);
  const QByteArray dxl = roundTrip();
  EXPECT_EQ(
      formulas(asOthersRead(dxl, noteclass::Form)),
      QStringList({u"$Body|field Amount, default value|@Now"_s,
                   u"$Body|field Amount, input validation|@If(Amount > 0; @Success; @Failure(\"no\"))"_s}));
  EXPECT_EQ(formulas(asOthersRead(dxl, noteclass::Filter)),
            QStringList(u"$AssistAction|agent|FIELD A := 1; SELECT @All"_s));
}

// Also where the last record has an odd length, and nothing behind it that fills it up.
TEST_F(CompiledExport, RecordsWithoutSourceAreLeftAlone) {
  for (const QStringView name : {u"A", u"Ab"}) {
    FieldRecord field;
    field.name = name.toString();
    field.defaultValue = compiled(u"@Now");
    Note form = rawNote(noteclass::Form);
    form.add(u"$Body"_s, 0, rawValue(itemtype::RichText, fieldRecord(field, {})));
    EXPECT_TRUE(compiledValue(form, *form.find(u"$Body")).isEmpty());
    field.defaultValue = sourceFormula(u"@Now");
    form.find(u"$Body")->value = rawValue(itemtype::RichText, fieldRecord(field, {}));
    const QByteArray changed = compiledValue(form, *form.find(u"$Body"));
    ASSERT_FALSE(changed.isEmpty());
    EXPECT_TRUE(compiledValue(form, {u"$Body"_s, 0, changed}).isEmpty());
  }
}

TEST_F(CompiledExport, DocumentsAreLeftAlone) {
  Note note = view(u"SELECT @All", {column(u"$0"_s, u"@Now")});
  note.header.noteClass = noteclass::Document;
  save(note);
  EXPECT_FALSE(roundTrip().contains("lens:stored"));
}

// Who changed what is compiled means that, and a mark of something else says nothing.
TEST_F(CompiledExport, AChangedValueCountsMoreThanTheMarkBesideIt) {
  save(view(u"SELECT Form = \"Memo\"", {}));
  const QByteArray dxl = roundTrip();
  const QByteArray mark = "lens:stored=\"", before = sourceFormulaValue(u"SELECT Form = \"Memo\"").toBase64();
  ASSERT_TRUE(dxl.contains(mark + before)) << dxl.toStdString();
  for (const QByteArray& stored :
       {sourceFormulaValue(u"SELECT Form = \"Other\""), sourceFormulaValue(u"("), textValue(u"text"),
        rawValue(itemtype::Formula, compiled(u"SELECT Form = \"Memo\"")), QByteArray("x"), QByteArray()}) {
    QByteArray changed = dxl;
    changed.replace(mark + before, mark + stored.toBase64());
    const Note note = onlyNote(*imported(changed), noteclass::View);
    EXPECT_EQ(formulas(note), QStringList(u"$FORMULA||SELECT Form = \"Memo\""_s))
        << stored.toHex().toStdString();
  }
}

// Every value of any bytes is left alone or comes back.
TEST_F(CompiledExport, DamagedRecordsAreNotChanged) {
  const Note whole = view(u"SELECT @All", {column(u"$0"_s, u"@Now"), column(u"$1"_s, u"@Today")});
  const QByteArray value = whole.find(u"$ViewFormat")->value;
  for (qsizetype size = 2; size <= value.size(); ++size) {
    for (qsizetype at = 2; at < size; at += size == value.size() ? 1 : size) {
      Note note = whole;
      Item& item = *note.find(u"$ViewFormat");
      item.value = value.first(size);
      if (size == value.size()) item.value[at] = char(~item.value[at]);
      const QByteArray changed = compiledValue(note, item);
      if (!changed.isEmpty()) {
        ASSERT_TRUE(isCompiledFrom(changed, item.value)) << size << " " << at;
      }
    }
  }
}

}  // namespace
}  // namespace lens

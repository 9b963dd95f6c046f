// Every formula of a design note is found where it stands.
#include <gtest/gtest.h>

#include "embedded/dxl/record_writer.h"
#include "embedded/dxl/rich_text_records.h"
#include "embedded/dxl/view_elements.h"
#include "embedded/format/source_formula.h"
#include "embedded/formula/compiled/compiled_writer.h"
#include "embedded/formula_context/note_formulas.h"
#include "embedded/richtext/rich_records.h"
#include "notes/literals.h"

namespace lens {
namespace {

QByteArray compiled(QStringView source) {
  const QByteArray bytes = formula::writeCompiled(source, formula::MachineEnvironment()).bytes;
  EXPECT_FALSE(bytes.isEmpty());
  return bytes;
}

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
  RecordWriter body;
  body.appendInline(fieldRecord(field, {}));
  Note note;
  note.add(u"$Body"_s, 0, rawValue(itemtype::RichText, body.bytes()));
  EXPECT_EQ(shown(note), QStringList({u"$Body|field Größe, default value|@Now"_s,
                                      u"$Body|field Größe, input translation|@Trim(Size)"_s,
                                      u"$Body|field Größe, input validation|@Success"_s}));
}

TEST(NoteFormulas, OfRecordsAreFoundAtTheirPlaces) {
  const QByteArray formula = compiled(u"Status = \"Done\"");
  const struct {
    quint8 kind;
    qsizetype offset;
    QStringView place;
  } places[] = {{187, 14, u"hide-when"}, {169, 12, u"hotspot"}, {173, 12, u"button"}, {94, 28, u"action"}};
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
  Note note;
  const QByteArray formula = compiled(u"FIELD A := 1; @All");
  QByteArray record("\x84\xFF\0\0\0\0\0\0\0\0", 10);
  record[2] = char(record.size() + formula.size());
  record[8] = char(formula.size());
  note.add(u"$AssistAction"_s, 0, rawValue(itemtype::Action, QByteArray("\x81\x02") + record + formula));
  EXPECT_EQ(shown(note), QStringList(u"$AssistAction|agent|FIELD A := 1;SELECT  @All"_s));
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

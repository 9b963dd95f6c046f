#include "design/field_types.h"

#include "notes/literals.h"
#include "notes/numbers.h"
#include "shell/row_texts.h"
#include "shell/text_routines.h"

namespace lens {
namespace {

// The boxes of both buttons have the name of one of them.
const QString kTitle = u"cmdChkFields"_s;
const QString kNameMark = u" #"_s;

QString record(const QString& beginning, const QString& content) {
  return beginning + u" --> " + content + u"\r\n";
}

// What stands before the mark, aliases included; empty for a row without a name.
QString formName(const QString& row) {
  if (!row.contains(kShortIdMark)) return {};
  const qsizetype mark = row.indexOf(kNameMark);
  return mark < 0 ? QString() : trimBlanks(row.left(mark));
}

}  // namespace

FieldTypes::FieldTypes(Desk& desk) : desk_(desk) {
  desk_.form.cmdFieldTypes->click = [this] { cmdFieldTypes_Click(); };
  desk_.form.cmdChkFields->click = [this] { cmdChkFields_Click(); };
}

// A failure ends the walk, and the report so far is not shown.
template <class Body>
void FieldTypes::withBox(Body&& statements) {
  try {
    statements();
  } catch (const RuntimeError& error) {
    desk_.host.messageBox(error.description(), box::Critical, kTitle);
  }
}

void FieldTypes::cmdFieldTypes_Click() {
  withBox([this] {
    desk_.form.txtFieldContent->setText(QString());
    if (desk_.form.cmbFieldType->text().isEmpty()) {
      desk_.host.messageBox(u"Field type not specified!\nChoose a field from an open document."_s,
                            box::Exclamation, kTitle);
      return;
    }
    showReport(reportOf(&FieldTypes::fieldsOfForm));
  });
}

// Rows that come while a box is shown on the way are not looked at.
QString FieldTypes::reportOf(RecordsOfRow recordsOf) {
  QString report;
  const int rows = desk_.form.idList->listCount();
  for (int row = 0; row < rows && row < desk_.form.idList->listCount(); ++row)
    report += (this->*recordsOf)(desk_.form.idList->list(row));
  return report;
}

// A row that names no form of the database adds nothing.
QString FieldTypes::fieldsOfForm(const QString& row) {
  const QString name = formName(row);
  if (name.isEmpty()) return {};
  const NotesForm form = desk_.state.gDb.form(name);
  if (form.isNothing()) return {};
  const QString beginning = row.left(row.indexOf(kNameMark) + 1);
  QString report;
  const Value fields = form.fields();
  for (const Value& field : fields.values()) {
    const double type = form.fieldType(field);
    if (type == wantedType()) report += record(beginning, field.text());
  }
  return report;
}

// "TEXT (1280) means text" gives 1280; without ")" it is 0, which no field has.
int FieldTypes::wantedType() {
  const QString sentence = desk_.form.cmbFieldType->text();
  const QString number = desk_.routines.RightFrom(desk_.routines.LeftFrom(sentence, u")"_s), u"("_s);
  return Int16(roundToInt32(numberPrefix(number)));
}

void FieldTypes::cmdChkFields_Click() {
  withBox([this] {
    desk_.form.txtFieldContent->setText(QString());
    showReport(reportOf(&FieldTypes::contentOfNote));
  });
}

// The current document becomes the note of the row, or nothing.
QString FieldTypes::contentOfNote(const QString& row) {
  const QString id = listedNoteId(row);
  const QString name = desk_.form.txtFieldName->text();
  desk_.state.gDoc = desk_.state.gDb.documentById(id);
  if (desk_.state.gDoc.isNothing() || !desk_.state.gDoc.hasItem(name)) return {};
  const Value values = desk_.state.gDoc.itemValue(name);
  return record(id, textOf(values.at(0), desk_.host.regional()));
}

// Records end in a line end already, so each ends in CR CR LF; existing tools split them there.
void FieldTypes::showReport(const QString& report) {
  desk_.form.txtFieldContent->setText(desk_.routines.ReplaceAll(report, u"\n"_s, u"\r\n"_s));
}

}  // namespace lens

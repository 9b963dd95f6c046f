#include "editing/field_overwriting.h"

#include "editing/flag_boxes.h"
#include "editing/reload_box.h"
#include "editing/rich_text_replacement.h"
#include "editing/value_lines.h"
#include "notes/literals.h"
#include "shell/exact_texts.h"
#include "shell/row_texts.h"

namespace lens {
namespace {

// The client raises it for what did no harm to the document.
constexpr int kPassedOver = 4000;

}  // namespace

FieldOverwriting::FieldOverwriting(Desk& desk, LowLevelReading& lowLevel) : desk_(desk), lowLevel_(lowLevel) {
  desk_.form.cmdOverwrite->click = [this] { cmdOverwrite_Click(); };
  desk_.form.cmdDelField->click = [this] { cmdDelField_Click(); };
}

void FieldOverwriting::cmdOverwrite_Click() {
  Statements step(kPassedOver);
  try {
    const int count = desk_.form.fldList->listCount();
    for (int row = 0; row < count; ++row) {
      if (!desk_.form.fldList->selected(row)) continue;
      QString name;
      step([&] { name = requiredFieldName(desk_.form.fldList->list(row)); });
      if (desk_.state.gDoc.isNothing()) continue;
      overwriteItem(step, name);
      // The list has been read anew, and may show another item as selected.
      return;
    }
  } catch (const RuntimeError& error) {
    showReloadBox(desk_.host, error, u"Error in Overwrite"_s);
  }
}

void FieldOverwriting::overwriteItem(Statements& step, const QString& name) {
  NotesItem item;
  step([&] { item = desk_.state.gDoc.firstItem(name); });
  int type = 0;
  step([&] { type = item.typeCode(); });
  if (!writeValue(step, name, item, type)) return;
  // To the item as it was fetched, although its value may have been replaced since.
  writeFlags(step, desk_.form, item);
  step([&] { desk_.state.gDoc.save(true, false); });
  step([&] { desk_.form.lblSize->setText(sizeText(lowLevel_.ItemSizeOf(name))); });
  readAnew(step);
}

// False when the user was told that nothing is done.
bool FieldOverwriting::writeValue(Statements& step, const QString& name, const NotesItem& item, int type) {
  switch (type) {
    case itemcode::Text:
    case itemcode::Names:
    case itemcode::Readers:
    case itemcode::Authors:
      writeText(step, name);
      return true;
    case itemcode::Date: {
      const QVector<Value> dates = dateLines(step, desk_.form.txtFieldContent->text(), desk_.host.regional());
      step([&] { desk_.state.gDoc.replaceItemValue(name, Value::array(dates)); });
      return true;
    }
    case itemcode::Number:
      writeNumbers(step, name);
      return true;
    case itemcode::RichText:
      return replaceText(step, item);
    default:
      // Flags are written and the document is saved all the same.
      desk_.host.messageBox(exact::kUnknownType, box::Exclamation, u"Doc Viewer"_s);
      return true;
  }
}

// The item becomes plain text: no names, readers or authors mark comes back.
void FieldOverwriting::writeText(Statements& step, const QString& name) {
  QStringList lines;
  step([&] { lines = overwriteLines(desk_.form.txtFieldContent->text()); });
  const Value value = lines.isEmpty() ? Value(QString()) : valueList(lines);
  step([&] { desk_.state.gDoc.replaceItemValue(name, value); });
}

// The number of values stays.
void FieldOverwriting::writeNumbers(Statements& step, const QString& name) {
  Value values;
  step([&] { values = desk_.state.gDoc.itemValue(name); });
  QVector<Value> places = values.values();
  numberLines(step, desk_.form.txtFieldContent->text(), places);
  step([&] { desk_.state.gDoc.replaceItemValue(name, Value::array(places)); });
}

bool FieldOverwriting::replaceText(Statements& step, const NotesItem& item) {
  const QString search = desk_.form.txtSearch->text(), replace = desk_.form.txtReplace->text();
  if (search.isEmpty() && replace.isEmpty()) return true;
  if (replace.isEmpty()) {
    desk_.host.messageBox(exact::kNoReplaceText, box::Information, u"Error in Overwrite"_s);
    return false;
  }
  replaceInRichText(step, NotesRichTextItem(item), search, replace);
  return true;
}

void FieldOverwriting::readAnew(Statements& step) {
  if (desk_.state.gDocKind == u"UIDOC") {
    desk_.state.gUIWorkspace.release();
    desk_.state.gSession.release();
    desk_.state.gDb.release();
    desk_.state.gDoc.release();
    step([&] { desk_.form.cmdGetDoc->raiseClick(); });
  } else if (desk_.state.gDocKind == u"PROFILE" || desk_.state.gDocKind == u"DESIGN") {
    step([&] { desk_.form.cmdidList->raiseClick(); });
  }
}

void FieldOverwriting::cmdDelField_Click() {
  try {
    QString name;
    const int row = selectedItem(name);
    if (row < 0) return;
    desk_.state.gDoc.removeItem(name);
    desk_.state.gDoc.save(true, false);
    desk_.form.fldList->removeItem(row);
    clearItemControls();
    desk_.form.fldList->refresh();
  } catch (const RuntimeError& error) {
    showReloadBox(desk_.host, error, exact::kDeleteTitle);
  }
}

// The selected row with its item's name; -1 for none, and without a document.
int FieldOverwriting::selectedItem(QString& name) const {
  for (int row = 0; row < desk_.form.fldList->listCount(); ++row) {
    if (!desk_.form.fldList->selected(row)) continue;
    name = requiredFieldName(desk_.form.fldList->list(row));
    if (!desk_.state.gDoc.isNothing()) return row;
  }
  return -1;
}

void FieldOverwriting::clearItemControls() {
  desk_.form.txtFieldName->setText(QString());
  desk_.form.cmbFieldType->setText(QString());
  desk_.form.txtFieldContent->setText(QString());
  desk_.form.lblSize->setText(QString());
  for (CheckBox* flag :
       {desk_.form.chkSummary, desk_.form.chkEncrypted, desk_.form.chkSigned, desk_.form.chkProtected})
    flag->setValue(0);
}

}  // namespace lens

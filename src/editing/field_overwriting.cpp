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

FieldOverwriting::FieldOverwriting(Form1& form, Globals& state, Host& host, LowLevelReading& lowLevel)
    : form_(form), state_(state), host_(host), lowLevel_(lowLevel) {
  form_.cmdOverwrite->click = [this] { cmdOverwrite_Click(); };
  form_.cmdDelField->click = [this] { cmdDelField_Click(); };
}

void FieldOverwriting::cmdOverwrite_Click() {
  Statements step(kPassedOver);
  try {
    const int count = form_.fldList->listCount();
    for (int row = 0; row < count; ++row) {
      if (!form_.fldList->selected(row)) continue;
      QString name;
      step([&] { name = requiredFieldName(form_.fldList->list(row)); });
      if (state_.gDoc.isNothing()) continue;
      overwriteItem(step, name);
      // The list has been read anew, and may show another item as selected.
      return;
    }
  } catch (const RuntimeError& error) {
    showReloadBox(host_, error, u"Error in Overwrite"_s);
  }
}

void FieldOverwriting::overwriteItem(Statements& step, const QString& name) {
  NotesItem item;
  step([&] { item = state_.gDoc.firstItem(name); });
  int type = 0;
  step([&] { type = item.typeCode(); });
  if (!writeValue(step, name, item, type)) return;
  // To the item as it was fetched, although its value may have been replaced since.
  writeFlags(step, form_, item);
  step([&] { state_.gDoc.save(true, false); });
  step([&] { form_.lblSize->setText(sizeText(lowLevel_.ItemSizeOf(name))); });
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
      const QVector<Value> dates = dateLines(step, form_.txtFieldContent->text(), host_.regional());
      step([&] { state_.gDoc.replaceItemValue(name, Value::array(dates)); });
      return true;
    }
    case itemcode::Number:
      writeNumbers(step, name);
      return true;
    case itemcode::RichText:
      return replaceText(step, item);
    default:
      // Flags are written and the document is saved all the same.
      host_.messageBox(exact::kUnknownType, box::Exclamation, u"Doc Viewer"_s);
      return true;
  }
}

// The item becomes plain text: no names, readers or authors mark comes back.
void FieldOverwriting::writeText(Statements& step, const QString& name) {
  QStringList lines;
  step([&] { lines = overwriteLines(form_.txtFieldContent->text()); });
  const Value value = lines.isEmpty() ? Value(QString()) : valueList(lines);
  step([&] { state_.gDoc.replaceItemValue(name, value); });
}

// The number of values stays.
void FieldOverwriting::writeNumbers(Statements& step, const QString& name) {
  Value values;
  step([&] { values = state_.gDoc.itemValue(name); });
  const Value numbers = valueList(numberLines(form_.txtFieldContent->text(), values.upperBound() + 1));
  step([&] { state_.gDoc.replaceItemValue(name, numbers); });
}

bool FieldOverwriting::replaceText(Statements& step, const NotesItem& item) {
  const QString search = form_.txtSearch->text(), replace = form_.txtReplace->text();
  if (search.isEmpty() && replace.isEmpty()) return true;
  if (replace.isEmpty()) {
    host_.messageBox(exact::kNoReplaceText, box::Information, u"Error in Overwrite"_s);
    return false;
  }
  replaceInRichText(step, NotesRichTextItem(item), search, replace);
  return true;
}

void FieldOverwriting::readAnew(Statements& step) {
  if (state_.gDocKind == u"UIDOC") {
    state_.gUIWorkspace.release();
    state_.gSession.release();
    state_.gDb.release();
    state_.gDoc.release();
    step([&] { form_.cmdGetDoc->raiseClick(); });
  } else if (state_.gDocKind == u"PROFILE" || state_.gDocKind == u"DESIGN") {
    step([&] { form_.cmdidList->raiseClick(); });
  }
}

void FieldOverwriting::cmdDelField_Click() {
  try {
    QString name;
    const int row = selectedItem(name);
    if (row < 0) return;
    state_.gDoc.removeItem(name);
    state_.gDoc.save(true, false);
    form_.fldList->removeItem(row);
    clearItemControls();
    form_.fldList->refresh();
  } catch (const RuntimeError& error) {
    showReloadBox(host_, error, exact::kDeleteTitle);
  }
}

// The selected row with its item's name; -1 for none, and without a document.
int FieldOverwriting::selectedItem(QString& name) const {
  for (int row = 0; row < form_.fldList->listCount(); ++row) {
    if (!form_.fldList->selected(row)) continue;
    name = requiredFieldName(form_.fldList->list(row));
    if (!state_.gDoc.isNothing()) return row;
  }
  return -1;
}

void FieldOverwriting::clearItemControls() {
  form_.txtFieldName->setText(QString());
  form_.cmbFieldType->setText(QString());
  form_.txtFieldContent->setText(QString());
  form_.lblSize->setText(QString());
  for (CheckBox* flag : {form_.chkSummary, form_.chkEncrypted, form_.chkSigned, form_.chkProtected})
    flag->setValue(0);
}

}  // namespace lens

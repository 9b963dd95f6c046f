#include "editing/field_addition.h"

#include "editing/flag_boxes.h"
#include "editing/reload_box.h"
#include "editing/type_number.h"
#include "editing/value_lines.h"
#include "notes/literals.h"
#include "notes/numbers.h"
#include "shell/exact_texts.h"
#include "shell/row_texts.h"

namespace lens {

FieldAddition::FieldAddition(Desk& desk, LowLevelReading& lowLevel) : desk_(desk), lowLevel_(lowLevel) {
  desk_.form.cmdAddField->click = [this] { cmdAddField_Click(); };
}

void FieldAddition::cmdAddField_Click() {
  const QString name = desk_.form.txtFieldName->text();
  Statements step;
  try {
    if (desk_.state.gDoc.isNothing()) return;
    if (desk_.state.gDoc.hasItem(name)) {
      desk_.host.messageBox(exact::kItemExists, box::Plain, u"Add field"_s);
      return;
    }
    addValue(step, name);
    NotesItem item;
    step([&] { item = desk_.state.gDoc.firstItem(name); });
    writeFlags(step, desk_.form, item);
    // Before the save: the size is that of the note as stored so far.
    if (name != u"$FILE") step([&] { desk_.form.lblSize->setText(sizeText(lowLevel_.ItemSizeOf(name))); });
    step([&] { desk_.state.gDoc.save(true, false); });
    readAnew(step);
  } catch (const RuntimeError& error) {
    showReloadBox(desk_.host, error, u"Error in AddField"_s);
  }
}

// Names and authors are written as plain text lists: nothing marks them as such.
void FieldAddition::addValue(Statements& step, const QString& name) {
  const QString content = desk_.form.txtFieldContent->text();
  const auto replaceValue = [&](const Value& value) {
    step([&] { desk_.state.gDoc.replaceItemValue(name, value); });
  };
  switch (typeNumber(typeText(desk_.form.cmbFieldType->text()))) {
    case itemcode::RichText:
      // The new item stays empty, whatever the content box holds.
      desk_.state.gRTItem = desk_.state.gDoc.createRichTextItem(name);
      break;
    case itemcode::Number:
      replaceValue(toInt32(content));
      break;
    case itemcode::Date:
      replaceValue(Value::array(dateLines(step, content, desk_.host.regional())));
      break;
    case itemcode::Readers:
      replaceValue(valueList(textLines(content)));
      desk_.state.gDoc.firstItem(name).setReaders(true);
      break;
    case itemcode::Names:
    case itemcode::Authors:
    case itemcode::Text:
      replaceValue(valueList(textLines(content)));
      break;
    default:
      // What follows fails on the missing item, and says so.
      desk_.host.messageBox(exact::kUnknownType, box::Exclamation, u"Doc Viewer"_s);
  }
}

// Whatever the window shows: the document that is open in the client comes back.
void FieldAddition::readAnew(Statements& step) {
  desk_.state.gUIWorkspace.release();
  desk_.state.gSession.release();
  desk_.state.gDb.release();
  desk_.state.gDoc.release();
  desk_.state.gRTItem.release();
  step([&] { desk_.form.cmdGetDoc->raiseClick(); });
}

}  // namespace lens

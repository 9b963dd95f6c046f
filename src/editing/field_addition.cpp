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

FieldAddition::FieldAddition(Form1& form, Globals& state, Host& host, LowLevelReading& lowLevel)
    : form_(form), state_(state), host_(host), lowLevel_(lowLevel) {
  form_.cmdAddField->click = [this] { cmdAddField_Click(); };
}

void FieldAddition::cmdAddField_Click() {
  const QString name = form_.txtFieldName->text();
  Statements step;
  try {
    if (state_.gDoc.isNothing()) return;
    if (state_.gDoc.hasItem(name)) {
      host_.messageBox(exact::kItemExists, box::Plain, u"Add field"_s);
      return;
    }
    addValue(step, name);
    NotesItem item;
    step([&] { item = state_.gDoc.firstItem(name); });
    writeFlags(step, form_, item);
    // Before the save: the size is that of the note as stored so far.
    if (name != u"$FILE") step([&] { form_.lblSize->setText(sizeText(lowLevel_.ItemSizeOf(name))); });
    step([&] { state_.gDoc.save(true, false); });
    readAnew(step);
  } catch (const RuntimeError& error) {
    showReloadBox(host_, error, u"Error in AddField"_s);
  }
}

// Names and authors are written as plain text lists: nothing marks them as such.
void FieldAddition::addValue(Statements& step, const QString& name) {
  const QString content = form_.txtFieldContent->text();
  const auto replaceValue = [&](const Value& value) {
    step([&] { state_.gDoc.replaceItemValue(name, value); });
  };
  switch (typeNumber(typeText(form_.cmbFieldType->text()))) {
    case itemcode::RichText:
      // The new item stays empty, whatever the content box holds.
      state_.gRTItem = state_.gDoc.createRichTextItem(name);
      break;
    case itemcode::Number:
      replaceValue(toInt32(content));
      break;
    case itemcode::Date:
      replaceValue(Value::array(dateLines(step, content, host_.regional())));
      break;
    case itemcode::Readers:
      replaceValue(valueList(textLines(content)));
      state_.gDoc.firstItem(name).setReaders(true);
      break;
    case itemcode::Names:
    case itemcode::Authors:
    case itemcode::Text:
      replaceValue(valueList(textLines(content)));
      break;
    default:
      // What follows fails on the missing item, and says so.
      host_.messageBox(exact::kUnknownType, box::Exclamation, u"Doc Viewer"_s);
  }
}

// Whatever the window shows: the document that is open in the client comes back.
void FieldAddition::readAnew(Statements& step) {
  state_.gUIWorkspace.release();
  state_.gSession.release();
  state_.gDb.release();
  state_.gDoc.release();
  state_.gRTItem.release();
  step([&] { form_.cmdGetDoc->raiseClick(); });
}

}  // namespace lens

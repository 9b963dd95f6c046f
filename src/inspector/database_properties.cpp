#include "inspector/database_properties.h"

#include "inspector/database_flags.h"
#include "notes/literals.h"
#include "shell/error_modes.h"
#include "shell/text_routines.h"

namespace lens {

DatabaseProperties::DatabaseProperties(Form1& form, Globals& state, Host& host)
    : form_(form), state_(state), host_(host) {
  form_.lastModified->dblClick = [this] { lastModified_DblClick(); };
}

void DatabaseProperties::lastModified_DblClick() {
  if (state_.gDb.isNothing()) return;
  state_.gDoc = state_.gDb.documentById(u"FFFF0010"_s);
  clearDocumentControls();
  form_.idList->addItem(eightDigits(state_.gDoc.noteId()));
  form_.NotesUID->setText(state_.gDoc.universalId());
  form_.idList->refresh();
  form_.idList->setSelected(0, true);
  form_.cmdidList->raiseClick();
  // The listing may have shown an item in the content box; the legend takes its place.
  const Value flags = state_.gDoc.itemValue(u"$Flags"_s);
  loadDBInfo(textOf(flags.at(0), host_.regional()));
}

void DatabaseProperties::clearDocumentControls() {
  form_.txtFieldContent->setText(QString());
  form_.txtFieldName->setText(QString());
  form_.lblSize->setText(QString());
  form_.cmbFieldType->setText(QString());
  for (CheckBox* flag : {form_.chkSummary, form_.chkEncrypted, form_.chkSigned, form_.chkProtected})
    flag->setValue(0);
  form_.idList->clear();
  form_.fldList->clear();
}

void DatabaseProperties::loadDBInfo(const QString& flags) {
  constexpr quint32 kRed = 255;
  RichTextBox& content = *form_.txtFieldContent;
  try {
    content.setText(databaseLegend());
    for (const Stretch& stretch : flagStretches(flags, content.text())) {
      content.setSelStart(int(stretch.start));
      content.setSelLength(int(stretch.length));
      content.setSelColor(kRed);
    }
    content.setSelStart(1);
    content.setSelLength(0);
  } catch (const RuntimeError& error) {
    const Procedure procedure{u"loadDBInfo"_s, u"Modul Globals"_s};
    host_.messageBox(errorText(error, procedure) + u". Line 0");
  }
}

}  // namespace lens

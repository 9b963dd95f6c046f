#include "inspector/database_properties.h"

#include "inspector/database_flags.h"
#include "notes/literals.h"
#include "shell/error_modes.h"
#include "shell/text_routines.h"

namespace lens {

DatabaseProperties::DatabaseProperties(Desk& desk) : desk_(desk) {
  desk_.form.lastModified->dblClick = [this] { lastModified_DblClick(); };
}

void DatabaseProperties::lastModified_DblClick() {
  if (desk_.state.gDb.isNothing()) return;
  desk_.state.gDoc = desk_.state.gDb.documentById(u"FFFF0010"_s);
  clearDocumentControls();
  desk_.form.idList->addItem(eightDigits(desk_.state.gDoc.noteId()));
  desk_.form.NotesUID->setText(desk_.state.gDoc.universalId());
  desk_.form.idList->refresh();
  desk_.form.idList->setSelected(0, true);
  desk_.form.cmdidList->raiseClick();
  // The listing may have shown an item in the content box; the legend takes its place.
  const Value flags = desk_.state.gDoc.itemValue(u"$Flags"_s);
  loadDBInfo(textOf(flags.at(0), desk_.host.regional()));
}

void DatabaseProperties::clearDocumentControls() {
  desk_.form.txtFieldContent->setText(QString());
  desk_.form.txtFieldName->setText(QString());
  desk_.form.lblSize->setText(QString());
  desk_.form.cmbFieldType->setText(QString());
  for (CheckBox* flag :
       {desk_.form.chkSummary, desk_.form.chkEncrypted, desk_.form.chkSigned, desk_.form.chkProtected})
    flag->setValue(0);
  desk_.form.idList->clear();
  desk_.form.fldList->clear();
}

void DatabaseProperties::loadDBInfo(const QString& flags) {
  constexpr quint32 kRed = 255;
  RichTextBox& content = *desk_.form.txtFieldContent;
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
    desk_.host.messageBox(errorText(error, procedure) + u". Line 0");
  }
}

}  // namespace lens

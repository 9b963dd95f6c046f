// Brings a document from the Notes client into the main window: the one on screen, the one selected
// in a view, or one named by its note ID or universal ID.
#pragma once

#include "shell/desk.h"
#include "shell/error_modes.h"

namespace lens {

class DocumentCapture {
 public:
  explicit DocumentCapture(Desk& desk);

  void cmdGetDoc_Click();
  // Lists only the items of the type named in cmbFieldType.
  void cmdFldtype_Click();
  void viewNotesID_Click();
  void cmdDECHEX_Click();
  void NotesID_Change();
  void NotesID_KeyPress(int& key);
  void NotesUID_Change();
  void idList_DblClick();

  // True when the document was the one open on screen and has been closed.
  bool CloseIfOpen(const NotesDocument& document);
  // Refreshes the view on top in the client.
  void RefreshCurrentView();

 private:
  bool openCurrentDatabase(Continue& step);
  void openSession();
  void hideScanControls(Continue& step);
  void takeOpenDocument(Continue& step);
  void takeSelectedDocument(Continue& step);
  void clearDocumentControls(Continue& step, bool clearType);
  void showDocumentId(Continue& step);
  void forgetAttachmentSizes(Continue& step);
  void listItems(Continue& step);
  void collectAttachmentSize(Continue& step, const QString& fileName);
  void listItemsOfType(Continue& step);
  void showBody(Continue& step);
  void forEachSelectedRow(const std::function<void()>& use) const;

  QString typedIdText();
  using LookUp = NotesDocument (NotesDatabase::*)(const QString& id) const;
  bool findDocument(LookUp lookUp, const QString& id, const char16_t* complaint);

  Desk& desk_;
};

}  // namespace lens

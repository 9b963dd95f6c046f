// "Copy/Move design doc": takes the note of the chosen row of idList into a database on any server. With a
// search text in the main window the items of the copy are rewritten on the way, so that a server name or a
// path in a design element points elsewhere.
#pragma once

#include "design/form2.h"
#include "shell/database_lists.h"
#include "shell/desk.h"
#include "shell/server_lists.h"

namespace lens {

class DesignCopy {
 public:
  DesignCopy(Desk& desk, ServerLists& servers, DatabaseLists& databases);

  Form2 window;

  void cmdDocCopy_Click();
  // The first server that the library names loads the window, within the walk over the names.
  ComboBox& serversOfLoadedWindow();
  // A window that is hidden stays loaded, with what was typed into it; one that was closed is loaded anew.
  void Form_Load();
  void Form_Unload();
  void cmdExpand2_Click();
  void lstDesignServer_KeyPress(int key);
  void cmdCopy_Click();
  void cmdMoveDocs_Click();

 private:
  bool closeOpenDocument();
  NotesDatabase openTarget() const;
  void openSource();
  QString typedNoteId() const;
  bool copyNote(const NotesDatabase& target, const QString& noteId);
  void rewriteItems(const NotesDocument& copy);
  void rewriteItem(const NotesDocument& copy, const NotesItem& item);
  Value rewritten(const NotesItem& item) const;
  void releaseObjects();

  Desk& desk_;
  ServerLists& servers_;
  DatabaseLists& databases_;
  bool loaded_ = false;
  bool shown_ = false;  // since the window was loaded
};

}  // namespace lens

// "Database picker": the user chooses a database of any server, the client opens it in place of what it
// shows, and its profile documents are listed at once.
#pragma once

#include "design/form3.h"
#include "shell/database_lists.h"
#include "shell/desk.h"
#include "shell/server_lists.h"

namespace lens {

class DatabasePicker {
 public:
  DatabasePicker(Desk& desk, ServerLists& servers, DatabaseLists& databases);

  Form3 window;
  QString gPickedServer, gPickedDatabase;  // the last choice; a server without a name is this machine

  void cmdDbPicker_Click();
  // A window that is hidden stays loaded; one that was closed is loaded anew.
  void Form_Load();
  void cmdExpand2_Click();
  void lstDBNamesDest_DblClick();

 private:
  void openInClient();

  Desk& desk_;
  ServerLists& servers_;
  DatabaseLists& databases_;
  bool loaded_ = false;
};

}  // namespace lens

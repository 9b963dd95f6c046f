// "Search for profiles": lists the profile documents of the database that is open in the client, which
// no view shows. One bad profile costs one box, and the listing goes on.
#pragma once

#include "host/host.h"
#include "notes/bridge.h"
#include "shell/error_modes.h"
#include "shell/form1.h"
#include "shell/globals.h"
#include "shell/routines.h"

namespace lens {

class Profiles {
 public:
  Profiles(Form1& form, Globals& state, Gateway& notes, Host& host, Routines& routines);

  void cmdGetProfiels_Click();
  // Empties the list of unprocessed documents of the current database, with the documents. No control
  // runs it; it asks nothing and a failure goes to the caller.
  void removeUnprocessedDocuments();

 private:
  void listProfiles(Told& step);
  void addRow(Told& step);

  Form1& form_;
  Globals& state_;
  Gateway& notes_;
  Host& host_;
  Routines& routines_;
};

}  // namespace lens

// "Search for profiles": lists the profile documents of the database that is open in the client, which
// no view shows. One bad profile costs one box, and the listing goes on.
#pragma once

#include "shell/desk.h"
#include "shell/error_modes.h"

namespace lens {

class Profiles {
 public:
  explicit Profiles(Desk& desk);

  void cmdGetProfiels_Click();
  // Empties the list of unprocessed documents of the current database, with the documents. No control
  // runs it; it asks nothing and a failure goes to the caller.
  void removeUnprocessedDocuments();

 private:
  void listProfiles(Told& step);
  void addRow(Told& step);

  Desk& desk_;
};

}  // namespace lens

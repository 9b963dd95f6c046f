// The three searches over all marked source databases, one after the other, for the text in txtTemplale: by
// words, by the key of a view, and for the number of documents in a view. What they find are databases.
//
// A database that is on a server and cannot be opened ends a search with a box and leaves gSearchBusy raised.
// From the first database on a server on, failures pass in silence; on this machine only the search for a key
// lets them pass, the others report them and leave gSearchBusy raised.
#pragma once

#include "bulk/replic_desk.h"
#include "shell/error_modes.h"

namespace lens {

class DatabaseSearches {
 public:
  explicit DatabaseSearches(ReplicDesk& desk);

  // Lists the databases that have a full-text index and a hit as target databases.
  void cmdSearch_Click();
  // Unmarks the databases that have no document of the key in the chosen view.
  void cmdSearchAZ_Click();
  // Lists the databases in which the view has entries, with their number.
  void cmdSearchInViews_Click();

 private:
  void beginSearch();
  void clearResults();
  bool openRow(int row, Statements& step);
  void searchWords(Statements& step);
  void searchKey(int row, Statements& step);
  void countEntries(Statements& step);
  void countSearched();
  void endSearch();
  void addTarget(const QString& row);

  ReplicDesk& desk_;
};

}  // namespace lens

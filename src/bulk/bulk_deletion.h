// What takes away for good: all documents of a view, and whole databases. Each asks first.
#pragma once

#include "bulk/replic_desk.h"
#include "shell/error_modes.h"

namespace lens {

class BulkDeletion {
 public:
  explicit BulkDeletion(ReplicDesk& desk);

  // Removes the documents of the chosen view from the database at the index of the source list, marked or
  // not. The question names the database, not the view. Those that came into the view after the question was
  // put stay. Without a trap: a failure is the caller's, and then no document is gone.
  void cmdDelDocs_Click();

  // Removes the marked databases of the source list from their server, each after its own question, and lists
  // the server anew. The first Cancel and the first failure end all of it; the list is not read again then.
  // No control is wired to it.
  void removeDatabases();

 private:
  void refuse();
  bool removeDatabase(Statements& step, int row);

  ReplicDesk& desk_;
};

}  // namespace lens

// Reads every attachment of the documents of a view by writing it to a directory, and so finds the damaged
// ones: their documents' note IDs take the place of the agents in lstAgentNames.
#pragma once

#include "bulk/replic_desk.h"

namespace lens {

class AttachmentCheck {
 public:
  explicit AttachmentCheck(ReplicDesk& desk);

  // Works on the database that was opened last, whatever row is chosen by now. A statement that fails shows a
  // box, lists the document at hand, if there is one, and the next one runs.
  void cmdChkAttachments_Click();

 private:
  class Listing;
  bool checkEntries(const NotesViewEntryCollection& entries, NotesViewEntry entry, Listing& step);
  void extractFiles(const NotesDocument& document, Listing& step);
  QString extractionPath(const QString& attachment) const;

  ReplicDesk& desk_;
};

}  // namespace lens

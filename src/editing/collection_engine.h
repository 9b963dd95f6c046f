// One item change in every document of the collection list: the four buttons "Coll", and the button that
// takes entries off the list. What each change does to a document stands in collection_changes.h.
#pragma once

#include <memory>

#include "editing/collection_changes.h"
#include "notes/objects/notes_database.h"
#include "shell/desk.h"

namespace lens {

class CollectionEngine {
 public:
  enum Mode { Delete = 1, Add = 2, Overwrite = 3, ReplaceAll = 4 };

  explicit CollectionEngine(Desk& desk);

  void cmdDelFieldInCol_Click();
  void cmdAddFieldInColl_Click();
  void cmdWriteDocsInColl_Click();
  void cmdReplAllFieldsInColl_Click();
  void cmdRemColl_Click();

  // The value is the item type as text (Add) or the new content (Overwrite); the replacement reads its
  // texts from the window. Any other mode visits the documents and changes nothing.
  void procCollection(int mode, const QString& fieldName, const QString& fieldValue);

 private:
  std::unique_ptr<CollectionChange> changeOf(int mode, const QString& name, const QString& value);
  void changeDocuments(CollectionChange* change);
  NotesDocument documentOf(const QString& row);
  void endOfRun();

  Desk& desk_;
};

}  // namespace lens

// One item change in every document of the collection list: the four buttons "Coll", and the button that
// takes entries off the list.
//
// The paths of one document (field_addition.h, field_overwriting.h, search_replace.h) do other things on
// purpose: they write the flags, refuse what is there already, say what they do not support. Here nobody
// watches: flags are never set, an existing item is replaced, what is not supported is silent and the
// document is saved all the same. Lines, dates, numbers and places are read by the same rules.
#pragma once

#include "shell/desk.h"
#include "shell/error_modes.h"

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
  enum class Run { GoesOn, Ends };
  // What a run carries from one document to the next: with the trap off, a failing statement leaves here
  // what the document before had.
  struct Work {
    Statements step;
    NotesItem item;
    int type = 0;
    Value values;
  };
  Run changeDocument(Work& work, int mode, const QString& name, const QString& value);
  void deleteItem(Work& work, const QString& name);
  void addItem(Work& work, const QString& name, const QString& typeText);
  void addValue(Work& work, const QString& name);
  void addLines(Work& work, const QString& name, const QString& content);
  void overwriteItem(Work& work, const QString& name, const QString& content);
  void overwriteValue(Work& work, const QString& name, const QString& content);
  Run replaceInDocument(Work& work);
  bool replaceInItem(Work& work, const NotesItem& item);
  void fetchItem(Work& work, const QString& name);
  void replaceValue(Work& work, const QString& name, const Value& value);
  void writeDates(Work& work, const QString& name, const QString& content);
  void saveDocument(Work& work);
  void endOfRun();

  Desk& desk_;
};

}  // namespace lens

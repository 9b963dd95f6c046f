// "Copy" and "Move": all documents of a view of the source database into the target database, with text
// replaced in marked items of each copy on the way, and with a trace on each copy that says where it came
// from.
//
// A move removes the whole view from the source behind the copying, with one call and without a question,
// also when it was stopped, and then also the documents that were not copied yet. A failure on the way, a
// full disk for example, ends either of them at once: the copies made so far are whole, and the source keeps
// all documents.
#pragma once

#include "bulk/replic_desk.h"

namespace lens {

class CopyMove {
 public:
  explicit CopyMove(ReplicDesk& desk);

  void cmdCopy_Click();
  void cmdMoveDocs_Click();

 private:
  struct Operation;
  void copyDocuments(const QString& stamp);
  void moveDocuments();
  QString timeStamp();
  NotesDatabase openTarget();
  void readViewNote(const NotesDatabase& source);
  void copyEntries(const Operation& operation, const NotesViewEntryCollection& entries);
  void copyDocument(const Operation& operation, const NotesDocument& document);
  void replaceFields(const Operation& operation, const NotesDocument& document, const NotesDocument& copy);

  ReplicDesk& desk_;
};

}  // namespace lens

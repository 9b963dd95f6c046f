// The older listing of the design browser. No control of the window runs it.
//
// With a client that has note collections it lists a class without a stop; with an older one it finds
// profile documents by trying every note ID, for as long as the user lets it.
#pragma once

#include "shell/desk.h"

namespace lens {

class DesignDocs {
 public:
  explicit DesignDocs(Desk& desk);

  void cmdDesignDocs_Click();

 private:
  void listCollection();
  void scanNoteIds();
  void tryNoteId(qint32 counter);
  QString olderRow(const QString& noteId, const QString& name) const;
  QString nameOf(const NotesDocument& document) const;

  Desk& desk_;
};

}  // namespace lens

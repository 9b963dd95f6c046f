// The older listing of the design browser. No control of the window runs it.
//
// With a client that has note collections it lists a class without a stop; with an older one it finds
// profile documents by trying every note ID, for as long as the user lets it.
#pragma once

#include "host/host.h"
#include "notes/bridge.h"
#include "shell/form1.h"
#include "shell/globals.h"
#include "shell/routines.h"

namespace lens {

class DesignDocs {
 public:
  DesignDocs(Form1& form, Globals& state, Host& host, Routines& routines);

  void cmdDesignDocs_Click();

 private:
  void listCollection();
  void scanNoteIds();
  void tryNoteId(qint32 counter);
  QString olderRow(const QString& noteId, const QString& name) const;
  QString nameOf(const NotesDocument& document) const;

  Form1& form_;
  Globals& state_;
  Host& host_;
  Routines& routines_;
};

}  // namespace lens

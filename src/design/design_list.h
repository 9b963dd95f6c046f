// The everyday listing of the design browser: a double click on a class in lstDesigns lists all notes of
// that class in the database that is open in the client.
//
// The listing takes events once per note, so that the clock runs on and it can be stopped at any moment.
// A second double click meanwhile runs to its end inside of the first, which then goes on with what the
// second left behind.
#pragma once

#include "host/host.h"
#include "notes/bridge.h"
#include "shell/form1.h"
#include "shell/globals.h"
#include "shell/routines.h"

namespace lens {

class DesignList {
 public:
  DesignList(Form1& form, Globals& state, Gateway& notes, Host& host, Routines& routines);

  void lstDesigns_DblClick();
  void lstDesigns_KeyDown(int code);
  void lstDesigns_KeyPress(int key);

 private:
  void listClass();
  void listNotes();
  void addRow();

  Form1& form_;
  Globals& state_;
  Gateway& notes_;
  Host& host_;
  Routines& routines_;
};

}  // namespace lens

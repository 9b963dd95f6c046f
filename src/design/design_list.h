// The everyday listing of the design browser: a double click on a class in lstDesigns lists all notes of
// that class in the database that is open in the client.
//
// The listing takes events once per note, so that the clock runs on and it can be stopped at any moment.
// A second double click meanwhile runs to its end inside of the first, which then goes on with what the
// second left behind.
#pragma once

#include "shell/desk.h"

namespace lens {

class DesignList {
 public:
  explicit DesignList(Desk& desk);

  void lstDesigns_DblClick();
  void lstDesigns_KeyDown(int code);
  void lstDesigns_KeyPress(int key);

 private:
  void listClass();
  void listNotes();
  void addRow();

  Desk& desk_;
};

}  // namespace lens

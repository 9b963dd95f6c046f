// The content box: the history of the texts it has held, and the status bar that tells where its caret is.
#pragma once

#include "notes/numbers.h"
#include "shell/desk.h"

namespace lens {

class ContentBox {
 public:
  explicit ContentBox(Desk& desk);

  void txtFieldContent_Change();
  void txtFieldContent_KeyDown(int keyCode, int shift);
  void txtFieldContent_SelChange();
  // Steps to the next stored text.
  void cmdScroll_Click();
  // Empties the history; no document is touched.
  void cmdDelRT_Click();

 private:
  Desk& desk_;
  Int16 contentPageKey_;  // never reset: the 32768th new text overflows
};

}  // namespace lens

// The content box: the history of the texts it has held, and the status bar that tells where its caret is.
#pragma once

#include "notes/numbers.h"
#include "shell/form1.h"
#include "shell/globals.h"
#include "shell/window_layout.h"

namespace lens {

class ContentBox {
 public:
  ContentBox(Form1& form, Globals& state, WindowLayout& layout);

  void txtFieldContent_Change();
  void txtFieldContent_KeyDown(int keyCode, int shift);
  void txtFieldContent_SelChange();
  // Steps to the next stored text.
  void cmdScroll_Click();
  // Empties the history; no document is touched.
  void cmdDelRT_Click();

 private:
  Form1& form_;
  Globals& state_;
  WindowLayout& layout_;
  Int16 contentPageKey_;  // never reset: the 32768th new text overflows
};

}  // namespace lens

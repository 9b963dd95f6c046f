// The main window: a record of its controls. What they do lives in the subsystems, each of which
// connects its own events; places, captions and tooltips are data of form1.ui.
#pragma once

#include <QWidget>

#include "controls/event.h"
#include "controls/popup_menu.h"
#include "controls/timer.h"
#include "ui_form1.h"

namespace lens {

class Form1 : public QWidget, public Ui::Form1 {
  Q_OBJECT

 public:
  Form1();

  Timer* Timer2;
  PopupMenu* mnuBar;
  Event<>* mnuBarShow;
  Event<>* mnuBarHide;
  Event<>* mnuBarExit;

  Event<> resized;     // the window has a new size, is minimised, or is shown for the first time
  Event<int> mouseUp;  // a button released over the bare form: 1 left, 2 right
  Event<> unload;      // the window is about to go
  Event<> terminate;   // the window has gone

 protected:
  void resizeEvent(QResizeEvent* event) override;
  void showEvent(QShowEvent* event) override;
  void changeEvent(QEvent* event) override;
  void mouseReleaseEvent(QMouseEvent* event) override;
  void closeEvent(QCloseEvent* event) override;

 private:
  void giveColours();

  bool shown_ = false;
};

}  // namespace lens

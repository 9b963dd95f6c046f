// What the main window does by itself: its load order, its end, the tray, the clock, the stop
// buttons and About. Everything else is a subsystem's.
#pragma once

#include <QPointer>
#include <QString>

#include "shell/about.h"
#include "shell/desk.h"
#include "shell/server_lists.h"

namespace lens {

class Form1Lifecycle {
 public:
  Form1Lifecycle(Desk& desk, ServerLists& servers);

  // First step of the load: the table of item types, which the inspector fills.
  Event<> addDocTypes;

  // The load step. The window is shown only when it has run.
  void Form_Load();
  void Form_Resize();
  void Form_MouseUp(int button);
  void Form_Unload();
  void Form_Terminate();
  void cmdEnd_Click();
  void Timer2_Timer();
  void cmdStop_Click();
  void Command1_Click();
  void Label6_Click();
  void mnuBarHide_Click();
  void mnuBarShow_Click();
  void mnuBarExit_Click();
  // A mouse message from the tray icon: 513 left button down, 517 right button up.
  void Picture1_MouseMove(int message);

  // Waits for a process to end; one that cannot be opened is no error.
  void WaitForTerm(qint64 processId);
  // Makes the empty clipboard database and opens it once.
  void MakeClip(const QString& fileName);
  // The About window while it is shown, else null.
  About* about() const { return about_; }

 private:
  void setListExtents();
  void releaseAndEnd();
  void showWindow();

  Desk& desk_;
  ServerLists& servers_;
  QPointer<About> about_;
};

}  // namespace lens

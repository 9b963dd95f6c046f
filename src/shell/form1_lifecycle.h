// What the main window does by itself: its load order, its end, the tray, the clock, the stop
// buttons and About. Everything else is a subsystem's.
#pragma once

#include <QPointer>
#include <QString>

#include "host/host.h"
#include "notes/capi.h"
#include "shell/about.h"
#include "shell/form1.h"
#include "shell/globals.h"
#include "shell/routines.h"
#include "shell/server_lists.h"
#include "shell/session_routines.h"
#include "shell/window_layout.h"

namespace lens {

class Form1Lifecycle {
 public:
  Form1Lifecycle(Form1& form, Globals& state, CApi& api, Host& host, Routines& routines,
                 SessionRoutines& sessions, ServerLists& servers, WindowLayout& layout);

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
  void releaseAndEnd();
  void showWindow();

  Form1& form_;
  Globals& state_;
  CApi& api_;
  Host& host_;
  Routines& routines_;
  SessionRoutines& sessions_;
  ServerLists& servers_;
  WindowLayout& layout_;
  QPointer<About> about_;
};

}  // namespace lens

// What the bulk tool's window does by itself: how it is shown and loaded, its end, the stop button, and the
// small buttons that clear a list or mark all of it.
#pragma once

#include "bulk/replic_desk.h"
#include "shell/window_layout.h"

namespace lens {

class ReplicLifecycle {
 public:
  explicit ReplicLifecycle(ReplicDesk& desk);

  // The settings file, which a class of its own reads and writes. A failure goes to the load or the button.
  Event<> findSettings;     // its path, into gIniPath
  Event<> provideSettings;  // a file where there is none, so that it can be read
  Event<> readSettings;     // into the controls
  Event<> writeSettings;

  // Shows the window over its owner, which is blocked meanwhile. Each showing is a load of its own, unless a
  // run still works in the window: then it is shown as it is.
  void show();

  void Form_Load();
  void Form_Resize();
  void Form_Unload();
  void Form_Terminate();
  void cmdLoadLast_Click();
  void cmdEnd_Click();
  void cmdStop_Click();
  void cmdStop_KeyPress();
  void cmdStop_MouseDown();
  void cmdClearFldList_Click();
  void Command2_Click();
  void cmdClearMe_Click();
  void txtNumDocs_Change();

 private:
  void setListExtents();

  ReplicDesk& desk_;
  WindowLayout layout_;
};

}  // namespace lens

// The bulk document tool: its window and every class that connects events of it. What a button does is found
// in the class, under the procedure's name. The application makes it when the window is first asked for.
#pragma once

#include "bulk/replic_desk.h"
#include "bulk/replic_lifecycle.h"
#include "bulk/source_selection.h"

namespace lens {

class ReplicTool {
 public:
  ReplicTool(QWidget* owner, Globals& state, Gateway& notes, Host& host, Routines& routines,
             SessionRoutines& sessions, ServerLists& servers, DatabaseLists& databases)
      : window(owner),
        desk{window, state, notes, host, routines, sessions, servers, databases},
        lifecycle(desk),
        selection(desk) {}

  FrmReplic window;
  ReplicDesk desk;
  ReplicLifecycle lifecycle;
  SourceSelection selection;
};

}  // namespace lens

// What the procedures of the bulk document tool work with, put together once: its controls, the state, the
// desktop, the door to the object model and the routines that all windows share. Everything lives as long as
// the application.
#pragma once

#include "bulk/frm_replic.h"
#include "host/host.h"
#include "notes/bridge.h"
#include "shell/database_lists.h"
#include "shell/globals.h"
#include "shell/routines.h"
#include "shell/server_lists.h"
#include "shell/session_routines.h"

namespace lens {

struct ReplicDesk {
  FrmReplic& window;
  Globals& state;
  Gateway& notes;
  Host& host;
  Routines& routines;
  SessionRoutines& sessions;
  ServerLists& servers;
  DatabaseLists& databases;
};

}  // namespace lens

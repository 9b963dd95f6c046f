// What the procedures of the main window work with, put together once: its controls, the state, the desktop,
// the two doors and the routines that all windows share. Everything lives as long as the application.
#pragma once

#include "host/host.h"
#include "notes/capi.h"
#include "shell/form1.h"
#include "shell/globals.h"
#include "shell/routines.h"
#include "shell/session_routines.h"
#include "shell/window_layout.h"

namespace lens {

struct Desk {
  Form1& form;
  Globals& state;
  Gateway& notes;
  CApi& api;
  Host& host;
  Routines& routines;
  SessionRoutines& sessions;
  WindowLayout& layout;
};

}  // namespace lens

// The doors to the Notes client beside the program.
#pragma once

#include <memory>

#include "notes/bridge.h"
#include "notes/capi.h"

namespace lens {

struct ClientDoors {
  std::unique_ptr<Gateway> notes;
  std::unique_ptr<CApi> capi;
};

// Both where the client publishes its objects to other programs, which is on Windows; whether one is there
// shows at the first use. Empty elsewhere.
ClientDoors clientDoors();

}  // namespace lens

// What the stand-in for the Notes client has behind its two faces: the engine on the workspace that the
// environment variable TESSALY_DOUBLE_WORKSPACE names, with the sample mail open in its client.
#pragma once

#include <memory>

#include "embedded/capi/embedded_capi.h"
#include "embedded/model/embedded_gateway.h"
#include "embedded/workspace/workspace.h"

namespace lens {

struct DoubleClient {
  DoubleClient();
  std::shared_ptr<Workspace> workspace;
  EmbeddedGateway gateway;
  EmbeddedCApi capi;
};

// Opened at the first use; raises what opening a workspace raises, each time.
DoubleClient& doubleClient();

}  // namespace lens

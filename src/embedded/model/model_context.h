// What all objects of one gateway share, and what keeps an object's database alive.
#pragma once

#include <memory>

#include "embedded/format/engine_fault.h"
#include "embedded/store/database.h"
#include "embedded/workspace/workspace.h"

namespace lens {

struct ModelContext {
  std::shared_ptr<Workspace> workspace;
  // While it is set, MIME counts as converted and GETMIMEENTITY gives nothing. One for all sessions,
  // since a document of the client's window belongs to none of them.
  bool convertMime = true;
};

// An open database with its place, shared by every object that comes from it.
struct OpenDatabase {
  std::shared_ptr<ModelContext> context;
  DatabasePlace place;
  std::shared_ptr<Database> store;
  bool withUi = false;  // reached through a session of the running client
};

}  // namespace lens

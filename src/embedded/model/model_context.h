// What all objects of one gateway share, and what keeps an object's database alive.
#pragma once

#include <memory>

#include "embedded/store/database.h"
#include "embedded/workspace/workspace.h"

namespace lens {

// Numbers of the object model's own failures.
namespace modelfault {
inline constexpr int NotInitialized = 4100;
inline constexpr int DatabaseClosed = 4101;
// 4102: a view whose selection is there in compiled form only (views)
inline constexpr int WrongKind = 4103;
inline constexpr int NoSuchDocument = 4104;  // 4105: a formula that cannot be compiled (search)
}  // namespace modelfault

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

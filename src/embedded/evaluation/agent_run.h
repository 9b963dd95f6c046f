// Running an agent by hand.
//
// A run is one transaction: when its formula fails over one document, or a document cannot be saved, no
// document is changed and the failure names the document. Of all that a formula can do, only entries of
// notes.ini stay written then.
#pragma once

#include <memory>

#include "embedded/design/agent.h"
#include "embedded/workspace/workspace.h"

namespace lens {

// How many documents the formula selected, and what became of them.
struct AgentRun {
  int processed = 0, changed = 0, deleted = 0;
};

struct AgentPlace {
  Workspace& workspace;
  DatabasePlace place;
  std::shared_ptr<Database> store;
  bool seesClient = false;  // whether what is marked in the client counts
};

// Runs the agent, enabled or not, over the documents that its settings select:
//   all                      every document but profiles
//   new, new or modified     those that came into the file, or changed, since the last run
//   selected                 those marked in the client, none when another database is on top
//   in a view                those of the view that the client shows, otherwise of the default view
//   once                     the formula is computed once, over a blank document that is not kept
// A formula with SELECT leaves documents that it does not select as they are. @DeleteDocument deletes.
// The agent's note keeps time and count of the run; they are this file's own and make no new version of
// the note. Raises CannotRun or Failed, and what compiling or saving raises.
AgentRun runAgent(const AgentPlace& at, NoteId agentId);

}  // namespace lens

// The bulk document tool: its window and every class that connects events of it. What a button does is found
// in the class, under the procedure's name. The application makes it when the window is first asked for.
#pragma once

#include "bulk/attachment_check.h"
#include "bulk/bulk_deletion.h"
#include "bulk/copy_move.h"
#include "bulk/database_replication.h"
#include "bulk/database_searches.h"
#include "bulk/dump_list.h"
#include "bulk/replic_agents.h"
#include "bulk/replic_desk.h"
#include "bulk/replic_lifecycle.h"
#include "bulk/settings_file.h"
#include "bulk/source_replacement.h"
#include "bulk/source_selection.h"

namespace lens {

class ReplicTool {
 public:
  ReplicTool(QWidget* owner, Globals& state, Gateway& notes, Host& host, Routines& routines,
             SessionRoutines& sessions, ServerLists& servers, DatabaseLists& databases)
      : window(owner),
        desk{window, state, notes, host, routines, sessions, servers, databases},
        lifecycle(desk),
        selection(desk),
        copyMove(desk),
        replacement(desk),
        deletion(desk),
        replication(desk),
        agents(desk),
        settings(desk),
        searches(desk),
        attachments(desk),
        dump(desk) {
    lifecycle.findSettings = [this] { settings.findSettings(); };
    lifecycle.provideSettings = [this] { settings.provideSettings(); };
    lifecycle.readSettings = [this] { settings.readSettings(); };
    lifecycle.writeSettings = [this] { settings.writeSettings(); };
  }

  FrmReplic window;
  ReplicDesk desk;
  ReplicLifecycle lifecycle;
  SourceSelection selection;
  CopyMove copyMove;
  SourceReplacement replacement;
  BulkDeletion deletion;
  DatabaseReplication replication;
  ReplicAgents agents;
  SettingsFile settings;
  DatabaseSearches searches;
  AttachmentCheck attachments;
  DumpList dump;
};

}  // namespace lens

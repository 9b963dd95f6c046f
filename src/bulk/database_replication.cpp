#include "bulk/database_replication.h"

#include "notes/literals.h"
#include "shell/error_modes.h"

namespace lens {

void DatabaseReplication::replicateDatabases() {
  if (desk_.window.lstDesignServer->text().isEmpty()) {
    desk_.host.messageBox(u"Please select target Server"_s, box::Plain, u"Replicate database!"_s);
    desk_.window.lstDesignServer->setText(u"Local"_s);
    return;
  }
  try {
    replicateMarkedRows();
  } catch (const RuntimeError& error) {
    desk_.host.messageBox(error.description(), box::Critical, u"Replicate Database"_s);
  }
}

void DatabaseReplication::replicateMarkedRows() {
  const QString sourceServer = namedServer(desk_.window.lstServer->text());
  const QString targetServer = namedServer(desk_.window.lstDesignServer->text());
  ListBox& list = *desk_.window.lstDBNames;
  for (int row = 0; row < list.listCount(); ++row) {
    if (!list.selected(row)) continue;
    desk_.state.gDbPath = list.list(row);
    const NotesDatabase source = desk_.state.gSession.database(sourceServer, desk_.state.gDbPath);
    const NotesDbDirectory directory = desk_.state.gSession.dbDirectory(targetServer);
    makeReplicaWhereNoneIs(source, directory, targetServer);
    source.replicate(targetServer);
    list.setSelected(row, !list.selected(row));
    list.refresh();
  }
  desk_.routines.playDoneSound();
}

// A replica that cannot be found or made is told by the replication, which fails then.
void DatabaseReplication::makeReplicaWhereNoneIs(const NotesDatabase& source,
                                                 const NotesDbDirectory& directory,
                                                 const QString& targetServer) {
  QString replicaId;
  NotesDatabase replica;
  Continue search;
  search([&] { replicaId = source.replicaId(); });
  search([&] { replica = directory.openByReplicaId(replicaId); });
  if (search.holds([&] { return replica.isNothing() || !replica.isOpen(); }))
    search([&] { replica = source.createReplica(targetServer, desk_.state.gDbPath); });
}

}  // namespace lens

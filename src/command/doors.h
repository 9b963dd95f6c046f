// What a command works on: the two doors, and what stands behind them.
#pragma once

#include <functional>
#include <memory>

#include "embedded/workspace/workspace.h"
#include "host/regional.h"
#include "notes/bridge.h"
#include "notes/capi.h"
#include "notes/objects/notes_session.h"

namespace lens {

struct Doors {
  // Null where the Notes client stands behind the doors: what only the embedded engine can do is refused
  // then.
  std::shared_ptr<Workspace> workspace;
  std::unique_ptr<Gateway> notes;
  std::unique_ptr<CApi> capi;
  Regional regional;
};

// The doors of the embedded engine on a workspace that is there: a command makes none. Raises CannotOpen with
// the directory. Long work in the engine asks now and then whether the user has had enough.
Doors openDoors(const QString& directory, const Regional& regional, std::function<bool()> interrupted);

// A database as it is named on the command line: "mail/kmeier.nsf", or "ACME-HUB01/Acme!!names.nsf" on a
// server.
struct NamedDatabase {
  explicit NamedDatabase(const QString& name);
  QString name, server, path;
};

NotesSession sessionOf(Doors& doors);
// Raises, with the name, when there is no such database or it cannot be opened.
NotesDatabase openDatabase(Doors& doors, const QString& name);
// The document of a note ID or universal ID, both hexadecimal. Raises when there is none.
NotesDocument findDocument(const NotesDatabase& database, const QString& name, const QString& noteId);

// The workspace of the embedded engine. Raises when the Notes client stands behind the doors; the command is
// named as its user typed it.
Workspace& requireEngine(const Doors& doors, const QString& command);
// The database itself, for what goes past the doors. Raises as openDatabase() does.
std::shared_ptr<Database> openStore(const Doors& doors, const QString& command, const QString& name);

}  // namespace lens

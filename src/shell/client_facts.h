// What procedures ask the client's objects before they go to work.
#pragma once

#include <QString>

#include "notes/objects/notes_session.h"
#include "shell/routines.h"

namespace lens {

// The common name of the server that a database is on. Empty for a local database and for a server
// without an organisation.
QString serverCommonName(Routines& routines, const NotesDatabase& database);

// Whether the client behind the session has note collections. Releases compare as text, so one of two
// digits counts as old.
bool hasNoteCollections(const NotesSession& session);

}  // namespace lens

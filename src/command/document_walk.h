// The documents that a command is about: all of a database, those of a view, of a formula or of a full-text
// query.
#pragma once

#include <functional>

#include "command/command_call.h"

namespace lens {

// Calls for each document in turn; one after the other is read, never all of them at once. Without an option
// these are all documents in order of note ID, without profiles. Raises for a view that is not there, a
// formula or query that cannot be read, and when the user interrupts the walk.
void walkDocuments(CommandCall& call, const NotesDatabase& database,
                   const std::function<void(const NotesDocument&)>& visit);

// Whether an option chooses among the documents. Raises WrongUse (command_table.h) for more than one of them.
bool choosesDocuments(const CommandCall& call);

}  // namespace lens

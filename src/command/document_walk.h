// The documents that a command is about: all of a database, those of a view, of a formula or of a full-text
// query.
#pragma once

#include <functional>

#include "command/command_call.h"

namespace lens {

// Calls for each document in turn; one after the other is read, never all of them at once. Without an option
// these are all documents in order of note ID, without profiles. Raises for a view that is not there, for a
// formula or query that cannot be read, when the user interrupts the walk, and behind a walk over all
// documents that passed over damaged ones.
void walkDocuments(CommandCall& call, const NotesDatabase& database,
                   const std::function<void(const NotesDocument&)>& visit);

// Behind a walk over all documents, so many of which could be read: raises where the engine's database has
// damaged notes, since what was written so far is not all there is.
void requireNothingDamaged(const CommandCall& call, const Database& store, qint64 readable);
// The same where a walk has counted the notes that it passed over.
void requireNothingLeftOut(const CommandCall& call, qint64 damaged);

// Whether an option chooses among the documents. Raises WrongUse (command_table.h) for more than one of them.
bool choosesDocuments(const CommandCall& call);

}  // namespace lens

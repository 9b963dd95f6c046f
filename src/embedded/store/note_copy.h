// A note with everything that belongs to it, from one database into another.
#pragma once

#include "embedded/format/engine_fault.h"
#include "embedded/store/database.h"

namespace lens {

// Saves a copy as a new note with a new UNID and note ID; class, parent, items and their order stay. Its
// attachments are copied piece by piece. All or nothing: a failure leaves the target as it was. A second
// note of a class that a database has once only (icon, ACL, About, ...) is refused with kSecondSingleNote.
Note copyNote(const Note& note, const Database& source, Database& target);

}  // namespace lens

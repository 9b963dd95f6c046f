// Every note of a database one after the other, also those that a scan passes over: the damaged ones.
#pragma once

#include <functional>

#include "embedded/store/database.h"

namespace lens {

// How far a check is: notes looked at, and about how many there are. False ends it.
using CheckProgress = std::function<bool(qint64 done, qint64 all)>;

// Each live note in order of its ID, until the visitor returns false. Asks for one note at a time, so it
// takes no more memory for a large database. What is damaged goes to the other visitor with the reason;
// without one it is raised. False when a visitor or the progress ended the walk.
bool walkNotes(const Database& database, const std::function<bool(const Note&)>& visit,
               const CheckProgress& progress = {},
               const std::function<bool(NoteId, const QString&)>& damaged = {});

}  // namespace lens

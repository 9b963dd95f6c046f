// Notes on their way from one database to another: their attachments and other objects go along.
#pragma once

#include "embedded/store/database.h"

namespace lens {

// Puts the objects of a note, which were read in one database, into another one, chunk by chunk, and lets
// the note refer to them there. What the note that it replaces has already is not copied again. Raises when
// an object is damaged; one that is missing is missing there too.
void bringObjects(Note& note, const Database& from, Database& to, const Note* replaced);

// Whether two notes say the same, whatever became of their numbers and times.
bool sameContent(const Note& a, const Database& inA, const Note& b, const Database& inB);

}  // namespace lens

// Which of two versions stays, and what is kept of the other one.
#pragma once

#include "embedded/store/note_version.h"

namespace lens {

// Whether the first one stays when neither came out of the other. Any two versions of a note are decided
// alike in every replica.
bool outranks(const NoteVersion& a, const NoteVersion& b);

// Whether the version that does not stay is kept beside: documents are, what is found by its name is not.
bool leavesConflict(const Note& note);

// Makes a note the answer to the one that stays: it gets that one as its parent and the items $REF and
// $Conflict. Its other items keep their places. Whose identity it has is up to the caller.
void answerAsConflict(Note& note, const Unid& staying);

// The note as a conflict document: a response of the one that stays, the same wherever it is made.
Note conflictDocument(const Note& loser, const VersionStamp& stamp);

}  // namespace lens

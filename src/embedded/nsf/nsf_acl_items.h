// The access control list of a real database as items of its note: the lists of texts that an import of the
// element "acl" keeps, so that it is shown, compared and exported as that of every other database.
#pragma once

#include "embedded/format/note.h"
#include "embedded/nsf/nsf_acl.h"

namespace lens {

// Appends them behind the note's own items. An entry says what its level and flags grant, in the words of the
// element; what has no word there ("may not replicate or copy") is left to the report.
void addAclItems(const NsfAcl& acl, Note& note);

}  // namespace lens

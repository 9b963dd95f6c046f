// The "acl" element: the access control list as a note of class ACL with three text lists: "$ACLEntries", one
// entry each as "name; level=manager; type=person; roles=[A],[B]; ..." with the attributes as they came,
// "$ACLRoles" and "$ACLLog", and "$ACLAttributes" with those of the list itself.
#pragma once

#include "embedded/dxl/import_context.h"

namespace lens {

// What a mark of the "acl" at hand tells of its note: all that "noteinfo" tells of others. False where there
// is none; fails where it tells of no note.
bool readAclHeader(const DxlReader& in, NoteHeader& header);

// The reader stands at "acl". Fills the note; false when nothing tells of its header but the class.
bool readAcl(ReadContext& context, Note& note);

}  // namespace lens

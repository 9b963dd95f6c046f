// The "acl" element: the access control list as a note of class ACL with three text lists: "$ACLEntries", one
// entry each as "name; level=manager; type=person; roles=[A],[B]; ..." with the attributes as they came,
// "$ACLRoles" and "$ACLLog", and "$ACLAttributes" with those of the list itself.
#pragma once

#include "embedded/dxl/import_context.h"

namespace lens {

// The reader stands at "acl". Fills the note; false when nothing tells of its header but the class.
bool readAcl(ReadContext& context, Note& note);

}  // namespace lens

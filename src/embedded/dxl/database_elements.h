// The "database" root: the properties of the database, its access control list, and all its notes.
//
// The access control list becomes a note of class ACL with three text lists: "$ACLEntries", one entry
// each as "name; level=manager; type=person; roles=[A],[B]; ..." with the attributes as they came,
// "$ACLRoles" and "$ACLLog", and "$ACLAttributes" with those of the list itself.
#pragma once

#include "embedded/dxl/import_context.h"

namespace lens {

// The reader stands at "database".
void importDatabase(ImportContext& context);

// Whether one of its templates makes a database a public address book.
bool isAddressBookTemplate(const DatabaseInfo& info);

}  // namespace lens

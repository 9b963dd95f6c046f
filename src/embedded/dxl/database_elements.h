// The "database" root: the properties of the database, its access control list, and all its notes.
#pragma once

#include "embedded/dxl/import_context.h"

namespace lens {

// The reader stands at "database".
void importDatabase(ImportContext& context);

// Whether one of its templates makes a database a public address book.
bool isAddressBookTemplate(const DatabaseInfo& info);

}  // namespace lens

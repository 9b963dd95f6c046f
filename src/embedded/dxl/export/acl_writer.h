// The access control list as "acl".
#pragma once

#include "embedded/dxl/export/export_context.h"

namespace lens {

// Writes the list, unless the element would give another one back. False where the note itself is to be
// written as well: it holds something that is not in the element, or nothing was written.
bool writeAcl(DxlWriter& out, const Note& note);

}  // namespace lens

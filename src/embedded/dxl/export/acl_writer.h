// The access control list as "acl".
#pragma once

#include "embedded/dxl/export/export_context.h"

namespace lens {

// Writes the list, or nothing and gives false when the note holds anything that "acl" would not give back.
bool writeAcl(DxlWriter& out, const Note& note);

}  // namespace lens

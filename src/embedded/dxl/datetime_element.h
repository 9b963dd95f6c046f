// The "datetime" element.
#pragma once

#include "embedded/dxl/import_context.h"

namespace lens {

// The reader stands at "datetime"; what names the place in faults.
TimeDate readDatetime(ReadContext& context, const QString& what);

}  // namespace lens

// Short forms of what stands in a document's items.
#pragma once

#include "embedded/formula/function.h"

namespace lens::formula {

Value abstract(const Call& call);
Value abstractSimple(const Call& call);

}  // namespace lens::formula

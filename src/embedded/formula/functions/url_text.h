// Texts as parts of Internet addresses: every byte that could be taken for something else as "%XX".
#pragma once

#include "embedded/formula/function.h"

namespace lens::formula {

Value urlEncode(const Call& call);
Value urlDecode(const Call& call);

}  // namespace lens::formula

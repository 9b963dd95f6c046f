// Functions that change texts letter by letter.
#pragma once

#include "embedded/formula/function.h"

namespace lens::formula {

Value lowerCase(const Call& call);
Value upperCase(const Call& call);
Value properCase(const Call& call);
Value soundex(const Call& call);
Value ascii(const Call& call);
Value characterOfCode(const Call& call);
Value narrow(const Call& call);
Value wide(const Call& call);

}  // namespace lens::formula

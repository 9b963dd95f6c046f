// Functions that keep passwords from being read, and judge them.
#pragma once

#include "embedded/formula/function.h"

namespace lens::formula {

Value hashPassword(const Call& call);
Value password(const Call& call);
Value passwordQuality(const Call& call);
Value verifyPassword(const Call& call);

}  // namespace lens::formula

// The one check of what a function is called with, when a constant call is folded and when it runs.
#pragma once

#include "embedded/formula/function.h"

namespace lens::formula {

// Whether a row's line of keywords (a blank between) has the word, in any case.
bool listsKeyword(const char* keywords, QStringView word);

// 0, or the fault of the first argument whose type the row does not take.
FaultCode argumentFault(const Function& function, const Value* const* arguments, int count);

}  // namespace lens::formula

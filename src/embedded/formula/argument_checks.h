// What a call can be refused for before it ever runs: the number of its arguments, and arguments that must
// be written in one form.
#pragma once

#include "embedded/formula/faults.h"
#include "embedded/formula/function.h"
#include "embedded/formula/token.h"
#include "embedded/formula/tree.h"

namespace lens::formula {

// A mistake and what of the source to mark; code 0: none.
struct Mistake {
  FaultCode code = 0;
  int offset = 0, length = 0;
};

// Of a function that stands without parentheses; next is the token behind it.
Mistake checkBareCall(const Function& function, const Token& name, const Token& next);
// Of a function with its opening parenthesis; inside is the token behind that.
Mistake checkOpenCall(const Function& function, const Token& name, const Token& inside);
// One argument, counted from 0; first is the token that it begins with.
Mistake checkArgument(const Function& function, int index, const Node& argument, const Token& first,
                      const Tree& tree);
// The whole call at its closing parenthesis.
Mistake checkCount(const Function& function, int count, const Token& close);

}  // namespace lens::formula

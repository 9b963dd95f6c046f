// What the operators do with lists. The evaluator treats pairs of single numbers itself and comes here for
// everything else.
#pragma once

#include "embedded/formula/tree.h"
#include "embedded/formula/value.h"

namespace lens::formula {

class Evaluation;

// An error among the operands is the result (the left one first); a missing name reads as the empty text,
// but a comparison of it with a number or a time is 0. The evaluation may be null where no times are among
// the operands.
Value applyBinary(Operator op, const Value& left, const Value& right, Evaluation* evaluation);
Value applyUnary(Operator op, const Value& operand);
// Right behind left; takes over the left list's memory, so that a list grown in a loop is not copied at
// each step.
Value concatenate(Value left, const Value& right);
// List and index, from 1.
Value subscript(const Value& list, const Value& index);

bool isComparison(Operator op);
// "*+" and its like: each of the left with each of the right.
bool isPermuted(Operator op);
// The same without the "*".
Operator pairwise(Operator op);

// A missing name and @Nothing read as the empty text.
inline bool readsAsEmpty(const Value& value) {
  return value.type() == Type::Missing || value.type() == Type::Nothing;
}
const Value& emptyText();

// A condition: a number, or a list of which any is not 0. False in `holds` and an error in `error` when
// the value is neither.
struct Truth {
  bool holds = false;
  Value error;  // unset without one
};
Truth truthOf(const Value& value);

}  // namespace lens::formula

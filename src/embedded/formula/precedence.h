// How tightly operators bind, for reading a formula and for writing it.
#pragma once

#include "embedded/formula/tree.h"

namespace lens::formula {

// Loosest first. Operators of one level go from left to right.
namespace level {
inline constexpr int Any = 0, Logic = 1, Comparison = 2, Sum = 3, Product = 4, List = 5;
}

constexpr int levelOf(Operator op) {
  switch (op) {
    case Operator::Concatenate:
      return level::List;
    case Operator::Multiply:
    case Operator::Divide:
    case Operator::PermutedMultiply:
    case Operator::PermutedDivide:
      return level::Product;
    case Operator::Plus:
    case Operator::Minus:
    case Operator::Add:
    case Operator::Subtract:
    case Operator::PermutedAdd:
    case Operator::PermutedSubtract:
      return level::Sum;
    case Operator::Not:
    case Operator::And:
    case Operator::Or:
      return level::Logic;
    default:
      return level::Comparison;
  }
}

// What a prefix operator takes as its operand: everything that binds at least this tightly. A sign covers
// the rest of a list, a negation covers a comparison.
constexpr int operandLevelOf(Operator prefix) {
  return prefix == Operator::Not ? level::Comparison : level::List;
}

}  // namespace lens::formula

#include "embedded/formula/compiler.h"

#include <QVarLengthArray>

#include "embedded/formula/arguments.h"
#include "embedded/formula/operators.h"

namespace lens::formula {
namespace {

// A folded constant must not make the program larger than its source by much.
constexpr qsizetype kLargestFolded = 4096;

}  // namespace

bool foldStep(Operator op, Value& left, const Value& right) {
  const auto isMoment = [](const Value& value) {
    return value.type() == Type::Time || value.type() == Type::TimeRange;
  };
  if (op != Operator::Concatenate && (isMoment(left) || isMoment(right))) return false;
  if (op == Operator::Concatenate) {
    // In place, which may not fail: a list of thousands of constants is not copied at each step.
    const bool alike = left.type() == right.type() || (isMoment(left) && isMoment(right));
    if (!alike || left.count() == 0 || left.count() + right.count() > kMaxElements) return false;
    left = concatenate(std::move(left), right);
    return true;
  }
  if (isPermuted(op) && qint64(left.count()) * right.count() > kLargestFolded) return false;
  Value computed = applyBinary(op, left, right, nullptr);
  if (computed.isError() || computed.storedSizeBound() > kLargestFolded) return false;
  left = std::move(computed);
  return true;
}

bool Compiler::foldable(int index, Value& value) {
  Fold& known = folds_[std::size_t(index)];
  if (!known.tried) {
    known.tried = true;
    Value folded;
    known.constant = fold(node(index), folded);
    if (known.constant) known.value = std::move(folded);
  }
  if (known.constant) value = known.value;
  return known.constant;
}

bool Compiler::fold(const Node& node, Value& value) {
  switch (node.kind) {
    case Node::Kind::Constant:
      value = node.constant;
      return true;
    case Node::Kind::Unary: {
      Value inner;
      if (!foldable(node.children[0], inner)) return false;
      value = applyUnary(node.operators[0], inner);
      return !value.isError();
    }
    case Node::Kind::Chain:
      return foldChain(node, value);
    case Node::Kind::Call:
      return foldCall(node, value);
    default:
      return false;
  }
}

bool Compiler::foldChain(const Node& node, Value& value) {
  // A list of constants is put together in one go.
  try {
    if (!foldable(node.children[0], value)) return false;
    for (std::size_t i = 1; i < node.children.size(); ++i) {
      Value next;
      if (!foldable(node.children[i], next)) return false;
      if (!foldStep(node.operators[i - 1], value, next)) return false;
    }
    return true;
  } catch (const Fault&) {
    return false;
  }
}

bool Compiler::foldCall(const Node& node, Value& value) {
  if (node.function->form == Form::Unavailable) return value = Value::unavailable(), true;
  if (node.function->form == Form::Nothing) return value = Value::nothing(), true;
  if (node.function->form != Form::Call || !(node.function->traits & trait::Pure)) return false;
  std::vector<Value> values(node.children.size());
  QVarLengthArray<const Value*, 8> arguments;
  qsizetype size = 0;
  for (std::size_t i = 0; i < values.size(); ++i) {
    if (!foldable(node.children[i], values[i])) return false;
    size += values[i].storedSizeBound();
    arguments.push_back(&values[i]);
  }
  if (size > kLargestFolded || argumentFault(*node.function, arguments.data(), int(arguments.size())) != 0)
    return false;
  try {
    value = node.function->run(Call(arguments.data(), int(arguments.size()), nullptr));
  } catch (const Fault&) {
    return false;
  }
  return !value.isError() && value.storedSizeBound() <= kLargestFolded;
}

}  // namespace lens::formula

#include "embedded/formula/compiler.h"

#include "embedded/formula/operators.h"

namespace lens::formula {

int Compiler::operand(int index) {
  const Node& node = this->node(index);
  if (node.kind == Node::Kind::Name) return nameOperand(node.name);
  Value folded;
  if (node.kind != Node::Kind::Assignment && foldable(index, folded)) return constant(std::move(folded));
  if (node.kind == Node::Kind::Assignment && node.modifier == Node::Modifier::None) {
    const int name = nameOf(node.name);
    assignTo(name, node.children[0], kNames + name);
    return kNames + name;
  }
  return inTemporary(index);
}

int Compiler::inTemporary(int index) {
  const int result = temporary();
  into(index, result);
  return result;
}

int Compiler::keptOperand(int index, bool effectsBehind) {
  const Node& node = this->node(index);
  const bool named = node.kind == Node::Kind::Name || node.kind == Node::Kind::Assignment;
  return named && effectsBehind ? inTemporary(index) : operand(index);
}

int Compiler::nameOperand(const QString& written) {
  const int name = nameOf(written);
  if (known_[std::size_t(name)]) return kNames + name;
  if (!program_.variables[std::size_t(name)]) {
    emit({Op::Load, kNames + name});
    know(name);
    return kNames + name;
  }
  const int result = temporary();
  emit({Op::Read, result, kNames + name});
  return result;
}

void Compiler::readName(const QString& written, int result) {
  const int name = nameOf(written);
  if (!known_[std::size_t(name)] && program_.variables[std::size_t(name)]) {
    emit({Op::Read, result, kNames + name});
    return;
  }
  emit({Op::Move, result, nameOperand(written)});
}

void Compiler::into(int index, int result) {
  const Node& node = this->node(index);
  const int depth = depth_;
  Value folded;
  switch (node.kind) {
    case Node::Kind::Name:
      readName(node.name, result);
      break;
    case Node::Kind::Assignment:
      assignment(node, result);
      break;
    default:
      if (foldable(index, folded)) {
        emit({Op::Move, result, constant(std::move(folded))});
      } else if (node.kind == Node::Kind::Chain) {
        chain(node, result);
      } else if (node.kind == Node::Kind::Unary) {
        const int a = operand(node.children[0]);
        emit({Op::Unary, result, a, 0, quint32(node.operators[0])});
      } else if (node.kind == Node::Kind::Subscript) {
        const int list = keptOperand(node.children[0], hasEffects(node.children[1]));
        const int place = operand(node.children[1]);
        emit({Op::Subscript, result, list, place});
      } else {
        call(node, result);
      }
  }
  depth_ = depth;
}

namespace {

Op opOf(Operator op) {
  switch (op) {
    case Operator::Concatenate:
      return Op::Concatenate;
    case Operator::Add:
      return Op::Add;
    case Operator::Subtract:
      return Op::Subtract;
    case Operator::Multiply:
      return Op::Multiply;
    case Operator::Divide:
      return Op::Divide;
    case Operator::Equal:
      return Op::Equal;
    case Operator::NotEqual:
      return Op::NotEqual;
    case Operator::Less:
      return Op::Less;
    case Operator::Greater:
      return Op::Greater;
    case Operator::LessEqual:
      return Op::LessEqual;
    case Operator::GreaterEqual:
      return Op::GreaterEqual;
    case Operator::And:
      return Op::And;
    case Operator::Or:
      return Op::Or;
    default:
      return Op::Binary;
  }
}

}  // namespace

void Compiler::chain(const Node& node, int result) {
  // The constants at the head are computed now: "a" : "b" : Name is a constant list and one step.
  std::size_t next = 1;
  Value head;
  bool folded = foldable(node.children[0], head);
  try {
    while (folded && next < node.children.size()) {
      Value operandValue;
      if (!foldable(node.children[next], operandValue)) break;
      if (!foldStep(node.operators[next - 1], head, operandValue)) break;
      ++next;
    }
  } catch (const Fault&) {
  }
  // From the last to the first: whether anything behind an operand assigns.
  std::vector<bool> effectsBehind(node.children.size() + 1, false);
  for (std::size_t i = node.children.size(); i-- > 0;)
    effectsBehind[i] = effectsBehind[i + 1] || hasEffects(node.children[i]);

  int left = folded ? constant(std::move(head)) : keptOperand(node.children[0], effectsBehind[1]);
  int collected = -1;  // what is computed on the way, in one register
  for (; next < node.children.size(); ++next) {
    const bool last = next + 1 == node.children.size();
    const int depth = depth_;
    const int right = operand(node.children[next]);
    depth_ = depth;
    if (!last && collected < 0) collected = temporary();
    const Operator op = node.operators[next - 1];
    emit({opOf(op), last ? result : collected, left, right, quint32(op)});
    left = collected;
  }
}

// --- Names -------------------------------------------------------------------------------------------------

void Compiler::assignTo(int name, int valueNode, int result) {
  const Node& value = node(valueNode);
  // The last step of a computation writes to the name itself, and always writes what a name can hold.
  if (value.kind == Node::Kind::Chain || value.kind == Node::Kind::Unary) {
    into(valueNode, kNames + name);
  } else {
    const int a = operand(valueNode);
    emit({Op::Assign, kNames + name, a});
  }
  know(name);
  if (result != kNames + name) emit({Op::Move, result, kNames + name});
}

void Compiler::assignment(const Node& node, int result) {
  const int name = nameOf(node.name);
  switch (node.modifier) {
    case Node::Modifier::None:
      assignTo(name, node.children[0], result);
      break;
    case Node::Modifier::Default: {
      const int skip = emit({Op::UnlessMissing, 0, kNames + name});
      const std::size_t mark = branch();
      assignTo(name, node.children[0], kNames + name);
      forgetSince(mark);
      code_[std::size_t(skip)].x = here();
      readName(node.name, result);
      break;
    }
    case Node::Modifier::Field: {
      const int a = operand(node.children[0]);
      emit({Op::WriteField, result, a, 0, quint32(name)});
      if (!program_.variables[std::size_t(name)]) know(name);
      break;
    }
    case Node::Modifier::Environment: {
      const int a = operand(node.children[0]);
      emit({Op::WriteEnvironment, result, a, 0, quint32(name)});
      break;
    }
  }
}

}  // namespace lens::formula

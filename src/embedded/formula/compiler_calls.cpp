#include "embedded/formula/compiler.h"
#include "embedded/formula/operators.h"
#include "notes/literals.h"

namespace lens::formula {

void Compiler::call(const Node& node, int result) {
  switch (node.function->form) {
    case Form::If:
      return ifCall(node, result);
    case Form::IfError:
      return ifErrorCall(node, result);
    case Form::Do:
      return sequence(node, result);
    case Form::While:
      return whileCall(node, result);
    case Form::DoWhile:
      return doWhileCall(node, result);
    case Form::For:
      return forCall(node, result);
    case Form::Transform:
      return transformCall(node, result);
    case Form::Sort:
      return node.children.size() < 3 ? plainCall(node, result) : sortCall(node, result);
    case Form::Set:
      return setCall(node, result);
    case Form::Return: {
      const int a = operand(node.children[0]);
      emit({Op::Return, 0, a});
      return;
    }
    case Form::IsAvailable:
    case Form::IsUnavailable: {
      const int name = nameOf(this->node(node.children[0]).name);
      emit({Op::Available, result, kNames + name});
      if (node.function->form == Form::IsUnavailable)
        emit({Op::Unary, result, result, 0, quint32(Operator::Not)});
      return;
    }
    case Form::Eval: {
      const int a = inTemporary(node.children[0]);
      emit({Op::Eval, result, a});
      return;
    }
    default:
      return plainCall(node, result);
  }
}

void Compiler::plainCall(const Node& node, int result) {
  std::vector<bool> effectsBehind(node.children.size() + 1, false);
  for (std::size_t i = node.children.size(); i-- > 0;)
    effectsBehind[i] = effectsBehind[i + 1] || hasEffects(node.children[i]);
  std::vector<int> registers;
  for (std::size_t i = 0; i < node.children.size(); ++i)
    registers.push_back(keptOperand(node.children[i], effectsBehind[i + 1]));
  program_.functions.push_back(node.function);
  arguments_.insert(arguments_.end(), registers.begin(), registers.end());
  emit({Op::Call, result, 0, int(registers.size()), quint32(arguments_.size() - registers.size()),
        quint32(program_.functions.size() - 1)});
}

int Compiler::condition(int index, int result) {
  const Node& node = this->node(index);
  const int depth = depth_;
  int at;
  if (node.kind == Node::Kind::Chain && node.children.size() == 2 && isComparison(node.operators[0]) &&
      !isPermuted(node.operators[0])) {
    // A comparison that decides a jump leaves no value behind.
    const int left = keptOperand(node.children[0], hasEffects(node.children[1]));
    const int right = operand(node.children[1]);
    const int which = int(node.operators[0]) - int(Operator::Equal);
    at = emit({Op(int(Op::UnlessEqual) + which), result, left, right});
  } else {
    at = emit({Op::Unless, result, operand(index)});
  }
  depth_ = depth;
  return at;
}

void Compiler::ifCall(const Node& node, int result) {
  std::vector<int> ends, tests;
  const std::size_t count = node.children.size();
  std::size_t known = branch(), at = 0;
  for (; at + 1 < count; at += 2) {
    tests.push_back(condition(node.children[at], result));
    // Every way through computes the first condition; what later parts assign may not have happened.
    if (at == 0) known = branch();
    const std::size_t mark = branch();
    into(node.children[at + 1], result);
    forgetSince(mark);
    ends.push_back(emit({Op::Jump}));
    jumpHere(tests.back());
  }
  if (at < count) into(node.children[at], result);
  if (count > 1) forgetSince(known);
  for (const int end : ends) jumpHere(end);
  for (const int test : tests) code_[std::size_t(test)].y = here();
}

void Compiler::ifErrorCall(const Node& node, int result) {
  const int error = nameOf(u"$Error"_s);
  const int value = inTemporary(node.children[0]);
  const int fine = emit({Op::UnlessError, 0, value});
  const std::size_t mark = branch();
  if (node.children.size() > 1) {
    // Only the second argument sees the text; what the name held before comes back.
    const int before = temporary();
    emit({Op::Move, before, kNames + error});
    emit({Op::ErrorText, kNames + error, value});
    into(node.children[1], value);
    emit({Op::Move, kNames + error, before});
  } else {
    emit({Op::Move, value, constant(Value::text(Text()))});
  }
  forgetSince(mark);
  jumpHere(fine);
  emit({Op::Move, result, value});
}

void Compiler::discard(int index) {
  const int depth = depth_;
  operand(index);
  depth_ = depth;
}

void Compiler::sequence(const Node& node, int result) {
  for (std::size_t i = 0; i + 1 < node.children.size(); ++i) discard(node.children[i]);
  into(node.children.back(), result);
}

void Compiler::endLoop(quint32 begin, int condition, int result) {
  emit({Op::Loop, 0, 0, 0, begin, here() - begin + 1});
  setExits(condition, here(), here() + 1);
  emit({Op::Move, result, constant(Value::number(1.0))});
}

void Compiler::whileCall(const Node& node, int result) {
  const quint32 begin = here();
  const int test = condition(node.children[0], result);
  const std::size_t mark = branch();
  for (std::size_t i = 1; i < node.children.size(); ++i) discard(node.children[i]);
  forgetSince(mark);
  endLoop(begin, test, result);
}

void Compiler::doWhileCall(const Node& node, int result) {
  const quint32 begin = here();
  for (std::size_t i = 0; i + 1 < node.children.size(); ++i) discard(node.children[i]);
  endLoop(begin, condition(node.children.back(), result), result);
}

void Compiler::forCall(const Node& node, int result) {
  discard(node.children[0]);
  const quint32 begin = here();
  const int test = condition(node.children[1], result);
  const std::size_t mark = branch();
  for (std::size_t i = 3; i < node.children.size(); ++i) discard(node.children[i]);
  discard(node.children[2]);
  forgetSince(mark);
  endLoop(begin, test, result);
}

void Compiler::transformCall(const Node& node, int result) {
  const int list = keptOperand(node.children[0], true);
  const int variable = nameOf(this->node(node.children[1]).constant.text().toString());
  const int at = emit({Op::Transform, result, list, kNames + variable, here() + 1});
  const std::size_t mark = branch();
  know(variable);
  emit({Op::EndBlock, 0, operand(node.children[2])});
  // A list that is an error leaves the variable as it was.
  forgetSince(mark);
  code_[std::size_t(at)].y = here();
}

void Compiler::sortCall(const Node& node, int result) {
  const int list = keptOperand(node.children[0], true);
  const int order = keptOperand(node.children[1], true);
  const int at = emit({Op::CustomSort, result, list, order, here() + 1});
  const std::size_t mark = branch();
  for (int i = 0; i < 2; ++i) {
    program_.sortNames[i] = nameOf(i == 0 ? u"$A"_s : u"$B"_s);
    know(program_.sortNames[i]);
  }
  emit({Op::EndBlock, 0, operand(node.children[2])});
  forgetSince(mark);
  code_[std::size_t(at)].y = here();
}

void Compiler::setCall(const Node& node, int result) {
  const Node& name = this->node(node.children[0]);
  if (name.kind == Node::Kind::Constant && name.constant.isOneText())
    return assignTo(nameOf(name.constant.text().toString()), node.children[1], result);
  const int written = keptOperand(node.children[0], true);
  const int value = operand(node.children[1]);
  emit({Op::SetByName, result, value, written});
}

}  // namespace lens::formula

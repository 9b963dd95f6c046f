#include "embedded/formula/compiled/code_reader.h"

#include <QtEndian>
#include <algorithm>
#include <bit>
#include <cmath>

#include "embedded/format/lmbcs.h"
#include "embedded/formula/times.h"
#include "embedded/formula/token.h"

namespace lens::formula {
namespace {

// Behind the name a zero byte and the eight bytes of a time.
constexpr qsizetype kStampSize = 9;

quint16 wordAt(QByteArrayView bytes, qsizetype at) {
  return qFromLittleEndian<quint16>(bytes.data() + at);
}

// A day, a time of day or both.
bool isTime(const TimeDate& time) {
  if (!hasDay(time)) return time.innards[1] == kAnyDay && hasClock(time);
  const YearMonthDay day = yearMonthDay(qint32(dayOf(time)));
  return dateExists(day.year, day.month, day.day) && (hasClock(time) || time.innards[0] == kAllDay);
}

}  // namespace

QString storedName(QByteArrayView bytes) {
  if (bytes.size() > kStampSize && bytes[bytes.size() - kStampSize] == 0) bytes.chop(kStampSize);
  const QString name = fromLmbcs(bytes);
  if (!isName(name)) throw Unreadable{"a name that no formula can have"};
  return name;
}

// --- Bytes ---------------------------------------------------------------------------------------------

quint16 CodeReader::word() {
  if (code_.size() - at_ < 2) refuse("the code ends early");
  at_ += 2;
  return wordAt(code_, at_ - 2);
}

quint32 CodeReader::doubleWord() {
  const quint32 low = word();
  return low | quint32(word()) << 16;
}

// Counted, and filled up to an even length.
QByteArrayView CodeReader::bytes() {
  const qsizetype size = word();
  if (code_.size() - at_ < size + size % 2) refuse("a text is longer than its code");
  at_ += size + size % 2;
  return code_.sliced(at_ - size - size % 2, size);
}

// --- The stack -----------------------------------------------------------------------------------------

void CodeReader::push(Node&& node, Operand operand, Spelling spelling) {
  if (operand.depth > kMaxDepth) refuse("it is nested too deep");
  tree_.nodes.push_back(std::move(node));
  spellings_.push_back(spelling);
  operand.node = int(tree_.nodes.size()) - 1;
  stack_.push_back(operand);
}

CodeReader::Operand CodeReader::pop() {
  if (stack_.empty()) refuse("an operation lacks its values");
  const Operand operand = stack_.back();
  stack_.pop_back();
  return operand;
}

void CodeReader::enclose(Operand& operand, bool needed) {
  if (!needed) return;
  spellings_[std::size_t(operand.node)].addParentheses = true;
  added_ = true;
  operand.level = operand.tail = kClosed;
  ++operand.depth;
}

void CodeReader::note(Sureness sureness, Spelling spelling) {
  if (sureness == Sureness::Proven) return;
  sureness_ = std::max(sureness_, sureness);
  const auto same = [&](const Spelling& a) { return a.kind == spelling.kind && a.number == spelling.number; };
  if (std::none_of(unproven_.begin(), unproven_.end(), same)) unproven_.push_back(spelling);
}

// --- Values --------------------------------------------------------------------------------------------

void CodeReader::constant(Value value) {
  Node constant;
  constant.constant = std::move(value);
  push(std::move(constant), {.node = 0, .start = begin_});
}

void CodeReader::number() {
  const quint64 low = doubleWord();
  const double number = std::bit_cast<double>(low | quint64(doubleWord()) << 32);
  // A source has such numbers behind a sign only.
  if (!std::isfinite(number) || std::signbit(number)) refuse("a number that no formula can have");
  constant(Value::number(number));
}

// Keywords are times without a day.
void CodeReader::time() {
  const quint32 first = doubleWord(), second = doubleWord();
  if (second != 0) {
    const TimeDate time{{first, second}};
    if (!isTime(time)) refuse("a time that is none");
    return constant(Value::time(time));
  }
  const KeywordCode* const row = findKeyword(first);
  const Spelling spelling{Spelling::Kind::Keyword, false, first};
  note(row ? row->sureness : Sureness::Unnamed, spelling);
  Node constant;
  constant.constant = Value::keyword(row ? QString::fromLatin1(row->name) : u'#' + QString::number(first));
  push(std::move(constant), {.node = 0, .start = begin_}, spelling);
}

void CodeReader::name() {
  Node name;
  name.kind = Node::Kind::Name;
  name.name = storedName(bytes());
  push(std::move(name), {.node = 0, .start = begin_});
}

void CodeReader::parentheses() {
  if (stack_.empty() || stack_.back().jumpAt >= 0) refuse("parentheses round nothing");
  Operand& inside = stack_.back();
  if (++inside.depth > kMaxDepth) refuse("it is nested too deep");
  ++node(inside.node).parentheses;
  inside.level = inside.tail = kClosed;
}

// --- Operators -----------------------------------------------------------------------------------------

void CodeReader::binary(const OperatorCode& row) {
  Operand right = pop(), left = pop();
  const int own = levelOf(row.op);
  note(row.sureness, {Spelling::Kind::None, false, row.code});
  // A sign at the end of the left side would take this operator into its operand.
  enclose(left, left.level < own || left.tail <= own);
  enclose(right, right.level <= own);
  Operand whole{.node = 0, .start = left.start, .level = own, .tail = right.tail};
  whole.depth = std::max(left.depth, right.depth);
  Node& before = node(left.node);
  if (left.level == own && before.kind == Node::Kind::Chain) {
    before.operators.push_back(row.op);
    before.children.push_back(right.node);
    whole.node = left.node;
    stack_.push_back(whole);
    return;
  }
  Node chain;
  chain.kind = Node::Kind::Chain;
  chain.operators = {row.op};
  chain.children = {left.node, right.node};
  push(std::move(chain), whole);
}

void CodeReader::sign(const OperatorCode& row) {
  Operand operand = pop();
  const int takes = operandLevelOf(row.op);
  note(row.sureness, {Spelling::Kind::None, false, row.code});
  enclose(operand, operand.level < takes);
  Node sign;
  sign.kind = Node::Kind::Unary;
  sign.operators = {row.op};
  sign.children = {operand.node};
  push(
      std::move(sign),
      {.node = 0, .start = operand.start, .tail = std::min(takes, operand.tail), .depth = operand.depth + 1});
}

void CodeReader::assignment(Node::Modifier modifier) {
  const Operand value = pop(), variable = pop();
  const Node& target = node(variable.node);
  if (target.kind != Node::Kind::Name || variable.level != kClosed || target.parentheses > 0)
    refuse("a value is assigned to what is no name");
  if (modifier == Node::Modifier::Field)
    note(kAssignFieldSureness, {Spelling::Kind::None, false, code::AssignField});
  Node assignment;
  assignment.kind = Node::Kind::Assignment;
  assignment.modifier = modifier;
  assignment.name = target.name;
  assignment.children = {value.node};
  push(std::move(assignment), {.node = 0,
                               .start = variable.start,
                               .level = level::Any,
                               .tail = level::Any,
                               .depth = value.depth + 1});
}

void CodeReader::subscript() {
  const Operand index = pop();
  Operand list = pop();
  const Node& shown = node(list.node);
  const bool plain = shown.parentheses > 0 || shown.kind == Node::Kind::Name ||
                     shown.kind == Node::Kind::Call || shown.kind == Node::Kind::Subscript;
  enclose(list, !plain);
  Node subscript;
  subscript.kind = Node::Kind::Subscript;
  subscript.children = {list.node, index.node};
  push(std::move(subscript),
       {.node = 0, .start = list.start, .depth = std::max(list.depth, index.depth + 1)});
}

// --- Calls ---------------------------------------------------------------------------------------------

void CodeReader::jump(bool unless) {
  if (stack_.empty() || stack_.back().jumpAt >= 0) refuse("a jump behind nothing");
  Operand& before = stack_.back();
  before.jumpAt = begin_;
  before.unless = unless;
  before.toEnd = word();
  if (unless) before.toNext = word();
}

// Behind each condition a jump to where the next one begins, behind each value one to the end.
void CodeReader::checkJumps(const std::vector<Operand>& arguments, qsizetype end) const {
  for (std::size_t i = 0; i < arguments.size(); ++i) {
    const Operand& argument = arguments[i];
    const bool condition = i % 2 == 0 && i + 1 < arguments.size();
    if (argument.jumpAt < 0 || argument.unless != condition) refuse("@If without its jumps");
    if (argument.toEnd != end - argument.jumpAt) refuse("a jump out of @If");
    if (!condition) continue;
    if (i + 2 >= arguments.size()) refuse("@If without its last value");
    if (argument.toNext != arguments[i + 2].start - (argument.jumpAt + 4)) refuse("a jump out of @If");
  }
}

void CodeReader::call(quint16 code, int count) {
  if (std::size_t(count) > stack_.size()) refuse("a function lacks its arguments");
  arguments_.assign(stack_.end() - count, stack_.end());
  stack_.resize(stack_.size() - std::size_t(count));
  if (code == code::If)
    checkJumps(arguments_, begin_);
  else if (std::any_of(arguments_.begin(), arguments_.end(), [](const Operand& a) { return a.jumpAt >= 0; }))
    refuse("a jump outside @If");
  const FunctionCode* const row = findFunctionCode(code);
  const Spelling spelling{Spelling::Kind::Function, false, code};
  note(row ? row->sureness : Sureness::Unnamed, spelling);
  Node call;
  call.kind = Node::Kind::Call;
  call.function = row ? functionOf(*row) : nullptr;
  call.children.reserve(arguments_.size());
  Operand whole{.node = 0, .start = begin_, .depth = 0};
  for (const Operand& argument : arguments_) {
    call.children.push_back(argument.node);
    whole.depth = std::max(whole.depth, argument.depth + 1);
  }
  if (!arguments_.empty()) whole.start = arguments_.front().start;
  push(std::move(call), whole, spelling);
}

void CodeReader::operation(quint8 low, int count) {
  if (low == code::Far) {
    const quint16 far = word();
    if (far < code::FirstFar) refuse("a code that is none");
    return call(far, count);
  }
  if (low >= code::FirstFunction) return call(low, count);
  const OperatorCode* const row = findOperator(low);
  const int operands = row ? row->operands : 2;
  const bool known = row || low == code::Assign || low == code::Subscript || low == code::AssignField;
  if (!known || count != operands) refuse("a code that is none");
  // None of them looks at a jump.
  for (int i = 0; i < operands && std::size_t(i) < stack_.size(); ++i)
    if (stack_[stack_.size() - 1 - std::size_t(i)].jumpAt >= 0) refuse("a jump outside @If");
  if (row) return operands == 1 ? sign(*row) : binary(*row);
  if (low == code::Subscript) return subscript();
  assignment(low == code::Assign ? Node::Modifier::None : Node::Modifier::Field);
}

int CodeReader::read(QByteArrayView code) {
  code_ = code;
  at_ = 0;
  added_ = false;
  stack_.clear();
  for (;;) {
    begin_ = at_;
    const quint16 instruction = word();
    const quint8 low = quint8(instruction & 0xFF);
    const int count = instruction >> 8;
    if (instruction == code::End) break;
    if (instruction == code::Number)
      number();
    else if (instruction == code::Text)
      constant(Value::text(textFromStored(bytes())));
    else if (instruction == code::Time)
      time();
    else if (instruction == code::Parentheses)
      parentheses();
    else if (instruction == code::Name)
      name();
    else if (instruction == code::Jump || instruction == code::JumpUnless)
      jump(instruction == code::JumpUnless);
    else
      operation(low, count);
  }
  if (at_ != code_.size()) refuse("bytes behind the end of the code");
  if (stack_.size() != 1) refuse("values are left over");
  if (stack_.back().jumpAt >= 0) refuse("a jump outside @If");
  return stack_.back().node;
}

}  // namespace lens::formula

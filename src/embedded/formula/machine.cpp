#include "embedded/formula/machine.h"

#include <QVarLengthArray>
#include <functional>

#include "embedded/formula/arguments.h"
#include "embedded/formula/functions/environment_entry.h"

namespace lens::formula {
namespace {

// Blocks and evaluated texts within each other; each takes some of the machine's stack.
constexpr int kDeepest = 400;

bool bothNumbers(const Value& a, const Value& b) {
  return a.isOneNumber() && b.isOneNumber();
}
bool bothTexts(const Value& a, const Value& b) {
  return a.isOneText() && b.isOneText();
}

class Deeper {
 public:
  explicit Deeper(int& depth) : depth_(depth) {
    if (++depth_ > kDeepest) {
      --depth_;
      throw Fault{fault::TooDeep, true};
    }
  }
  ~Deeper() { --depth_; }
  Deeper(const Deeper&) = delete;
  Deeper& operator=(const Deeper&) = delete;

 private:
  int& depth_;
};

}  // namespace

// --- Frame and state ---------------------------------------------------------------------------------------

Frame::Frame(const Program& one) : program(one), registers(std::size_t(one.registers)) {
  std::copy(program.constants.begin(), program.constants.end(), registers.begin());
}

void Frame::clear() {
  for (std::size_t i = std::size_t(program.firstName()); i < registers.size(); ++i) registers[i].clear();
}

void Frame::itemWritten(const Name& item, const Value& value) {
  const auto name = program.nameIndex.constFind(item);
  if (name == program.nameIndex.constEnd() || isVariable(*name)) return;
  registers[std::size_t(program.firstName() + *name)] =
      value.type() == Type::Unavailable ? Value::missing() : value;
}

void Evaluation::State::begin() {
  if (!written.isEmpty()) written.clear(), writtenNames.clear();
  if (!loose.isEmpty()) loose.clear();
  selected.reset();
  depth = evalDepth = 0;
  current = main.get();
}

void Evaluation::State::end() {
  main->clear();
  current = nullptr;
}

// --- Machine -----------------------------------------------------------------------------------------------

Machine::Machine(Evaluation& evaluation, Frame& frame)
    : evaluation_(evaluation),
      state_(*evaluation.state_),
      frame_(frame),
      program_(frame.program),
      registers_(frame.registers.data()) {}

void Machine::run(Value& result) {
  result = std::move(at(execute(0)));
  if (readsAsEmpty(result)) result = emptyText();
}

// Most operands are single numbers; binary() knows all cases.
template <typename Compute>
void Machine::arithmetic(const Instruction& i, Operator op, Compute&& compute) {
  const Value &a = at(i.a), &b = at(i.b);
  if (bothNumbers(a, b))
    at(i.result).setNumber(compute(a.plainNumber(), b.plainNumber()));
  else
    at(i.result) = binary(op, i);
}

// Where to go on: behind the comparison when it holds.
template <typename Compare>
const Instruction* Machine::unless(const Instruction& i, Operator op, Compare&& compare) {
  const Value &a = at(i.a), &b = at(i.b);
  if (!bothNumbers(a, b)) return decide(i, binary(op, i));
  return compare(a.plainNumber(), b.plainNumber()) ? &i + 1 : program_.code.data() + i.x;
}

// One instruction after the other: a case for each, and the work of the longer ones in a function.
quint16 Machine::execute(quint32 from) {
  const Deeper deeper(state_.depth);
  const Instruction* const code = program_.code.data();
  Value* const r = registers_;
  const Instruction* next = code + from;
  while (true) {
    const Instruction& i = *next++;
    switch (i.op) {
      case Op::Concatenate:
        concatenateInto(i);
        break;
      case Op::Add:
        arithmetic(i, Operator::Add, std::plus<double>());
        break;
      case Op::Subtract:
        arithmetic(i, Operator::Subtract, std::minus<double>());
        break;
      case Op::Multiply:
        arithmetic(i, Operator::Multiply, std::multiplies<double>());
        break;
      case Op::Divide:
        if (r[i.b].isOneNumber() && r[i.b].plainNumber() != 0)
          arithmetic(i, Operator::Divide, std::divides<double>());
        else
          r[i.result] = binary(Operator::Divide, i);
        break;
      case Op::Equal:
        if (bothTexts(r[i.a], r[i.b]))
          r[i.result].setNumber(r[i.a].text() == r[i.b].text());
        else
          arithmetic(i, Operator::Equal, std::equal_to<double>());
        break;
      case Op::NotEqual:
        arithmetic(i, Operator::NotEqual, std::not_equal_to<double>());
        break;
      case Op::Less:
        arithmetic(i, Operator::Less, std::less<double>());
        break;
      case Op::Greater:
        arithmetic(i, Operator::Greater, std::greater<double>());
        break;
      case Op::LessEqual:
        arithmetic(i, Operator::LessEqual, std::less_equal<double>());
        break;
      case Op::GreaterEqual:
        arithmetic(i, Operator::GreaterEqual, std::greater_equal<double>());
        break;
      case Op::And:
        arithmetic(i, Operator::And, [](double a, double b) { return a != 0 && b != 0; });
        break;
      case Op::Or:
        arithmetic(i, Operator::Or, [](double a, double b) { return a != 0 || b != 0; });
        break;
      case Op::Binary:
        r[i.result] = binary(Operator(i.x), i);
        break;
      case Op::Unary:
        evaluation_.charge(r[i.a].count());
        r[i.result] = applyUnary(Operator(i.x), readsAsEmpty(r[i.a]) ? emptyText() : r[i.a]);
        break;
      case Op::Subscript:
        r[i.result] = subscript(r[i.a], r[i.b]);
        break;
      case Op::Move:
        r[i.result] = r[i.a];
        break;
      case Op::Assign:
        assign(r[i.result], r[i.a]);
        break;
      case Op::Load:
        if (r[i.result].isUnset()) fetch(i.result, r[i.result]);
        break;
      case Op::Read:
        if (r[i.a].isUnset())
          fetch(i.a, r[i.result]);
        else
          r[i.result] = r[i.a];
        break;
      case Op::Available:
        r[i.result].setNumber(isAvailable(i.a));
        break;
      case Op::WriteField:
        writeField(i);
        break;
      case Op::WriteEnvironment:
        writeEnvironment(i);
        break;
      case Op::SetByName:
        setByName(i);
        break;
      case Op::Call:
        callFunction(i);
        break;
      case Op::Jump:
        next = code + i.x;
        break;
      case Op::Loop:
        evaluation_.charge(i.y);
        next = code + i.x;
        break;
      case Op::Unless:
        if (r[i.a].isOneNumber())
          next = r[i.a].plainNumber() != 0 ? next : code + i.x;
        else
          next = decide(i, r[i.a]);
        break;
      case Op::UnlessEqual:
        if (bothTexts(r[i.a], r[i.b]))
          next = r[i.a].text() == r[i.b].text() ? next : code + i.x;
        else
          next = unless(i, Operator::Equal, std::equal_to<double>());
        break;
      case Op::UnlessNotEqual:
        next = unless(i, Operator::NotEqual, std::not_equal_to<double>());
        break;
      case Op::UnlessLess:
        next = unless(i, Operator::Less, std::less<double>());
        break;
      case Op::UnlessGreater:
        next = unless(i, Operator::Greater, std::greater<double>());
        break;
      case Op::UnlessLessEqual:
        next = unless(i, Operator::LessEqual, std::less_equal<double>());
        break;
      case Op::UnlessGreaterEqual:
        next = unless(i, Operator::GreaterEqual, std::greater_equal<double>());
        break;
      case Op::UnlessError:
        if (!r[i.a].isError()) next = code + i.x;
        break;
      case Op::UnlessMissing:
        if (isAvailable(i.a)) next = code + i.x;
        break;
      case Op::ErrorText:
        r[i.result] = Value::text(faultText(r[i.a].errorCode()));
        break;
      case Op::Transform:
        transform(i);
        if (returned_) return program_.resultRegister();
        next = code + i.y;
        break;
      case Op::CustomSort:
        customSort(i);
        if (returned_) return program_.resultRegister();
        next = code + i.y;
        break;
      case Op::Eval:
        evaluateTexts(i);
        break;
      case Op::Select:
        state_.selected = truthOf(r[i.a]).holds;
        break;
      case Op::Return:
        r[program_.resultRegister()] = r[i.a];
        returned_ = true;
        return program_.resultRegister();
      case Op::EndBlock:
      case Op::End:
        return i.a;
    }
  }
}

void Machine::fetch(quint16 name, Value& value) {
  if (!evaluation_.item(nameAt(name), value)) value = Value::missing();
}

bool Machine::isAvailable(quint16 name) {
  const Value& known = at(name);
  if (!known.isUnset()) return known.type() != Type::Missing;
  Value value;
  return evaluation_.item(nameAt(name), value);
}

Value Machine::binary(Operator op, const Instruction& i) {
  try {
    return applyBinary(op, at(i.a), at(i.b), &evaluation_);
  } catch (const Fault& fault) {
    if (fault.fatal) throw;
    return Value::error(fault.code);
  }
}

void Machine::concatenateInto(const Instruction& i) {
  Value& result = at(i.result);
  evaluation_.charge(at(i.b).count() + (i.result == i.a ? 0 : at(i.a).count()));
  try {
    // A list that grows in a variable keeps its memory.
    Value left = i.result == i.a && i.a != i.b ? std::move(result) : at(i.a);
    result = concatenate(std::move(left), at(i.b));
  } catch (const Fault& fault) {
    if (fault.fatal) throw;
    result = Value::error(fault.code);
  }
}

const Instruction* Machine::decide(const Instruction& i, const Value& condition) {
  const Truth truth = truthOf(readsAsEmpty(condition) ? emptyText() : condition);
  if (!truth.error.isUnset()) {
    at(i.result) = truth.error;
    return program_.code.data() + i.y;
  }
  return truth.holds ? &i + 1 : program_.code.data() + i.x;
}

void Machine::callFunction(const Instruction& i) {
  const Function& function = *program_.functions[i.y];
  QVarLengthArray<const Value*, 8> arguments(i.b);
  qsizetype elements = 0;  // the least that a function may have to look at
  for (int n = 0; n < i.b; ++n) {
    const Value* argument = &at(program_.arguments[i.x + quint32(n)]);
    if (argument->type() < Type::Number) {
      if (readsAsEmpty(*argument)) {
        argument = &emptyText();
      } else if (!argument->isError() || !(function.traits & trait::TakesErrors)) {
        at(i.result) = argument->isError() ? *argument : Value::error(fault::UnavailableUsed);
        return;
      }
    }
    arguments[n] = argument;
    elements += argument->count();
  }
  if (const FaultCode fault = argumentFault(function, arguments.data(), i.b)) {
    at(i.result) = Value::error(fault);
    return;
  }
  evaluation_.charge(elements);
  try {
    at(i.result) = function.run(Call(arguments.data(), i.b, &evaluation_));
  } catch (const Fault& fault) {
    if (fault.fatal) throw;
    at(i.result) = Value::error(fault.code);
  }
}

// --- Names -------------------------------------------------------------------------------------------------

// A variable that took over a missing name compares as the name does.
void Machine::assign(Value& name, const Value& value) {
  if (value.type() == Type::Nothing)
    name = emptyText();
  else if (value.type() == Type::Unavailable)
    name = Value::error(fault::UnavailableUsed);
  else
    name = value;
}

void Machine::writeField(const Instruction& i) {
  const quint16 name = quint16(program_.firstName() + int(i.x));
  // A value of its own: the register may be the name's, which writing changes.
  const Value value = readsAsEmpty(at(i.a)) ? emptyText() : at(i.a);
  try {
    if (!value.isError()) evaluation_.writeItem(nameAt(name).text(), value);
    if (!isVariable(name)) at(name) = value.type() == Type::Unavailable ? Value::missing() : value;
    at(i.result) = value;
  } catch (const Fault& fault) {
    if (fault.fatal) throw;
    at(i.result) = Value::error(fault.code);
    // The code behind takes the name for read.
    if (at(name).isUnset() && !isVariable(name)) fetch(name, at(name));
  }
}

void Machine::writeEnvironment(const Instruction& i) {
  const Value value = readsAsEmpty(at(i.a)) ? emptyText() : at(i.a);
  const Name& name = program_.names[i.x];
  try {
    if (!value.isError() && !value.isText()) throw Fault{fault::TextExpected};
    if (!value.isError() && evaluation_.mayWrite())
      evaluation_.environment().setIniValue(environmentEntry(name.text()), value.text().toString());
    at(i.result) = value;
  } catch (const Fault& fault) {
    if (fault.fatal) throw;
    at(i.result) = Value::error(fault.code);
  }
}

void Machine::setByName(const Instruction& i) {
  const Value& written = at(i.b);
  Value value;
  assign(value, at(i.a));
  if (written.isError() || !written.isText()) {
    at(i.result) = written.isError() ? written : Value::error(fault::TextExpected);
    return;
  }
  setVariable(Name(written.text().toString()), value);
  at(i.result) = std::move(value);
}

}  // namespace lens::formula

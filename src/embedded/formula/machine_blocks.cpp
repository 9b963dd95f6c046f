// What runs parts of a formula again and again, or formulas within it: @Transform, @Sort with an expression,
// @Eval.
#include "embedded/formula/functions/sorting.h"
#include "embedded/formula/machine.h"

namespace lens::formula {

void Machine::transform(const Instruction& i) {
  const Value list = readsAsEmpty(at(i.a)) ? emptyText() : at(i.a);
  if (list.count() == 0) {
    at(i.result) = list.isError() ? list : Value::error(fault::UnavailableUsed);
    return;
  }
  try {
    ListBuilder result(Type::Unset, list.count());
    for (qsizetype n = 0; n < list.count(); ++n) {
      evaluation_.charge(i.y - i.x);
      at(i.b) = list.element(n);
      const Value& one = at(execute(i.x));
      if (returned_) return;
      if (one.type() == Type::Nothing) continue;
      if (one.isError() || one.type() == Type::Unavailable) {
        at(i.result) = one.isError() ? one : Value::error(fault::UnavailableUsed);
        return;
      }
      result.add(one.type() == Type::Missing ? emptyText() : one);
    }
    at(i.result) = result.take();
  } catch (const Fault& fault) {
    if (fault.fatal) throw;
    at(i.result) = Value::error(fault.code);
  }
}

void Machine::customSort(const Instruction& i) {
  // Values of their own: what the comparison computes may reuse the registers.
  const Value list = readsAsEmpty(at(i.a)) ? emptyText() : at(i.a), words = at(i.b);
  const auto name = [this](int which) { return quint16(program_.firstName() + program_.sortNames[which]); };
  try {
    if (list.isError() || words.isError()) throw Fault{(list.isError() ? list : words).errorCode()};
    if (list.count() == 0) throw Fault{fault::UnavailableUsed};
    if (words.type() != Type::Keyword) throw Fault{fault::KeywordExpected};
    const SortOrder order = readSortOrder(words);
    if (!order.custom) {
      at(i.result) = sorted(list, order, evaluation_.environment().zone());
      return;
    }
    Value inOrder = sortedBy(list, [&](qsizetype a, qsizetype b) {
      if (returned_) return false;
      evaluation_.charge(i.y - i.x);
      at(name(0)) = list.element(a);
      at(name(1)) = list.element(b);
      const Value& after = at(execute(i.x));
      if (returned_) return false;
      if (after.isError()) throw Fault{after.errorCode()};
      if (!after.isNumber()) throw Fault{fault::NumberExpected};
      return after.number() > 0;
    });
    if (!returned_) at(i.result) = std::move(inOrder);
  } catch (const Fault& fault) {
    if (fault.fatal) throw;
    at(i.result) = Value::error(fault.code);
  }
}

// --- @Eval -------------------------------------------------------------------------------------------------

void Machine::evaluateTexts(const Instruction& i) {
  const Value texts = readsAsEmpty(at(i.a)) ? emptyText() : at(i.a);
  if (!texts.isText()) {
    at(i.result) = texts.isError() ? texts : Value::error(fault::TextExpected);
    return;
  }
  if (state_.evalDepth >= evaluation_.limits_.evalDepth) {
    at(i.result) = Value::error(fault::EvalTooDeep);
    return;
  }
  ++state_.evalDepth;
  Value result;
  for (qsizetype n = 0; n < texts.count() && !result.isError(); ++n) result = evaluateText(texts.text(n));
  at(i.result) = std::move(result);
  --state_.evalDepth;
}

Value Machine::evaluateText(QStringView source) {
  // Reading the source is work too.
  evaluation_.charge(10 * source.size());
  const Compiled compiled = compile(source, {&evaluation_.environment()});
  if (!compiled) return Value::error(compiled.error.reason);
  Frame inner(compiled.formula->program());
  inner.outer = &frame_;
  shareVariables(inner);
  Frame* const outer = std::exchange(state_.current, &inner);
  Value result;
  try {
    Machine(evaluation_, inner).run(result);
  } catch (const Fault& fault) {
    state_.current = outer;
    if (fault.fatal) throw;
    return Value::error(fault.code);
  }
  state_.current = outer;
  takeVariables(inner);
  return result;
}

Value* Machine::findVariable(const Name& name) {
  for (Frame* frame = &frame_; frame; frame = frame->outer) {
    const auto known = frame->program.nameIndex.constFind(name);
    if (known != frame->program.nameIndex.constEnd())
      return &frame->registers[std::size_t(frame->program.firstName() + *known)];
  }
  const auto loose = state_.loose.find(name);
  return loose == state_.loose.end() ? nullptr : &*loose;
}

void Machine::setVariable(const Name& name, const Value& value) {
  if (Value* known = findVariable(name)) {
    *known = value;
    return;
  }
  // Names that are computed could be any number of names.
  constexpr qsizetype kMostLoose = 10'000;
  if (state_.loose.size() >= kMostLoose) throw Fault{fault::TooMuchMemory, true};
  evaluation_.charge(16);
  state_.loose.insert(name, value);
}

void Machine::shareVariables(Frame& inner) {
  inner.shared.assign(inner.program.names.size(), false);
  for (std::size_t n = 0; n < inner.program.names.size(); ++n) {
    const Value* known = findVariable(inner.program.names[n]);
    if (!known || known->isUnset()) continue;
    inner.registers[std::size_t(inner.program.firstName()) + n] = *known;
    inner.shared[n] = true;
  }
}

void Machine::takeVariables(Frame& inner) {
  for (std::size_t n = 0; n < inner.program.names.size(); ++n) {
    const Value& value = inner.registers[std::size_t(inner.program.firstName()) + n];
    if (inner.isVariable(int(n)) && !value.isUnset()) setVariable(inner.program.names[n], value);
  }
}

}  // namespace lens::formula

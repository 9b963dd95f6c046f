#include <QSet>

#include "embedded/formula/machine.h"

namespace lens::formula {

Evaluation::Evaluation(std::shared_ptr<const Formula> formula, Environment& environment, Limits limits)
    : formula_(std::move(formula)),
      environment_(environment),
      limits_(limits),
      state_(std::make_unique<State>()) {
  state_->main = std::make_unique<Frame>(formula_->program());
}

Evaluation::~Evaluation() = default;

namespace {

// Values may take so much memory as long as this stands.
class MemoryLimit {
 public:
  explicit MemoryLimit(qsizetype bytes) : before_(ValueMemory::setLimit(ValueMemory::inUse() + bytes)) {}
  ~MemoryLimit() { ValueMemory::setLimit(before_); }
  MemoryLimit(const MemoryLimit&) = delete;
  MemoryLimit& operator=(const MemoryLimit&) = delete;

 private:
  qsizetype before_;
};

// How often the user is asked whether to go on, in steps.
constexpr qint64 kAskEvery = 1 << 16;

bool tooLong(const Value& value) {
  if (value.isOneNumber()) return false;
  if (value.storedSizeBound() <= kMaxBytes) return false;
  if (!value.isText()) return true;
  qsizetype bytes = 4;
  for (qsizetype i = 0; i < value.count() && bytes <= kMaxBytes; ++i)
    bytes += 2 + storedTextSize(value.text(i));
  return bytes > kMaxBytes;
}

}  // namespace

Outcome Evaluation::run(Document* document, Database* database, Writes writes) {
  document_ = document;
  database_ = database;
  writes_ = document ? writes : Writes::Pretend;
  modified_ = deletes_ = false;
  stepsLeft_ = limits_.steps;
  stepsUntilAsked_ = qMin(kAskEvery, limits_.steps);
  State& state = *state_;
  state.begin();
  Outcome outcome;
  const MemoryLimit limit(limits_.memory);
  try {
    Machine(*this, *state.main).run(outcome.value);
    if (tooLong(outcome.value)) outcome.value = Value::error(fault::ResultTooLong);
  } catch (const Fault& fault) {
    outcome.value = Value::error(fault.code);
    state.selected = false;
  }
  outcome.matches =
      state.selected ? *state.selected : outcome.value.isNumber() && truthOf(outcome.value).holds;
  outcome.modified = modified_;
  outcome.deletes = deletes_;
  state.end();
  document_ = nullptr;
  database_ = nullptr;
  return outcome;
}

void Evaluation::askWhetherToGoOn() {
  // What was granted last time is used up, and perhaps more.
  stepsLeft_ -= qMin(kAskEvery, stepsLeft_) - stepsUntilAsked_;
  if (stepsLeft_ <= 0 || environment_.interrupted()) throw Fault{fault::TooMuchTime, true};
  stepsUntilAsked_ = qMin(kAskEvery, stepsLeft_);
}

bool Evaluation::item(const Name& name, Value& value) const {
  if (!state_->written.isEmpty()) {
    const auto written = state_->written.constFind(name);
    if (written != state_->written.constEnd()) {
      if (written->type() == Type::Unavailable) return false;
      value = *written;
      return true;
    }
  }
  return document_ && document_->item(name, value);
}

QStringList Evaluation::itemNames() const {
  const QStringList stored = document_ ? document_->itemNames() : QStringList();
  if (state_->written.isEmpty()) return stored;
  // Those of the document that were not removed, then those that are new.
  QStringList names;
  QSet<Name> seen;
  for (const QString& name : stored) {
    const Name key(name);
    seen.insert(key);
    if (state_->written.value(key).type() != Type::Unavailable) names.append(name);
  }
  for (auto written = state_->written.constBegin(); written != state_->written.constEnd(); ++written)
    if (written->type() != Type::Unavailable && !seen.contains(written.key()))
      names.append(state_->writtenNames.value(written.key()));
  return names;
}

void Evaluation::writeItem(const QString& name, const Value& value) {
  // Finding the item among others is work, and so is keeping it.
  constexpr qsizetype kWork = 100, kMostPretended = 10'000;
  charge(kWork);
  if (state_->written.size() >= kMostPretended) throw Fault{fault::TooMuchMemory, true};
  const Name written(name);
  modified_ = true;
  if (writes_ == Writes::Apply) {
    if (value.type() == Type::Unavailable)
      document_->removeItem(name);
    else
      document_->setItem(name, value);
  } else {
    state_->written.insert(written, value);
    state_->writtenNames.insert(written, name);
  }
  // What the formula has read of the item before is out of date.
  if (Frame* frame = state_->current) frame->itemWritten(written, value);
}

// --- Call ----------------------------------------------------------------------------------------------

Environment& Call::environment() const {
  if (!evaluation_) throw Fault{fault::NotInContext};
  return evaluation_->environment();
}

const Region& Call::region() const {
  return environment().region();
}

const LocalZone& Call::zone() const {
  return environment().zone();
}

Document& Call::document() const {
  if (!evaluation_ || !evaluation_->document()) throw Fault{fault::NotInContext};
  return *evaluation_->document();
}

const Database& Call::database() const {
  return writableDatabase();
}

Database& Call::writableDatabase() const {
  if (!evaluation_ || !evaluation_->database()) throw Fault{fault::NotInContext};
  return *evaluation_->database();
}

void Call::charge(qint64 steps) const {
  if (evaluation_) evaluation_->charge(steps);
}

}  // namespace lens::formula

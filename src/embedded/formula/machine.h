// Runs a program. A Frame is the memory of one program's runs; a Machine is one run over it.
#pragma once

#include <QHash>
#include <optional>

#include "embedded/formula/operators.h"
#include "embedded/formula/program.h"

namespace lens::formula {

struct Frame {
  explicit Frame(const Program& program);
  // Lets go of all that the last run left.
  void clear();
  // An item that was written has the new value from now on; Unavailable: it is gone. Variables stay.
  void itemWritten(const Name& item, const Value& value);
  // Whether the name is a variable here: in the program, or because the formula around it has set it.
  bool isVariable(int name) const {
    return program.variables[std::size_t(name)] || (!shared.empty() && shared[std::size_t(name)]);
  }

  const Program& program;
  std::vector<Value> registers;
  std::vector<bool> shared;  // names that came in from the formula around an evaluated text
  Frame* outer = nullptr;    // of the formula around
};

// What all frames of an evaluation share.
struct Evaluation::State {
  std::unique_ptr<Frame> main;
  Frame* current = nullptr;
  // Items that the formula wrote in a run that must not write: by folded name.
  QHash<Name, Value> written;
  QHash<Name, QString> writtenNames;
  // Variables that only @Set and @Eval know of.
  QHash<Name, Value> loose;
  std::optional<bool> selected;
  int depth = 0;  // machines and blocks within each other
  int evalDepth = 0;

  void begin();
  void end();
};

class Machine {
 public:
  Machine(Evaluation& evaluation, Frame& frame);
  void run(Value& result);

 private:
  // Runs until a block or the program ends; gives the register of the value. With returned_ set,
  // @Return ended it, and everything around it has to end as well.
  quint16 execute(quint32 from);

  Value& at(quint16 index) { return registers_[index]; }
  const Name& nameAt(quint16 index) const {
    return program_.names[std::size_t(index - program_.firstName())];
  }
  bool isVariable(quint16 index) const { return frame_.isVariable(index - program_.firstName()); }
  void fetch(quint16 name, Value& value);
  bool isAvailable(quint16 name);
  template <typename Compute>
  void arithmetic(const Instruction& instruction, Operator op, Compute&& compute);
  template <typename Compare>
  const Instruction* unless(const Instruction& instruction, Operator op, Compare&& compare);
  Value binary(Operator op, const Instruction& instruction);
  void concatenateInto(const Instruction& instruction);
  // The next instruction after a condition that is no plain number.
  const Instruction* decide(const Instruction& instruction, const Value& condition);
  void callFunction(const Instruction& instruction);
  void assign(Value& name, const Value& value);
  void writeField(const Instruction& instruction);
  void writeEnvironment(const Instruction& instruction);
  void setByName(const Instruction& instruction);
  void transform(const Instruction& instruction);
  void customSort(const Instruction& instruction);
  void evaluateTexts(const Instruction& instruction);
  Value evaluateText(QStringView source);
  // Variables go into an evaluated text by name, and come out again.
  void shareVariables(Frame& inner);
  void takeVariables(Frame& inner);
  // The variable of that name in this formula or the nearest one around it; null when none knows the name.
  Value* findVariable(const Name& name);
  void setVariable(const Name& name, const Value& value);

  Evaluation& evaluation_;
  Evaluation::State& state_;
  Frame& frame_;
  const Program& program_;
  Value* registers_;
  bool returned_ = false;
};

}  // namespace lens::formula

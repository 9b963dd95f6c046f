// How a tree becomes a program. One class in several files: compiler.cpp leads through the statements,
// the others hold constants (folding), expressions and calls.
#pragma once

#include "embedded/formula/program.h"

namespace lens::formula {

// While code is made, names and temporaries have numbers of their own kind: how many constants will stand
// before them is known at the end only.
inline constexpr int kNames = 0x1000000, kTemporaries = 0x2000000;

// An instruction whose registers are not final yet.
struct Draft {
  Op op;
  int result = 0, a = 0, b = 0;
  quint32 x = 0, y = 0;
};

class Compiler {
 public:
  explicit Compiler(const Tree& tree)
      : tree_(tree), effects_(tree.nodes.size(), Effects::Unknown), folds_(tree.nodes.size()) {}
  // False when the program would be too large.
  bool compile(Program& program);

 private:
  enum class Effects : quint8 { Unknown, None, Some };

  const Node& node(int index) const { return tree_.nodes[std::size_t(index)]; }
  void findVariables();
  bool hasEffects(int index);

  void statement(const Statement& statement);
  // Code for what the expression does, not for its value.
  void discard(int index);
  // Code that leaves the value in the register.
  void into(int index, int result);
  // Code that computes the value; gives the register that holds it, which may be a name's or a constant's.
  int operand(int index);
  // The same, and safe from what the siblings behind it assign.
  int keptOperand(int index, bool effectsBehind);
  int inTemporary(int index);
  // The value of a node that is a constant or made of constants; found once for each node.
  bool foldable(int index, Value& value);
  bool fold(const Node& node, Value& value);
  bool foldChain(const Node& node, Value& value);
  bool foldCall(const Node& node, Value& value);

  void chain(const Node& node, int result);
  void call(const Node& node, int result);
  void plainCall(const Node& node, int result);
  void assignment(const Node& node, int result);
  void assignTo(int name, int valueNode, int result);
  void readName(const QString& written, int result);
  int nameOperand(const QString& written);
  void ifCall(const Node& node, int result);
  void ifErrorCall(const Node& node, int result);
  void sequence(const Node& node, int result);
  // Ends a loop that began there: back to its start, and 1 as its value when the condition fails.
  void endLoop(quint32 begin, int condition, int result);
  void whileCall(const Node& node, int result);
  void doWhileCall(const Node& node, int result);
  void forCall(const Node& node, int result);
  void transformCall(const Node& node, int result);
  void sortCall(const Node& node, int result);
  void setCall(const Node& node, int result);
  // Jumps that leave when the condition does not hold, or is none (its error is then in the result).
  // Gives the instruction, whose two exits are set when their places are known.
  int condition(int index, int result);
  void setExits(int at, quint32 unless, quint32 failed) {
    code_[std::size_t(at)].x = unless;
    code_[std::size_t(at)].y = failed;
  }
  void jumpHere(int at) { code_[std::size_t(at)].x = here(); }

  int nameOf(const QString& written);
  int constant(Value value);
  int temporary() {
    const int index = kTemporaries + depth_++;
    deepest_ = qMax(deepest_, depth_);
    return index;
  }
  int emit(Draft draft) {
    code_.push_back(draft);
    return int(code_.size()) - 1;
  }
  quint32 here() const { return quint32(code_.size()); }

  // What is known of names at this point of the code: which have been assigned or loaded on every way here.
  void know(int name) {
    if (known_[std::size_t(name)]) return;
    known_[std::size_t(name)] = true;
    learnt_.push_back(name);
  }
  std::size_t branch() const { return learnt_.size(); }
  void forgetSince(std::size_t mark) {
    for (; learnt_.size() > mark; learnt_.pop_back()) known_[std::size_t(learnt_.back())] = false;
  }

  bool finish(Program& program);

  const Tree& tree_;
  std::vector<Effects> effects_;
  struct Fold {
    bool tried = false, constant = false;
    Value value;
  };
  std::vector<Fold> folds_;
  std::vector<Draft> code_;
  std::vector<int> arguments_;  // of calls, in drafts' numbers
  Program program_;
  std::vector<bool> known_;
  std::vector<int> learnt_;
  bool computedNames_ = false;
  int depth_ = 0, deepest_ = 0;
  int result_ = 0;
};

// One step of a chain with constants on both sides. False when it fails, needs the clock's zone or would
// become large: then it is left to the run.
bool foldStep(Operator op, Value& left, const Value& right);

}  // namespace lens::formula

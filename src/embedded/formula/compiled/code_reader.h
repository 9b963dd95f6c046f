// One expression of a compiled formula: words in the order in which a machine with a stack computes them.
#pragma once

#include <QByteArray>
#include <vector>

#include "embedded/formula/compiled/codes.h"
#include "embedded/formula/compiled/segments.h"
#include "embedded/formula/precedence.h"

namespace lens::formula {

// What a node of the tree cannot hold of what stands in the code.
struct Spelling {
  enum class Kind : quint8 { None, Function, Keyword };
  Kind kind = Kind::None;
  // Parentheses that the code does not have, and without which the source would mean something else.
  bool addParentheses = false;
  quint32 number = 0;  // of the function or keyword
};

class CodeReader {
 public:
  // The tree gets the nodes, and the spellings one entry for each of them.
  CodeReader(Tree& tree, std::vector<Spelling>& spellings) : tree_(tree), spellings_(spellings) {}

  // The node of the expression. Throws an Unreadable for code that is no expression.
  int read(QByteArrayView code);

  // Of the least sure name in all that was read, and the names that were not proven, each once. Of an
  // operator the spelling has no kind, and the number is its code.
  Sureness sureness() const { return sureness_; }
  const std::vector<Spelling>& unproven() const { return unproven_; }
  // Whether parentheses were added to what was read last.
  bool added() const { return added_; }

 private:
  // What lies on the stack.
  struct Operand {
    int node;
    qsizetype start;        // where its code begins
    qsizetype jumpAt = -1;  // where it has a jump behind it
    quint16 toEnd = 0, toNext = 0;
    bool unless = false;  // the jump of a condition
    // How it may stand beside an operator without parentheses: the level of its own, and of what a sign at
    // its end takes in.
    int level = kClosed, tail = kClosed;
    int depth = 0;
  };
  static constexpr int kClosed = 99;

  quint16 word();
  quint32 doubleWord();
  QByteArrayView bytes();
  void constant(Value value);
  void number();
  void time();
  void name();
  void parentheses();
  void jump(bool unless);
  void binary(const OperatorCode& row);
  void sign(const OperatorCode& row);
  void assignment(Node::Modifier modifier);
  void subscript();
  void call(quint16 code, int count);
  void checkJumps(const std::vector<Operand>& arguments, qsizetype end) const;
  void operation(quint8 low, int count);

  void push(Node&& node, Operand operand, Spelling spelling = {});
  Operand pop();
  // The operand in a place that only what binds at least that tightly may take without parentheses.
  void enclose(Operand& operand, bool needed);
  void note(Sureness sureness, Spelling spelling);
  Node& node(int index) { return tree_.nodes[std::size_t(index)]; }
  [[noreturn]] void refuse(const char* reason) const { throw Unreadable{reason, at_}; }

  Tree& tree_;
  std::vector<Spelling>& spellings_;
  QByteArrayView code_;
  qsizetype at_ = 0;     // behind what was read
  qsizetype begin_ = 0;  // of the instruction
  std::vector<Operand> stack_;
  std::vector<Operand> arguments_;
  Sureness sureness_ = Sureness::Proven;
  std::vector<Spelling> unproven_;
  bool added_ = false;
};

// A name as a formula may use it; the stamp that columns' variables carry is left out. Throws an Unreadable
// for bytes that no formula could have as a name.
QString storedName(QByteArrayView bytes);

}  // namespace lens::formula

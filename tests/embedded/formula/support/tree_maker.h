// Random formulas: trees of all kinds of nodes, small enough to read when a test fails. The same seed
// gives the same trees on every machine.
#pragma once

#include <random>

#include "embedded/formula/tree.h"

namespace lens::formula {

class TreeMaker {
 public:
  // Compiled: only what has a code that is sure enough to be written.
  enum class Words { All, Compiled };
  explicit TreeMaker(quint32 seed, Words words = Words::All);
  Tree tree();

  // 0 to below the limit.
  int below(int limit) { return int(random_() % quint32(limit)); }
  bool oneIn(int count) { return below(count) == 0; }
  template <typename List>
  const auto& oneOf(const List& list) {
    return list[decltype(list.size())(below(int(list.size())))];
  }

 private:
  int statement(int number);
  int expression(int depth);
  int argument(int depth);
  int constant();
  int name();
  int chain(int depth);
  int unary(int depth);
  int subscript(int depth);
  int call(int depth);
  int callOf(const Function& function, std::vector<int> arguments);
  int assignment(int depth, Node::Modifier modifier);
  int textConstant();
  Value timeValue();
  int add(Node node);
  QString randomText();
  QString randomName();

  bool isWritten(Operator op) const;

  Words words_;
  std::mt19937 random_;
  Tree tree_;
  // Functions that take any arguments of the right number.
  std::vector<const Function*> plain_;
};

}  // namespace lens::formula

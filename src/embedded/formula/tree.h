// A formula as it was written: statements and expressions, before anything is folded or bound.
//
// Nodes lie in one row and name their children by place. Operators of one level that follow each other
// make one flat Chain, so a list of a thousand texts is no deeper than a list of two.
#pragma once

#include <QString>
#include <QStringView>
#include <vector>

#include "embedded/formula/formula.h"
#include "embedded/formula/function.h"
#include "embedded/formula/value.h"

namespace lens::formula {

enum class Operator : quint8 {
  Concatenate,  // :
  Plus,
  Minus,  // unary
  Not,
  Multiply,
  Divide,
  PermutedMultiply,
  PermutedDivide,  // * / ** */
  Add,
  Subtract,
  PermutedAdd,
  PermutedSubtract,  // + - *+ *-
  Equal,
  NotEqual,
  Less,
  Greater,
  LessEqual,
  GreaterEqual,
  PermutedEqual,
  PermutedNotEqual,
  PermutedLess,
  PermutedGreater,
  PermutedLessEqual,
  PermutedGreaterEqual,
  And,
  Or,
};

struct Node {
  enum class Kind : quint8 { Constant, Name, Chain, Unary, Subscript, Call, Assignment };
  enum class Modifier : quint8 { None, Field, Default, Environment };
  Kind kind = Kind::Constant;
  Modifier modifier = Modifier::None;  // Assignment
  quint16 parentheses = 0;     // pairs round it in the source; they say nothing that the tree does not
  int offset = 0, length = 0;  // of its first token in the source
  Value constant;              // number, text, time, range or keyword
  QString name;                // Name, Assignment, as written
  const Function* function = nullptr;  // Call
  std::vector<Operator> operators;     // Chain: one fewer than children; Unary: one
  std::vector<int> children;           // Subscript: list, index; Assignment: value
};

struct Statement {
  enum class Kind : quint8 { Expression, Select, Remark };
  Kind kind = Kind::Expression;
  int root = -1;  // node; -1 for a remark
  QString remark;
};

struct Tree {
  std::vector<Node> nodes;
  std::vector<Statement> statements;
};

// Expressions may nest this deep; fault::TooDeep beyond. Keeps every walk over a tree off the stack's end.
inline constexpr int kMaxDepth = 200;

struct Parsed {
  Tree tree;
  CompileError error;
};
Parsed parse(QStringView source, const Environment& environment);

// Source that gives the same tree again: one blank around operators, parentheses where they are needed,
// texts in quotes, one statement a line.
QString print(const Tree& tree, const Environment& environment);

bool sameTree(const Tree& left, const Tree& right);

// Line and column of a place, as compile errors count them.
void findLine(QStringView source, CompileError& error);

}  // namespace lens::formula

// A compiled formula as the evaluator runs it: instructions over numbered registers.
//
// Registers: first the constants, then one for each name, then room for what is computed on the way. The
// evaluator lays them out once; an instruction names its operands and its result by number.
#pragma once

#include <QHash>
#include <vector>

#include "embedded/formula/formula.h"
#include "embedded/formula/tree.h"

namespace lens::formula {

enum class Op : quint16 {
  // result, a, b
  Concatenate,
  Add,
  Subtract,
  Multiply,
  Divide,
  Equal,
  NotEqual,
  Less,
  Greater,
  LessEqual,
  GreaterEqual,
  And,
  Or,
  Binary,  // any other operator; x: Operator
  Unary,   // a; x: Operator
  Subscript,
  Move,    // a
  Assign,  // a; into a name: what cannot be held becomes an error or the empty text
  // Names.
  Load,              // result: a name that is only ever an item; read once
  Read,              // a: a name that may be a variable or an item
  Available,         // a: a name
  WriteField,        // a; x: name
  WriteEnvironment,  // a; x: name
  SetByName,         // a: value, b: name
  Call,              // x: first of the arguments, b: how many, y: function
  // Jumps: x is the instruction to go on with.
  Jump,
  Loop,    // a jump back; y: how many steps a round counts for
  Unless,  // a: condition; x: when it does not hold, y: when it is no condition (the error is the result)
  UnlessEqual,
  UnlessNotEqual,
  UnlessLess,
  UnlessGreater,
  UnlessLessEqual,
  UnlessGreaterEqual,  // a, b; x, y
  UnlessError,         // a
  UnlessMissing,       // a: a name
  ErrorText,           // a: an error
  // Blocks stand in the middle of the code: x is the first instruction, y the one behind.
  Transform,   // a: list, b: name
  CustomSort,  // a: list, b: order; x, y; the names $A and $B are those of the program
  EndBlock,    // a: the block's value
  Eval,        // a: texts
  Select,      // a
  Return,      // a
  End,
};

struct Instruction {
  Op op = Op::End;
  quint16 result = 0, a = 0, b = 0;
  quint32 x = 0, y = 0;
};

struct Program {
  std::vector<Instruction> code;
  std::vector<Value> constants;
  std::vector<Name> names;
  // Assigned to somewhere in the formula, or may be by a name that is computed: a variable hides the
  // item. The others are items, read at most once in a run.
  std::vector<bool> variables;
  QHash<Name, int> nameIndex;
  std::vector<const Function*> functions;
  std::vector<quint16> arguments;
  int registers = 0;
  int sortNames[2] = {-1, -1};  // $A, $B
  bool hasSelect = false;
  Formula::Responses responses = Formula::Responses::None;

  int firstName() const { return int(constants.size()); }
  int firstTemporary() const { return int(constants.size() + names.size()); }
  // The first temporary holds the value of the formula.
  quint16 resultRegister() const { return quint16(firstTemporary()); }
};

}  // namespace lens::formula

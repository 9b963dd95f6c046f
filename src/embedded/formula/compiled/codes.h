// The codes of the platform's compiled formulas, as they were found in designs whose source is known too.
// Reading and writing share this table, and each row says how sure its name is.
#pragma once

#include <QStringView>
#include <span>

#include "embedded/formula/tree.h"

namespace lens::formula {

// How a code got its name; the surest first.
enum class Sureness : quint8 {
  Proven,   // compared with the source of the same formula
  Context,  // from what it is used with: its arguments, its neighbours, the title of a column
  Guess,    // from its place among its neighbours; it is read, and never written
  Unnamed,  // met, and nobody knows what it is called
};

// What stands in a compiled formula beside functions and operators.
namespace code {
inline constexpr quint8 Number = 0x00, Text = 0x01, Time = 0x02, End = 0x03, Parentheses = 0x04, Name = 0x05;
inline constexpr quint8 Assign = 0x09, Subscript = 0x20, AssignField = 0x21;
// Behind a condition and behind a value of @If.
inline constexpr quint8 JumpUnless = 0xAF, Jump = 0xAE;
// A function whose code is in the next word.
inline constexpr quint8 Far = 0xFB;
inline constexpr quint16 FirstFunction = 0x28, If = 0xB5, FirstFar = 0x100;
}  // namespace code

struct OperatorCode {
  quint8 code;
  quint8 operands;  // 1: a sign in front of its operand
  Operator op;
  Sureness sureness;
};

struct FunctionCode {
  quint16 code;
  const char* name;  // "@Left"
  Sureness sureness;
};

struct KeywordCode {
  quint32 number;
  const char* name;  // "Abbreviate", without brackets
  Sureness sureness;
};

inline constexpr Sureness kAssignSureness = Sureness::Proven, kSubscriptSureness = Sureness::Proven,
                          kAssignFieldSureness = Sureness::Context;

// Rows live as long as the program; null for what the table does not have.
const OperatorCode* findOperator(quint8 code);
const OperatorCode& operatorCodeOf(Operator op);
const FunctionCode* findFunctionCode(quint16 code);
// The row of the function table that a code stands for.
const Function* functionOf(const FunctionCode& row);
const FunctionCode* functionCodeOf(const Function& function);
const KeywordCode* findKeyword(quint32 number);
const KeywordCode* keywordCodeOf(QStringView word);  // in any case

std::span<const FunctionCode> functionCodes();
std::span<const KeywordCode> keywordCodes();
std::span<const OperatorCode> operatorCodes();

}  // namespace lens::formula

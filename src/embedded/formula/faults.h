// What can be wrong with a formula, when it is compiled and when it runs, and the text of each.
//
// The numbers are status codes of the platform (0x0500 + n). An error value carries one of them, and so
// does a compile error.
#pragma once

#include <QString>

namespace lens::formula {

using FaultCode = quint16;

namespace fault {
// The compile call's own answer; the reason is one of those that follow.
inline constexpr FaultCode FormulaError = 0x0501;

inline constexpr FaultCode InvalidOperator = 0x0502, InvalidArgumentType = 0x0503, TooManyArguments = 0x0504,
                           FunctionExpected = 0x0505, TooFewArguments = 0x0506, UnaryUse = 0x0507,
                           BinaryUse = 0x0508, AssignmentAfterOperator = 0x0509, Incomplete = 0x050A,
                           OperatorExpected = 0x050B, InvalidStructure = 0x050C,
                           LeftParenthesisExpected = 0x050D, ExtraRightParenthesis = 0x050E,
                           MissingRightParenthesis = 0x050F, FieldNeedsName = 0x0510,
                           AssignmentNeedsName = 0x0511, InvalidModifier = 0x0512, MissingSemicolon = 0x0513,
                           RemarkNeedsText = 0x0514, NoMainExpression = 0x0515, ArgumentsNotTaken = 0x0516,
                           UnterminatedConstant = 0x0517, EvenIf = 0x0518, SecondSelect = 0x0519,
                           NoFormula = 0x051A, UnknownFunction = 0x051B, VariableDefined = 0x051D,
                           ArgumentsExpected = 0x051E, ConstantTooLong = 0x051F,
                           AssignmentNeedsModifier = 0x0520, UnknownKeyword = 0x0521,
                           SelectInappropriate = 0x0522, Hidden = 0x0523, NameTooLong = 0x0524,
                           ExtraRightBracket = 0x0525, FieldNeedsValue = 0x0526;

inline constexpr FaultCode WrongType = 0x0534, UserError = 0x0536, TextTooLong = 0x0537,
                           CannotCompute = 0x0538, SubsetOfZero = 0x053A, TextExpected = 0x053C,
                           NumberExpected = 0x053D, TimeExpected = 0x053E, ValueExpected = 0x053F,
                           DateArgumentCount = 0x0540, DifferentTypes = 0x0541, TooMuchMemory = 0x0543,
                           KeywordExpected = 0x0546, WrongKeyword = 0x0547, NotATime = 0x0549,
                           UnavailableUsed = 0x054A, NotANumber = 0x054B, NoDocument = 0x054C,
                           InvalidUnid = 0x0551, AbstractSize = 0x0552, TooManyDays = 0x0553,
                           ResultTooLong = 0x0554, NotInContext = 0x0558, NeedsClient = 0x0559,
                           FieldsReadOnly = 0x055A, SideEffect = 0x055B, OutOfBounds = 0x055F,
                           EvalTooDeep = 0x0560, TooMuchTime = 0x0562, TooDeep = 0x056C, CodeTooLong = 0x056E;
}  // namespace fault

// "" for a number that is none of these.
QString faultText(FaultCode code);

// Thrown inside an evaluation. A function's failure becomes the error value that it returns; a fatal one
// (time, memory, interruption) ends the whole evaluation, so that no loop can swallow it.
struct Fault {
  FaultCode code;
  bool fatal = false;
};

}  // namespace lens::formula

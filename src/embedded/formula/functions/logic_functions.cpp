// Conditions, loops, and tests of values.
#include "embedded/formula/formula.h"
#include "embedded/formula/function.h"

namespace lens::formula {
namespace {

Value one(const Call&) {
  return Value::number(1.0);
}
Value alwaysZero(const Call&) {
  return Value::number(0.0);
}
Value error(const Call&) {
  return Value::error(fault::UserError);
}
Value unchanged(const Call& call) {
  return call[0];
}

Value isError(const Call& call) {
  return Value::truth(call[0].isError());
}
Value isNull(const Call& call) {
  return Value::truth(call[0].isOneText() && call[0].text().isEmpty());
}
Value isNumber(const Call& call) {
  return Value::truth(call[0].isNumber());
}
Value isText(const Call& call) {
  return Value::truth(call[0].isText());
}
Value isTime(const Call& call) {
  return Value::truth(call[0].isTime() || call[0].type() == Type::TimeRange);
}

Value checkFormulaSyntax(const Call& call) {
  const QString source = call[0].text().toString();
  call.charge(source.size());
  CompileOptions options;
  options.environment = &call.environment();
  const Compiled compiled = compile(source, options);
  if (compiled) return Value::text(u"1");
  const CompileError& error = compiled.error;
  return Value::texts({faultText(error.reason), QString::number(error.line + 1),
                       QString::number(error.column + 1), QString::number(error.offset + 1),
                       QString::number(error.length), source.mid(error.offset, error.length)});
}

constexpr int kMostInChoice = 2 * 99 + 1;  // 99 conditions with their values, and the last value
constexpr int kMostInLoop = 255;           // 254 statements and a condition; @For has two parts more

constexpr const char* kChoiceHelp =
    "Looks at the conditions from left to right and gives the value behind the first one that is true, or "
    "the last value when none is. Only the value that is given is computed.";

constexpr Function kLogicFunctions[] = {
    {"@All", 0, 0, "", "", "Takes in every document, when it stands in a selection. Its value is 1.", one,
     trait::Pure},
    {"@CheckFormulaSyntax", 1, 1, "t", "formula",
     "Compiles the text without running it. Gives \"1\" when it is a formula; otherwise six texts: what is "
     "wrong, line, column, offset, length, and the characters that are to blame. Line, column and offset "
     "count from 1.",
     checkFormulaSyntax},
    {"@DeleteField", 0, 0, "", "",
     "As the value of a FIELD statement: removes that field. The same as @Unavailable.", nullptr, 0,
     Form::Unavailable},
    {"@Do", 1, kAnyCount, "v", "expressions...",
     "Computes its expressions from left to right and gives the value of the last one.", nullptr, 0,
     Form::Do},
    {"@DoWhile", 2, kMostInLoop, "v", "statements...; condition",
     "Runs the statements, then tests the condition, and starts over as long as it is true. Gives 1.",
     nullptr, 0, Form::DoWhile},
    {"@Error", 0, 0, "", "", "An error value: whatever is computed with it becomes an error too.", error},
    {"@Eval", 1, 1, "t", "formulas",
     "Compiles and runs each text of the list as a formula of its own. They share the variables of the "
     "formula around them. Gives the last value, or the first error.",
     nullptr, 0, Form::Eval},
    {"@Failure", 1, 1, "t", "message",
     "The message, for a formula that checks a field's input and turns it down.", unchanged, trait::Pure},
    {"@False", 0, 0, "", "", "The number 0.", alwaysZero, trait::Pure},
    {"@For", 4, kMostInLoop, "v", "start; condition; step; statements...",
     "Computes the start once; then, as long as the condition is true, the statements and the step. Gives "
     "1.",
     nullptr, 0, Form::For},
    {"@If", 1, kMostInChoice, "v", "condition; value; ...; otherwise", kChoiceHelp, nullptr, 0, Form::If},
    {"@IfError", 1, 2, "v", "value; instead",
     "The value, unless computing it fails; then the second one, or the empty text without it.", nullptr,
     trait::TakesErrors, Form::IfError},
    {"@IsAvailable", 1, 1, "v", "name",
     "1 when the document has an item of that name, or the formula a variable. The name stands without "
     "quotes.",
     nullptr, 0, Form::IsAvailable},
    {"@IsError", 1, 1, "v", "value", "1 when the value is an error, otherwise 0.", isError,
     trait::Pure | trait::TakesErrors},
    {"@IsNull", 1, 1, "v", "value",
     "1 when the value is one empty text, otherwise 0. A list, a number and an error are not null.", isNull,
     trait::Pure | trait::TakesErrors},
    {"@IsNumber", 1, 1, "v", "value", "1 for a number or a list of numbers. The text \"123\" is none.",
     isNumber, trait::Pure | trait::TakesErrors},
    {"@IsText", 1, 1, "v", "value", "1 for a text or a list of texts.", isText,
     trait::Pure | trait::TakesErrors},
    {"@IsTime", 1, 1, "v", "value", "1 for a date, a time, a range of them, or a list.", isTime,
     trait::Pure | trait::TakesErrors},
    {"@IsUnavailable", 1, 1, "v", "name",
     "1 when neither the document nor the formula knows the name. The name stands without quotes.", nullptr,
     0, Form::IsUnavailable},
    {"@IsValid", 0, 0, "", "", "1 when the checks of all the form's fields accept what they hold.", one, 0,
     Form::Call, nullptr, "Always 1: no form stands behind the document whose checks could fail."},
    {"@No", 0, 0, "", "", "The number 0.", alwaysZero, trait::Pure},
    {"@Return", 1, 1, "v", "value", "Ends the formula at once, with this value, from any depth.", nullptr, 0,
     Form::Return},
    {"@Set", 2, 2, "tv", "name; value",
     "Gives a temporary variable a value; its name is a text, so it may be computed. The value is the "
     "result.",
     nullptr, 0, Form::Set},
    {"@Success", 0, 0, "", "", "The number 1, for a formula that checks a field's input and accepts it.", one,
     trait::Pure},
    {"@True", 0, 0, "", "", "The number 1.", one, trait::Pure},
    {"@Unavailable", 0, 0, "", "",
     "As the value of a FIELD statement: removes that field. Any other use of it is an error.", nullptr, 0,
     Form::Unavailable},
    {"@V2If", 1, kMostInChoice, "v", "condition; value; ...; otherwise", kChoiceHelp, nullptr, 0, Form::If,
     nullptr, "The old form of @If; both do the same here."},
    {"@While", 2, kMostInLoop, "v", "condition; statements...",
     "Tests the condition and, as long as it is true, runs the statements and starts over. Gives 1.", nullptr,
     0, Form::While},
    {"@Yes", 0, 0, "", "", "The number 1.", one, trait::Pure},
};

}  // namespace

std::span<const Function> logicFunctions() {
  return kLogicFunctions;
}

}  // namespace lens::formula

#include "embedded/formula/faults.h"

namespace lens::formula {
namespace {

struct FaultRow {
  FaultCode code;
  const char* text;
};

// The platform's own sentences, with their own full stops.
constexpr FaultRow kTexts[] = {
    {fault::FormulaError, "Formula Error"},
    {fault::InvalidOperator, "Invalid operator"},
    {fault::InvalidArgumentType, "Invalid type of argument"},
    {fault::TooManyArguments, "Too many arguments for @Function"},
    {fault::FunctionExpected, "@Function or operator expected, or @Function does not require an argument"},
    {fault::TooFewArguments, "Insufficient arguments for @Function"},
    {fault::UnaryUse, "Inappropriate (unary) usage of an operator"},
    {fault::BinaryUse, "Inappropriate (binary) usage of an operator"},
    {fault::AssignmentAfterOperator, "Assignment operators must not be preceded by other operators"},
    {fault::Incomplete, "Formula incomplete"},
    {fault::OperatorExpected, "An operator or semicolon was expected but none was encountered"},
    {fault::InvalidStructure, "Invalid formula structure"},
    {fault::LeftParenthesisExpected, "Left parenthesis expected"},
    {fault::ExtraRightParenthesis, "Extra right parenthesis"},
    {fault::MissingRightParenthesis, "Missing right parenthesis"},
    {fault::FieldNeedsName, "FIELD must be followed by a variable name and :="},
    {fault::AssignmentNeedsName, ":= must be immediately preceded by a field or variable name"},
    {fault::InvalidModifier, "Only ENVIRONMENT, DEFAULT, or FIELD can be used as a modifier to :="},
    {fault::MissingSemicolon, "Missing semicolon"},
    {fault::RemarkNeedsText, "REM must be followed by a quoted string containing the remark."},
    {fault::NoMainExpression, "No main or selection expression in formula"},
    {fault::ArgumentsNotTaken,
     "Passing arguments to a non-@Function or to an @Function that doesn't require arguments"},
    {fault::UnterminatedConstant,
     "End of formula reached before end of quoted string, date/time or array accessor"},
    {fault::EvenIf, "@If must have an odd number of arguments"},
    {fault::SecondSelect, "Only one SELECT expression is allowed"},
    {fault::NoFormula, "No formula specified"},
    {fault::UnknownFunction, "Unknown @Function"},
    {fault::VariableDefined, "Variable already defined"},
    {fault::ArgumentsExpected, "@Function arguments expected but none were supplied"},
    {fault::ConstantTooLong, "Quoted string is too long."},
    {fault::AssignmentNeedsModifier, ":= must be used in conjunction with FIELD, ENVIRONMENT, or DEFAULT"},
    {fault::UnknownKeyword, "Unknown [KeyWord] for @Function"},
    {fault::SelectInappropriate, "SELECT is inappropriate for this type of formula"},
    {fault::Hidden, "Formula is hidden"},
    {fault::NameTooLong, "Variable name is too long"},
    {fault::ExtraRightBracket, "Extra right bracket found"},
    {fault::FieldNeedsValue, "Field name requires a value"},
    {fault::WrongType, "Incorrect data type for operator or @Function"},
    {fault::UserError, "ERROR specified in formula"},
    {fault::TextTooLong, "String values cannot be longer than 65535 bytes"},
    {fault::CannotCompute, "unable to compute formula value"},
    {fault::SubsetOfZero, "The second argument to @Subset must not be zero"},
    {fault::TextExpected, "Incorrect data type for operator or @Function: Text expected"},
    {fault::NumberExpected, "Incorrect data type for operator or @Function: Number expected"},
    {fault::TimeExpected, "Incorrect data type for operator or @Function: Time/Date expected"},
    {fault::ValueExpected, "Incorrect data type: Text, Number, or Time/Date expected"},
    {fault::DateArgumentCount, "The @Date and @Time functions must have exactly 1, 3, or 6 arguments."},
    {fault::DifferentTypes, "Comparison operators must be supplied two values of the same data type."},
    {fault::TooMuchMemory, "Formula or value requires too much memory"},
    {fault::KeywordExpected, "Incorrect data type for operator or @Function: [KeyWord] expected"},
    {fault::WrongKeyword, "The specified [KeyWord] is not appropriate when used with this @Function"},
    {fault::NotATime, "The value cannot be converted to a Time/Date."},
    {fault::UnavailableUsed, "formula has encountered @DeleteField or @Unavailable"},
    {fault::NotANumber, "The value cannot be converted to a Number."},
    {fault::NoDocument, "Document could not be found."},
    {fault::InvalidUnid, "Invalid UNID; UNID must be a 32-digit hex string."},
    {fault::AbstractSize, "The buffer size argument of @Abstract must be greater than zero"},
    {fault::TooManyDays, "The time-date range argument of @Explode spans too many days"},
    {fault::ResultTooLong, "The result of a computation cannot exceed 65535 bytes"},
    {fault::NotInContext, "@Function is not valid in this context"},
    {fault::NeedsClient, "@Commands and other UI functions are not allowed in this context"},
    {fault::FieldsReadOnly, "You are not allowed to modify fields in this context."},
    {fault::SideEffect, "Formulas with side-effects are not allowed in this context."},
    {fault::OutOfBounds, "Array index out of bounds"},
    {fault::EvalTooDeep, "@Eval has exceeded the maximum number of recursive calls."},
    {fault::TooMuchTime, "The formula has exceeded the maximum execution time."},
    {fault::TooDeep, "Stack overflow evaluating formula. Try simplifying the formula."},
    {fault::CodeTooLong, "Compiled formula exceeds limit of 64K.  Reduce size of formula."},
};

}  // namespace

QString faultText(FaultCode code) {
  for (const FaultRow& row : kTexts)
    if (row.code == code) return QString::fromLatin1(row.text);
  return {};
}

}  // namespace lens::formula

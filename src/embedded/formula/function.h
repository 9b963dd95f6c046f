// The table of @functions: one row holds a function's name, its arguments, what it does in a sentence,
// and what computes it. The compiler, the help database and the page on formulas are made from it.
#pragma once

#include <QString>
#include <cstring>
#include <span>

#include "embedded/formula/evaluation_context.h"
#include "embedded/formula/value.h"

namespace lens::formula {

class Evaluation;

// What a function is called with. Arguments have been checked against the row's types, are no errors
// (but for rows with Trait::TakesErrors), and a missing name among them is the empty text.
class Call {
 public:
  Call(const Value* const* arguments, int count, Evaluation* evaluation)
      : arguments_(arguments), count_(count), evaluation_(evaluation) {}
  int count() const { return count_; }
  const Value& operator[](int i) const { return *arguments_[i]; }
  bool has(int i) const { return i < count_; }

  // The world. Functions that are folded (Trait::Pure) must not ask for it.
  Environment& environment() const;
  const Region& region() const;
  const LocalZone& zone() const;
  // Of an evaluation without a document, or without a database: a Fault (NotInContext).
  Document& document() const;
  const Database& database() const;
  Database& writableDatabase() const;
  Evaluation& evaluation() const { return *evaluation_; }
  // Steps of work that are not in the number of instructions: elements looked at, characters matched.
  // Ends an evaluation that does too much, and lets the user interrupt it.
  void charge(qint64 steps) const;

 private:
  const Value* const* arguments_;
  int count_;
  Evaluation* evaluation_;
};

// Fails by returning Value::error or by throwing a Fault.
using Implementation = Value (*)(const Call&);

// Functions whose arguments are not simply computed before the call: the compiler has a form for each.
enum class Form : quint8 {
  Call,
  If,
  IfError,
  Do,
  While,
  DoWhile,
  For,
  Transform,
  Sort,
  Select,
  Set,
  Return,
  IsAvailable,
  IsUnavailable,
  Eval,
  Unavailable,
  Nothing,
};

namespace trait {
inline constexpr quint8 Pure = 1,  // same arguments, same value: folded when they are constants
    TakesErrors = 2,               // sees error values instead of handing them on
    NeedsClient = 4,               // compiles, and fails when it runs
    RaggedCount = 8,               // checks the number of its arguments when it runs
    Writes = 16;                   // may change items of the document at hand
}  // namespace trait

inline constexpr int kAnyCount = 65535;

struct Function {
  const char* name;  // "@Left"
  // How many; kAnyCount as the most: no limit but the compiler's. 0 and 0: takes no parentheses.
  int least, most;
  // A letter for each argument, the last one for all that follow: t text, n number, d time, k keyword,
  // v any value. The evaluator checks them: 0x053C, 0x053D, 0x053E, 0x0546, 0x053F.
  const char* types;
  const char* arguments;  // as the help shows them: "text; count"
  const char* help;       // a sentence or two for the user
  Implementation run = nullptr;
  quint8 traits = 0;
  Form form = Form::Call;
  // Keywords that its keyword arguments may name, blank between; null: any. Checked when compiled.
  const char* keywords = nullptr;
  // Where it does not do all that the platform does, and why.
  const char* note = nullptr;
};

// The families; each stands in its file under functions/.
std::span<const Function> textFunctions();
std::span<const Function> textPieceFunctions();
std::span<const Function> nameFunctions();
std::span<const Function> listFunctions();
std::span<const Function> numberFunctions();
std::span<const Function> timeFunctions();
std::span<const Function> logicFunctions();
std::span<const Function> documentFunctions();
std::span<const Function> databaseFunctions();
std::span<const Function> environmentFunctions();
std::span<const Function> clientFunctions();

// What a row takes at that place, from 0: its letter in types.
inline char typeLetter(const Function& function, int place) {
  const int last = int(std::strlen(function.types)) - 1;
  return last < 0 ? 'v' : function.types[qMin(place, last)];
}

// The row of a function, by its name with the @ in any case; null for an unknown name. Rows live as long
// as the program.
const Function* findFunction(QStringView name);
// How the function is called: "@Left(text; count)".
QString callForm(const Function& function);
// All rows, by name.
const QVector<const Function*>& allFunctions();

// --- For implementations -------------------------------------------------------------------------------

// One new element for each element of a list, in one pass.
template <typename Each>
Value eachText(const Value& list, Each&& text) {
  const qsizetype count = list.count();
  if (count == 1) return Value::text(text(list.text(0)));
  ListBuilder result(Type::Text, count);
  for (qsizetype i = 0; i < count; ++i) result.addText(text(list.text(i)));
  return result.take();
}
template <typename Each>
Value eachNumber(const Value& list, Each&& number) {
  const qsizetype count = list.count();
  const Cell* cells = list.cells();
  if (count == 1) return Value::number(number(cells[0].number));
  ListBuilder result(Type::Number, count);
  for (qsizetype i = 0; i < count; ++i) result.addNumber(number(cells[i].number));
  return result.take();
}
// Pairs element by element; the shorter list repeats its last.
template <typename Each>
Value eachPair(const Value& left, const Value& right, Each&& number) {
  const qsizetype lefts = left.count(), rights = right.count(), count = qMax(lefts, rights);
  const Cell *a = left.cells(), *b = right.cells();
  if (count == 1) return Value::number(number(a[0].number, b[0].number));
  ListBuilder result(Type::Number, count);
  for (qsizetype i = 0; i < count; ++i)
    result.addNumber(number(a[qMin(i, lefts - 1)].number, b[qMin(i, rights - 1)].number));
  return result.take();
}

}  // namespace lens::formula

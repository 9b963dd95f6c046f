#include "embedded/formula/support/tree_maker.h"

#include <array>

#include "embedded/formula/compiled/codes.h"
#include "embedded/formula/support/test_context.h"

namespace lens::formula {
namespace {
using namespace Qt::StringLiterals;

constexpr int kDeepest = 4;

// By level, tightest first.
const std::array<std::vector<Operator>, 5> kLevels{{
    {Operator::Concatenate},
    {Operator::Multiply, Operator::Divide, Operator::PermutedMultiply, Operator::PermutedDivide},
    {Operator::Add, Operator::Subtract, Operator::PermutedAdd, Operator::PermutedSubtract},
    {Operator::Equal, Operator::NotEqual, Operator::Less, Operator::Greater, Operator::LessEqual,
     Operator::GreaterEqual, Operator::PermutedEqual, Operator::PermutedNotEqual, Operator::PermutedLess,
     Operator::PermutedGreater, Operator::PermutedLessEqual, Operator::PermutedGreaterEqual},
    {Operator::And, Operator::Or},
}};

const QStringList kItemNames{u"a"_s,    u"B"_s,     u"x1"_s,      u"_low"_s,      u"$Ref"_s,   u"Straße"_s,
                             u"Form"_s, u"Names"_s, u"Numbers"_s, u"Item.Part"_s, u"Fields"_s, u"Remark"_s};
const QStringList kTexts{
    u""_s,   u"a"_s,  u"Quarterly report"_s, u"\"in quotes\""_s, u"back\\slash"_s, u"{}"_s, u"two\nlines"_s,
    u"ä€"_s, u"]["_s, u"; x := 1"_s};
const QStringList kKeywords{u"CN"_s, u"OK"_s, u"CASESENSITIVE"_s};
const QStringList kCompiledKeywords{u"CN"_s, u"OK"_s, u"ABBREVIATE"_s, u"COMPOSE"_s};
constexpr std::array<double, 9> kNumbers{0, 1, 2, 3, 0.5, 123456789, 1e20, 1e-7, 0.1};

bool takesAnything(const Function& function) {
  return function.form == Form::Call && !function.keywords && !(function.traits & trait::NeedsClient);
}

}  // namespace

TreeMaker::TreeMaker(quint32 seed, Words words) : words_(words), random_(seed) {
  const auto isWritten = [&](const Function& function) {
    const FunctionCode* const row = functionCodeOf(function);
    return words_ == Words::All || (row && row->sureness <= Sureness::Context);
  };
  for (const Function* function : allFunctions())
    if (takesAnything(*function) && isWritten(*function)) plain_.push_back(function);
}

bool TreeMaker::isWritten(Operator op) const {
  return words_ == Words::All || operatorCodeOf(op).sureness <= Sureness::Context;
}

Tree TreeMaker::tree() {
  tree_ = {};
  const int count = 1 + below(3);
  const int select = oneIn(3) ? below(count) : -1;
  for (int i = 0; i < count; ++i) {
    if (oneIn(6)) tree_.statements.push_back({Statement::Kind::Remark, -1, randomText()});
    const bool last = i == count - 1;
    if (i == select)
      tree_.statements.push_back({Statement::Kind::Select, expression(0), {}});
    else
      tree_.statements.push_back({Statement::Kind::Expression, last ? expression(0) : statement(i), {}});
  }
  return std::move(tree_);
}

int TreeMaker::statement(int number) {
  switch (below(4)) {
    case 0:
      return assignment(0, Node::Modifier::Field);
    case 1:
      return assignment(0, number % 2 ? Node::Modifier::Default : Node::Modifier::Environment);
    case 2:
      return assignment(0, Node::Modifier::None);
    default:
      return expression(0);
  }
}

int TreeMaker::expression(int depth) {
  if (depth >= kDeepest) return oneIn(2) ? constant() : name();
  switch (below(8)) {
    case 0:
      return constant();
    case 1:
      return name();
    case 2:
    case 3:
    case 4:
      return chain(depth);
    case 5:
      return unary(depth);
    case 6:
      return subscript(depth);
    default:
      return call(depth);
  }
}

int TreeMaker::argument(int depth) {
  return oneIn(8) ? assignment(depth, oneIn(4) ? Node::Modifier::Field : Node::Modifier::None)
                  : expression(depth);
}

int TreeMaker::constant() {
  Node node;
  switch (below(6)) {
    case 0:
    case 1:
      node.constant = Value::number(oneOf(kNumbers));
      break;
    case 2:
    case 3:
      return textConstant();
    case 4:
      node.constant = timeValue();
      break;
    default:
      node.constant = Value::keyword(oneOf(words_ == Words::All ? kKeywords : kCompiledKeywords));
      break;
  }
  return add(std::move(node));
}

int TreeMaker::textConstant() {
  Node node;
  node.constant = Value::text(randomText());
  return add(std::move(node));
}

Value TreeMaker::timeValue() {
  const TimeDate date = testDate(1950 + below(140), 1 + below(12), 1 + below(28));
  switch (below(4)) {
    case 0:
      return Value::time(date);
    case 1:
      return Value::time(timeDateOf(Civil{false, true, 0, below(24 * 3600) * 100}, TestEnvironment().zone()));
    case 2:
      if (words_ == Words::Compiled) return Value::time(date);
      return Value::range({date, date});
    default:
      // Hours of the day, when no clock is changed.
      return Value::time(
          testTime(1970 + below(100), 1 + below(12), 1 + below(28), 6 + below(18), below(60), below(60)));
  }
}

int TreeMaker::name() {
  Node node;
  node.kind = Node::Kind::Name;
  node.name = randomName();
  return add(std::move(node));
}

int TreeMaker::chain(int depth) {
  Node node;
  node.kind = Node::Kind::Chain;
  const std::vector<Operator>& level = oneOf(kLevels);
  node.children.push_back(expression(depth + 1));
  for (int more = 1 + (oneIn(3) ? below(4) : 0); more > 0; --more) {
    Operator op = oneOf(level);
    while (!isWritten(op)) op = oneOf(level);
    node.operators.push_back(op);
    node.children.push_back(oneIn(12) ? assignment(depth + 1, Node::Modifier::None) : expression(depth + 1));
  }
  return add(std::move(node));
}

int TreeMaker::unary(int depth) {
  static constexpr std::array kSigns{Operator::Plus, Operator::Minus, Operator::Not};
  Node node;
  node.kind = Node::Kind::Unary;
  node.operators.push_back(oneOf(kSigns));
  node.children.push_back(expression(depth + 1));
  return add(std::move(node));
}

int TreeMaker::subscript(int depth) {
  Node node;
  node.kind = Node::Kind::Subscript;
  node.children = {oneIn(2) ? name() : expression(depth + 1), expression(depth + 1)};
  return add(std::move(node));
}

int TreeMaker::call(int depth) {
  std::vector<int> arguments;
  const auto take = [&](int count) {
    for (int i = 0; i < count; ++i) arguments.push_back(argument(depth + 1));
  };
  switch (below(6)) {
    case 0:
      take(1 + 2 * below(3));
      return callOf(*findFunction(u"@If"), arguments);
    case 1:
      take(1 + below(3));
      return callOf(*findFunction(u"@Do"), arguments);
    case 2:
      arguments = {expression(depth + 1), textConstant(), expression(depth + 1)};
      return callOf(*findFunction(u"@Transform"), arguments);
    case 3:
      arguments = {name()};
      return callOf(*findFunction(u"@IsAvailable"), arguments);
    default:
      break;
  }
  const Function& function = *oneOf(plain_);
  take(function.least + below(std::min(function.most, function.least + 2) - function.least + 1));
  return callOf(function, arguments);
}

int TreeMaker::callOf(const Function& function, std::vector<int> arguments) {
  Node node;
  node.kind = Node::Kind::Call;
  node.function = &function;
  node.children = std::move(arguments);
  return add(std::move(node));
}

int TreeMaker::assignment(int depth, Node::Modifier modifier) {
  Node node;
  node.kind = Node::Kind::Assignment;
  node.modifier = modifier;
  node.name = randomName();
  node.children = {expression(depth + 1)};
  return add(std::move(node));
}

int TreeMaker::add(Node node) {
  tree_.nodes.push_back(std::move(node));
  return int(tree_.nodes.size()) - 1;
}

QString TreeMaker::randomText() {
  return oneOf(kTexts);
}

QString TreeMaker::randomName() {
  return oneOf(kItemNames);
}

}  // namespace lens::formula

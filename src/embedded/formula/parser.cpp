#include "embedded/formula/parser.h"

#include "embedded/formula/time_text.h"

namespace lens::formula {

Parser::Nested::Nested(Parser& outer, Place inner, const Token& first)
    : parser(outer), place(outer.place_), operators(outer.operators_), opening(outer.opening_) {
  if (outer.depth_ == kMaxDepth) outer.refuse(fault::TooDeep, first);
  ++outer.depth_;
  outer.place_ = inner;
  outer.opening_ = &first;
  outer.operators_ = 0;
  if (inner == Place::Subscript) ++outer.brackets_;
  if (inner == Place::Group || inner == Place::Arguments) ++outer.parentheses_;
}

Parser::Nested::~Nested() {
  if (parser.place_ == Place::Subscript) --parser.brackets_;
  if (parser.place_ == Place::Group || parser.place_ == Place::Arguments) --parser.parentheses_;
  parser.place_ = place;
  parser.opening_ = opening;
  parser.operators_ = operators;
  --parser.depth_;
}

// --- Statements ----------------------------------------------------------------------------------------

Tree Parser::parse() {
  if (is(Kind::End)) throw Mistake{fault::NoFormula, 0, 0};
  while (!is(Kind::End)) {
    readStatement();
    if (is(Kind::Semicolon)) ++next_;
  }
  if (!mainSeen_) refuse(fault::NoMainExpression, token());
  return std::move(tree_);
}

void Parser::readStatement() {
  if (is(Kind::Semicolon)) refuse(fault::InvalidStructure, token());
  if (is(Kind::Remark)) return readRemark();
  if (is(Kind::Select)) return readSelect();
  Statement statement;
  statement.root = readExpression();
  checkEnd(statement.root);
  if (node(statement.root).kind != Node::Kind::Assignment) mainSeen_ = true;
  tree_.statements.push_back(std::move(statement));
}

void Parser::readRemark() {
  ++next_;
  refuseFault();
  Statement statement;
  statement.kind = Statement::Kind::Remark;
  // Agents in use have remarks that say nothing.
  if (!is(Kind::Semicolon)) {
    if (!is(Kind::Text)) refuse(fault::RemarkNeedsText, token());
    statement.remark = textConstant();
    ++next_;
    refuseFault();
  }
  if (!is(Kind::Semicolon) && !is(Kind::End)) refuse(fault::MissingSemicolon, token());
  tree_.statements.push_back(std::move(statement));
}

void Parser::readSelect() {
  const Token& select = token();
  if (selectSeen_) refuse(fault::SecondSelect, select);
  selectSeen_ = mainSeen_ = true;
  ++next_;
  const bool assigns = is(Kind::Name) && ahead(1).kind == Kind::Assign;
  if (assigns || is(Kind::Field) || is(Kind::Default) || is(Kind::Environment))
    refuse(fault::InvalidModifier, select);
  Statement statement;
  statement.kind = Statement::Kind::Select;
  statement.root = readExpression();
  checkEnd(statement.root);
  tree_.statements.push_back(std::move(statement));
}

// --- Expressions ---------------------------------------------------------------------------------------

// One expression, assignments included; what may stand behind it is the caller's matter.
int Parser::readExpression() {
  operators_ = 0;
  if (is(Kind::Field) || is(Kind::Default) || is(Kind::Environment)) return readModified();
  if (is(Kind::Name) && ahead(1).kind == Kind::Assign) return readAssignment(Node::Modifier::None, token());
  const int root = readBinary(level::Logic);
  if (is(Kind::Assign))
    refuse(operators_ > 0 ? fault::AssignmentAfterOperator : fault::AssignmentNeedsName, token());
  return root;
}

// FIELD, DEFAULT or ENVIRONMENT with the assignment that has to follow.
int Parser::readModified() {
  const Token& word = token();
  const bool field = word.kind == Kind::Field;
  if (ahead(1).kind != Kind::Name || ahead(2).kind != Kind::Assign) {
    ++next_;
    refuseFault();
    refuse(field ? fault::FieldNeedsName : fault::AssignmentNeedsModifier, word);
  }
  ++next_;
  if (field) {
    const Kind behind = ahead(2).kind;
    if (behind == Kind::End || behind == Kind::Semicolon || behind == Kind::RightParenthesis)
      refuse(fault::FieldNeedsValue, token());
    return readAssignment(Node::Modifier::Field, word);
  }
  return readAssignment(word.kind == Kind::Default ? Node::Modifier::Default : Node::Modifier::Environment,
                        word);
}

// At the name; first is the token that the assignment begins with.
int Parser::readAssignment(Node::Modifier modifier, const Token& first) {
  Node assignment;
  assignment.kind = Node::Kind::Assignment;
  assignment.modifier = modifier;
  assignment.name = textOf(token()).toString();
  const Token& sign = ahead(1);
  next_ += 2;
  if (depth_ == kMaxDepth) refuse(fault::TooDeep, sign);
  ++depth_;
  assignment.children = {readExpression()};
  --depth_;
  return add(std::move(assignment), first);
}

// Operators that bind at least that tightly. Those of one level make one chain.
int Parser::readBinary(int least) {
  const Token& first = token();
  int left = readOperand();
  while (is(Kind::Operator) && token().op != Operator::Not) {
    const int chainLevel = levelOf(token().op);
    if (chainLevel < least) break;
    Node chain;
    chain.kind = Node::Kind::Chain;
    chain.children = {left};
    while (is(Kind::Operator) && token().op != Operator::Not && levelOf(token().op) == chainLevel) {
      chain.operators.push_back(token().op);
      ++operators_;
      ++next_;
      chain.children.push_back(readBinary(chainLevel + 1));
    }
    left = add(std::move(chain), first);
  }
  return left;
}

int Parser::readOperand() {
  if (token().isPrefix()) return readPrefix();
  const Token& first = token();
  int operand = readPrimary();
  while (is(Kind::LeftBracket)) operand = readSubscript(operand, first);
  return operand;
}

int Parser::readPrefix() {
  const Token& sign = token();
  if (depth_ == kMaxDepth) refuse(fault::TooDeep, sign);
  Node unary;
  unary.kind = Node::Kind::Unary;
  const Operator op = sign.op == Operator::Add        ? Operator::Plus
                      : sign.op == Operator::Subtract ? Operator::Minus
                                                      : Operator::Not;
  unary.operators = {op};
  ++operators_;
  ++next_;
  ++depth_;
  unary.children = {readBinary(operandLevelOf(op))};
  --depth_;
  return add(std::move(unary), sign);
}

int Parser::readPrimary() {
  switch (token().kind) {
    case Kind::Name: {
      if (ahead(1).kind == Kind::LeftParenthesis) refuse(fault::ArgumentsNotTaken, token());
      Node name;
      name.kind = Node::Kind::Name;
      name.name = textOf(token()).toString();
      return add(std::move(name), tokens_[size_t(next_++)]);
    }
    case Kind::Function:
      return readCall();
    case Kind::Number:
      return readNumber();
    case Kind::Text:
      return readText();
    case Kind::Constant:
      return readConstant();
    case Kind::LeftParenthesis:
      return readGroup();
    default:
      refuseMissingValue();
  }
}

int Parser::readSubscript(int list, const Token& first) {
  Node subscript;
  subscript.kind = Node::Kind::Subscript;
  {
    const Nested nested(*this, Place::Subscript, token());
    ++next_;
    const int index = readExpression();
    checkEnd(index);
    subscript.children = {list, index};
  }
  ++next_;
  return add(std::move(subscript), first);
}

int Parser::readGroup() {
  int inside = 0;
  {
    const Nested nested(*this, Place::Group, token());
    ++next_;
    inside = readExpression();
    checkEnd(inside);
  }
  ++next_;
  ++node(inside).parentheses;
  return inside;
}

int Parser::readCall() {
  const Token& name = token();
  Node call;
  call.kind = Node::Kind::Call;
  call.function = findFunction(textOf(name));
  if (!call.function) refuse(fault::UnknownFunction, name);
  ++next_;
  if (is(Kind::LeftParenthesis)) {
    refuseIf(checkOpenCall(*call.function, name, ahead(1)));
    readArguments(*call.function, name, call.children);
  } else {
    refuseFault();
    refuseIf(checkBareCall(*call.function, name, token()));
  }
  return add(std::move(call), name);
}

// From the opening parenthesis to behind the closing one.
void Parser::readArguments(const Function& function, const Token& name, std::vector<int>& arguments) {
  const Nested nested(*this, Place::Arguments, name);
  ++next_;
  if (!is(Kind::RightParenthesis)) {
    for (;;) {
      const Token& first = token();
      const int argument = readExpression();
      checkEnd(argument);
      refuseIf(checkArgument(function, int(arguments.size()), node(argument), first, tree_));
      arguments.push_back(argument);
      if (!is(Kind::Semicolon)) break;
      ++next_;
    }
  }
  refuseIf(checkCount(function, int(arguments.size()), token()));
  ++next_;
}

// --- Constants -----------------------------------------------------------------------------------------

int Parser::readNumber() {
  bool ok = false;
  const double number = textOf(token()).toDouble(&ok);
  // Beyond what a number can hold; one too small to tell from zero is zero.
  if (!ok && number != 0) refuse(fault::NotANumber, token());
  return addConstant(Value::number(number));
}

QString Parser::textConstant() {
  QString text = unquoted(textOf(token()));
  if (text.size() > kMaxBytes) refuse(fault::ConstantTooLong, token());
  return text;
}

int Parser::readText() {
  try {
    return addConstant(Value::text(textConstant()));
  } catch (const Fault& fault) {
    // Few enough characters, but too many bytes once they are stored.
    refuse(fault.code == fault::TextTooLong ? fault::ConstantTooLong : fault.code, token());
  }
}

int Parser::readConstant() {
  const QStringView inside = textOf(token()).sliced(1, token().length - 2).trimmed();
  if (isKeyword(inside)) {
    // These three change from day to day, so they are asked for when the formula runs.
    for (const char16_t* moment : {u"@Today", u"@Yesterday", u"@Tomorrow"}) {
      if (inside.compare(QStringView(moment).sliced(1), Qt::CaseInsensitive) != 0) continue;
      Node call;
      call.kind = Node::Kind::Call;
      call.function = findFunction(moment);
      if (!call.function) refuse(fault::UnknownFunction, token());
      return add(std::move(call), tokens_[size_t(next_++)]);
    }
    return addConstant(Value::keyword(inside));
  }
  Value time;
  const TimeReading reading{environment_.region(), environment_.zone(), environment_.now()};
  if (inside.isEmpty() || !readTime(inside, reading, time)) refuse(fault::NotATime, token());
  return addConstant(std::move(time));
}

Parsed parse(QStringView source, const Environment& environment) {
  return parse(source, environment, nullptr);
}

Parsed parse(QStringView source, const Environment& environment, std::vector<Token>* tokens) {
  Parsed parsed;
  const auto refuse = [&](FaultCode code, int offset, int length) {
    parsed.error = {code, 0, 0, offset, length};
    findLine(source, parsed.error);
  };
  // Places are counted in int.
  if (source.size() > 0x3FFFFFFF) {
    refuse(fault::CodeTooLong, 0, 0);
    return parsed;
  }
  try {
    Parser parser(source, environment);
    parsed.tree = parser.parse();
    if (tokens) *tokens = parser.takeTokens();
  } catch (const Mistake& mistake) {
    refuse(mistake.code, mistake.offset, mistake.length);
  } catch (const Fault& fault) {
    // Out of the memory that values may hold.
    refuse(fault.code, 0, 0);
  }
  return parsed;
}

}  // namespace lens::formula

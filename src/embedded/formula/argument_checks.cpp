#include "embedded/formula/argument_checks.h"

#include "embedded/formula/arguments.h"

namespace lens::formula {
namespace {

Mistake at(FaultCode code, const Token& token) {
  return {code, token.offset, token.length};
}

bool isKeywordConstant(const Node& node) {
  return node.kind == Node::Kind::Constant && node.constant.type() == Type::Keyword;
}

Mistake checkKeywords(const Function& function, const Node& argument, const Tree& tree) {
  const auto refused = [&](const Node& node) {
    return isKeywordConstant(node) && !listsKeyword(function.keywords, node.constant.text());
  };
  const auto fault = [](const Node& node) {
    return Mistake{fault::UnknownKeyword, node.offset, node.length};
  };
  if (refused(argument)) return fault(argument);
  if (argument.kind != Node::Kind::Chain || argument.operators.front() != Operator::Concatenate) return {};
  for (const int child : argument.children)
    if (refused(tree.nodes[size_t(child)])) return fault(tree.nodes[size_t(child)]);
  return {};
}

}  // namespace

Mistake checkBareCall(const Function& function, const Token& name, const Token& next) {
  if (function.least == 0) return {};
  return next.startsValue() ? at(fault::LeftParenthesisExpected, next) : at(fault::ArgumentsExpected, name);
}

Mistake checkOpenCall(const Function& function, const Token& name, const Token& inside) {
  if (function.most > 0) return {};
  const bool empty = inside.kind == Token::Kind::RightParenthesis;
  return at(empty ? fault::FunctionExpected : fault::ArgumentsNotTaken, name);
}

Mistake checkArgument(const Function& function, int index, const Node& argument, const Token& first,
                      const Tree& tree) {
  switch (function.form) {
    case Form::IsAvailable:
    case Form::IsUnavailable:
      // A name in parentheses is an expression, not a bare name.
      if (argument.kind != Node::Kind::Name || first.kind != Token::Kind::Name)
        return at(fault::InvalidArgumentType, first);
      break;
    case Form::Transform:
      if (index == 1 && (argument.kind != Node::Kind::Constant || argument.constant.type() != Type::Text))
        return at(fault::InvalidArgumentType, first);
      break;
    default:
      break;
  }
  if (function.keywords && typeLetter(function, index) == 'k') return checkKeywords(function, argument, tree);
  return {};
}

Mistake checkCount(const Function& function, int count, const Token& close) {
  if (count < function.least) return at(fault::TooFewArguments, close);
  if (count > function.most && function.most != kAnyCount) return at(fault::TooManyArguments, close);
  if (function.form == Form::If && count % 2 == 0) return at(fault::EvenIf, close);
  return {};
}

}  // namespace lens::formula

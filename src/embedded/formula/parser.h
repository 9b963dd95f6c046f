// Reads a formula from its tokens, in one pass from left to right.
#pragma once

#include "embedded/formula/argument_checks.h"
#include "embedded/formula/precedence.h"
#include "embedded/formula/token.h"
#include "embedded/formula/tree.h"

namespace lens::formula {

class Parser {
 public:
  Parser(QStringView source, const Environment& environment)
      : source_(source), environment_(environment), tokens_(readTokens(source)) {
    tree_.nodes.reserve(tokens_.size() / 2 + 1);
  }
  // Throws a Mistake.
  Tree parse();
  // Of a formula that was read.
  std::vector<Token> takeTokens() { return std::move(tokens_); }

 private:
  using Kind = Token::Kind;
  // What the innermost expression stands in.
  enum class Place { Statement, Group, Arguments, Subscript };
  // Goes one expression deeper for as long as it lives.
  struct Nested {
    Nested(Parser& parser, Place place, const Token& opening);
    ~Nested();
    Parser& parser;
    Place place;
    int operators;
    const Token* opening;
  };

  const Token& token() const { return tokens_[size_t(next_)]; }
  // Tokens further on; the end token stands for all behind it.
  const Token& ahead(int count) const {
    return tokens_[qMin(size_t(next_) + size_t(count), tokens_.size() - 1)];
  }
  bool is(Kind kind) const { return token().kind == kind; }
  QStringView textOf(const Token& token) const { return source_.sliced(token.offset, token.length); }
  [[noreturn]] void refuse(FaultCode code, const Token& token) const {
    throw Mistake{code, token.offset, token.length};
  }
  void refuseIf(const Mistake& found) const {
    if (found.code) throw found;
  }
  void refuseFault() const {
    if (is(Kind::Fault)) refuse(token().fault, token());
  }
  [[noreturn]] void refuseMissingValue() const;
  void checkEnd(int root) const;

  void readStatement();
  void readRemark();
  void readSelect();
  int readExpression();
  int readAssignment(Node::Modifier modifier, const Token& first);
  int readModified();
  int readBinary(int least);
  int readOperand();
  int readPrefix();
  int readPrimary();
  int readSubscript(int list, const Token& first);
  int readGroup();
  int readCall();
  void readArguments(const Function& function, const Token& name, std::vector<int>& arguments);
  int readNumber();
  int readText();
  int readConstant();
  QString textConstant();

  int add(Node&& node, const Token& first) {
    node.offset = first.offset, node.length = first.length;
    tree_.nodes.push_back(std::move(node));
    return int(tree_.nodes.size()) - 1;
  }
  int addConstant(Value&& value) {
    Node node;
    node.constant = std::move(value);
    return add(std::move(node), tokens_[size_t(next_++)]);
  }
  Node& node(int index) { return tree_.nodes[size_t(index)]; }

  QStringView source_;
  const Environment& environment_;
  std::vector<Token> tokens_;
  Tree tree_;
  int next_ = 0;
  int depth_ = 0;
  Place place_ = Place::Statement;
  const Token* opening_ = nullptr;  // of the place
  int parentheses_ = 0, brackets_ = 0;
  int operators_ = 0;  // of the innermost expression, so far
  bool selectSeen_ = false, mainSeen_ = false;
};

}  // namespace lens::formula

#include "embedded/formula/precedence.h"
#include "embedded/formula/spelling.h"

namespace lens::formula {
namespace {

class Printer {
 public:
  Printer(const Tree& tree, const Environment& environment) : tree_(tree), environment_(environment) {}
  QString print();

 private:
  // What stands around an expression: how tightly it has to bind, and how tightly the operator behind it
  // binds, which a prefix operator at its end would otherwise take into its operand.
  struct Around {
    int least = level::Any;
    int behind = level::Any;
  };
  void printStatement(const Statement& statement);
  void printNode(int index, Around around);
  void printPlain(const Node& node, Around around);
  void printChain(const Node& node, Around around);
  void printCall(const Node& node);
  void printSubscript(const Node& node);
  void printConstant(const Value& value);
  static bool needsParentheses(const Node& node, Around around);
  const Node& node(int index) const { return tree_.nodes[size_t(index)]; }

  const Tree& tree_;
  const Environment& environment_;
  QString out_;
};

QString Printer::print() {
  for (const Statement& statement : tree_.statements) {
    if (!out_.isEmpty()) out_ += u";\n";
    printStatement(statement);
  }
  return std::move(out_);
}

void Printer::printStatement(const Statement& statement) {
  switch (statement.kind) {
    case Statement::Kind::Remark:
      out_ += u"REM ";
      return appendQuoted(out_, statement.remark);
    case Statement::Kind::Select:
      out_ += u"SELECT ";
      return printNode(statement.root, {level::Logic, level::Any});
    case Statement::Kind::Expression:
      return printNode(statement.root, {});
  }
}

bool Printer::needsParentheses(const Node& node, Around around) {
  switch (node.kind) {
    case Node::Kind::Chain:
      return levelOf(node.operators.front()) < around.least;
    case Node::Kind::Unary:
      return around.behind >= operandLevelOf(node.operators.front());
    case Node::Kind::Assignment:
      return around.least > level::Any;
    default:
      return false;
  }
}

void Printer::printNode(int index, Around around) {
  const Node& shown = node(index);
  if (!needsParentheses(shown, around)) return printPlain(shown, around);
  out_ += u'(';
  printPlain(shown, {});
  out_ += u')';
}

void Printer::printPlain(const Node& shown, Around around) {
  switch (shown.kind) {
    case Node::Kind::Constant:
      return printConstant(shown.constant);
    case Node::Kind::Name:
      out_ += shown.name;
      return;
    case Node::Kind::Chain:
      return printChain(shown, around);
    case Node::Kind::Unary:
      out_ += signOf(shown.operators.front());
      return printNode(shown.children.front(), {operandLevelOf(shown.operators.front()), around.behind});
    case Node::Kind::Subscript:
      return printSubscript(shown);
    case Node::Kind::Call:
      return printCall(shown);
    case Node::Kind::Assignment:
      out_ += modifierWord(shown.modifier);
      out_ += shown.name;
      out_ += u" := ";
      return printNode(shown.children.front(), {});
  }
}

void Printer::printChain(const Node& shown, Around around) {
  const int own = levelOf(shown.operators.front());
  for (size_t i = 0; i < shown.children.size(); ++i) {
    if (i > 0) {
      out_ += u' ';
      out_ += signOf(shown.operators[i - 1]);
      out_ += u' ';
    }
    const bool last = i + 1 == shown.children.size();
    printNode(shown.children[i], {own + 1, last ? around.behind : own});
  }
}

void Printer::printCall(const Node& shown) {
  out_ += QLatin1StringView(shown.function->name);
  if (shown.children.empty() && shown.function->least == 0) return;
  out_ += u'(';
  for (size_t i = 0; i < shown.children.size(); ++i) {
    if (i > 0) out_ += u"; ";
    printNode(shown.children[i], {});
  }
  out_ += u')';
}

void Printer::printSubscript(const Node& shown) {
  const Node& list = node(shown.children.front());
  const bool plain =
      list.kind == Node::Kind::Name || list.kind == Node::Kind::Call || list.kind == Node::Kind::Subscript;
  if (!plain) out_ += u'(';
  printPlain(list, {});
  if (!plain) out_ += u')';
  out_ += u'[';
  printNode(shown.children.back(), {});
  out_ += u']';
}

void Printer::printConstant(const Value& value) {
  switch (value.type()) {
    case Type::Number:
      // The shortest form that reads back as the very same number.
      out_ += QString::number(value.number(), 'g', QLocale::FloatingPointShortest);
      return;
    case Type::Text:
      return appendQuoted(out_, value.text());
    case Type::Keyword:
      out_ += u'[';
      out_ += value.text();
      out_ += u']';
      return;
    default:
      out_ += timeConstant(value, environment_);
      return;
  }
}

}  // namespace

QString print(const Tree& tree, const Environment& environment) {
  return Printer(tree, environment).print();
}

}  // namespace lens::formula

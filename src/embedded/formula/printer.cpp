#include "embedded/formula/precedence.h"
#include "embedded/formula/time_text.h"
#include "embedded/formula/tree.h"

namespace lens::formula {
namespace {

QStringView signOf(Operator op) {
  switch (op) {
    case Operator::Concatenate:
      return u":";
    case Operator::Plus:
    case Operator::Add:
      return u"+";
    case Operator::Minus:
    case Operator::Subtract:
      return u"-";
    case Operator::Not:
      return u"!";
    case Operator::Multiply:
      return u"*";
    case Operator::Divide:
      return u"/";
    case Operator::PermutedMultiply:
      return u"**";
    case Operator::PermutedDivide:
      return u"*/";
    case Operator::PermutedAdd:
      return u"*+";
    case Operator::PermutedSubtract:
      return u"*-";
    case Operator::Equal:
      return u"=";
    case Operator::NotEqual:
      return u"!=";
    case Operator::Less:
      return u"<";
    case Operator::Greater:
      return u">";
    case Operator::LessEqual:
      return u"<=";
    case Operator::GreaterEqual:
      return u">=";
    case Operator::PermutedEqual:
      return u"*=";
    case Operator::PermutedNotEqual:
      return u"*!=";
    case Operator::PermutedLess:
      return u"*<";
    case Operator::PermutedGreater:
      return u"*>";
    case Operator::PermutedLessEqual:
      return u"*<=";
    case Operator::PermutedGreaterEqual:
      return u"*>=";
    case Operator::And:
      return u"&";
    case Operator::Or:
      return u"|";
  }
  return {};
}

QStringView modifierWord(Node::Modifier modifier) {
  switch (modifier) {
    case Node::Modifier::Field:
      return u"FIELD ";
    case Node::Modifier::Default:
      return u"DEFAULT ";
    case Node::Modifier::Environment:
      return u"ENVIRONMENT ";
    case Node::Modifier::None:
      break;
  }
  return {};
}

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
  void printQuoted(QStringView text);
  void printTime(const Value& value);
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
      return printQuoted(statement.remark);
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
      return printQuoted(value.text());
    case Type::Keyword:
      out_ += u'[';
      out_ += value.text();
      out_ += u']';
      return;
    default:
      return printTime(value);
  }
}

void Printer::printQuoted(QStringView text) {
  out_ += u'"';
  for (const QChar c : text) {
    if (c == u'"' || c == u'\\') out_ += u'\\';
    out_ += c;
  }
  out_ += u'"';
}

// A zone is named only where the time would not read back without it.
void Printer::printTime(const Value& value) {
  const TimeReading reading{environment_.region(), environment_.zone(), environment_.now()};
  QString shown;
  for (const TimeFormat::Zone zone : {TimeFormat::Zone::Foreign, TimeFormat::Zone::Always}) {
    TimeFormat format;
    format.zone = zone;
    const QString text = value.type() == Type::TimeRange ? rangeText(value.range(), format, reading)
                                                         : timeText(value.time(), format, reading);
    if (shown.isEmpty()) shown = text;
    Value back;
    if (!readTime(text, reading, back) || !back.identical(value)) continue;
    shown = text;
    break;
  }
  out_ += u'[' + shown + u']';
}

}  // namespace

QString print(const Tree& tree, const Environment& environment) {
  return Printer(tree, environment).print();
}

}  // namespace lens::formula

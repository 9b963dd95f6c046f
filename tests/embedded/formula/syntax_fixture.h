// What the tests of reading and printing formulas share.
#pragma once

#include <gtest/gtest.h>

#include "embedded/formula/support/test_context.h"
#include "embedded/formula/tree.h"

namespace lens::formula {

// The test world with a region that a test may change.
class SyntaxEnvironment : public TestEnvironment {
 public:
  const Region& region() const override { return changeable; }
  Region changeable;
};

// The shape of a tree in one line: operators by their number of children, so that (1:2):3 and 1:2:3 differ.
inline QString shape(const Tree& tree, int index) {
  const Node& node = tree.nodes[size_t(index)];
  QStringList children;
  for (const int child : node.children) children += shape(tree, child);
  const QString inside = children.join(u' ');
  switch (node.kind) {
    case Node::Kind::Constant:
      if (node.constant.isNumber()) return QString::number(node.constant.number());
      if (node.constant.type() == Type::Text) return u'\'' + node.constant.text().toString() + u'\'';
      if (node.constant.type() == Type::Keyword) return u'[' + node.constant.text().toString() + u']';
      return QStringLiteral("time");
    case Node::Kind::Name:
      return node.name;
    case Node::Kind::Chain: {
      QString operators;
      for (const Operator op : node.operators) operators += QString::number(int(op)) + u',';
      operators.chop(1);
      return QStringLiteral("{%1: %2}").arg(operators, inside);
    }
    case Node::Kind::Unary:
      return QStringLiteral("<%1: %2>").arg(int(node.operators.front())).arg(inside);
    case Node::Kind::Subscript:
      return QStringLiteral("sub(%1)").arg(inside);
    case Node::Kind::Call:
      return QLatin1StringView(node.function->name) + u'(' + inside + u')';
    case Node::Kind::Assignment:
      return QStringLiteral("%1#%2(%3)").arg(node.name).arg(int(node.modifier)).arg(inside);
  }
  return {};
}

class Syntax : public testing::Test {
 protected:
  Parsed read(QStringView source) { return parse(source, environment_); }
  QString shapeOf(QStringView source) {
    const Parsed parsed = read(source);
    if (parsed.error.reason) return QStringLiteral("error %1").arg(parsed.error.reason, 4, 16, QChar(u'0'));
    QStringList statements;
    for (const Statement& statement : parsed.tree.statements)
      statements += statement.root < 0 ? QStringLiteral("remark") : shape(parsed.tree, statement.root);
    return statements.join(u"; ");
  }
  QString printed(QStringView source) { return print(read(source).tree, environment_); }
  // Number of an operator, as shape() shows it.
  static QString number(Operator op) { return QString::number(int(op)); }
  SyntaxEnvironment environment_;
};

}  // namespace lens::formula

#include "embedded/search/query.h"

#include "embedded/search/query_lexer.h"
#include "embedded/search/words.h"
#include "notes/runtime_error.h"

namespace lens {
namespace {

using Kind = QueryToken::Kind;
using Node = QueryNode;

constexpr qsizetype kLongestQuery = 16 * 1024;
constexpr int kDeepest = 64;  // groups and NOTs within each other
constexpr qsizetype kShownWord = 40;

class Parser {
 public:
  explicit Parser(QStringView query) : lexer_(query) {}

  Node parse() {
    Node node = joined(Join::Or);
    if (!at(Kind::End)) fail(QStringLiteral("Something is missing before"));
    return node;
  }

 private:
  // From the loosest to the tightest.
  enum class Join { Or, Accrue, And, Nothing };
  class Level {
   public:
    explicit Level(Parser& parser) : depth_(parser.depth_) {
      if (++depth_ > kDeepest) parser.fail(QStringLiteral("There are too many groups within each other at"));
    }
    ~Level() { --depth_; }

   private:
    int& depth_;
  };

  const QueryToken& token() const { return lexer_.token(); }
  bool at(Kind kind) const { return token().kind == kind; }
  [[noreturn]] void fail(const QString& reason) const {
    raiseQueryError(at(Kind::End) ? QStringLiteral("The query ends too early") : reason, token().place,
                    token().text);
  }

  bool takeJoin(Join join) {
    const bool written = at(join == Join::Or ? Kind::Or : join == Join::Accrue ? Kind::Accrue : Kind::And);
    if (written) lexer_.advance();
    // Operands that stand beside each other are both wanted.
    return written || (join == Join::And && (at(Kind::Quoted) || at(Kind::Word) || at(Kind::Not) ||
                                             at(Kind::Open) || at(Kind::Field) || at(Kind::Bracket)));
  }

  Node joined(Join join) {
    if (join == Join::Nothing) return unary();
    const Join tighter = Join(int(join) + 1);
    Node first = joined(tighter);
    if (!takeJoin(join)) return first;
    Node node;
    node.kind = join == Join::And ? Node::Kind::And : Node::Kind::Or;
    node.place = first.place;
    node.children.push_back(std::move(first));
    do node.children.push_back(joined(tighter));
    while (takeJoin(join));
    return node;
  }

  Node unary() {
    if (!at(Kind::Not)) return primary();
    const Level level(*this);
    Node node;
    node.kind = Node::Kind::Not;
    node.place = token().place;
    lexer_.advance();
    node.children.push_back(unary());
    return node;
  }

  Node primary() {
    if (at(Kind::Open)) return group();
    if (at(Kind::Field) || at(Kind::Bracket)) return field();
    return phrase();
  }

  Node group() {
    const Level level(*this);
    lexer_.advance();
    Node node = joined(Join::Or);
    if (!at(Kind::Close)) fail(QStringLiteral("A ) is missing before"));
    lexer_.advance();
    return node;
  }

  // Words side by side are one phrase; quotes hold one of their own.
  Node phrase() {
    Node node = value(Node::Kind::Phrase);
    const QStringList words = patternWords(node.text);
    const QStringView written = QStringView(node.text);
    if (words.isEmpty()) raiseQueryError(QStringLiteral("There is no word in"), node.place, written);
    for (const QString& word : words)
      if (QStringView(word).count(u'*') + QStringView(word).count(u'?') == word.size())
        raiseQueryError(QStringLiteral("A wildcard needs a letter beside it in"), node.place, written);
    return node;
  }

  Node value(Node::Kind kind) {
    if (!at(Kind::Word) && !at(Kind::Quoted)) fail(QStringLiteral("A word is missing before"));
    Node node;
    node.kind = kind;
    node.field = field_;
    node.place = token().place;
    if (at(Kind::Quoted)) {
      node.text = token().text.toString();
      lexer_.advance();
      return node;
    }
    for (; at(Kind::Word); lexer_.advance()) {
      if (!node.text.isEmpty()) node.text += u' ';
      node.text += token().text;
    }
    return node;
  }

  Node field() {
    if (!field_.isEmpty()) fail(QStringLiteral("There is a field within a field at"));
    if (at(Kind::Field)) lexer_.advance();
    if (!at(Kind::Word) && !at(Kind::Quoted) && !at(Kind::Bracket))
      fail(QStringLiteral("The name of a field is missing before"));
    field_ = token().text.trimmed().toString();
    if (field_.isEmpty()) fail(QStringLiteral("The name of a field is missing at"));
    lexer_.advance();
    Node node = at(Kind::Relation) ? comparison() : contents();
    field_.clear();
    return node;
  }

  Node contents() {
    if (!at(Kind::Contains)) fail(QStringLiteral("CONTAINS or a comparison is missing before"));
    lexer_.advance();
    return at(Kind::Open) ? group() : phrase();
  }

  Node comparison() {
    const QStringView sign = token().text;
    lexer_.advance();
    Node node = value(Node::Kind::Compare);
    node.relation = sign == u"<"    ? Node::Relation::Less
                    : sign == u"<=" ? Node::Relation::LessEqual
                    : sign == u">"  ? Node::Relation::Greater
                    : sign == u">=" ? Node::Relation::GreaterEqual
                                    : Node::Relation::Equal;
    return node;
  }

  QueryLexer lexer_;
  QString field_;
  int depth_ = 0;
};

QString shownRelation(Node::Relation relation) {
  switch (relation) {
    case Node::Relation::Less:
      return QStringLiteral(" < ");
    case Node::Relation::LessEqual:
      return QStringLiteral(" <= ");
    case Node::Relation::Greater:
      return QStringLiteral(" > ");
    case Node::Relation::GreaterEqual:
      return QStringLiteral(" >= ");
    default:
      return QStringLiteral(" = ");
  }
}

}  // namespace

QueryNode parseQuery(QStringView query) {
  if (query.size() > kLongestQuery)
    raiseQueryError(QStringLiteral("It is longer than %1 characters").arg(kLongestQuery), kLongestQuery);
  return Parser(query).parse();
}

void raiseQueryError(const QString& reason, qsizetype place, QStringView word) {
  QString text =
      QStringLiteral("The query cannot be understood. %1 (character %2)").arg(reason).arg(place + 1);
  if (!word.isEmpty()) text += QStringLiteral(": '%1'").arg(word.left(kShownWord));
  throw RuntimeError(kQueryError, text);
}

QString shownQuery(const QueryNode& node) {
  const QString text = u'"' + node.text + u'"';
  if (node.kind == Node::Kind::Phrase) return node.field.isEmpty() ? text : node.field + u':' + text;
  if (node.kind == Node::Kind::Compare) return node.field + shownRelation(node.relation) + text;
  if (node.kind == Node::Kind::Not) return QStringLiteral("NOT ") + shownQuery(node.children.front());
  QStringList parts;
  for (const QueryNode& child : node.children) parts.append(shownQuery(child));
  return u'(' + parts.join(node.kind == Node::Kind::And ? u" AND " : u" OR ") + u')';
}

}  // namespace lens

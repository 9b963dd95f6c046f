#include "embedded/search/query.h"

#include "embedded/search/query_lexer.h"
#include "embedded/search/words.h"
#include "notes/literals.h"
#include "notes/runtime_error.h"

namespace lens {
namespace {

constexpr qsizetype kLongestQuery = 16 * 1024;
constexpr int kDeepest = 64;  // groups and NOTs within each other

class Parser {
 public:
  explicit Parser(QStringView query) : lexer_(query) {}

  QueryNode parse() {
    QueryNode node = joined(Join::Or);
    if (!at(QueryToken::Kind::End)) fail(u"Something is missing before"_s);
    return node;
  }

 private:
  // From the loosest to the tightest.
  enum class Join { Or, Accrue, And, Nothing };
  class Level {
   public:
    explicit Level(Parser& parser) : depth_(parser.depth_) {
      if (++depth_ > kDeepest) parser.fail(u"There are too many groups within each other at"_s);
    }
    ~Level() { --depth_; }

   private:
    int& depth_;
  };

  const QueryToken& token() const { return lexer_.token(); }
  bool at(QueryToken::Kind kind) const { return token().kind == kind; }
  [[noreturn]] void fail(const QString& reason) const {
    raiseQueryError(at(QueryToken::Kind::End) ? u"The query ends too early"_s : reason, token().place,
                    token().text);
  }

  bool takeJoin(Join join) {
    const bool written = at(join == Join::Or       ? QueryToken::Kind::Or
                            : join == Join::Accrue ? QueryToken::Kind::Accrue
                                                   : QueryToken::Kind::And);
    if (written) lexer_.advance();
    // Operands that stand beside each other are both wanted.
    return written || (join == Join::And && (at(QueryToken::Kind::Quoted) || at(QueryToken::Kind::Word) ||
                                             at(QueryToken::Kind::Not) || at(QueryToken::Kind::Open) ||
                                             at(QueryToken::Kind::Field) || at(QueryToken::Kind::Bracket)));
  }

  QueryNode joined(Join join) {
    if (join == Join::Nothing) return unary();
    const Join tighter = Join(int(join) + 1);
    QueryNode first = joined(tighter);
    if (!takeJoin(join)) return first;
    QueryNode node;
    node.kind = join == Join::And ? QueryNode::Kind::And : QueryNode::Kind::Or;
    node.place = first.place;
    node.children.push_back(std::move(first));
    do node.children.push_back(joined(tighter));
    while (takeJoin(join));
    return node;
  }

  QueryNode unary() {
    if (!at(QueryToken::Kind::Not)) return primary();
    const Level level(*this);
    QueryNode node;
    node.kind = QueryNode::Kind::Not;
    node.place = token().place;
    lexer_.advance();
    node.children.push_back(unary());
    return node;
  }

  QueryNode primary() {
    if (at(QueryToken::Kind::Open)) return group();
    if (at(QueryToken::Kind::Field) || at(QueryToken::Kind::Bracket)) return field();
    return phrase();
  }

  QueryNode group() {
    const Level level(*this);
    lexer_.advance();
    QueryNode node = joined(Join::Or);
    if (!at(QueryToken::Kind::Close)) fail(u"A ) is missing before"_s);
    lexer_.advance();
    return node;
  }

  // Words side by side are one phrase; quotes hold one of their own.
  QueryNode phrase() {
    QueryNode node = value(QueryNode::Kind::Phrase);
    const QStringList words = patternWords(node.text);
    const QStringView written = QStringView(node.text);
    if (words.isEmpty()) raiseQueryError(u"There is no word in"_s, node.place, written);
    for (const QString& word : words)
      if (QStringView(word).count(u'*') + QStringView(word).count(u'?') == word.size())
        raiseQueryError(u"A wildcard needs a letter beside it in"_s, node.place, written);
    return node;
  }

  QueryNode value(QueryNode::Kind kind) {
    if (!at(QueryToken::Kind::Word) && !at(QueryToken::Kind::Quoted)) fail(u"A word is missing before"_s);
    QueryNode node;
    node.kind = kind;
    node.field = field_;
    node.place = token().place;
    if (at(QueryToken::Kind::Quoted)) {
      node.text = token().text.toString();
      lexer_.advance();
      return node;
    }
    for (; at(QueryToken::Kind::Word); lexer_.advance()) {
      if (!node.text.isEmpty()) node.text += u' ';
      node.text += token().text;
    }
    return node;
  }

  QueryNode field() {
    if (!field_.isEmpty()) fail(u"There is a field within a field at"_s);
    if (at(QueryToken::Kind::Field)) lexer_.advance();
    if (!at(QueryToken::Kind::Word) && !at(QueryToken::Kind::Quoted) && !at(QueryToken::Kind::Bracket))
      fail(u"The name of a field is missing before"_s);
    field_ = token().text.trimmed().toString();
    if (field_.isEmpty()) fail(u"The name of a field is missing at"_s);
    lexer_.advance();
    QueryNode node = at(QueryToken::Kind::Relation) ? comparison() : contents();
    field_.clear();
    return node;
  }

  QueryNode contents() {
    if (!at(QueryToken::Kind::Contains)) fail(u"CONTAINS or a comparison is missing before"_s);
    lexer_.advance();
    return at(QueryToken::Kind::Open) ? group() : phrase();
  }

  QueryNode comparison() {
    const QStringView sign = token().text;
    lexer_.advance();
    QueryNode node = value(QueryNode::Kind::Compare);
    node.relation = sign == u"<"    ? QueryNode::Relation::Less
                    : sign == u"<=" ? QueryNode::Relation::LessEqual
                    : sign == u">"  ? QueryNode::Relation::Greater
                    : sign == u">=" ? QueryNode::Relation::GreaterEqual
                                    : QueryNode::Relation::Equal;
    return node;
  }

  QueryLexer lexer_;
  QString field_;
  int depth_ = 0;
};

QString shownRelation(QueryNode::Relation relation) {
  switch (relation) {
    case QueryNode::Relation::Less:
      return u" < "_s;
    case QueryNode::Relation::LessEqual:
      return u" <= "_s;
    case QueryNode::Relation::Greater:
      return u" > "_s;
    case QueryNode::Relation::GreaterEqual:
      return u" >= "_s;
    default:
      return u" = "_s;
  }
}

}  // namespace

QueryNode parseQuery(QStringView query) {
  if (query.size() > kLongestQuery)
    raiseQueryError(u"It is longer than %1 characters"_s.arg(kLongestQuery), kLongestQuery);
  return Parser(query).parse();
}

QString shownQuery(const QueryNode& node) {
  const QString text = u'"' + node.text + u'"';
  if (node.kind == QueryNode::Kind::Phrase) return node.field.isEmpty() ? text : node.field + u':' + text;
  if (node.kind == QueryNode::Kind::Compare) return node.field + shownRelation(node.relation) + text;
  if (node.kind == QueryNode::Kind::Not) return u"NOT "_s + shownQuery(node.children.front());
  QStringList parts;
  for (const QueryNode& child : node.children) parts.append(shownQuery(child));
  return u'(' + parts.join(node.kind == QueryNode::Kind::And ? u" AND " : u" OR ") + u')';
}

}  // namespace lens

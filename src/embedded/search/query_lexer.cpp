#include "embedded/search/query_lexer.h"

#include "embedded/search/query.h"

namespace lens {
namespace {

using Kind = QueryToken::Kind;

struct Keyword {
  QStringView word;
  Kind kind;
};

constexpr Keyword kKeywords[] = {{u"AND", Kind::And},     {u"OR", Kind::Or},
                                 {u"NOT", Kind::Not},     {u"ACCRUE", Kind::Accrue},
                                 {u"FIELD", Kind::Field}, {u"CONTAINS", Kind::Contains}};
// Operators of the language that the index cannot answer; told rather than taken for words.
constexpr QStringView kUnanswered[] = {u"PARAGRAPH", u"SENTENCE", u"EXACTCASE", u"TERMWEIGHT"};

bool endsWord(QChar c) {
  return c.isSpace() || QStringView(u"\"()&|!,=<>[]").contains(c);
}

}  // namespace

void QueryLexer::sign(Kind kind, qsizetype size) {
  token_ = {kind, query_.sliced(at_, size), at_, size};
  at_ += size;
}

void QueryLexer::enclosed(Kind kind, QChar end) {
  const qsizetype close = query_.indexOf(end, at_ + 1);
  if (close < 0)
    raiseQueryError(QStringLiteral("The closing %1 is missing").arg(end), at_, query_.sliced(at_));
  token_ = {kind, query_.sliced(at_ + 1, close - at_ - 1), at_, close + 1 - at_};
  at_ = close + 1;
}

void QueryLexer::word() {
  qsizetype end = at_;
  while (end < query_.size() && !endsWord(query_[end])) ++end;
  sign(Kind::Word, end - at_);
  for (const Keyword& keyword : kKeywords)
    if (token_.text.compare(keyword.word, Qt::CaseInsensitive) == 0) token_.kind = keyword.kind;
  for (QStringView unanswered : kUnanswered)
    if (token_.text.compare(unanswered, Qt::CaseInsensitive) == 0)
      raiseQueryError(
          QStringLiteral("%1 cannot be answered by the index; in quotes it is a word").arg(unanswered),
          token_.place, token_.text);
}

void QueryLexer::advance() {
  while (at_ < query_.size() && query_[at_].isSpace()) ++at_;
  if (at_ == query_.size()) {
    token_ = {Kind::End, {}, at_, 0};
    return;
  }
  const QChar following = at_ + 1 < query_.size() ? query_[at_ + 1] : QChar();
  switch (query_[at_].unicode()) {
    case u'"':
      return enclosed(Kind::Quoted, u'"');
    case u'[':
      return enclosed(Kind::Bracket, u']');
    case u'(':
      return sign(Kind::Open, 1);
    case u')':
      return sign(Kind::Close, 1);
    case u'&':
      return sign(Kind::And, 1);
    case u'|':
      return sign(Kind::Or, 1);
    case u'!':
      return sign(Kind::Not, 1);
    case u',':
      return sign(Kind::Accrue, 1);
    case u'=':
      return sign(Kind::Relation, 1);
    case u'<':
    case u'>':
      return sign(Kind::Relation, following == u'=' ? 2 : 1);
    case u']':
      raiseQueryError(QStringLiteral("There is no [ before"), at_, query_.sliced(at_, 1));
    default:
      return word();
  }
}

}  // namespace lens

#include "embedded/search/query_lexer.h"

#include "embedded/search/query_error.h"
#include "notes/literals.h"

namespace lens {
namespace {

using TokenKind = QueryToken::Kind;

struct Keyword {
  QStringView word;
  TokenKind kind;
};

constexpr Keyword kKeywords[] = {{u"AND", TokenKind::And},     {u"OR", TokenKind::Or},
                                 {u"NOT", TokenKind::Not},     {u"ACCRUE", TokenKind::Accrue},
                                 {u"FIELD", TokenKind::Field}, {u"CONTAINS", TokenKind::Contains}};
// Operators of the language that the index cannot answer; told rather than taken for words.
constexpr QStringView kUnanswered[] = {u"PARAGRAPH", u"SENTENCE", u"EXACTCASE", u"TERMWEIGHT"};

bool endsWord(QChar c) {
  return c.isSpace() || QStringView(u"\"()&|!,=<>[]").contains(c);
}

}  // namespace

void QueryLexer::sign(TokenKind kind, qsizetype size) {
  token_ = {kind, query_.sliced(at_, size), at_, size};
  at_ += size;
}

void QueryLexer::enclosed(TokenKind kind, QChar end) {
  const qsizetype close = query_.indexOf(end, at_ + 1);
  if (close < 0) raiseQueryError(u"The closing %1 is missing"_s.arg(end), at_, query_.sliced(at_));
  token_ = {kind, query_.sliced(at_ + 1, close - at_ - 1), at_, close + 1 - at_};
  at_ = close + 1;
}

void QueryLexer::word() {
  qsizetype end = at_;
  while (end < query_.size() && !endsWord(query_[end])) ++end;
  sign(TokenKind::Word, end - at_);
  for (const Keyword& keyword : kKeywords)
    if (token_.text.compare(keyword.word, Qt::CaseInsensitive) == 0) token_.kind = keyword.kind;
  for (QStringView unanswered : kUnanswered)
    if (token_.text.compare(unanswered, Qt::CaseInsensitive) == 0)
      raiseQueryError(u"%1 cannot be answered by the index; in quotes it is a word"_s.arg(unanswered),
                      token_.place, token_.text);
}

void QueryLexer::advance() {
  while (at_ < query_.size() && query_[at_].isSpace()) ++at_;
  if (at_ == query_.size()) {
    token_ = {TokenKind::End, {}, at_, 0};
    return;
  }
  const QChar following = at_ + 1 < query_.size() ? query_[at_ + 1] : QChar();
  switch (query_[at_].unicode()) {
    case u'"':
      return enclosed(TokenKind::Quoted, u'"');
    case u'[':
      return enclosed(TokenKind::Bracket, u']');
    case u'(':
      return sign(TokenKind::Open, 1);
    case u')':
      return sign(TokenKind::Close, 1);
    case u'&':
      return sign(TokenKind::And, 1);
    case u'|':
      return sign(TokenKind::Or, 1);
    case u'!':
      return sign(TokenKind::Not, 1);
    case u',':
      return sign(TokenKind::Accrue, 1);
    case u'=':
      return sign(TokenKind::Relation, 1);
    case u'<':
    case u'>':
      return sign(TokenKind::Relation, following == u'=' ? 2 : 1);
    case u']':
      raiseQueryError(u"There is no [ before"_s, at_, query_.sliced(at_, 1));
    default:
      return word();
  }
}

}  // namespace lens

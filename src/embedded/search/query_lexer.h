// The words and signs of a query.
#pragma once

#include <QString>

namespace lens {

struct QueryToken {
  enum class Kind {
    End,
    Word,
    Quoted,
    And,
    Or,
    Not,
    Accrue,
    Contains,
    Field,
    Open,
    Close,
    Bracket,
    Relation
  };
  Kind kind = Kind::End;
  QStringView text;  // without quotes or brackets
  qsizetype place = 0;
  qsizetype size = 0;  // of all of it, in the query
};

class QueryLexer {
 public:
  explicit QueryLexer(QStringView query) : query_(query) { advance(); }
  const QueryToken& token() const { return token_; }
  void advance();

 private:
  void word();
  void enclosed(QueryToken::Kind kind, QChar end);
  void sign(QueryToken::Kind kind, qsizetype size);
  QStringView query_;
  qsizetype at_ = 0;
  QueryToken token_;
};

}  // namespace lens

// Queries as expressions of FTS5. Every word of the user stands in quotes in them, and none can hold one.
#pragma once

#include "embedded/search/full_text_tables.h"
#include "embedded/search/query.h"

namespace lens {

class MatchExpressions {
 public:
  explicit MatchExpressions(fulltext::Tables& tables) : tables_(tables) {}

  // Whether the query has one: no comparison in it, and no more groups than FTS5 reads.
  static bool canHold(const QueryNode& node);
  // Raises kQueryError when too many words fit a wildcard, or there are too many wildcards in all that was
  // asked: each may walk over all words of the index.
  QString of(const QueryNode& node);
  // Finds every document of the index.
  static QString everywhere();

 private:
  QString phrase(const QueryNode& node);
  QString all(const QueryNode& node);
  QString any(const QueryNode& node);
  QStringList fitting(const QString& pattern, const QueryNode& node, const QString& prefix);
  void addFitting(const QString& from, const QString& to, const QString& pattern, const QString& prefix,
                  const QueryNode& node, QStringList& words);
  fulltext::Tables& tables_;
  int patterns_ = 0;
  qsizetype words_ = 0;  // in all phrases
};

}  // namespace lens

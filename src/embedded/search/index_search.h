// Answering a query from an index of full text.
#pragma once

#include <vector>

#include "embedded/formula/evaluation_context.h"
#include "embedded/search/full_text_tables.h"
#include "embedded/search/match_expression.h"
#include "embedded/search/query.h"

namespace lens::fulltext {

// A document that was found; the lower the rank, the better it fits.
struct Hit {
  NoteId id;
  double rank = 0;
};
using Hits = std::vector<Hit>;  // in order of the ID

Hits without(const Hits& all, const Hits& those);
Hits either(const Hits& a, const Hits& b);

// A query goes to FTS5 as one expression, in which every word of the user stands in quotes. What FTS5 has no
// expression for (comparisons, very deep groups) is answered part by part, and the parts are put together.
class IndexSearch {
 public:
  explicit IndexSearch(Tables& tables) : tables_(tables), expressions_(tables) {}

  // Raises kQueryError when too many words fit a wildcard, or something is compared that cannot be.
  Hits find(const QueryNode& query);

 private:
  Hits findNode(const QueryNode& node);
  void checkComparisons(const QueryNode& node);
  Hits match(const QString& expression);
  Hits findAll(const QueryNode& node);
  Hits findAny(const QueryNode& node);
  Hits compare(const QueryNode& node);
  Hits sameWords(const QueryNode& node);
  bool compareNumber(qint64 field, const QueryNode& node, Hits& hits);
  bool compareTime(qint64 field, const QueryNode& node, Hits& hits);
  Hits compareKind(qint64 field, ValueKind kind, QueryNode::Relation relation, double first, double last);

  Tables& tables_;
  MatchExpressions expressions_;
  formula::MachineEnvironment environment_;
};

}  // namespace lens::fulltext

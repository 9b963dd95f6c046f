// Full-text queries as people write them:
//
//   pump house             the words side by side, in this order; "pump house" the same
//   a AND b    a & b       both           a OR b    a | b        one of them
//   NOT a      !a          not            a ACCRUE b    a, b      one of them
//   pum*  h?use            any letters, any one letter
//   FIELD Subject CONTAINS pump    [Subject] = pump    FIELD Subject CONTAINS (pump OR harbour)
//   FIELD Amount > 10      also <, <=, >=, =; numbers and dates
//   ( )                    groups; else NOT binds before AND, AND before ACCRUE, ACCRUE before OR
//
// Case does not count, in keywords either. In quotes a keyword is a word. A phrase in quotes beside
// something else, or a NOT behind it, is joined with AND.
#pragma once

#include <QString>
#include <vector>

#include "embedded/search/query_error.h"

namespace lens {

struct QueryNode {
  enum class Kind { Phrase, And, Or, Not, Compare };
  enum class Relation { Equal, Less, LessEqual, Greater, GreaterEqual };
  Kind kind = Kind::Phrase;
  std::vector<QueryNode> children;      // And, Or: two or more; Not: one
  QString field;                        // Phrase, Compare: where to look; "" everywhere
  QString text;                         // Phrase, Compare: as it was written
  Relation relation = Relation::Equal;  // Compare
  qsizetype place = 0;                  // in the query, from 0
};

// Raises kQueryError with the reason and the place. A query without anything in it is a mistake too.
QueryNode parseQuery(QStringView query);
// The tree in one line, for messages and tests.
QString shownQuery(const QueryNode& node);

}  // namespace lens

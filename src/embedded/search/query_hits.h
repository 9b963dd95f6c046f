// Where the words of a query stand in a text, to be marked for who reads it.
#pragma once

#include <QStringList>
#include <QVector>

#include "embedded/search/query.h"

namespace lens {

struct TextPlace {
  qsizetype at = 0, size = 0;  // UTF-16 units
  bool operator==(const TextPlace&) const = default;
};

class QueryHits {
 public:
  QueryHits() = default;
  // Words that must not occur, and comparisons, mark nothing.
  explicit QueryHits(const QueryNode& query) { take(query); }

  bool isEmpty() const { return phrases_.isEmpty(); }
  // In the text of an item, as the index takes its words; in order, none within another one. A phrase that
  // was asked for in one field is marked in that field only.
  QVector<TextPlace> in(QStringView text, QStringView item) const;

 private:
  struct Phrase {
    QString field;      // "" for every one
    QStringList words;  // folded, with wildcards
  };
  void take(const QueryNode& node);

  QVector<Phrase> phrases_;
};

}  // namespace lens

// Answering a query from the index of full text.
//
// A query goes to FTS5 as one expression, in which every word of the user stands in quotes. What FTS5 has no
// expression for (comparisons, very deep groups) is answered part by part, and the parts are put together
// here.
#include <algorithm>
#include <cmath>
#include <limits>

#include "embedded/formula/time_text.h"
#include "embedded/formula/world.h"
#include "embedded/search/full_text.h"
#include "embedded/search/full_text_tables.h"
#include "embedded/search/match_expression.h"
#include "embedded/search/words.h"

namespace lens {
namespace {

using fulltext::Tables;
using fulltext::ValueKind;
using Node = QueryNode;
using Relation = QueryNode::Relation;

// A document that was found; the lower the rank, the better it fits.
struct Hit {
  quint32 id = 0;
  double rank = 0;
};
using Hits = std::vector<Hit>;  // in order of the ID

bool byId(const Hit& a, const Hit& b) {
  return a.id < b.id;
}

Hits without(const Hits& all, const Hits& those) {
  Hits rest;
  std::set_difference(all.begin(), all.end(), those.begin(), those.end(), std::back_inserter(rest), byId);
  return rest;
}

Hits both(const Hits& a, const Hits& b) {
  Hits common;
  for (auto left = a.begin(), right = b.begin(); left != a.end() && right != b.end();) {
    if (left->id == right->id) common.push_back({left->id, left->rank + right->rank});
    const bool next = left->id <= right->id, nextRight = right->id <= left->id;
    left += next;
    right += nextRight;
  }
  return common;
}

Hits either(const Hits& a, const Hits& b) {
  Hits merged, all;
  std::merge(a.begin(), a.end(), b.begin(), b.end(), std::back_inserter(merged), byId);
  for (const Hit& hit : merged) {
    if (!all.empty() && all.back().id == hit.id)
      all.back().rank += hit.rank;
    else
      all.push_back(hit);
  }
  return all;
}

struct Range {
  double from = -std::numeric_limits<double>::infinity(), to = std::numeric_limits<double>::infinity();
};

// Values that stand in the relation to one that is itself a stretch (a day, or a single point).
Range rangeOf(Relation relation, double first, double last) {
  const double infinity = std::numeric_limits<double>::infinity();
  switch (relation) {
    case Relation::Less:
      return {-infinity, std::nextafter(first, -infinity)};
    case Relation::LessEqual:
      return {-infinity, last};
    case Relation::Greater:
      return {std::nextafter(last, infinity), infinity};
    case Relation::GreaterEqual:
      return {first, infinity};
    default:
      return {first, last};
  }
}

class Search {
 public:
  explicit Search(Tables& tables) : tables_(tables), expressions_(tables) {}

  Hits find(const Node& node) {
    if (MatchExpressions::canHold(node)) return match(expressions_.of(node));
    switch (node.kind) {
      case Node::Kind::And:
        return findAll(node);
      case Node::Kind::Or:
        return findAny(node);
      case Node::Kind::Not:
        return without(match(MatchExpressions::everywhere()), find(node.children.front()));
      default:
        return compare(node);
    }
  }

  // A mistake is one also where there is nothing to compare.
  void checkComparisons(const Node& node) {
    if (node.kind == Node::Kind::Compare && node.relation != Relation::Equal) compare(node);
    for (const Node& child : node.children) checkComparisons(child);
  }

 private:
  Hits match(const QString& expression) {
    Hits hits;
    Statement::Run row(tables_.match, expression);
    while (row.step()) hits.push_back({quint32(row.integer(0)), row.real(1)});
    return hits;
  }

  Hits findAll(const Node& node) {
    Hits hits = find(node.children.front());
    for (std::size_t i = 1; i < node.children.size() && !hits.empty(); ++i)
      hits = both(hits, find(node.children[i]));
    return hits;
  }
  Hits findAny(const Node& node) {
    Hits hits;
    for (const Node& child : node.children) hits = either(hits, find(child));
    return hits;
  }

  Hits inRange(qint64 field, ValueKind kind, const Range& range) {
    Hits hits;
    Statement::Run row(tables_.compare, field, int(kind), range.from, range.to);
    while (row.step()) hits.push_back({quint32(row.integer(0)), 0});
    return hits;
  }

  Hits compare(const Node& node) {
    const qint64 field = tables_.fieldNumber(fulltext::fieldKey(node.field));
    Hits hits;
    const bool known = compareNumber(field, node, hits) || compareTime(field, node, hits);
    if (node.relation == Relation::Equal) return either(hits, sameWords(node));
    if (!known)
      raiseQueryError(
          QStringLiteral("Only a number or a date can be more or less than another; this is none"),
          node.place, node.text);
    return hits;
  }

  // "=" asks texts for the words.
  Hits sameWords(const Node& node) {
    Node phrase = node;
    phrase.kind = Node::Kind::Phrase;
    return patternWords(node.text).isEmpty() ? Hits() : find(phrase);
  }

  bool compareNumber(qint64 field, const Node& node, Hits& hits) {
    QString text = node.text.trimmed();
    text.replace(environment_.region().decimalMark, u'.');
    bool isNumber = false;
    const double number = QLocale::c().toDouble(text, &isNumber);
    if (isNumber) hits = inRange(field, ValueKind::Number, rangeOf(node.relation, number, number));
    return isNumber;
  }

  // A date is the whole day here, whatever the time of day in the document.
  bool compareTime(qint64 field, const Node& node, Hits& hits) {
    formula::Value value;
    const formula::TimeReading reading{environment_.region(), environment_.zone(), environment_.now()};
    if (!formula::readTime(node.text, reading, value) || !value.isTime()) return false;
    const DateTime local = localOf(value.time());
    if (!local.date.isValid()) return false;
    const double day = double(local.date.toJulianDay());
    const QDateTime begin(local.date, local.time.isValid() ? local.time : QTime(0, 0));
    const QDateTime end =
        local.time.isValid() ? begin.addMSecs(1) : QDateTime(local.date.addDays(1), QTime(0, 0));
    const double first = double(begin.toMSecsSinceEpoch()), last = double(end.toMSecsSinceEpoch()) - 1;
    hits = either(inRange(field, ValueKind::Instant, rangeOf(node.relation, first, last)),
                  inRange(field, ValueKind::Day, rangeOf(node.relation, day, day)));
    return true;
  }

  Tables& tables_;
  MatchExpressions expressions_;
  formula::MachineEnvironment environment_;
};

// What was deleted since the index was last written; more than nothing only where it cannot be written.
void removeDeleted(const Database& database, qint64 since, Hits& hits) {
  Hits gone;
  for (const NoteChange& change : database.changesSince(since))
    if (change.state != NoteState::Live) gone.push_back({change.id, 0});
  if (gone.empty()) return;
  std::sort(gone.begin(), gone.end(), byId);
  hits = without(hits, gone);
}

// A file that cannot be written now is searched as its index is.
void refreshIfPossible(Database& database) {
  try {
    refreshFullTextIndex(database);
  } catch (const RuntimeError& error) {
    if (error.number() != enginefault::NotSaved && error.number() != err::PermissionDenied) throw;
  }
}

}  // namespace

QVector<quint32> fullTextSearch(Database& database, QStringView query, qsizetype most) {
  Tables tables(database.connection());
  if (!tables.exist())
    throw RuntimeError(kNoFullTextIndex,
                       QStringLiteral("%1: the database has no full-text index").arg(database.path()));
  if (query.trimmed().isEmpty()) return {};
  const QueryNode tree = parseQuery(query);
  refreshIfPossible(database);
  Search search(tables);
  search.checkComparisons(tree);
  Hits hits = search.find(tree);
  removeDeleted(database, tables.change(), hits);
  std::sort(hits.begin(), hits.end(),
            [](const Hit& a, const Hit& b) { return a.rank != b.rank ? a.rank < b.rank : a.id < b.id; });
  QVector<quint32> found;
  const qsizetype count = most > 0 ? qMin(most, qsizetype(hits.size())) : qsizetype(hits.size());
  found.reserve(count);
  for (qsizetype i = 0; i < count; ++i) found.push_back(hits[std::size_t(i)].id);
  return found;
}

}  // namespace lens

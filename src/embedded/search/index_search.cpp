#include "embedded/search/index_search.h"

#include <algorithm>
#include <cmath>
#include <limits>

#include "embedded/format/timedate.h"
#include "embedded/formula/time_text.h"
#include "embedded/search/words.h"
#include "notes/literals.h"

namespace lens::fulltext {
namespace {

using Relation = QueryNode::Relation;

bool byId(const Hit& a, const Hit& b) {
  return a.id < b.id;
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

// What a time of a query stands for, in milliseconds and in days. A date is the whole day here, whatever the
// time of day in the document.
struct Stretch {
  double first = 0, last = 0, firstDay = 0, lastDay = 0;
};

bool readStretch(const TimeDate& time, Stretch& stretch) {
  const DateTime local = localOf(time);
  if (!local.date.isValid()) return false;
  const bool wholeDay = !local.time.isValid();
  const QDateTime begin(local.date, wholeDay ? QTime(0, 0) : local.time);
  const QDateTime end = wholeDay ? QDateTime(local.date.addDays(1), QTime(0, 0)) : begin.addMSecs(1);
  stretch.first = double(begin.toMSecsSinceEpoch());
  stretch.last = double(end.toMSecsSinceEpoch()) - 1;
  stretch.firstDay = stretch.lastDay = double(local.date.toJulianDay());
  return true;
}

// From one time to the other, whichever comes first.
bool readStretch(const TimePair& range, Stretch& stretch) {
  Stretch from, to;
  if (!readStretch(range.from, from) || !readStretch(range.to, to)) return false;
  stretch = {qMin(from.first, to.first), qMax(from.last, to.last), qMin(from.firstDay, to.firstDay),
             qMax(from.lastDay, to.lastDay)};
  return true;
}

}  // namespace

Hits without(const Hits& all, const Hits& those) {
  Hits rest;
  std::set_difference(all.begin(), all.end(), those.begin(), those.end(), std::back_inserter(rest), byId);
  return rest;
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

Hits IndexSearch::find(const QueryNode& query) {
  checkComparisons(query);
  return findNode(query);
}

Hits IndexSearch::findNode(const QueryNode& node) {
  if (MatchExpressions::canHold(node)) return match(expressions_.of(node));
  switch (node.kind) {
    case QueryNode::Kind::And:
      return findAll(node);
    case QueryNode::Kind::Or:
      return findAny(node);
    case QueryNode::Kind::Not:
      return without(match(MatchExpressions::everywhere()), findNode(node.children.front()));
    default:
      return compare(node);
  }
}

// A mistake is one also where there is nothing to compare.
void IndexSearch::checkComparisons(const QueryNode& node) {
  if (node.kind == QueryNode::Kind::Compare && node.relation != Relation::Equal) compare(node);
  for (const QueryNode& child : node.children) checkComparisons(child);
}

Hits IndexSearch::match(const QString& expression) {
  Hits hits;
  Statement::Run row(tables_.match, expression);
  while (row.step()) hits.push_back({row.noteId(0), row.real(1)});
  return hits;
}

Hits IndexSearch::findAll(const QueryNode& node) {
  Hits hits = findNode(node.children.front());
  for (std::size_t i = 1; i < node.children.size() && !hits.empty(); ++i)
    hits = both(hits, findNode(node.children[i]));
  return hits;
}

Hits IndexSearch::findAny(const QueryNode& node) {
  Hits hits;
  for (const QueryNode& child : node.children) hits = either(hits, findNode(child));
  return hits;
}

Hits IndexSearch::compare(const QueryNode& node) {
  const qint64 field = tables_.fieldNumber(caseKey(node.field));
  Hits hits;
  const bool known = compareNumber(field, node, hits) || compareTime(field, node, hits);
  if (node.relation == Relation::Equal) return either(hits, sameWords(node));
  if (!known)
    raiseQueryError(u"Only a number or a date can be more or less than another; this is none"_s, node.place,
                    node.text);
  return hits;
}

// "=" asks texts for the words.
Hits IndexSearch::sameWords(const QueryNode& node) {
  QueryNode phrase = node;
  phrase.kind = QueryNode::Kind::Phrase;
  return patternWords(node.text).isEmpty() ? Hits() : findNode(phrase);
}

bool IndexSearch::compareNumber(qint64 field, const QueryNode& node, Hits& hits) {
  QString text = node.text.trimmed();
  text.replace(environment_.region().decimalMark, u'.');
  bool isNumber = false;
  const double number = QLocale::c().toDouble(text, &isNumber);
  if (isNumber) hits = compareKind(field, ValueKind::Number, node.relation, number, number);
  return isNumber;
}

bool IndexSearch::compareTime(qint64 field, const QueryNode& node, Hits& hits) {
  formula::Value value;
  const formula::TimeReading reading{environment_.region(), environment_.zone(), environment_.now()};
  if (!formula::readTime(node.text, reading, value)) return false;
  const bool isRange = value.type() == formula::Type::TimeRange;
  Stretch stretch;
  if (!(isRange ? readStretch(value.range(), stretch) : readStretch(value.time(), stretch))) return false;
  hits = either(compareKind(field, ValueKind::Instant, node.relation, stretch.first, stretch.last),
                compareKind(field, ValueKind::Day, node.relation, stretch.firstDay, stretch.lastDay));
  return true;
}

// A document's range is equal to whatever it reaches over; to be before or behind, one of its ends must.
Hits IndexSearch::compareKind(qint64 field, ValueKind kind, Relation relation, double first, double last) {
  const auto read = [](Statement::Run row) {
    Hits hits;
    while (row.step()) hits.push_back({row.noteId(0), 0});
    return hits;
  };
  const Range range = rangeOf(relation, first, last);
  Hits hits = read(Statement::Run(tables_.compare, field, int(kind), range.from, range.to));
  if (relation != Relation::Equal) return hits;
  return either(hits, read(Statement::Run(tables_.overlap, field, int(kind), last, first)));
}

}  // namespace lens::fulltext

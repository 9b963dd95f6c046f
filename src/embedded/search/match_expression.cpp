#include "embedded/search/match_expression.h"

#include <algorithm>

#include "embedded/search/words.h"
#include "notes/literals.h"

namespace lens {
namespace {

// FTS5 gives up beyond some thirty groups within each other.
constexpr int kHighest = 8;
constexpr qsizetype kMostFitting = 500;  // words, or phrases made of them
constexpr int kMostPatterns = 50;
constexpr qsizetype kMostWords = 20'000;  // more than any query without wildcards can have

int heightOf(const QueryNode& node) {
  int height = 0;
  for (const QueryNode& child : node.children) height = qMax(height, heightOf(child));
  return height + 1;
}

bool comparesIn(const QueryNode& node) {
  return node.kind == QueryNode::Kind::Compare ||
         std::any_of(node.children.begin(), node.children.end(), comparesIn);
}

QString quoted(const QString& word) {
  return u'"' + word + u'"';
}

bool isPrefix(QStringView word) {
  return word.endsWith(u'*') && !isPattern(word.chopped(1));
}

[[noreturn]] void tooMany(const QueryNode& node) {
  raiseQueryError(u"More than %1 words fit"_s.arg(kMostFitting), node.place, node.text);
}

// The same phrases with one more word behind each.
QStringList extended(const QStringList& phrases, const QStringList& words, const QueryNode& node) {
  if (phrases.size() * words.size() > kMostFitting) tooMany(node);
  QStringList longer;
  for (const QString& phrase : phrases)
    for (const QString& word : words) longer.append(phrase.isEmpty() ? word : phrase + u" + "_s + word);
  return longer;
}

}  // namespace

bool MatchExpressions::canHold(const QueryNode& node) {
  return heightOf(node) <= kHighest && !comparesIn(node);
}

QString MatchExpressions::everywhere() {
  return u"fields : "_s + quoted(QString(fulltext::kEverywhere));
}

QString MatchExpressions::of(const QueryNode& node) {
  switch (node.kind) {
    case QueryNode::Kind::And:
      return all(node);
    case QueryNode::Kind::Or:
      return any(node);
    case QueryNode::Kind::Not:
      return u'(' + everywhere() + u" NOT "_s + of(node.children.front()) + u')';
    default:
      return phrase(node);
  }
}

// FTS5 knows "this but not that" only, so what is not wanted goes to the end.
QString MatchExpressions::all(const QueryNode& node) {
  QStringList wanted, unwanted;
  for (const QueryNode& child : node.children) {
    const bool isNot = child.kind == QueryNode::Kind::Not;
    (isNot ? unwanted : wanted).append(of(isNot ? child.children.front() : child));
  }
  if (wanted.isEmpty()) wanted.append(everywhere());
  const QString together = u'(' + wanted.join(u" AND "_s) + u')';
  if (unwanted.isEmpty()) return together;
  return u'(' + together + u" NOT ("_s + unwanted.join(u" OR "_s) + u"))"_s;
}

QString MatchExpressions::any(const QueryNode& node) {
  QStringList parts;
  for (const QueryNode& child : node.children) parts.append(of(child));
  return u'(' + parts.join(u" OR "_s) + u')';
}

QString MatchExpressions::phrase(const QueryNode& node) {
  const QString column = node.field.isEmpty() ? u"words : "_s : u"fields : "_s;
  const QString nowhere = column + quoted(QString(fulltext::kNowhere));
  QString prefix;
  if (!node.field.isEmpty()) {
    const qint64 field = tables_.fieldNumber(caseKey(node.field));
    if (field == 0) return nowhere;
    prefix = fulltext::fieldPrefix(field);
  }
  const QStringList words = patternWords(node.text);
  QStringList phrases{QString()};
  for (qsizetype i = 0; i < words.size() && !phrases.isEmpty(); ++i) {
    const QString& word = words[i];
    if (i == words.size() - 1 && isPrefix(word))
      phrases = extended(phrases, {quoted(prefix + word.chopped(1)) + u'*'}, node);
    else
      phrases = extended(
          phrases, isPattern(word) ? fitting(word, node, prefix) : QStringList(quoted(prefix + word)), node);
    if (words_ + phrases.size() * words.size() > kMostWords)
      raiseQueryError(u"The wildcards stand for more than %1 words"_s.arg(kMostWords), node.place, node.text);
  }
  if (phrases.isEmpty()) return nowhere;
  words_ += phrases.size() * words.size();
  for (QString& phrase : phrases) phrase.prepend(column);
  return u'(' + phrases.join(u" OR "_s) + u')';
}

// The words of the index that fit, quoted.
QStringList MatchExpressions::fitting(const QString& pattern, const QueryNode& node, const QString& prefix) {
  if (++patterns_ > kMostPatterns)
    raiseQueryError(u"More than %1 words have wildcards within them"_s.arg(kMostPatterns), node.place,
                    node.text);
  const auto wildcard =
      std::find_if(pattern.begin(), pattern.end(), [](QChar c) { return c == u'*' || c == u'?'; });
  const QString begin = prefix + pattern.left(wildcard - pattern.begin());
  const QString last = QString::fromUcs4(U"\U0010FFFF");
  QStringList words;
  // Words of fields stand together at their marks; a search over all words goes around them.
  if (begin.isEmpty()) {
    addFitting(QString(), QString(fulltext::kFieldMark), pattern, prefix, node, words);
    addFitting(QString(QChar(fulltext::kEnd.unicode() + 1)), last, pattern, prefix, node, words);
  } else {
    addFitting(begin, begin + last, pattern, prefix, node, words);
  }
  return words;
}

void MatchExpressions::addFitting(const QString& from, const QString& to, const QString& pattern,
                                  const QString& prefix, const QueryNode& node, QStringList& words) {
  tables_.connection.execute(
      "CREATE VIRTUAL TABLE IF NOT EXISTS temp.full_text_word USING fts5vocab(main, full_text, row)",
      fulltext::Tables::kRead);
  Statement::Run row(tables_.vocabulary, from, to);
  while (row.step()) {
    const QString term = row.text(0);
    if (!fitsPattern(QStringView(term).sliced(prefix.size()), pattern)) continue;
    if (words.size() == kMostFitting) tooMany(node);
    words.append(quoted(term));
  }
}

}  // namespace lens

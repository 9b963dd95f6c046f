#include "embedded/search/query_hits.h"

#include <algorithm>

#include "embedded/format/item_name.h"
#include "embedded/search/words.h"

namespace lens {
namespace {

struct PlacedWord {
  QString word;  // folded
  TextPlace place;
};

bool mayBeOfWord(QStringView text, qsizetype at) {
  const QChar c = text[at];
  return c.isLetterOrNumber() || c.isMark() || c.isSurrogate();
}

qsizetype unitsOfCharacter(QStringView text, qsizetype at) {
  const bool pair = text[at].isHighSurrogate() && at + 1 < text.size() && text[at + 1].isLowSurrogate();
  return pair ? 2 : 1;
}

QStringList foldedWords(QStringView text) {
  QStringList words;
  forEachWord(text, [&](QStringView word) { words.append(word.toString()); });
  return words;
}

// A run of letters is one word, or, in scripts without blanks, a word for each character.
void addRun(QStringView text, qsizetype begin, qsizetype end, QVector<PlacedWord>& words) {
  const QStringList folded = foldedWords(text.sliced(begin, end - begin));
  if (folded.size() == 1) {
    words.push_back({folded.first(), {begin, end - begin}});
    return;
  }
  for (qsizetype at = begin; at < end; at += unitsOfCharacter(text, at)) {
    const qsizetype units = unitsOfCharacter(text, at);
    for (const QString& word : foldedWords(text.sliced(at, units))) words.push_back({word, {at, units}});
  }
}

QVector<PlacedWord> placedWords(QStringView text) {
  QVector<PlacedWord> words;
  qsizetype begin = -1;
  for (qsizetype at = 0; at <= text.size(); ++at) {
    const bool inside = at < text.size() && mayBeOfWord(text, at);
    if (inside && begin < 0) begin = at;
    if (inside || begin < 0) continue;
    addRun(text, begin, at, words);
    begin = -1;
  }
  return words;
}

bool standsAt(const QVector<PlacedWord>& text, qsizetype at, const QStringList& phrase) {
  if (phrase.isEmpty() || at + phrase.size() > text.size()) return false;
  for (qsizetype i = 0; i < phrase.size(); ++i)
    if (!fitsPattern(text[at + i].word, phrase[i])) return false;
  return true;
}

}  // namespace

void QueryHits::take(const QueryNode& node) {
  if (node.kind == QueryNode::Kind::Phrase) phrases_.push_back({node.field, patternWords(node.text)});
  if (node.kind == QueryNode::Kind::And || node.kind == QueryNode::Kind::Or)
    for (const QueryNode& child : node.children) take(child);
}

QVector<TextPlace> QueryHits::in(QStringView text, QStringView item) const {
  QVector<TextPlace> hits;
  if (phrases_.isEmpty()) return hits;
  const QVector<PlacedWord> words = placedWords(text);
  for (qsizetype at = 0; at < words.size();) {
    qsizetype longest = 0;
    for (const Phrase& phrase : phrases_)
      if ((phrase.field.isEmpty() || sameItemName(phrase.field, item)) && standsAt(words, at, phrase.words))
        longest = std::max(longest, phrase.words.size());
    if (longest == 0) {
      ++at;
      continue;
    }
    const TextPlace &first = words[at].place, &last = words[at + longest - 1].place;
    hits.push_back({first.at, last.at + last.size - first.at});
    at += longest;
  }
  return hits;
}

}  // namespace lens

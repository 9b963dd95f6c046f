#include "embedded/formula/functions/patterns.h"

#include "embedded/formula/functions/text_units.h"

namespace lens::formula {
namespace {

char32_t folded(char32_t character) {
  if (character < 0x80) return character >= U'A' && character <= U'Z' ? character + 32 : character;
  return QChar::toCaseFolded(character);
}

bool isOperator(QStringView pattern, qsizetype at) {
  return at >= pattern.size() || pattern[at] == u'&' || pattern[at] == u'|';
}

// Reads the set that opens at a place and moves behind it; false, and nothing read, without an end.
bool readSet(QStringView pattern, qsizetype& at, bool repeated, PatternRow& row) {
  const qsizetype end = pattern.indexOf(u'}', at);
  if (end < 0) return false;
  const QStringView inside = pattern.sliced(at + 1, end - at - 1);
  const bool negated = inside.size() > 1 && inside[0] == u'!';
  row.beginSet(negated, repeated);
  for (qsizetype place = negated ? 1 : 0; place < inside.size();) {
    const char32_t first = nextCharacter(inside, place);
    char32_t last = first;
    if (place + 1 < inside.size() && inside[place] == u'-') last = nextCharacter(inside, ++place);
    row.addRange(first, last);
  }
  at = end + 1;
  return true;
}

// One part: an escaped character, "?", a set, or a character that stands for itself.
void readPart(QStringView pattern, qsizetype& at, bool repeated, PatternRow& row) {
  if (pattern[at] == u'{' && readSet(pattern, at, repeated, row)) return;
  if (pattern[at] == u'?') {
    ++at;
    return row.addAny(repeated);
  }
  if (pattern[at] == u'\\' && at + 1 < pattern.size()) ++at;
  row.addLiteral(folded(nextCharacter(pattern, at)), repeated);
}

}  // namespace

// --- Rows ---------------------------------------------------------------------------------------------

void PatternRow::addLiteral(char32_t literal, bool repeated) {
  PatternPart part;
  part.literal = literal;
  part.repeated = repeated;
  parts_.append(part);
  repeatsOthers_ |= repeated;
}

void PatternRow::addAny(bool repeated) {
  // Runs of "any number of any" say no more than one of them.
  if (repeated && !parts_.empty() && parts_.back().kind == PatternPart::Kind::Any && parts_.back().repeated)
    return;
  PatternPart part;
  part.kind = PatternPart::Kind::Any;
  part.repeated = repeated;
  parts_.append(part);
}

void PatternRow::beginSet(bool negated, bool repeated) {
  PatternPart part;
  part.kind = PatternPart::Kind::Set;
  part.negated = negated;
  part.repeated = repeated;
  part.set = quint32(ranges_.size());
  parts_.append(part);
  repeatsOthers_ |= repeated;
}

void PatternRow::addRange(char32_t first, char32_t last) {
  ranges_.push_back({first, last});
  ++parts_.back().setSize;
}

qint64 PatternRow::work(qint64 textSize) const {
  const qsizetype size = parts_.size() + qsizetype(ranges_.size());
  return 1 + textSize + textSize * size / (repeatsOthers_ ? 1 : 4);
}

bool PatternRow::fits(const PatternPart& part, char32_t character, char32_t foldedCharacter) const {
  if (part.kind == PatternPart::Kind::Literal) return part.literal == foldedCharacter;
  if (part.kind == PatternPart::Kind::Any) return true;
  const Range* const begin = ranges_.data() + part.set;
  for (const Range* range = begin; range < begin + part.setSize; ++range)
    if (character >= range->first && character <= range->last) return !part.negated;
  return part.negated;
}

bool PatternRow::matches(QStringView text, bool foldsCase) const {
  return repeatsOthers_ ? matchesWithStates(text, foldsCase) : matchesWithRuns(text, foldsCase);
}

// Only runs of any character: after a failure, the latest run takes one character more. An earlier run
// need not be tried again, since the latest can take whatever it could.
bool PatternRow::matchesWithRuns(QStringView text, bool foldsCase) const {
  const qsizetype count = parts_.size();
  qsizetype part = 0, partBehindRun = 0, at = 0, runEnd = -1;
  while (at < text.size()) {
    if (part < count && parts_[part].repeated) {
      partBehindRun = ++part;
      runEnd = at;
      if (part == count) return true;
      continue;
    }
    qsizetype next = at;
    const char32_t character = nextCharacter(text, next);
    if (part < count && fits(parts_[part], character, foldsCase ? folded(character) : character)) {
      ++part;
      at = next;
      continue;
    }
    if (runEnd < 0) return false;
    runEnd += characterSize(text, runEnd);
    at = runEnd;
    part = partBehindRun;
  }
  while (part < count && parts_[part].repeated) ++part;
  return part == count;
}

// All places of the pattern that the text read so far can have reached, character by character.
bool PatternRow::matchesWithStates(QStringView text, bool foldsCase) const {
  const qsizetype count = parts_.size();
  QVarLengthArray<char, 256> now(count + 1), then(count + 1);
  // A repeated part may be left out.
  const auto skipRepeated = [&](QVarLengthArray<char, 256>& states) {
    for (qsizetype i = 0; i < count; ++i)
      if (states[i] && parts_[i].repeated) states[i + 1] = 1;
  };
  std::fill(now.begin(), now.end(), '\0');
  now[0] = 1;
  skipRepeated(now);
  for (qsizetype at = 0; at < text.size();) {
    const char32_t character = nextCharacter(text, at);
    const char32_t foldedCharacter = foldsCase ? folded(character) : character;
    std::fill(then.begin(), then.end(), '\0');
    bool alive = false;
    for (qsizetype i = 0; i < count; ++i) {
      if (!now[i] || !fits(parts_[i], character, foldedCharacter)) continue;
      then[parts_[i].repeated ? i : i + 1] = 1;
      alive = true;
    }
    if (!alive) return false;
    skipRepeated(then);
    std::swap(now, then);
  }
  return now[count] != 0;
}

// --- Patterns -----------------------------------------------------------------------------------------

PatternRow likePattern(QStringView pattern, char32_t escape) {
  PatternRow row;
  for (qsizetype at = 0; at < pattern.size();) {
    const char32_t character = nextCharacter(pattern, at);
    if (escape && character == escape && at < pattern.size())
      row.addLiteral(nextCharacter(pattern, at));
    else if (character == U'_')
      row.addAny();
    else if (character == U'%')
      row.addAny(true);
    else
      row.addLiteral(character);
  }
  return row;
}

MatchPattern::MatchPattern(QStringView pattern) {
  qsizetype at = 0;
  do {
    at = readTerm(pattern, at);
    terms_.back().endsGroup = at >= pattern.size() || pattern[at] == u'|';
    ++at;
  } while (at <= pattern.size());
}

// Up to the operator behind the term, or the end.
qsizetype MatchPattern::readTerm(QStringView pattern, qsizetype at) {
  Term term;
  for (; at < pattern.size() && pattern[at] == u'!'; ++at) term.negated = !term.negated;
  while (!isOperator(pattern, at)) {
    if (pattern[at] == u'*') {
      ++at;
      term.row.addAny(true);
      continue;
    }
    const bool repeats = pattern[at] == u'+' && !isOperator(pattern, at + 1);
    if (repeats) ++at;
    if (repeats && pattern[at] == u'*') continue;
    readPart(pattern, at, repeats, term.row);
  }
  terms_.append(std::move(term));
  return at;
}

bool MatchPattern::matches(QStringView text) const {
  bool all = true;
  for (const Term& term : terms_) {
    all = all && term.row.matches(text, true) != term.negated;
    if (!term.endsGroup) continue;
    if (all) return true;
    all = true;
  }
  return false;
}

qint64 MatchPattern::work(qint64 textSize) const {
  qint64 work = 0;
  for (const Term& term : terms_) work += term.row.work(textSize);
  return work;
}

}  // namespace lens::formula

#include "embedded/formula/collation.h"

#include <QList>
#include <QString>
#include <algorithm>
#include <array>
#include <memory>
#include <utility>

namespace lens::formula {
namespace {

// The place of a character in the order, from the first bits to the last: its class, its letter without
// accent in lower case, its accent, its width, its case.
constexpr int kCaseBits = 2, kWidthBits = 1, kAccentBits = 21, kLetterBits = 21;
constexpr int kWidthShift = kCaseBits, kAccentShift = kWidthShift + kWidthBits,
              kLetterShift = kAccentShift + kAccentBits, kClassShift = kLetterShift + kLetterBits;
constexpr quint64 maskOf(int shift, int bits) {
  return ((quint64(1) << bits) - 1) << shift;
}
enum Class : quint64 { Apostrophe = 1, Dash, Digit, Letter, Special };

// Letters that no decomposition leads back to their plain letter.
constexpr struct {
  char16_t letter, plain;
} kStroked[] = {{u'ß', u's'}, {u'æ', u'a'}, {u'ø', u'o'}, {u'đ', u'd'},
                {u'ħ', u'h'}, {u'ı', u'i'}, {u'ł', u'l'}, {u'œ', u'o'}};

// Undoes full and half width forms.
char32_t usualWidth(char32_t character, bool& changed) {
  const QChar::Decomposition tag = QChar::decompositionTag(character);
  if (tag != QChar::Wide && tag != QChar::Narrow) return character;
  const auto parts = QChar::decomposition(character).toUcs4();
  if (parts.size() != 1) return character;
  changed = true;
  return parts.front();
}

// Takes accents off as long as what goes is nothing but accents.
char32_t plainLetter(char32_t letter) {
  for (const auto& row : kStroked)
    if (letter == row.letter) return row.plain;
  while (QChar::decompositionTag(letter) == QChar::Canonical) {
    const auto parts = QChar::decomposition(letter).toUcs4();
    for (qsizetype i = 1; i < parts.size(); ++i)
      if (QChar::category(parts[i]) != QChar::Mark_NonSpacing) return letter;
    if (parts.isEmpty()) return letter;
    letter = parts.front();
  }
  return letter;
}

quint64 computeKey(char32_t character) {
  bool widthChanged = false;
  const char32_t usual = usualWidth(character, widthChanged);
  const char32_t lower = QChar::toLower(usual);
  quint64 kind = Special, letter = lower, accent = 0;
  if (usual == U'\'') {
    kind = Apostrophe;
  } else if (usual == U'-') {
    kind = Dash;
  } else if (QChar::isDigit(usual)) {
    // Digits of other scripts stand behind the usual ones.
    kind = Digit, letter = quint64(QChar::digitValue(usual)), accent = usual > 0x7F ? usual : 0;
  } else if (QChar::isLetter(usual)) {
    kind = Letter, letter = plainLetter(lower), accent = letter == lower ? 0 : lower;
  }
  quint64 letterCase = 0;
  if (usual != lower) letterCase = QChar::isTitleCase(usual) ? 1 : 2;
  return kind << kClassShift | letter << kLetterShift | accent << kAccentShift |
         quint64(widthChanged) << kWidthShift | letterCase;
}

constexpr char32_t kTableSize = 0x250;  // Latin and its extensions

const std::array<quint64, kTableSize>& keyTable() {
  static const auto table = [] {
    std::array<quint64, kTableSize> keys{};
    for (char32_t character = 0; character < kTableSize; ++character) keys[character] = computeKey(character);
    return keys;
  }();
  return table;
}

// The keys of a text, one after another; 0 behind its end.
class Keys {
 public:
  Keys(QStringView text, qsizetype from, quint64 mask, bool skipAccents)
      : text_(text), at_(from), mask_(mask), skipAccents_(skipAccents) {}

  quint64 next(const std::array<quint64, kTableSize>& table) {
    while (at_ < text_.size()) {
      const char16_t unit = text_[at_].unicode();
      if (unit < kTableSize) {
        ++at_;
        return table[unit] & mask_;
      }
      const char32_t character = takeCharacter();
      if (skipAccents_ && QChar::category(character) == QChar::Mark_NonSpacing) continue;
      return computeKey(character) & mask_;
    }
    return 0;
  }
  qsizetype at() const { return at_; }

 private:
  char32_t takeCharacter() {
    const QChar unit = text_[at_++];
    if (!unit.isHighSurrogate() || at_ == text_.size() || !text_[at_].isLowSurrogate()) return unit.unicode();
    return QChar::surrogateToUcs4(unit, text_[at_++]);
  }
  QStringView text_;
  qsizetype at_;
  quint64 mask_;
  bool skipAccents_;
};

quint64 maskFor(const CollationRules& rules) {
  quint64 mask = ~quint64(0);
  if (!rules.caseSensitive) mask &= ~maskOf(0, kCaseBits);
  if (!rules.pitchSensitive) mask &= ~maskOf(kWidthShift, kWidthBits);
  if (!rules.accentSensitive) mask &= ~maskOf(kAccentShift, kAccentBits);
  return mask;
}

// Eight bits that stand for a key: even for one that a printable ASCII character has, odd for all that
// lie between two of these.
class Buckets {
 public:
  explicit Buckets(quint64 mask) {
    for (std::size_t i = 0; i < known_.size(); ++i) known_[i] = keyTable()[i + kFirst] & mask;
    std::sort(known_.begin(), known_.end());
    count_ = std::unique(known_.begin(), known_.end()) - known_.begin();
    for (char32_t character = 0; character < kTableSize; ++character)
      ofCharacters_[character] = find(keyTable()[character] & mask);
  }
  quint8 find(quint64 key) const {
    const auto end = known_.begin() + count_, place = std::lower_bound(known_.begin(), end, key);
    const bool exact = place != end && *place == key;
    return quint8(2 * (place - known_.begin()) + (exact ? 2 : 1));
  }
  quint8 ofCharacter(char16_t character) const { return ofCharacters_[character]; }

  static const Buckets& of(const CollationRules& rules) {
    static const auto all = [] {
      std::array<std::unique_ptr<Buckets>, 8> made;
      for (std::size_t i = 0; i < made.size(); ++i)
        made[i] = std::make_unique<Buckets>(maskFor({(i & 1) != 0, (i & 2) != 0, (i & 4) != 0}));
      return made;
    }();
    return *all[(rules.caseSensitive ? 1U : 0U) | (rules.accentSensitive ? 2U : 0U) |
                (rules.pitchSensitive ? 4U : 0U)];
  }

 private:
  static constexpr std::size_t kFirst = 0x20;
  std::array<quint64, 0x7F - kFirst> known_{};
  std::ptrdiff_t count_ = 0;
  std::array<quint8, kTableSize> ofCharacters_{};
};

}  // namespace

quint64 collationPrefix(QStringView text, const CollationRules& rules) {
  const Buckets& buckets = Buckets::of(rules);
  quint64 prefix = 0;
  qsizetype at = 0;
  for (int shift = 56; shift >= 0; shift -= 8) {
    quint8 bucket = 0;
    if (at < text.size() && text[at].unicode() < kTableSize) {
      bucket = buckets.ofCharacter(text[at++].unicode());
    } else {
      Keys rest(text, at, maskFor(rules), !rules.accentSensitive);
      const quint64 key = rest.next(keyTable());
      if (key == 0) break;
      bucket = buckets.find(key);
      at = rest.at();
    }
    prefix |= quint64(bucket) << shift;
    // What shares its bits with other characters ends the prefix: behind it nothing counts.
    if (bucket & 1) break;
  }
  return prefix;
}

// A byte for a character that has a bucket of its own; the others have their whole key behind the byte.
void appendCollationBytes(QByteArray& bytes, QStringView text, const CollationRules& rules) {
  constexpr int kKeyBytes = (kClassShift + 3 + 7) / 8;
  const Buckets& buckets = Buckets::of(rules);
  const quint64 mask = maskFor(rules);
  // Plain characters, which nearly all are, go over together.
  std::array<char, 128> plain;
  qsizetype plains = 0;
  const auto flush = [&] { bytes.append(plain.data(), std::exchange(plains, 0)); };
  qsizetype at = 0;
  while (at < text.size()) {
    const char16_t unit = text[at].unicode();
    const quint8 own = unit < kTableSize ? buckets.ofCharacter(unit) : quint8(1);
    if (own % 2 == 0) {
      plain[std::size_t(plains++)] = char(own);
      if (plains == qsizetype(plain.size())) flush();
      ++at;
      continue;
    }
    flush();
    Keys rest(text, at, mask, !rules.accentSensitive);
    const quint64 key = rest.next(keyTable());
    at = rest.at();
    if (key == 0) break;
    const quint8 bucket = buckets.find(key);
    bytes.append(char(bucket));
    if (bucket % 2 == 0) continue;
    for (int shift = 8 * (kKeyBytes - 1); shift >= 0; shift -= 8) bytes.append(char(quint8(key >> shift)));
  }
  flush();
  bytes.append('\0');
}

int compareTexts(QStringView left, QStringView right, const CollationRules& rules) {
  const auto& table = keyTable();
  const qsizetype shorter = qMin(left.size(), right.size());
  qsizetype same = 0;
  while (same < shorter && left[same] == right[same]) ++same;
  if (same == left.size() && same == right.size()) return 0;
  // Half of a character beyond the table is no place to begin at.
  if (same > 0 && left[same - 1].isHighSurrogate()) --same;

  const quint64 mask = maskFor(rules);
  Keys lefts(left, same, mask, !rules.accentSensitive), rights(right, same, mask, !rules.accentSensitive);
  for (;;) {
    const quint64 a = lefts.next(table), b = rights.next(table);
    if (a != b) return a < b ? -1 : 1;
    if (a == 0) return 0;
  }
}

}  // namespace lens::formula

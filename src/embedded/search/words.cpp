#include "embedded/search/words.h"

#include <algorithm>

namespace lens {
namespace {

constexpr qsizetype kLongestWord = 64;

enum class Part { Outside, Inside, Alone, Nothing };

bool isAccent(char32_t c) {
  return c >= 0x0300 && c <= 0x036F;
}

bool standsAlone(char32_t c) {
  const QChar::Script script = QChar::script(c);
  return script == QChar::Script_Han || script == QChar::Script_Hiragana || script == QChar::Script_Katakana;
}

Part partOf(char32_t c, bool wildcards) {
  if (c < 0x80) {
    const bool letter = (c >= u'a' && c <= u'z') || (c >= u'A' && c <= u'Z') || (c >= u'0' && c <= u'9');
    return letter || (wildcards && (c == u'*' || c == u'?')) ? Part::Inside : Part::Outside;
  }
  if (isAccent(c)) return Part::Nothing;
  if (!QChar::isLetterOrNumber(c) && !QChar::isMark(c)) return Part::Outside;
  return standsAlone(c) ? Part::Alone : Part::Inside;
}

bool isAscii(QStringView text) {
  char16_t bits = 0;
  for (QChar unit : text) bits |= unit.unicode();
  return bits < 0x80;
}

// Plain words need no more than lower case; the buffer is kept from word to word.
class Folder {
 public:
  explicit Folder(const std::function<void(QStringView)>& take) : take_(take) {}

  void word(QStringView word) {
    if (word.isEmpty()) return;
    if (!isAscii(word)) return otherWord(word);
    word = word.first(qMin(word.size(), kLongestWord));
    std::transform(word.begin(), word.end(), buffer_, [](QChar c) {
      const char16_t unit = c.unicode();
      return unit >= u'A' && unit <= u'Z' ? char16_t(unit | 0x20) : unit;
    });
    take_(QStringView(buffer_, word.size()));
  }

 private:
  void otherWord(QStringView word) {
    QString folded = word.toString();
    folded.removeIf([](QChar c) { return isAccent(c.unicode()); });
    // By way of upper case, where "ß" is "SS" and both kinds of small sigma are one.
    folded = folded.toUpper().toLower().normalized(QString::NormalizationForm_C);
    qsizetype size = qMin(folded.size(), kLongestWord);
    if (size < folded.size() && folded[size].isLowSurrogate()) --size;
    if (size > 0) take_(QStringView(folded).first(size));
  }
  const std::function<void(QStringView)>& take_;
  char16_t buffer_[kLongestWord];
};

void split(QStringView text, bool wildcards, const std::function<void(QStringView)>& take) {
  QString unfolded;
  if (!isAscii(text)) text = unfolded = text.toString().normalized(QString::NormalizationForm_KD);
  Folder folder(take);
  qsizetype begin = -1;
  for (qsizetype at = 0; at < text.size();) {
    const bool pair = text[at].isHighSurrogate() && at + 1 < text.size() && text[at + 1].isLowSurrogate();
    const char32_t c = pair ? QChar::surrogateToUcs4(text[at], text[at + 1]) : text[at].unicode();
    const qsizetype next = at + (pair ? 2 : 1);
    const Part part = partOf(c, wildcards);
    if (begin >= 0 && (part == Part::Outside || part == Part::Alone)) {
      folder.word(text.sliced(begin, at - begin));
      begin = -1;
    }
    if (part == Part::Inside && begin < 0) begin = at;
    if (part == Part::Alone) folder.word(text.sliced(at, next - at));
    at = next;
  }
  if (begin >= 0) folder.word(text.sliced(begin));
}

}  // namespace

void forEachWord(QStringView text, const std::function<void(QStringView)>& take) {
  split(text, false, take);
}

QStringList patternWords(QStringView text) {
  QStringList words;
  split(text, true, [&](QStringView word) { words.append(word.toString()); });
  return words;
}

bool isPattern(QStringView word) {
  return word.contains(u'*') || word.contains(u'?');
}

// Goes back to the last "*" only: what an earlier one took more could not help.
bool fitsPattern(QStringView word, QStringView pattern) {
  qsizetype w = 0, p = 0, star = -1, resume = 0;
  while (w < word.size()) {
    if (p < pattern.size() && pattern[p] == u'*') {
      star = p++;
      resume = w;
    } else if (p < pattern.size() && (pattern[p] == u'?' || pattern[p] == word[w])) {
      ++p, ++w;
    } else if (star >= 0) {
      p = star + 1;
      w = ++resume;
    } else {
      return false;
    }
  }
  while (p < pattern.size() && pattern[p] == u'*') ++p;
  return p == pattern.size();
}

}  // namespace lens

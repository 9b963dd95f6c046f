// Texts counted and searched as users see them: a character is a code point, so the two units of a
// surrogate pair are one and are never parted. Nearly all texts have no pairs; they pay one fast look.
#pragma once

#include <QStringView>
#include <cstring>
#include <utility>

#include "embedded/formula/function.h"

namespace lens::formula {

inline bool isHighUnit(char16_t unit) {
  return (unit & 0xFC00) == 0xD800;
}
inline bool isLowUnit(char16_t unit) {
  return (unit & 0xFC00) == 0xDC00;
}

// True when any unit is half of a pair. Four units a step.
inline bool hasPairs(QStringView text) {
  const char16_t* at = text.utf16();
  const char16_t* const end = at + text.size();
  constexpr quint64 kMask = 0xF800F800F800F800, kHalf = 0xD800D800D800D800, kOnes = 0x0001000100010001,
                    kTops = 0x8000800080008000;
  for (; end - at >= 4; at += 4) {
    quint64 four;
    std::memcpy(&four, at, sizeof four);
    four = (four & kMask) ^ kHalf;
    if ((four - kOnes) & ~four & kTops) return true;
  }
  for (; at < end; ++at)
    if ((*at & 0xF800) == 0xD800) return true;
  return false;
}

// Units of the character at a place: 1 or 2.
inline qsizetype characterSize(QStringView text, qsizetype at) {
  return isHighUnit(text[at].unicode()) && at + 1 < text.size() && isLowUnit(text[at + 1].unicode()) ? 2 : 1;
}
// The character at a place, which moves behind it. A lone half stands for itself.
inline char32_t nextCharacter(QStringView text, qsizetype& at) {
  const char16_t unit = text[at++].unicode();
  if (!isHighUnit(unit) || at >= text.size() || !isLowUnit(text[at].unicode())) return unit;
  return QChar::surrogateToUcs4(unit, text[at++].unicode());
}

qsizetype characterCount(QStringView text);
// The unit at which the count-th character behind `from` begins; the size when there are fewer.
qsizetype forward(QStringView text, qsizetype from, qsizetype count);
// The same to the left; 0 when there are fewer.
qsizetype backward(QStringView text, qsizetype from, qsizetype count);

// A number argument as a count: the fraction is cut, what is out of range ends at the limits.
inline qsizetype countOf(double number) {
  constexpr double kLimit = 1e9;
  if (!(number == number)) return 0;
  return qsizetype(qBound(-kLimit, number, kLimit));
}

inline bool sameText(QStringView left, QStringView right) {
  return left.size() == right.size() &&
         std::memcmp(left.utf16(), right.utf16(), size_t(left.size()) * sizeof(char16_t)) == 0;
}

// The first or last hit; -1 without one. An empty piece is found at `from`, or at the end. The work of
// long texts is charged.
qsizetype findFirst(const Call& call, QStringView text, QStringView piece, qsizetype from = 0);
qsizetype findLast(const Call& call, QStringView text, QStringView piece);

// A long text is charged for being read through.
inline void chargeText(const Call& call, qsizetype size) {
  constexpr qsizetype kLong = 256;
  if (size >= kLong) call.charge(size / 8);
}

// What many small pieces of work cost, charged in larger sums.
class Toll {
 public:
  explicit Toll(const Call& call) : call_(call) {}
  Toll(const Toll&) = delete;
  Toll& operator=(const Toll&) = delete;
  void add(qsizetype steps) {
    constexpr qsizetype kSum = 1024;
    due_ += steps;
    if (due_ >= kSum) call_.charge(std::exchange(due_, 0));
  }

 private:
  const Call& call_;
  qsizetype due_ = 0;
};

// One new text for each element of a list. The function gets the element with its memory, so that one
// which stays as it is need not be copied, or only its characters.
template <typename Each>
Value mapTexts(const Call& call, const Value& list, Each&& each) {
  const qsizetype count = list.count();
  if (count == 1) {
    chargeText(call, list.text().size());
    return Value::text(each(list.sharedText(0)));
  }
  Toll toll(call);
  ListBuilder result(Type::Text, count);
  for (qsizetype i = 0; i < count; ++i) {
    toll.add(1 + list.text(i).size() / 8);
    result.addText(each(list.sharedText(i)));
  }
  return result.take();
}
template <typename Each>
Value mapViews(const Call& call, const Value& list, Each&& each) {
  return mapTexts(call, list, [&](const Text& text) { return each(text.view()); });
}

// True when any element of the first argument fits any of the second; every pair is charged.
template <typename Fits>
Value anyPair(const Call& call, Fits&& fits) {
  const Value &texts = call[0], &others = call[1];
  const qsizetype count = texts.count(), otherCount = others.count();
  Toll toll(call);
  for (qsizetype i = 0; i < count; ++i) {
    const QStringView text = texts.text(i);
    for (qsizetype j = 0; j < otherCount; ++j) {
      if (fits(text, others.text(j))) return Value::truth(true);
      toll.add(1);
    }
  }
  return Value::truth(false);
}

}  // namespace lens::formula

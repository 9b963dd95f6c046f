#include "embedded/formula/functions/text_units.h"

namespace lens::formula {
namespace {

// Texts from this size on are charged for being searched.
constexpr qsizetype kLongText = 256;

// What was looked at, and what comparing may have cost there.
void chargeSearch(const Call& call, qsizetype units, qsizetype pieceSize) {
  if (units >= kLongText) call.charge(units / 16 * (1 + pieceSize / 64));
}

// Both first and last unit are looked at before the rest is compared: most places fail there.
inline bool standsAt(const char16_t* at, const char16_t* piece, qsizetype size) {
  return at[size - 1] == piece[size - 1] && std::memcmp(at, piece, size_t(size) * sizeof(char16_t)) == 0;
}

}  // namespace

qsizetype characterCount(QStringView text) {
  if (!hasPairs(text)) return text.size();
  qsizetype count = 0;
  for (qsizetype at = 0; at < text.size(); at += characterSize(text, at)) ++count;
  return count;
}

qsizetype forward(QStringView text, qsizetype from, qsizetype count) {
  const qsizetype end = count >= text.size() - from ? text.size() : from + count;
  if (!hasPairs(text.sliced(from, end - from))) return end;
  qsizetype at = from;
  for (; count > 0 && at < text.size(); --count) at += characterSize(text, at);
  return at;
}

qsizetype backward(QStringView text, qsizetype from, qsizetype count) {
  const qsizetype begin = count >= from ? 0 : from - count;
  if (!hasPairs(text.sliced(begin, from - begin))) return begin;
  qsizetype at = from;
  for (; count > 0 && at > 0; --count)
    at -= at > 1 && isLowUnit(text[at - 1].unicode()) && isHighUnit(text[at - 2].unicode()) ? 2 : 1;
  return at;
}

// The next place where the first and the last unit of a piece stand in their distance, or -1. Both are
// looked at for many places at once: a loop of fixed length without a way out, which compilers turn into
// a few wide instructions. `units` has `places` places, and `apart` more units behind.
static qsizetype findEnds(const char16_t* units, qsizetype from, qsizetype places, char16_t first,
                          char16_t last, qsizetype apart) {
  constexpr qsizetype kAtOnce = 16;
  for (; places - from >= kAtOnce; from += kAtOnce) {
    quint16 found = 0;
    for (qsizetype i = from; i < from + kAtOnce; ++i)
      found |= quint16(quint16(units[i] == first) & quint16(units[i + apart] == last));
    if (found) break;
  }
  for (; from < places; ++from)
    if (units[from] == first && units[from + apart] == last) return from;
  return -1;
}

qsizetype findFirst(const Call& call, QStringView text, QStringView piece, qsizetype from) {
  const qsizetype size = piece.size(), places = text.size() - size + 1;
  if (size == 0) return from;
  if (from >= places) return -1;
  const char16_t *const units = text.utf16(), *const wanted = piece.utf16();
  qsizetype at = from - 1;
  do at = findEnds(units, at + 1, places, wanted[0], wanted[size - 1], size - 1);
  while (at >= 0 && size > 2 && !standsAt(units + at, wanted, size));
  chargeSearch(call, (at < 0 ? places - 1 : at) - from, size);
  return at;
}

qsizetype findLast(const Call& call, QStringView text, QStringView piece) {
  const qsizetype size = piece.size(), last = text.size() - size;
  if (size == 0) return text.size();
  const char16_t* const units = text.utf16();
  const char16_t first = piece[0].unicode();
  qsizetype at = last;
  while (at >= 0 && !(units[at] == first && standsAt(units + at, piece.utf16(), size))) --at;
  chargeSearch(call, last - at, size);
  return at < 0 ? -1 : at;
}

}  // namespace lens::formula

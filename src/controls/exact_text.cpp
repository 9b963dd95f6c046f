#include "controls/exact_text.h"

#include <algorithm>

namespace lens {
namespace {

constexpr char16_t kCr = u'\r';
constexpr char16_t kLf = u'\n';
constexpr int kMarkDistance = 512;  // far enough to cost nothing, near enough to be counted at once

// The length of the line end that begins with this unit, 0 where none does.
int lineEndLength(const char16_t* unit, const char16_t* end) {
  if (*unit == kLf) return 1;
  if (*unit != kCr) return 0;
  if (end - unit >= 2 && unit[1] == kLf) return 2;
  if (end - unit >= 3 && unit[1] == kCr && unit[2] == kLf) return 3;
  return 1;
}

char16_t shownUnit(char16_t unit) {
  switch (unit) {
    case 0:
      return u' ';
    case 0x2028:  // line and paragraph separators
    case 0x2029:
    case 0xFDD0:  // frame marks of the document
    case 0xFDD1:
    case 0xFFFC:  // place of an embedded object
      return 0xFFFD;
    default:
      return unit;
  }
}

}  // namespace

void ExactText::setText(const QString& text) {
  text_ = text;
  markFrom(0);
}

void ExactText::replace(int position, int removed, const QString& added) {
  text_.replace(position, removed, added);
  // A line end may begin two characters earlier.
  markFrom(std::max(0, position - 2));
}

void ExactText::stepOver(Place& place) const {
  const auto* begin = reinterpret_cast<const char16_t*>(text_.utf16());
  const int length = lineEndLength(begin + place.position, begin + text_.size());
  place.position += std::max(1, length);
  if (length == 0) return;
  ++place.lineEnds;
  place.shift += length - 1;
}

void ExactText::markFrom(int position) {
  const auto firstBehind =
      std::upper_bound(marks_.begin() + 1, marks_.end(), position,
                       [](int asked, const Place& mark) { return asked < mark.position; });
  marks_.erase(firstBehind, marks_.end());
  Place place = marks_.back();
  const auto* const begin = reinterpret_cast<const char16_t*>(text_.utf16());
  const auto* const end = begin + text_.size();
  const auto* unit = begin + place.position;
  while (unit < end) {
    for (const auto* const next = unit + std::min<qsizetype>(kMarkDistance, end - unit); unit < next;) {
      if (*unit > kCr) {
        ++unit;
        continue;
      }
      const int length = lineEndLength(unit, end);
      unit += std::max(1, length);
      place.lineEnds += length > 0;
      place.shift += std::max(1, length) - 1;
    }
    place.position = int(unit - begin);
    if (unit < end) marks_.push_back(place);
  }
  end_ = place;
  allSingle_ = end_.shift == 0;
}

template <class IsBehind>
ExactText::Place ExactText::lastPlace(IsBehind isBehind) const {
  const auto behind = std::partition_point(marks_.begin() + 1, marks_.end(),
                                           [&](const Place& mark) { return !isBehind(mark); });
  Place place = *std::prev(behind);
  while (place.position < length()) {
    Place next = place;
    stepOver(next);
    if (isBehind(next)) break;
    place = next;
  }
  return place;
}

ExactText::Place ExactText::placeAt(int position) const {
  return lastPlace([position](const Place& place) { return place.position > position; });
}

bool ExactText::isInsideLineEnd(int position) const {
  return !allSingle_ && placeAt(position).position < position;
}

int ExactText::toDocument(int position) const {
  return allSingle_ ? position : placeAt(position).document();
}

int ExactText::fromDocument(int documentPosition) const {
  if (allSingle_) return documentPosition;
  return lastPlace([=](const Place& place) { return place.document() > documentPosition; }).position;
}

int ExactText::lineOf(int position) const {
  return placeAt(position).lineEnds;
}

int ExactText::lineStart(int line) const {
  if (line <= 0) return 0;
  if (line > end_.lineEnds) return length();
  // The first place with so many line ends is one step behind the last with fewer.
  Place place = lastPlace([line](const Place& at) { return at.lineEnds >= line; });
  stepOver(place);
  return place.position;
}

QString ExactText::shown(int position, int length) const {
  QString result;
  result.reserve(length);
  const auto* begin = reinterpret_cast<const char16_t*>(text_.utf16());
  const auto* unit = begin + position;
  const auto* end = unit + length;
  while (unit < end) {
    const int ending = lineEndLength(unit, begin + text_.size());
    result += ending > 0 ? QChar(kLf) : QChar(shownUnit(*unit));
    unit += std::max(1, ending);
  }
  return result;
}

}  // namespace lens

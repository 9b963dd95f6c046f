#include "controls/exact_text.h"

#include <algorithm>

namespace lens {
namespace {

constexpr char16_t kCr = u'\r';
constexpr char16_t kLf = u'\n';

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
  findLineEnds();
}

void ExactText::replace(int position, int removed, const QString& added) {
  text_.replace(position, removed, added);
  findLineEnds();
}

void ExactText::findLineEnds() {
  ends_.clear();
  allSingle_ = true;
  const auto* begin = reinterpret_cast<const char16_t*>(text_.utf16());
  const auto* end = begin + text_.size();
  int shift = 0;
  for (const auto* unit = begin; unit < end;) {
    if (*unit > kCr) {
      ++unit;
      continue;
    }
    const int length = lineEndLength(unit, end);
    if (length > 0) ends_.push_back({int(unit - begin), length, shift});
    if (length > 1) allSingle_ = false;
    shift += std::max(0, length - 1);
    unit += std::max(1, length);
  }
}

std::size_t ExactText::endsBefore(int position) const {
  const auto found =
      std::lower_bound(ends_.begin(), ends_.end(), position,
                       [](const LineEnd& lineEnd, int wanted) { return lineEnd.position < wanted; });
  return std::size_t(found - ends_.begin());
}

bool ExactText::isInsideLineEnd(int position) const {
  const std::size_t before = endsBefore(position);
  return before > 0 && position < ends_[before - 1].position + ends_[before - 1].length;
}

int ExactText::toDocument(int position) const {
  if (allSingle_) return position;
  const std::size_t before = endsBefore(position);
  if (before == 0) return position;
  const LineEnd& last = ends_[before - 1];
  if (position < last.position + last.length) return last.position - last.shift;
  return position - last.shift - (last.length - 1);
}

int ExactText::fromDocument(int documentPosition) const {
  if (allSingle_) return documentPosition;
  const auto found = std::lower_bound(
      ends_.begin(), ends_.end(), documentPosition,
      [](const LineEnd& lineEnd, int wanted) { return lineEnd.position - lineEnd.shift < wanted; });
  if (found == ends_.begin()) return documentPosition;
  const LineEnd& last = *std::prev(found);
  return documentPosition + last.shift + last.length - 1;
}

int ExactText::lineOf(int position) const {
  const std::size_t before = endsBefore(position);
  return int(before) - (isInsideLineEnd(position) ? 1 : 0);
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

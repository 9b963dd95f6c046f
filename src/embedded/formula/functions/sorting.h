// Sorting lists: by the order of their type, or by what a formula says of two elements.
#pragma once

#include <utility>
#include <vector>

#include "embedded/formula/collation.h"
#include "embedded/formula/times.h"
#include "embedded/formula/value.h"

namespace lens::formula {

struct SortOrder {
  bool descending = false;
  bool custom = false;
  CollationRules rules;
};
// [ASCENDING], [CASEINSENSITIVE] ...; of two that contradict each other the last one counts. Raises
// fault::WrongKeyword for a word that is none of these.
SortOrder readSortOrder(const Value& keywords);

// By the order of the list's type; equal elements stay as they stood.
Value sorted(const Value& list, const SortOrder& order, const LocalZone& zone);

// The elements at those places.
Value elementsAt(const Value& list, const std::vector<quint32>& places);

// A stable merge sort for a comparison that may contradict itself: whatever it answers, all places come
// out once each. after(a, b) tells whether the element at place a has to go behind the one at b.
template <typename After>
std::vector<quint32> placesInOrder(qsizetype count, After&& after) {
  const auto size = std::size_t(count);
  std::vector<quint32> places(size), merged(size);
  for (std::size_t i = 0; i < size; ++i) places[i] = quint32(i);
  for (std::size_t width = 1; width < size; width *= 2) {
    for (std::size_t from = 0; from < size; from += 2 * width) {
      const std::size_t middle = std::min(from + width, size), until = std::min(from + 2 * width, size);
      std::size_t left = from, right = middle;
      for (std::size_t to = from; to < until; ++to) {
        const bool takeRight =
            right < until && (left == middle || after(qsizetype(places[left]), qsizetype(places[right])));
        merged[to] = places[takeRight ? right++ : left++];
      }
    }
    std::swap(places, merged);
  }
  return places;
}

template <typename After>
Value sortedBy(const Value& list, After&& after) {
  return elementsAt(list, placesInOrder(list.count(), std::forward<After>(after)));
}

}  // namespace lens::formula

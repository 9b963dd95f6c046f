#include "embedded/formula/functions/sorting.h"

#include <algorithm>
#include <numeric>

namespace lens::formula {
namespace {

// Sorts places by a key for each; the keys are computed once.
template <typename Key, typename Before>
std::vector<quint32> placesByKey(const std::vector<Key>& keys, bool descending, Before&& before) {
  std::vector<quint32> places(keys.size());
  std::iota(places.begin(), places.end(), 0U);
  std::stable_sort(places.begin(), places.end(), [&](quint32 a, quint32 b) {
    return descending ? before(keys[b], keys[a]) : before(keys[a], keys[b]);
  });
  return places;
}

// Numbers need no places: equal ones cannot be told apart.
Value sortedNumbers(const Value& list, bool descending) {
  std::vector<double> numbers(std::size_t(list.count()));
  for (std::size_t i = 0; i < numbers.size(); ++i) numbers[i] = list.cells()[i].number;
  const auto before = [](double a, double b) { return a < b || (b != b && a == a); };
  if (descending)
    std::sort(numbers.begin(), numbers.end(), [&](double a, double b) { return before(b, a); });
  else
    std::sort(numbers.begin(), numbers.end(), before);
  ListBuilder result(Type::Number, list.count());
  for (const double number : numbers) result.addNumber(number);
  return result.take();
}

Value sortedTimes(const Value& list, bool descending, const LocalZone& zone) {
  const bool ranges = list.type() == Type::TimeRange;
  std::vector<std::pair<qint64, qint64>> keys(std::size_t(list.count()));
  for (std::size_t i = 0; i < keys.size(); ++i) {
    const TimePair pair = ranges ? list.range(qsizetype(i)) : TimePair{list.time(qsizetype(i)), {}};
    keys[i] = {instantOf(pair.from, zone), ranges ? instantOf(pair.to, zone) : 0};
  }
  return elementsAt(list, placesByKey(keys, descending, std::less<>()));
}

// Most texts differ in their first letters, which stand ready as a number.
Value sortedTexts(const Value& list, const SortOrder& order) {
  struct Entry {
    quint64 prefix;
    quint32 place;
  };
  std::vector<Entry> entries(std::size_t(list.count()));
  for (std::size_t i = 0; i < entries.size(); ++i)
    entries[i] = {collationPrefix(list.text(qsizetype(i)), order.rules), quint32(i)};
  std::stable_sort(entries.begin(), entries.end(), [&](const Entry& a, const Entry& b) {
    const Entry &first = order.descending ? b : a, &second = order.descending ? a : b;
    if (first.prefix != second.prefix) return first.prefix < second.prefix;
    return compareTexts(list.text(first.place), list.text(second.place), order.rules) < 0;
  });
  std::vector<quint32> places(entries.size());
  std::transform(entries.begin(), entries.end(), places.begin(),
                 [](const Entry& entry) { return entry.place; });
  return elementsAt(list, places);
}

}  // namespace

SortOrder readSortOrder(const Value& keywords) {
  SortOrder order;
  for (qsizetype i = 0; i < keywords.count(); ++i) {
    const QStringView word = keywords.text(i);
    if (word == u"ASCENDING" || word == u"DESCENDING")
      order.descending = word == u"DESCENDING";
    else if (word == u"CASESENSITIVE" || word == u"CASEINSENSITIVE")
      order.rules.caseSensitive = word == u"CASESENSITIVE";
    else if (word == u"ACCENTSENSITIVE" || word == u"ACCENTINSENSITIVE")
      order.rules.accentSensitive = word == u"ACCENTSENSITIVE";
    else if (word == u"PITCHSENSITIVE" || word == u"PITCHINSENSITIVE")
      order.rules.pitchSensitive = word == u"PITCHSENSITIVE";
    else if (word == u"CUSTOMSORT")
      order.custom = true;
    else
      throw Fault{fault::WrongKeyword};
  }
  return order;
}

Value elementsAt(const Value& list, const std::vector<quint32>& places) {
  ListBuilder result(list.type(), qsizetype(places.size()));
  for (const quint32 place : places) result.addElement(list, qsizetype(place));
  return result.take();
}

Value sorted(const Value& list, const SortOrder& order, const LocalZone& zone) {
  if (list.count() < 2) return list;
  switch (list.type()) {
    case Type::Number:
      return sortedNumbers(list, order.descending);
    case Type::Time:
    case Type::TimeRange:
      return sortedTimes(list, order.descending, zone);
    case Type::Text:
    case Type::Keyword:
      return sortedTexts(list, order);
    default:
      return list;
  }
}

}  // namespace lens::formula

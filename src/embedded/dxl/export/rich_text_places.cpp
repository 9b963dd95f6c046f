#include "embedded/dxl/export/rich_text_places.h"

#include <algorithm>
#include <tuple>

#include "embedded/dxl/export/kept_elements.h"
#include "embedded/dxl/rich_text_elements.h"
#include "embedded/format/stored_lists.h"

namespace lens {

namespace {

// What stands around others begins before them, and what has no records of its own before all.
bool standsBefore(const KeptPlace& a, const KeptPlace& b) {
  const auto key = [](const KeptPlace& place) {
    return std::tuple(place.begin, place.end > place.begin, -place.end);
  };
  return key(a) < key(b);
}

}  // namespace

QHash<qsizetype, qsizetype> keptGroups(const Note& note, const LargeValues& large) {
  QHash<qsizetype, qsizetype> groups;
  for (qsizetype place = 0; place + 1 < note.items.size(); ++place) {
    if (note.items[place].name != kPlacesItem || note.items[place + 1].type() != itemtype::RichText) continue;
    const Item numbers = large.whole(note, place);
    if (numbers.type() != itemtype::NumberRange) continue;
    const qsizetype count = StoredRange(numbers.data()).singles() / 2;
    bool kept = count > 0 && count <= place;
    for (qsizetype i = place - count; kept && i < place; ++i)
      kept = note.items[i].name.startsWith(kKeptPrefix) && note.items[i].name != kPlacesItem;
    if (kept) groups.insert(place - count, count + 1);
  }
  return groups;
}

bool readKeptPlaces(const QVector<Item>& items, QVector<KeptPlace>& places) {
  const Item& numbers = items.last();
  if (numbers.name != kPlacesItem || numbers.flags != 0 || numbers.type() != itemtype::NumberRange)
    return false;
  const StoredRange range(numbers.data());
  const qsizetype kept = items.size() - 1;
  if (!range.isExact() || range.singles() != 2 * kept || range.entries() != range.singles()) return false;
  for (qsizetype i = 0; i < kept; ++i) {
    const double begin = range.number(2 * i), end = range.number(2 * i + 1);
    if (!(begin >= 0 && begin <= end && end < 0x7FFFFFFF)) return false;
    KeptPlace place{qsizetype(begin), qsizetype(end), items[i].name.mid(kKeptPrefix.size()), {}};
    place.xml = keptElement(items[i], place.element);
    if (place.xml.isEmpty()) return false;
    places.push_back(place);
  }
  std::stable_sort(places.begin(), places.end(), standsBefore);
  return true;
}

}  // namespace lens

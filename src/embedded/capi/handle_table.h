// Handles of one kind. A handle holds its kind, its place and how often the place was used before,
// so a handle that is stale or of another kind is found out and never leads to something else.
#pragma once

#include <QtGlobal>
#include <deque>
#include <memory>
#include <utility>
#include <vector>

namespace lens {

template <class Thing>
class HandleTable {
 public:
  // The kind is 1 to 15.
  explicit HandleTable(quint32 kind) : kind_(kind << 28) {}

  // 0 when all 65,536 places are taken.
  quint32 add(std::unique_ptr<Thing> thing) {
    size_t place = 0;
    if (!free_.empty()) {
      // The one that has been free for longest: a stale handle to it is told apart for longest too.
      place = free_.front();
      free_.pop_front();
    } else if (rows_.size() < 0x10000) {
      place = rows_.size();
      rows_.emplace_back();
    } else {
      return 0;
    }
    rows_[place].thing = std::move(thing);
    return handleOf(place);
  }

  Thing* find(quint32 handle) const {
    const size_t place = handle & 0xFFFF;
    if (place >= rows_.size() || handleOf(place) != handle) return nullptr;
    return rows_[place].thing.get();
  }

  std::unique_ptr<Thing> take(quint32 handle) {
    if (!find(handle)) return nullptr;
    Row& row = rows_[handle & 0xFFFF];
    row.generation = (row.generation + 1) & 0xFFF;
    free_.push_back(handle & 0xFFFF);
    return std::move(row.thing);
  }

  std::vector<quint32> handles() const {
    std::vector<quint32> all;
    for (size_t place = 0; place < rows_.size(); ++place)
      if (rows_[place].thing) all.push_back(handleOf(place));
    return all;
  }

 private:
  struct Row {
    std::unique_ptr<Thing> thing;
    quint32 generation = 0;
  };
  quint32 handleOf(size_t place) const { return kind_ | rows_[place].generation << 16 | quint32(place); }

  quint32 kind_;
  std::vector<Row> rows_;
  std::deque<size_t> free_;
};

}  // namespace lens

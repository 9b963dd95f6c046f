#include "controls/text_looks.h"

#include <utility>
#include <vector>

namespace lens {

void TextLooks::clear() {
  runs_ = {{0, TextLook()}};
}

void TextLooks::split(int position) {
  const auto after = runs_.upper_bound(position);
  const auto run = std::prev(after);
  if (run->first != position) runs_.emplace_hint(after, position, run->second);
}

// Runs that have come to look alike become one.
void TextLooks::join(int from, int to) {
  auto run = runs_.find(from);
  if (run != runs_.begin()) --run;
  for (auto next = std::next(run); next != runs_.end() && next->first <= to; next = std::next(run)) {
    if (next->second == run->second)
      runs_.erase(next);
    else
      run = next;
  }
}

void TextLooks::replace(int position, int removed, int added) {
  if (removed > 0) {
    split(position + removed);
    runs_.erase(runs_.upper_bound(position), runs_.find(position + removed));
  }
  const int shift = added - removed;
  std::vector<std::pair<int, TextLook>> moved;
  // A run that begins where the new characters come in begins behind them, unless it is the first.
  const auto firstMoved =
      removed > 0 ? runs_.upper_bound(position) : runs_.lower_bound(std::max(1, position));
  for (auto run = firstMoved; run != runs_.end(); ++run) moved.emplace_back(run->first + shift, run->second);
  runs_.erase(firstMoved, runs_.end());
  for (auto& run : moved) runs_.insert_or_assign(run.first, std::move(run.second));
}

}  // namespace lens

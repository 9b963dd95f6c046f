// Colours and fonts of the parts of a text, kept beside the text.
#pragma once

#include <QString>
#include <map>
#include <optional>

namespace lens {

// What is empty is inherited from the box.
struct TextLook {
  std::optional<quint32> colour;  // 0x00BBGGRR
  std::optional<QString> fontName;
  std::optional<int> fontSize;  // points
  bool bold = false;
  bool italic = false;
  bool underline = false;
  bool strikeThrough = false;

  bool operator==(const TextLook&) const = default;
};

// Runs of one look each. Positions are those of the text; what was never changed has the plain look.
class TextLooks {
 public:
  TextLooks() { clear(); }
  void clear();
  // The text changed: what was added looks like the character before it.
  void replace(int position, int removed, int added);

  const TextLook& at(int position) const { return std::prev(runs_.upper_bound(position))->second; }
  // Changes each run between the two positions by the function.
  template <class Change>
  void change(int from, int to, Change change) {
    if (from >= to) return;
    split(from);
    split(to);
    for (auto run = runs_.find(from); run != runs_.end() && run->first < to; ++run) change(run->second);
    join(from, to);
  }
  // Calls visit(from, to, look) for each run between the two positions.
  template <class Visit>
  void forEach(int from, int to, Visit visit) const {
    for (auto run = std::prev(runs_.upper_bound(from)); run != runs_.end() && run->first < to;) {
      const auto next = std::next(run);
      const int end = next == runs_.end() ? to : std::min(to, next->first);
      visit(std::max(from, run->first), end, run->second);
      run = next;
    }
  }

 private:
  void split(int position);
  void join(int from, int to);

  std::map<int, TextLook> runs_;  // by first position; one begins at 0
};

}  // namespace lens

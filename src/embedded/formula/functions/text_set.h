// The texts of a list, found by hashing: looking for many texts in a long list stays in proportion to
// both. Equal means equal characters.
#pragma once

#include <QHashFunctions>
#include <QStringView>
#include <vector>

namespace lens::formula {

class TextSet {
 public:
  explicit TextSet(qsizetype expected) {
    std::size_t slots = 16;
    while (slots < std::size_t(expected) * 2) slots *= 2;
    slots_.resize(slots);
    texts_.reserve(std::size_t(expected));
  }

  bool contains(QStringView text) const { return slots_[slotOf(text, hashOf(text))].place != 0; }
  // False when it was there already. The text must outlive the set; no more than expected go in.
  bool insert(QStringView text) {
    const quint32 hash = hashOf(text);
    Slot& slot = slots_[slotOf(text, hash)];
    if (slot.place != 0) return false;
    texts_.push_back(text);
    slot = {hash, quint32(texts_.size())};
    return true;
  }

 private:
  struct Slot {
    quint32 hash = 0;
    quint32 place = 0;  // in the texts, counted from 1; 0: free
  };
  static quint32 hashOf(QStringView text) { return quint32(qHash(text)); }
  std::size_t slotOf(QStringView text, quint32 hash) const {
    const std::size_t mask = slots_.size() - 1;
    std::size_t at = hash & mask;
    while (slots_[at].place != 0 && (slots_[at].hash != hash || texts_[slots_[at].place - 1] != text))
      at = (at + 1) & mask;
    return at;
  }
  std::vector<Slot> slots_;
  std::vector<QStringView> texts_;
};

}  // namespace lens::formula

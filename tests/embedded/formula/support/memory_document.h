// A document in memory: items in an open hash by their folded names, and a record of what was written.
// Lookups cost one comparison, so that benchmarks measure the formula and not the document.
#pragma once

#include <algorithm>
#include <vector>

#include "embedded/formula/evaluation_context.h"

namespace lens::formula {

class MemoryDocument : public Document {
 public:
  // Sets an item without recording a write: what the document held before the formula.
  void put(const QString& name, const Value& value) { entryOf(Name(name)).value = value; }
  void putRichText(const QString& name, const QString& text) {
    Entry& entry = entryOf(Name(name));
    entry.value = Value::text(QStringView());
    entry.richText = text;
  }

  struct Write {
    QString name;
    Value value;  // Unavailable: the item was removed
  };
  const std::vector<Write>& writes() const { return writes_; }

  bool item(const Name& name, Value& value) const override {
    const Entry* entry = find(name);
    if (!entry) return false;
    value = entry->value;
    return true;
  }
  QStringList itemNames() const override {
    QStringList names;
    for (const Entry& entry : entries_) names.append(entry.name.text());
    return names;
  }
  void setItem(const QString& name, const Value& value) override {
    writes_.push_back({name, value});
    put(name, value);
  }
  void removeItem(const QString& name) override {
    writes_.push_back({name, Value::unavailable()});
    const Name wanted(name);
    std::erase_if(entries_, [&](const Entry& entry) { return entry.name == wanted; });
    index(slots_.size());
  }
  QString richText(const Name& name) const override {
    const Entry* entry = find(name);
    return entry ? entry->richText : QString();
  }

 private:
  struct Entry {
    Name name;
    Value value;
    QString richText;
  };
  static constexpr int kFree = -1;

  const Entry* find(const Name& name) const {
    if (slots_.empty()) return nullptr;
    const size_t mask = slots_.size() - 1;
    for (size_t i = name.hash() & mask; slots_[i] != kFree; i = (i + 1) & mask) {
      const Entry& entry = entries_[size_t(slots_[i])];
      if (entry.name == name) return &entry;
    }
    return nullptr;
  }

  Entry& entryOf(const Name& name) {
    if (const Entry* entry = find(name)) return const_cast<Entry&>(*entry);
    entries_.push_back({name, {}, {}});
    // At most half full, so that searches for missing names end soon.
    index(std::max<size_t>(slots_.size(), 16));
    return entries_.back();
  }

  void index(size_t size) {
    while (size < 2 * entries_.size()) size *= 2;
    slots_.assign(size, kFree);
    for (size_t e = 0; e < entries_.size(); ++e) {
      size_t i = entries_[e].name.hash() & (size - 1);
      while (slots_[i] != kFree) i = (i + 1) & (size - 1);
      slots_[i] = int(e);
    }
  }

  std::vector<Entry> entries_;
  std::vector<int> slots_;
  std::vector<Write> writes_;
};

}  // namespace lens::formula

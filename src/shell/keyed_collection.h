// A collection whose elements have a place (from 1) and a key. Keys match without regard to case.
#pragma once

#include <QString>
#include <QVector>
#include <utility>

#include "notes/runtime_error.h"

namespace lens {

template <class T>
class KeyedCollection {
 public:
  int count() const { return int(elements_.size()); }

  // Raises 457 when the key is taken.
  void add(T element, const QString& key) {
    if (indexOf(key) >= 0) throw RuntimeError(err::KeyAlreadyInCollection);
    elements_.push_back({key, std::move(element)});
  }
  // Raises 9 for a place outside.
  const T& item(int place) const { return elements_[checked(place)].second; }
  // Raises 5 for an unknown key.
  const T& item(const QString& key) const {
    const int index = indexOf(key);
    if (index < 0) throw RuntimeError(err::InvalidCall);
    return elements_[index].second;
  }
  bool contains(const QString& key) const { return indexOf(key) >= 0; }
  // Raises 9 for a place outside; the elements behind move up.
  void remove(int place) { elements_.remove(checked(place)); }
  void clear() { elements_.clear(); }

 private:
  int indexOf(const QString& key) const {
    for (int i = 0; i < elements_.size(); ++i)
      if (elements_[i].first.compare(key, Qt::CaseInsensitive) == 0) return i;
    return -1;
  }
  int checked(int place) const {
    if (place < 1 || place > count()) throw RuntimeError(err::SubscriptOutOfRange);
    return place - 1;
  }

  QVector<std::pair<QString, T>> elements_;
};

}  // namespace lens

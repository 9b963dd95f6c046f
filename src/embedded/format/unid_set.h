// A set of UNIDs, sixteen bytes each: a selection may hold very many.
#pragma once

#include <QByteArray>
#include <QSet>
#include <cstring>

#include "embedded/format/note.h"

namespace lens {

class UnidSet {
 public:
  void insert(const Unid& unid) { keys_.insert(Key(unid)); }
  bool contains(const Unid& unid) const { return keys_.contains(Key(unid)); }
  bool isEmpty() const { return keys_.isEmpty(); }

 private:
  struct Key {
    explicit Key(const Unid& unid) { std::memcpy(halves, unid.bytes().constData(), sizeof halves); }
    bool operator==(const Key&) const = default;
    friend size_t qHash(const Key& key, size_t seed) {
      return qHashMulti(seed, key.halves[0], key.halves[1]);
    }
    quint64 halves[2];
  };
  QSet<Key> keys_;
};

}  // namespace lens

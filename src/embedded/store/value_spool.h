// Values of a note that is being read from a file, put aside on the disk: a document may have a thousand
// items of rich text, of which only one at a time needs to be in memory.
//
// An item whose value is aside holds a placeholder in its place, which nobody can make up. It keeps the type.
#pragma once

#include <QTemporaryFile>
#include <functional>
#include <memory>

#include "embedded/format/note.h"

namespace lens {

class ValueSpool {
 public:
  // Looks at what was added to the note since the last call. Only where its values together become large,
  // they go aside; attached files' values never do. Raises DeviceFault when the disk does not take them.
  void take(Note& note);
  // Forgets the note; what is aside goes.
  void clear();

  bool isEmpty() const { return values_.isEmpty(); }
  // Bytes of the value, wherever it is.
  qint64 sizeOf(const Item& item) const;
  // Gives the value to the sink, in pieces where it is aside.
  void read(const Item& item, const std::function<void(QByteArrayView)>& sink) const;

 private:
  struct Value {
    qint64 at, size;
  };
  // Null for a value that is in memory.
  const Value* aside(const Item& item) const;
  void putAside(Item& item);

  std::unique_ptr<QTemporaryFile> file_;
  QByteArray mark_;
  QVector<Value> values_;
  qsizetype seen_ = 0, done_ = 0;  // items that were counted, and that were put aside or are small
  qint64 held_ = 0;                // bytes of those that were counted and are in memory
};

}  // namespace lens

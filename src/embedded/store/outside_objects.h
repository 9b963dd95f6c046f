// Objects whose bytes lie in another file and are read there when they are asked for.
#pragma once

#include <QByteArray>
#include <QIODevice>

namespace lens {

class OutsideObjects {
 public:
  virtual ~OutsideObjects() = default;
  // -1 where there is none of that number.
  virtual qint64 size(quint32 objectId) = 0;
  // Writes all bytes to the target; raises where they cannot be read or are not the right ones.
  virtual void read(quint32 objectId, QIODevice& target) = 0;
};

}  // namespace lens

// How the parts of a note's header stand in the tables.
#pragma once

#include "embedded/format/note.h"

namespace lens {

inline constexpr int kStateLive = 0;
inline constexpr int kStateStub = 1;

inline qint64 stored(const TimeDate& time) {
  return qint64(packTime(time));
}
inline TimeDate fromStored(qint64 number) {
  return unpackTime(quint64(number));
}
inline QByteArray parentBytes(const Unid& parent) {
  return parent.isNull() ? QByteArray() : parent.bytes();
}

}  // namespace lens

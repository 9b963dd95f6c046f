// How the parts of a note's header stand in the tables.
#pragma once

#include "embedded/format/note.h"

namespace lens {

inline constexpr int kStateLive = 0;
inline constexpr int kStateStub = 1;

inline qint64 stored(const TimeDate& time) {
  return qint64(quint64(time.innards[1]) << 32 | time.innards[0]);
}
inline TimeDate fromStored(qint64 number) {
  return {{quint32(quint64(number)), quint32(quint64(number) >> 32)}};
}
inline QByteArray parentBytes(const Unid& parent) {
  return parent.isNull() ? QByteArray() : parent.bytes();
}

}  // namespace lens

// How the parts of a note's header stand in the tables.
#pragma once

#include <limits>

#include "embedded/format/note.h"

namespace lens {

inline constexpr int kStateLive = 0;
inline constexpr int kStateStub = 1;

// Note IDs as they are given out. The top bit of an ID marks deleted notes.
inline constexpr NoteId kFirstId(0x000008FA), kLastId(0x7FFFFFFA);
inline constexpr quint32 kIdStep = 4;

inline qint64 stored(const TimeDate& time) {
  return qint64(packTime(time));
}
inline TimeDate fromStored(qint64 number) {
  return unpackTime(quint64(number));
}
// The highest one stays what it is: no change may make a note seem older.
inline quint32 nextSequence(quint32 sequence) {
  return sequence == std::numeric_limits<quint32>::max() ? sequence : sequence + 1;
}
inline QByteArray parentBytes(const Unid& parent) {
  return parent.isNull() ? QByteArray() : parent.bytes();
}

}  // namespace lens

// Little-endian numbers at places of some bytes, and the checksum of the format's blocks. The maker has its
// own, so that a mistake of the reader cannot be made twice.
#pragma once

#include <QByteArray>
#include <cstring>

#include "notes/capi.h"

namespace lens::made {

inline void putBytes(QByteArray& bytes, qsizetype at, QByteArrayView what) {
  Q_ASSERT(at >= 0 && at + what.size() <= bytes.size());
  std::memcpy(bytes.data() + at, what.data(), size_t(what.size()));
}
inline void put8(QByteArray& bytes, qsizetype at, quint8 number) {
  bytes[at] = char(number);
}
inline void put16(QByteArray& bytes, qsizetype at, quint32 number) {
  put8(bytes, at, quint8(number));
  put8(bytes, at + 1, quint8(number >> 8));
}
inline void put32(QByteArray& bytes, qsizetype at, quint32 number) {
  put16(bytes, at, number);
  put16(bytes, at + 2, number >> 16);
}
inline void putTime(QByteArray& bytes, qsizetype at, const TimeDate& time) {
  put32(bytes, at, time.innards[0]);
  put32(bytes, at + 4, time.innards[1]);
}

inline quint8 get8(const QByteArray& bytes, qsizetype at) {
  return quint8(bytes[at]);
}
inline quint16 get16(const QByteArray& bytes, qsizetype at) {
  return quint16(get8(bytes, at) | get8(bytes, at + 1) << 8);
}
inline quint32 get32(const QByteArray& bytes, qsizetype at) {
  return get16(bytes, at) | quint32(get16(bytes, at + 2)) << 16;
}

inline void add8(QByteArray& bytes, quint8 number) {
  bytes.append(char(number));
}
inline void add16(QByteArray& bytes, quint32 number) {
  add8(bytes, quint8(number));
  add8(bytes, quint8(number >> 8));
}
inline void add32(QByteArray& bytes, quint32 number) {
  add16(bytes, number);
  add16(bytes, number >> 16);
}
inline void addTime(QByteArray& bytes, const TimeDate& time) {
  add32(bytes, time.innards[0]);
  add32(bytes, time.innards[1]);
}

inline QByteArray zeros(qsizetype count) {
  return QByteArray(count, '\0');
}
inline qint64 roundedUp(qint64 number, qint64 unit) {
  return (number + unit - 1) / unit * unit;
}

// The words of the bytes, combined by exclusive or; a short last word is filled up with zeros.
inline quint32 wordSum(QByteArrayView bytes) {
  quint32 sum = 0;
  for (qsizetype i = 0; i < bytes.size(); ++i) sum ^= quint32(quint8(bytes[i])) << (i % 4 * 8);
  return sum;
}

}  // namespace lens::made

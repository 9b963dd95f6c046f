// Numbers at places in bytes that nobody vouches for. Everything is little-endian and may stand at odd
// places.
#pragma once

#include <QByteArray>
#include <QtEndian>

#include "embedded/format/timedate.h"
#include "embedded/format/unid.h"

namespace lens {

// What does not lie inside is zero, or empty for a part. Places are 64 bits wide, so that no sum wraps
// around.
class RecordBytes {
 public:
  RecordBytes() = default;
  explicit RecordBytes(QByteArrayView bytes) : bytes_(bytes) {}

  qint64 size() const { return bytes_.size(); }
  bool has(qint64 at, qint64 count) const {
    return at >= 0 && count >= 0 && at <= size() && count <= size() - at;
  }
  quint8 u8(qint64 at) const { return has(at, 1) ? quint8(bytes_[at]) : 0; }
  quint16 u16(qint64 at) const { return number<quint16>(at); }
  quint32 u32(qint64 at) const { return number<quint32>(at); }
  TimeDate time(qint64 at) const { return {{u32(at), u32(at + 4)}}; }
  Unid unid(qint64 at) const { return has(at, 16) ? Unid::fromBytes(bytes_.sliced(at, 16)) : Unid(); }
  QByteArrayView part(qint64 at, qint64 count) const {
    return has(at, count) ? bytes_.sliced(at, count) : QByteArrayView();
  }
  // A structure begins with two bytes that name it.
  bool isSigned(quint16 signature) const { return has(0, 2) && u16(0) == signature; }

 private:
  template <class Number>
  Number number(qint64 at) const {
    return has(at, sizeof(Number)) ? qFromLittleEndian<Number>(bytes_.data() + at) : 0;
  }
  QByteArrayView bytes_;
};

namespace nsfsignature {
inline constexpr quint16 Header = 0x001A, Superblock = 0x000E, Descriptors = 0x0001, IdBucket = 0x2006,
                         SummaryBucket = 0x4202, Note = 0x0004, NonSummary = 0x0010, Object = 0x001B,
                         OldObject = 0x0007;
}  // namespace nsfsignature

// A position counts units of 256 bytes.
inline qint64 bytePosition(quint32 position) {
  return qint64(position) * 256;
}

// The file's checksum: its words put together by "exclusive or", the last one filled up with zeros.
inline quint32 xorOfWords(QByteArrayView bytes) {
  quint32 sum = 0;
  qsizetype at = 0;
  for (; at + 4 <= bytes.size(); at += 4) sum ^= qFromLittleEndian<quint32>(bytes.data() + at);
  for (int shift = 0; at < bytes.size(); ++at, shift += 8) sum ^= quint32(quint8(bytes[at])) << shift;
  return sum;
}

}  // namespace lens

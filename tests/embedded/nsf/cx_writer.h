// Writes streams in the compression of a real database's blocks, token by token.
#pragma once

#include <QByteArray>

namespace lens {

// Bits from the lowest of each byte on, as the stream has them; the mode comes first.
class CxWriter {
 public:
  CxWriter() { bits(4, 3); }
  CxWriter& bits(quint32 value, int count) {
    for (int i = 0; i < count; ++i) {
      if (used_ == 0) bytes_.append('\0');
      if (value >> i & 1) bytes_.back() = char(bytes_.back() | 1 << used_);
      used_ = (used_ + 1) % 8;
    }
    return *this;
  }
  CxWriter& literal(char byte) { return bits(0, 1).bits(quint8(byte), 8); }
  // As many zeros as the number has bits less one, a one, then the bits below the highest.
  CxWriter& run(quint32 value) {
    int zeros = 0;
    while ((value + 1) >> (zeros + 1)) ++zeros;
    return bits(0, zeros).bits(1, 1).bits(value + 1 - (quint32(1) << zeros), zeros);
  }
  CxWriter& copy(quint32 length, quint32 offset) {
    bits(1, 1).run(length - 2);
    if (length > 2) run(offset / 256);
    return bits(offset % 256, 8);
  }
  const QByteArray& bytes() const { return bytes_; }

 private:
  QByteArray bytes_;
  int used_ = 0;
};

inline QByteArray cxLiterals(const QByteArray& bytes) {
  CxWriter writer;
  for (const char byte : bytes) writer.literal(byte);
  return writer.bytes();
}

}  // namespace lens

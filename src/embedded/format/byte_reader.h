// Little-endian numbers in bytes: reading them where the bytes may end anywhere, and appending them.
#pragma once

#include <QByteArray>
#include <QStringView>

#include "embedded/format/timedate.h"

namespace lens {

class ByteReader {
 public:
  explicit ByteReader(QByteArrayView bytes) : bytes_(bytes) {}
  bool has(qsizetype count) const { return count >= 0 && bytes_.size() - at_ >= count; }
  qsizetype position() const { return at_; }
  qsizetype left() const { return bytes_.size() - at_; }
  quint8 u8();
  quint16 u16();
  quint32 u32();
  double f64();
  TimeDate time();
  QByteArrayView take(qsizetype count);  // all that is left when there is less
  void skip(qsizetype count);
  // True after a read went past the end; such a read gave zeros.
  bool failed() const { return failed_; }

 private:
  bool want(qsizetype count);
  QByteArrayView bytes_;
  qsizetype at_ = 0;
  bool failed_ = false;
};
// What counts or measures in 16 bits has no form beyond: raises 6 with what there is too much of.
void requireWordCount(qsizetype count, QStringView what);

void appendU16(QByteArray& bytes, quint16 number);
void appendU32(QByteArray& bytes, quint32 number);
void appendF64(QByteArray& bytes, double number);

}  // namespace lens

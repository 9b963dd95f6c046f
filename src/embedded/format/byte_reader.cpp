#include "embedded/format/byte_reader.h"

#include <QtEndian>
#include <bit>
#include <limits>

#include "notes/literals.h"
#include "notes/runtime_error.h"

namespace lens {

bool ByteReader::want(qsizetype count) {
  if (has(count)) return true;
  failed_ = true;
  at_ = bytes_.size();
  return false;
}

quint8 ByteReader::u8() {
  if (!want(1)) return 0;
  return quint8(bytes_[at_++]);
}

quint16 ByteReader::u16() {
  if (!want(2)) return 0;
  at_ += 2;
  return qFromLittleEndian<quint16>(bytes_.data() + at_ - 2);
}

quint32 ByteReader::u32() {
  if (!want(4)) return 0;
  at_ += 4;
  return qFromLittleEndian<quint32>(bytes_.data() + at_ - 4);
}

double ByteReader::f64() {
  if (!want(8)) return 0;
  at_ += 8;
  return std::bit_cast<double>(qFromLittleEndian<quint64>(bytes_.data() + at_ - 8));
}

TimeDate ByteReader::time() {
  if (!want(8)) return {};
  at_ += 8;
  return readTimeDate(bytes_.data() + at_ - 8);
}

QByteArrayView ByteReader::take(qsizetype count) {
  if (!has(count)) {
    failed_ = true;
    count = left();
  }
  at_ += count;
  return bytes_.sliced(at_ - count, count);
}

void ByteReader::skip(qsizetype count) {
  take(count);
}

void requireWordCount(qsizetype count, QStringView what) {
  constexpr qsizetype kMaxWord = std::numeric_limits<quint16>::max();
  if (count > kMaxWord)
    throw RuntimeError(err::Overflow, u"%1: %2, the limit is %3"_s.arg(what).arg(count).arg(kMaxWord));
}

void appendU16(QByteArray& bytes, quint16 number) {
  char raw[2];
  qToLittleEndian(number, raw);
  bytes.append(raw, sizeof raw);
}

void appendU32(QByteArray& bytes, quint32 number) {
  char raw[4];
  qToLittleEndian(number, raw);
  bytes.append(raw, sizeof raw);
}

void appendF64(QByteArray& bytes, double number) {
  char raw[8];
  qToLittleEndian(std::bit_cast<quint64>(number), raw);
  bytes.append(raw, sizeof raw);
}

}  // namespace lens

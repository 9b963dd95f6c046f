#include "embedded/nsf/cx_stream.h"

namespace lens {
namespace {

constexpr quint32 kMode = 4;
constexpr int kModeBits = 3;
// Beyond this a run is longer than any block.
constexpr int kMostZeros = 24;

class CxBits {
 public:
  explicit CxBits(QByteArrayView bytes) : bytes_(bytes) {}

  bool failed() const { return failed_; }
  qsizetype unread() const { return bytes_.size() - at_; }

  quint32 take(int count) {
    while (held_ < count) {
      if (at_ >= bytes_.size()) {
        failed_ = true;
        return 0;
      }
      window_ |= quint64(quint8(bytes_[at_++])) << held_;
      held_ += 8;
    }
    const quint32 bits = quint32(window_ & ((quint64(1) << count) - 1));
    window_ >>= count;
    held_ -= count;
    return bits;
  }

  // So many zeros before a one, then as many bits more.
  quint32 run() {
    int zeros = 0;
    while (!failed_ && take(1) == 0)
      if (++zeros > kMostZeros) failed_ = true;
    return failed_ ? 0 : (quint32(1) << zeros) - 1 + take(zeros);
  }

 private:
  QByteArrayView bytes_;
  qsizetype at_ = 0;
  quint64 window_ = 0;
  int held_ = 0;
  bool failed_ = false;
};

CxResult inflateInto(CxBits& bits, qsizetype wanted, QByteArray& out) {
  while (out.size() < wanted) {
    if (bits.take(1) == 0) {
      const char byte = char(bits.take(8));
      if (bits.failed()) return CxResult::CutShort;
      out.append(byte);
      continue;
    }
    const qsizetype length = qsizetype(bits.run()) + 2;
    const qsizetype high = length > 2 ? bits.run() : 0;
    const qsizetype offset = high * 256 + bits.take(8);
    if (bits.failed()) return CxResult::CutShort;
    if (offset == 0 || offset > out.size() || length > wanted - out.size()) return CxResult::Damaged;
    // A copy may run into what it writes.
    for (qsizetype i = 0; i < length; ++i) out.append(out.at(out.size() - offset));
  }
  return CxResult::Whole;
}

}  // namespace

CxOutput inflateCx(QByteArrayView packed, qsizetype wanted) {
  CxOutput output;
  CxBits bits(packed);
  const quint32 mode = bits.take(kModeBits);
  if (bits.failed()) {
    output.result = CxResult::CutShort;
  } else if (mode != kMode) {
    output.result = CxResult::WrongMode;
  } else if (wanted < 0 || wanted > kMaxCxBlock) {
    output.result = CxResult::TooLarge;
  } else {
    output.bytes.reserve(wanted);
    output.result = inflateInto(bits, wanted, output.bytes);
  }
  output.unread = bits.unread();
  if (output.result != CxResult::Whole) output.bytes = QByteArray();
  return output;
}

}  // namespace lens

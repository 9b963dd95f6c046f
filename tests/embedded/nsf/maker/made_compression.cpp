#include "embedded/nsf/maker/made_compression.h"

#include <algorithm>
#include <bit>
#include <vector>

#include "embedded/nsf/maker/made_bytes.h"

namespace lens::made {
namespace {

class LowBits {
 public:
  void bits(quint32 number, int count) {
    for (int i = 0; i < count; ++i) {
      if (used_ % 8 == 0) bytes_.append('\0');
      if (number >> i & 1) bytes_.back() = char(bytes_.back() | 1 << used_ % 8);
      ++used_;
    }
  }
  // As many zeros as the number, one more than given, has bits behind its first; a one; those bits.
  void run(quint32 number) {
    const int zeros = std::bit_width(number + 1) - 1;
    bits(0, zeros);
    bits(1, 1);
    bits(number + 1 - (1u << zeros), zeros);
  }
  QByteArray bytes() const { return bytes_; }

 private:
  QByteArray bytes_;
  qint64 used_ = 0;
};

constexpr quint32 kMode = 4;
constexpr qsizetype kLongestMatch = 3000, kFurthest = 60'000;

// Where two and three bytes stood last, as far as a small table remembers.
class Seen {
 public:
  explicit Seen(QByteArrayView bytes) : bytes_(bytes), pairs_(kRemembered, -1), triples_(kRemembered, -1) {}

  void pass(qsizetype at) {
    if (at + 2 <= bytes_.size()) pairs_[pair(at)] = at;
    if (at + 3 <= bytes_.size()) triples_[triple(at)] = at;
  }
  // Length and distance of what came before and stands here again; 0: nothing.
  std::pair<qsizetype, qsizetype> match(qsizetype at) const {
    if (at + 3 <= bytes_.size()) {
      const qsizetype from = triples_[triple(at)];
      const qsizetype length = from < 0 || at - from > kFurthest ? 0 : same(from, at);
      if (length >= 3) return {length, at - from};
    }
    if (at + 2 <= bytes_.size()) {
      const qsizetype from = pairs_[pair(at)];
      if (from >= 0 && at - from < 256 && same(from, at) >= 2) return {2, at - from};
    }
    return {0, 0};
  }

 private:
  static constexpr size_t kRemembered = 4096;
  size_t pair(qsizetype at) const {
    return size_t(quint8(bytes_[at]) * 251 + quint8(bytes_[at + 1])) % kRemembered;
  }
  size_t triple(qsizetype at) const { return (pair(at) * 31 + quint8(bytes_[at + 2])) % kRemembered; }
  qsizetype same(qsizetype from, qsizetype at) const {
    const qsizetype most = std::min(kLongestMatch, bytes_.size() - at);
    qsizetype length = 0;
    while (length < most && bytes_[from + length] == bytes_[at + length]) ++length;
    return length;
  }

  QByteArrayView bytes_;
  std::vector<qsizetype> pairs_, triples_;
};

}  // namespace

QByteArray packedBits(QByteArrayView bytes, Packing packing) {
  LowBits out;
  out.bits(kMode, 3);
  Seen seen(bytes);
  for (qsizetype at = 0; at < bytes.size();) {
    const auto [length, distance] =
        packing == Packing::Matches ? seen.match(at) : std::pair<qsizetype, qsizetype>();
    if (length == 0) {
      out.bits(0, 1);
      out.bits(quint8(bytes[at]), 8);
      seen.pass(at++);
      continue;
    }
    out.bits(1, 1);
    out.run(quint32(length - 2));
    if (length > 2) out.run(quint32(distance / 256));
    out.bits(quint32(distance % 256), 8);
    for (const qsizetype end = at + length; at < end; ++at) seen.pass(at);
  }
  return out.bytes() + zeros(2);
}

}  // namespace lens::made

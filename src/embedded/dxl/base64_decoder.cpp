#include "embedded/dxl/base64_decoder.h"

#include <array>

namespace lens {

namespace {

constexpr quint8 kNone = 0xFF, kBlank = 0xFE, kPad = 0xFD;

constexpr std::array<quint8, 128> makeTable() {
  std::array<quint8, 128> table{};
  table.fill(kNone);
  for (int i = 0; i < 26; ++i) {
    table[size_t('A' + i)] = quint8(i);
    table[size_t('a' + i)] = quint8(26 + i);
  }
  for (int i = 0; i < 10; ++i) table[size_t('0' + i)] = quint8(52 + i);
  table['+'] = 62;
  table['/'] = 63;
  table['='] = kPad;
  table[' '] = table['\t'] = table['\r'] = table['\n'] = kBlank;
  return table;
}
constexpr std::array<quint8, 128> kTable = makeTable();

}  // namespace

bool Base64Decoder::feed(QStringView text) {
  const qsizetype start = bytes_.size();
  bytes_.resize(start + text.size() / 4 * 3 + 6);
  char* out = bytes_.data() + start;
  bool good = true;
  for (const QChar c : text) {
    const quint8 value = c.unicode() < 128 ? kTable[c.unicode()] : kNone;
    if (value == kBlank) continue;
    const bool closed = padding_ > 0 && count_ == 0;
    if (value == kNone || closed || (value != kPad && padding_ > 0) || (value == kPad && count_ < 2)) {
      offender_ = c;
      good = false;
      break;
    }
    bits_ = bits_ << 6 | (value == kPad ? 0 : value);
    if (value == kPad) ++padding_;
    if (++count_ < 4) continue;
    *out++ = char(bits_ >> 16);
    if (padding_ < 2) *out++ = char(bits_ >> 8);
    if (padding_ < 1) *out++ = char(bits_);
    count_ = 0;
    bits_ = 0;
  }
  bytes_.resize(out - bytes_.constData());
  return good;
}

}  // namespace lens

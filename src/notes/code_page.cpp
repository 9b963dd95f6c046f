#include "notes/code_page.h"

#ifdef Q_OS_WIN
#include <windows.h>

#include <array>
#endif

namespace lens {
namespace {

// Windows-1252 differs from Latin-1 in these 32 places only. The five places without a character of
// their own keep the control character of the same number, as Windows does.
constexpr char16_t kUpperControls[32] = {0x20AC, 0x0081, 0x201A, 0x0192, 0x201E, 0x2026, 0x2020, 0x2021,
                                         0x02C6, 0x2030, 0x0160, 0x2039, 0x0152, 0x008D, 0x017D, 0x008F,
                                         0x0090, 0x2018, 0x2019, 0x201C, 0x201D, 0x2022, 0x2013, 0x2014,
                                         0x02DC, 0x2122, 0x0161, 0x203A, 0x0153, 0x009D, 0x017E, 0x0178};

#ifdef Q_OS_WIN
// The characters of the bytes above 7F in the page that the system is set to. A page with characters of two
// bytes would break what positions mean; Windows-1252 stands in for it.
std::array<char16_t, 128> upperHalfOfSystem() {
  std::array<char16_t, 128> upper;
  CPINFO page = {};
  const bool single = GetCPInfo(CP_ACP, &page) && page.MaxCharSize == 1;
  for (int i = 0; i < 128; ++i) {
    const char byte = char(0x80 + i);
    wchar_t unit = 0;
    const bool told = single && MultiByteToWideChar(CP_ACP, 0, &byte, 1, &unit, 1) == 1;
    upper[i] = told ? char16_t(unit) : i < 32 ? kUpperControls[i] : char16_t(0x80 + i);
  }
  return upper;
}

const std::array<char16_t, 128>& upperHalf() {
  static const std::array<char16_t, 128> upper = upperHalfOfSystem();
  return upper;
}

char byteOf(char16_t unit) {
  if (unit < 0x80) return char(unit);
  const std::array<char16_t, 128>& upper = upperHalf();
  for (int i = 0; i < 128; ++i)
    if (upper[i] == unit) return char(0x80 + i);
  return '?';
}

char16_t unitOf(quint8 byte) {
  return byte < 0x80 ? char16_t(byte) : upperHalf()[byte - 0x80];
}
#else
char byteOf(char16_t unit) {
  if (unit < 0x80 || (unit >= 0xA0 && unit <= 0xFF)) return char(unit);
  for (int i = 0; i < 32; ++i)
    if (kUpperControls[i] == unit) return char(0x80 + i);
  return '?';
}

char16_t unitOf(quint8 byte) {
  return byte >= 0x80 && byte < 0xA0 ? kUpperControls[byte - 0x80] : char16_t(byte);
}
#endif

}  // namespace

QByteArray toCodePage(QStringView text) {
  QByteArray bytes(text.size(), Qt::Uninitialized);
  char* out = bytes.data();
  for (QChar c : text) *out++ = byteOf(c.unicode());
  return bytes;
}

QString fromCodePage(QByteArrayView bytes) {
  QString text(bytes.size(), Qt::Uninitialized);
  QChar* out = text.data();
  for (char c : bytes) *out++ = unitOf(quint8(c));
  return text;
}

QByteArray upToNul(const QByteArray& buffer) {
  const qsizetype nul = buffer.indexOf('\0');
  return nul < 0 ? buffer : buffer.left(nul);
}

}  // namespace lens

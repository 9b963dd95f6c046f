// Hexadecimal digits in the bytes and texts of others: either case, ASCII only, whatever the locale.
#pragma once

namespace lens {

// The digits as we write them.
inline constexpr char kHexDigits[] = "0123456789ABCDEF";

// 0 to 15; -1 for everything else.
inline constexpr int hexDigit(char16_t unit) {
  if (unit >= u'0' && unit <= u'9') return unit - u'0';
  if (unit >= u'A' && unit <= u'F') return unit - u'A' + 10;
  if (unit >= u'a' && unit <= u'f') return unit - u'a' + 10;
  return -1;
}

}  // namespace lens

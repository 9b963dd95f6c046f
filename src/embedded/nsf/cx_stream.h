// The compression of the blocks of a real database: bits from the lowest of each byte on, single bytes and
// copies of what was written before.
#pragma once

#include <QByteArray>

namespace lens {

// So much at most: real blocks are far below.
inline constexpr qsizetype kMaxCxBlock = 32 * 1024 * 1024;

enum class CxResult {
  Whole,
  WrongMode,  // the three bits at the start name another way of packing
  CutShort,   // the input ends before the output is complete
  Damaged,    // a copy from before the start, or beyond the wanted size
  TooLarge,   // more is wanted than kMaxCxBlock
};

struct CxOutput {
  CxResult result = CxResult::Damaged;
  QByteArray bytes;      // of the wanted size when it is whole, else empty
  qsizetype unread = 0;  // whole bytes of input behind the last one that was touched
};
// There is no end mark: the wanted size ends it.
CxOutput inflateCx(QByteArrayView packed, qsizetype wanted);

}  // namespace lens

#include "embedded/nsf/file_scan.h"

#include <algorithm>

namespace lens {

void scanUnits(const NsfSource& source, qint64 from, qint64 lookAhead,
               const std::function<void(qint64 position, QByteArrayView bytes)>& visit) {
  constexpr qint64 kUnit = 256, kPiece = 1024 * 1024;
  qint64 at = (std::max<qint64>(0, from) + kUnit - 1) / kUnit * kUnit;
  QByteArray piece;
  while (source.size() - at >= lookAhead) {
    if (!source.read(at, std::min(kPiece + lookAhead, source.size() - at), piece)) return;
    qint64 offset = 0;
    for (; offset < kPiece && piece.size() - offset >= lookAhead; offset += kUnit)
      visit(at + offset, QByteArrayView(piece).sliced(offset, lookAhead));
    at += offset;
  }
}

}  // namespace lens

#include "embedded/nsf/packed_block.h"

#include "embedded/nsf/cx_stream.h"
#include "embedded/nsf/record_bytes.h"

namespace lens {
namespace {

constexpr qint64 kFooter = 12;  // time and checksum
constexpr qint64 kMostStored = 48 * 1024 * 1024;
enum Compression : quint16 { kStoredPlain = 0, kStoredCx = 1 };

UnpackedBlock refusedBlock(const char* reason, bool isUnsupported = false) {
  return {{}, QString::fromLatin1(reason), isUnsupported};
}

UnpackedBlock inflateBody(QByteArrayView packed, const PackedBlock& block) {
  if (block.compression == kStoredPlain) {
    if (packed.size() != block.inflated) return refusedBlock("its size is not that of its body");
    return {packed.toByteArray(), {}};
  }
  CxOutput output = inflateCx(packed, block.inflated);
  switch (output.result) {
    case CxResult::Whole:
      return {std::move(output.bytes), {}};
    case CxResult::WrongMode:
      return refusedBlock("it is packed in a way that is not known", true);
    case CxResult::CutShort:
      return refusedBlock("its packed body ends too early");
    case CxResult::Damaged:
      return refusedBlock("its packed body is damaged");
    case CxResult::TooLarge:
      break;
  }
  return refusedBlock("its body is larger than any real one");
}

}  // namespace

UnpackedBlock unpackBlock(const NsfSource& source, const PackedBlock& block) {
  if (block.stored < block.headSize + 4 + kFooter) return refusedBlock("its size is too small");
  if (block.stored > block.area) return refusedBlock("its size is beyond the room that it has");
  if (block.stored > kMostStored) return refusedBlock("it is larger than any real one");
  QByteArray stored;
  if (!source.read(block.position, block.stored, stored))
    return refusedBlock("it reaches beyond the end of the file");
  const RecordBytes bytes(stored);
  const qint64 footer = block.stored - kFooter;
  if (!sameTimeDate(bytes.time(footer), block.time)) return refusedBlock("head and footer are of two times");
  if (bytes.u32(footer + 8) != xorOfWords(bytes.part(block.headSize, footer - block.headSize)))
    return refusedBlock("its checksum is wrong");
  if (block.compression > kStoredCx) return refusedBlock("it is packed in a way that is not known", true);
  const qint64 packedAt = block.headSize + 4, packedSize = bytes.u32(block.headSize);
  if (packedSize > footer - packedAt) return refusedBlock("its packed body is longer than itself");
  return inflateBody(bytes.part(packedAt, packedSize), block);
}

}  // namespace lens

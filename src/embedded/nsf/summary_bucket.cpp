#include "embedded/nsf/summary_bucket.h"

#include "embedded/nsf/record_bytes.h"

namespace lens {
namespace {

constexpr qint64 kSector = 512, kMarkAt = 0x42;
constexpr qint64 kFirstRecord = 68, kSlotEntry = 4, kSmallestRecord = 16;
constexpr qint64 kBucketStep = 1024, kSmallestBucket = 4096, kLargestBucket = 65536;

// The last bytes keep what the marks have replaced, from the end backwards, the even sector in the high half.
bool undoMarks(QByteArray& bucket) {
  const qint64 size = bucket.size();
  const char mark = bucket[kMarkAt] & 0x0F;
  bool torn = false;
  for (qint64 sector = 0; sector < size / kSector; ++sector) {
    char& byte = bucket[kMarkAt + sector * kSector];
    torn |= (byte & 0x0F) != mark;
    const quint8 saved = quint8(bucket[size - 1 - sector / 2]);
    byte = char((quint8(byte) & 0xF0) | (sector % 2 == 0 ? saved >> 4 : saved & 0x0F));
  }
  return torn;
}

}  // namespace

bool SummaryBucketHead::read(QByteArrayView raw, SummaryBucketHead& head) {
  return RecordBytes(raw).isSigned(nsfsignature::SummaryBucket) && readUnsigned(raw, head);
}

bool SummaryBucketHead::readUnsigned(QByteArrayView raw, SummaryBucketHead& head) {
  const RecordBytes bytes(raw);
  if (bytes.size() < kSize) return false;
  head.number = bytes.u32(2) + 1;
  head.size = bytes.u32(6);
  head.time = bytes.time(10);
  return head.number != 0 && head.size % kBucketStep == 0 && head.size >= kSmallestBucket &&
         head.size <= kLargestBucket && bytes.u32(50) == head.size / kBucketStep &&
         qint64(bytes.u32(44)) * kSlotEntry < head.size;
}

SummaryBucket::SummaryBucket(SummaryBucketHead head, QByteArray bytes, Marks marks)
    : head_(head),
      bytes_(std::move(bytes)),
      slots_(RecordBytes(bytes_).u32(44)),
      torn_(marks == Marks::Undo && undoMarks(bytes_)) {}

bool SummaryBucket::record(quint32 slot, QByteArrayView& record, qint64& offset) const {
  record = {};
  offset = 0;
  if (slot == 0 || slot > slots_) return false;
  const RecordBytes bucket{QByteArrayView(bytes_)};
  const qint64 tableEnd = bucket.size() - bucket.size() / kBucketStep;
  const qint64 tableStart = tableEnd - kSlotEntry * slots_, entry = tableEnd - kSlotEntry * slot;
  offset = bucket.u16(entry);
  const qint64 length = bucket.u16(entry + 2);
  if (offset == 0 && length == 0) return true;
  if (offset < kFirstRecord || length < kSmallestRecord || offset + length > tableStart) return false;
  record = bucket.part(offset, length);
  return true;
}

}  // namespace lens

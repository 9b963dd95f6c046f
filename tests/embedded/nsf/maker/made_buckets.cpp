#include "embedded/nsf/maker/made_buckets.h"

#include "embedded/nsf/maker/made_bytes.h"

namespace lens::made {
namespace {

constexpr qsizetype kFirstRecord = 68, kSlot = 4, kSector = 512, kMarkInSector = 0x42;

qsizetype footerOf(quint32 size) {
  return size / 1024;
}

}  // namespace

bool MadeBucket::takes(qsizetype recordSize) const {
  return end_ + recordSize + kSlot * (slotCount() + 1) + footerOf(size_) <= size_ &&
         end_ + recordSize <= 0xFFFF && slotCount() < 0x7FF;
}

int MadeBucket::add(const QByteArray& record, qsizetype unused) {
  if (takes(record.size() + unused)) end_ += unused;
  records_.push_back({record, end_});
  end_ += record.size();
  return slotCount();
}

int MadeBucket::addEmptySlot() {
  records_.push_back({});
  return slotCount();
}

qsizetype MadeBucket::slotAt(int slot) const {
  return size_ - footerOf(size_) - kSlot * slot;
}

QByteArray MadeBucket::bytes(int number, const TimeDate& time) const {
  QByteArray bucket = zeros(size_);
  qsizetype used = 0;
  for (int slot = 1; slot <= slotCount(); ++slot) {
    const Placed& placed = records_[slot - 1];
    putBytes(bucket, placed.at, placed.bytes);
    put16(bucket, slotAt(slot), quint32(placed.at));
    put16(bucket, slotAt(slot) + 2, quint32(placed.bytes.size()));
    used += placed.bytes.size();
  }
  put16(bucket, 0, 0x4202);
  put32(bucket, 2, quint32(number));
  put32(bucket, 6, size_);
  putTime(bucket, 10, time);
  put16(bucket, 38, 1);
  put16(bucket, 40, quint32(end_));
  put16(bucket, 42, quint32(size_ - footerOf(size_) - kSlot * slotCount() - kFirstRecord - used));
  put32(bucket, 44, quint32(slotCount()));
  put32(bucket, 50, quint32(footerOf(size_)));
  put32(bucket, 62, 1);
  return bucket;
}

quint32 MadeBucket::sizeFor(qsizetype recordSize, quint32 usualSize) {
  quint32 size = usualSize;
  while (!MadeBucket(size).takes(recordSize) && size < kLargestBucket) size += 1024;
  return size;
}

void markSectors(QByteArray& bucket, quint8 mark) {
  const qsizetype sectors = bucket.size() / kSector;
  for (qsizetype sector = 0; sector < sectors; ++sector) {
    const qsizetype marked = kMarkInSector + kSector * sector, kept = bucket.size() - 1 - sector / 2;
    const quint8 low = get8(bucket, marked) & 0x0F, others = get8(bucket, kept);
    put8(bucket, kept, sector % 2 == 0 ? quint8(low << 4 | (others & 0x0F)) : quint8((others & 0xF0) | low));
    put8(bucket, marked, quint8((get8(bucket, marked) & 0xF0) | (mark & 0x0F)));
  }
}

QByteArray rrvBucket(quint32 firstId, const QVector<MadeEntry>& entries) {
  Q_ASSERT(entries.size() == kIdsOfTable);
  QByteArray bucket = zeros(32);
  put16(bucket, 0, 0x2006);
  put32(bucket, 6, firstId);
  put16(bucket, 16, 256);
  for (const MadeEntry& entry : entries) {
    add32(bucket, entry.a);
    add32(bucket, entry.b);
  }
  return bucket;
}

void sealRrvBucket(QByteArray& bucket) {
  put32(bucket, 18, wordSum(QByteArrayView(bucket).sliced(32)));
}

}  // namespace lens::made

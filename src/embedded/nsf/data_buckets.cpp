#include "embedded/nsf/data_buckets.h"

#include "embedded/nsf/summary_bucket.h"

namespace lens {

bool DataBuckets::read(quint32 number) const {
  if (number == held_) return number != 0;
  held_ = 0;
  if (number == 0 || qint64(number) > positions_.size() || positions_[number - 1] == 0) return false;
  const qint64 position = positions_[number - 1];
  SummaryBucketHead head;
  if (!source_.read(position, SummaryBucketHead::kSize, bytes_) ||
      !SummaryBucketHead::readUnsigned(bytes_, head) || head.number != number ||
      !source_.read(position, head.size, bytes_))
    return false;
  held_ = number;
  return true;
}

QByteArray DataBuckets::record(quint32 number, quint32 slot) const {
  SummaryBucketHead head;
  if (!read(number) || !SummaryBucketHead::readUnsigned(bytes_, head)) return {};
  SummaryBucket bucket(head, bytes_);
  // Other bytes than marks would hardly be alike in every sector.
  if (bucket.isTorn()) bucket = SummaryBucket(head, bytes_, SummaryBucket::Marks::None);
  QByteArrayView record;
  qint64 offset = 0;
  return bucket.record(slot, record, offset) ? record.toByteArray() : QByteArray();
}

}  // namespace lens

// A bucket of a real database: some dozen records of notes, found by slot.
#pragma once

#include <QByteArray>

#include "embedded/format/timedate.h"

namespace lens {

// The head of a bucket, as far as it tells what the bytes are.
struct SummaryBucketHead {
  static constexpr qint64 kSize = 66;

  quint32 number = 0;  // from 1
  qint64 size = 0;
  TimeDate time;

  // False where no bucket can begin with these bytes.
  static bool read(QByteArrayView bytes, SummaryBucketHead& head);
  // The same whatever its signature is.
  static bool readUnsigned(QByteArrayView bytes, SummaryBucketHead& head);
};

class SummaryBucket {
 public:
  SummaryBucket() = default;
  // The bytes of a whole bucket. To notice writes that were interrupted, a bucket lies on disk with a half
  // byte of each sector replaced; that is undone here.
  enum class Marks { Undo, None };
  SummaryBucket(SummaryBucketHead head, QByteArray bytes, Marks marks = Marks::Undo);

  quint32 number() const { return head_.number; }
  // Its sectors were not all written at once: records may be older or newer than the rest.
  bool isTorn() const { return torn_; }
  quint32 slots() const { return slots_; }
  // The record, empty where the slot is; the offset is that of the record in the bucket. False for a slot
  // that leads to where no record can be.
  bool record(quint32 slot, QByteArrayView& record, qint64& offset) const;

 private:
  SummaryBucketHead head_;
  QByteArray bytes_;
  quint32 slots_ = 0;
  bool torn_ = false;
};

}  // namespace lens

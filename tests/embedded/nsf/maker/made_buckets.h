// Buckets of notes, with their slots and the marks of their sectors, and buckets of the table of IDs.
#pragma once

#include <QByteArray>
#include <QVector>

#include "embedded/nsf/maker/made_database.h"

namespace lens::made {

inline constexpr quint32 kRrvBucketSize = 4096;
inline constexpr quint32 kLargestBucket = 63488;

class MadeBucket {
 public:
  explicit MadeBucket(quint32 size) : size_(size) {}
  bool isEmpty() const { return records_.isEmpty(); }
  // Whether a record of that size and its slot would still fit.
  bool takes(qsizetype recordSize) const;
  // The number of its slot, from 1. Unused: bytes in front of the record that belong to none.
  int add(const QByteArray& record, qsizetype unused = 0);
  int addEmptySlot();
  int slotCount() const { return int(records_.size()); }
  quint32 size() const { return size_; }
  // Offsets in the bucket.
  qsizetype recordAt(int slot) const { return records_[slot - 1].at; }
  qsizetype slotAt(int slot) const;
  // Without marks.
  QByteArray bytes(int number, const TimeDate& time) const;
  // The smallest that takes a record of that size.
  static quint32 sizeFor(qsizetype recordSize, quint32 usualSize);

 private:
  struct Placed {
    QByteArray bytes;
    qsizetype at = 0;
  };
  quint32 size_;
  qsizetype end_ = 68;
  QVector<Placed> records_;
};

// Puts the mark into every sector and what stood there behind the slots.
void markSectors(QByteArray& bucket, quint8 mark);

// The table's bucket as it lies in the superblock: without a checksum.
QByteArray rrvBucket(quint32 firstId, const QVector<MadeEntry>& entries);
void sealRrvBucket(QByteArray& bucket);

}  // namespace lens::made

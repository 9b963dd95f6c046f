// The table from IDs of notes and objects to their places: buckets of entries, each of a range of IDs.
#pragma once

#include <QByteArray>
#include <QVector>
#include <functional>

#include "embedded/nsf/bucket_descriptors.h"
#include "embedded/nsf/nsf_report.h"
#include "embedded/nsf/nsf_source.h"

namespace lens {

// Where a note or object lies: in a slot of a bucket, or by itself.
struct IdPlace {
  quint32 id = 0;
  bool inBucket = false;
  quint32 bucket = 0, slot = 0;  // from 1
  qint64 position = 0;           // by itself, in bytes
};
using IdPlaceVisitor = std::function<void(const IdPlace&)>;

// Shows each entry in use once, bucket by bucket. The newer bucket, where there is one, takes the place of
// the file's with the same first ID. Buckets that are not sound, or overlap others, are passed over and
// reported.
void readIdBuckets(const NsfSource& source, const QVector<BucketDescriptors::IdBucketPlace>& places,
                   const QByteArray& newer, NsfReport& report, const IdPlaceVisitor& visit);

// Where such buckets lie, found by looking for them: those whose checksum is right.
QVector<BucketDescriptors::IdBucketPlace> findIdBuckets(const NsfSource& source, qint64 from);

}  // namespace lens

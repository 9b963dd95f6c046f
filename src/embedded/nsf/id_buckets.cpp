#include "embedded/nsf/id_buckets.h"

#include <algorithm>

#include "embedded/nsf/file_scan.h"
#include "embedded/nsf/record_bytes.h"

namespace lens {
namespace {

constexpr qint64 kIdBucketSize = 4096, kIdBucketHead = 32, kIdEntry = 8;
constexpr quint32 kInBucket = 0x80000000, kFree = 0xFFFFFFFF, kGivenBack = 0x7FFFFFFF;

struct NumberedPlace {
  qint64 position;
  quint32 firstId;
  qint64 size;      // of the bucket in bytes
  bool isInMemory;  // it is the newer one
};

bool isIdBucket(const RecordBytes& bucket, quint32 firstId) {
  return bucket.isSigned(nsfsignature::IdBucket) && bucket.u32(6) == firstId;
}
bool checksumHolds(const RecordBytes& bucket) {
  return bucket.u32(18) == xorOfWords(bucket.part(kIdBucketHead, bucket.size() - kIdBucketHead));
}

void visitEntries(const RecordBytes& bucket, quint32 firstId, const IdPlaceVisitor& visit) {
  quint64 id = firstId;
  for (qint64 at = kIdBucketHead; bucket.has(at, kIdEntry) && id <= 0xFFFFFFFF; at += kIdEntry, id += 4) {
    const quint32 place = bucket.u32(at), slot = bucket.u32(at + 4);
    if (place == 0 || place == kFree || place == kGivenBack) continue;
    if (place & kInBucket)
      visit({quint32(id), true, place & 0xFFFFFF, slot & 0x7FF, 0});
    else
      visit({quint32(id), false, 0, 0, bytePosition(place)});
  }
}

// In order of their IDs; without those that share IDs or bytes with another.
QVector<NumberedPlace> separatePlaces(QVector<NumberedPlace> places, NsfReport& report) {
  QVector<NumberedPlace> kept;
  const auto refuse = [&](const NumberedPlace& place, const char* reason) {
    report.add({NsfProblemKind::IdTable, place.firstId, place.position, QString::fromLatin1(reason)});
  };
  std::stable_sort(places.begin(), places.end(),
                   [](const auto& a, const auto& b) { return a.position < b.position; });
  qint64 endOfBytes = 0;
  for (const NumberedPlace& place : places) {
    if (place.firstId % 4 != 2) {
      refuse(place, "the first ID is none");
    } else if (!place.isInMemory && place.position < endOfBytes) {
      refuse(place, "the bucket overlaps another one");
    } else {
      kept.push_back(place);
      if (!place.isInMemory) endOfBytes = place.position + place.size;
    }
  }
  std::stable_sort(kept.begin(), kept.end(), [](const auto& a, const auto& b) {
    return a.firstId != b.firstId ? a.firstId < b.firstId : a.isInMemory > b.isInMemory;
  });
  qint64 endOfIds = 0;
  kept.removeIf([&](const NumberedPlace& place) {
    if (place.firstId < endOfIds) {
      refuse(place, "the bucket has IDs that another one has");
      return true;
    }
    endOfIds = place.firstId + (place.size - kIdBucketHead) / kIdEntry * 4;
    return false;
  });
  return kept;
}

}  // namespace

void readIdBuckets(const NsfSource& source, const QVector<BucketDescriptors::IdBucketPlace>& places,
                   const QByteArray& newer, NsfReport& report, const IdPlaceVisitor& visit) {
  const RecordBytes newerBucket{QByteArrayView(newer)};
  const quint32 newerFirst = newerBucket.u32(6);
  QVector<NumberedPlace> numbered;
  int replaced = 0;
  for (const auto& place : places)
    if (newer.isEmpty() || place.firstId != newerFirst)
      numbered.push_back({place.position, place.firstId, kIdBucketSize, false});
    else if (++replaced > 1)
      report.add({NsfProblemKind::IdTable, place.firstId, place.position,
                  QStringLiteral("the bucket has IDs that another one has")});
  if (!newer.isEmpty()) numbered.push_back({-1, newerFirst, newer.size(), true});
  QByteArray bytes;
  for (const NumberedPlace& place : separatePlaces(std::move(numbered), report)) {
    if (place.isInMemory) {
      visitEntries(newerBucket, newerFirst, visit);
      continue;
    }
    const auto tell = [&](const char* reason, bool isWarning) {
      report.add(
          {NsfProblemKind::IdTable, place.firstId, place.position, QString::fromLatin1(reason), isWarning});
    };
    if (!source.read(place.position, kIdBucketSize, bytes)) {
      tell("the bucket lies beyond the end of the file", false);
      continue;
    }
    const RecordBytes bucket{QByteArrayView(bytes)};
    if (!isIdBucket(bucket, place.firstId)) {
      tell("there is no bucket of these IDs", false);
      continue;
    }
    if (!checksumHolds(bucket)) tell("the checksum of the bucket is wrong; each note proves itself", true);
    visitEntries(bucket, place.firstId, visit);
  }
}

QVector<BucketDescriptors::IdBucketPlace> findIdBuckets(const NsfSource& source, qint64 from) {
  QVector<BucketDescriptors::IdBucketPlace> places;
  scanUnits(source, from, kIdBucketSize, [&](qint64 position, QByteArrayView unit) {
    const RecordBytes bucket(unit);
    if (bucket.isSigned(nsfsignature::IdBucket) && bucket.u32(6) % 4 == 2 && bucket.u16(16) == 256 &&
        checksumHolds(RecordBytes(bucket.part(0, kIdBucketSize))))
      places.push_back({position, bucket.u32(6)});
  });
  return places;
}

}  // namespace lens

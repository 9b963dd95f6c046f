#include "embedded/nsf/superblock.h"

#include <algorithm>
#include <vector>

#include "embedded/nsf/packed_block.h"
#include "embedded/nsf/record_bytes.h"

namespace lens {
namespace {

constexpr qint64 kSuperblockHead = 100;
constexpr qint64 kSummaryPage = 8206, kOtherPage = 8198, kBitmapDescriptor = 20;
constexpr qint64 kFirstDescriptor = 224, kDescriptor = 14;
constexpr qint64 kMostDescriptors = (kSummaryPage - kFirstDescriptor) / kDescriptor;
constexpr qint64 kFirstOtherDescriptor = 70, kOtherDescriptor = 6;
constexpr qint64 kMostOtherDescriptors = (kOtherPage - kFirstOtherDescriptor) / kOtherDescriptor;
constexpr qint64 kFirstIdPlace = 6;  // in a bucket of the table of IDs

// The fields of the head that say how the body is put together.
struct SuperblockLayout {
  qint64 buckets, otherBuckets, bitmaps, idBucket, bitmap, documents, log, folders, summaryPages, otherPages;
  quint32 currentFirstId;

  explicit SuperblockLayout(const RecordBytes& head)
      : buckets(head.u32(14)),
        otherBuckets(head.u32(18)),
        bitmaps(head.u32(22)),
        idBucket(head.u32(26)),
        bitmap(head.u32(42)),
        documents(head.u32(46)),
        log(head.u32(50)),
        folders(head.u32(54)),
        summaryPages(head.u32(70)),
        otherPages(head.u32(74)),
        currentFirstId(head.u32(34)) {}

  // Of each kind one page lies in the block.
  qint64 pages() const { return (summaryPages > 0 ? kSummaryPage : 0) + (otherPages > 0 ? kOtherPage : 0); }
  qint64 otherPageAt() const { return summaryPages > 0 ? kSummaryPage : 0; }
  qint64 idBucketAt() const { return pages() + kBitmapDescriptor * bitmaps; }
  qint64 documentsAt() const { return idBucketAt() + idBucket + bitmap; }
  qint64 total() const { return documentsAt() + documents + log + folders; }
  bool hasOtherPages() const { return summaryPages > 1 || otherPages > 1; }
  bool hasWholeOtherMap() const { return otherPages == 1 && otherBuckets <= kMostOtherDescriptors; }
  bool hasWholeMap() const { return buckets == 0 || (summaryPages == 1 && buckets <= kMostDescriptors); }
};

struct SuperblockCopy {
  int slot = 0;
  qint64 position = 0;
  QByteArray head;
  PackedBlock packed;
  quint32 writeCount = 0;
  TimeDate time;
};

// An area that was set aside and never written.
bool isFill(const QByteArray& bytes) {
  return std::all_of(bytes.begin(), bytes.end(), [&](char byte) { return byte == bytes.front(); });
}

bool holdsIdBucket(QByteArrayView bytes, quint32 firstId) {
  const RecordBytes bucket(bytes);
  return bucket.isSigned(nsfsignature::IdBucket) && bucket.u32(kFirstIdPlace) == firstId;
}

// Where the parts do not add up to the block, the bucket is known by its signature and first ID.
QByteArray findIdBucket(const QByteArray& body, const SuperblockLayout& layout) {
  constexpr qint64 kSmallest = 40, kLargest = 65536;
  if (layout.idBucket < kSmallest || layout.idBucket > kLargest) return {};
  const QByteArrayView view(body);
  const RecordBytes bytes(view);
  if (layout.total() == body.size()) {
    const QByteArrayView bucket = bytes.part(layout.idBucketAt(), layout.idBucket);
    if (holdsIdBucket(bucket, layout.currentFirstId)) return bucket.toByteArray();
  }
  const QByteArrayView mark("\x06\x20", 2);
  for (qsizetype at = view.indexOf(mark); at >= 0; at = view.indexOf(mark, at + 1))
    if (bytes.has(at, layout.idBucket) &&
        holdsIdBucket(view.sliced(at, layout.idBucket), layout.currentFirstId))
      return body.mid(at, layout.idBucket);
  return {};
}

// Each descriptor begins with the position.
QVector<qint64> readBucketPositions(const RecordBytes& body, qint64 at, qint64 size, qint64 count) {
  QVector<qint64> positions;
  positions.reserve(count);
  for (qint64 i = 0; i < count; ++i) positions.push_back(bytePosition(body.u32(at + i * size)));
  return positions;
}

Superblock readSuperblock(const SuperblockCopy& copy, const QByteArray& body) {
  const SuperblockLayout layout{RecordBytes(copy.head)};
  const bool addsUp = layout.total() == body.size();
  Superblock block;
  block.slot = copy.slot;
  block.time = copy.time;
  block.writeCount = copy.writeCount;
  block.bucketCount = quint32(layout.buckets);
  block.otherBucketCount = quint32(layout.otherBuckets);
  const RecordBytes bytes(body);
  if (addsUp && layout.hasWholeMap())
    block.bucketPositions = readBucketPositions(bytes, kFirstDescriptor, kDescriptor, layout.buckets);
  if (addsUp && layout.hasWholeOtherMap())
    block.dataBucketPositions = readBucketPositions(bytes, layout.otherPageAt() + kFirstOtherDescriptor,
                                                    kOtherDescriptor, layout.otherBuckets);
  block.currentIdBucket = findIdBucket(body, layout);
  if (addsUp && layout.documents > 0) {
    block.documents = NsfIdTable(bytes.part(layout.documentsAt(), layout.documents));
    block.hasDocuments = true;
  }
  return block;
}

}  // namespace

SuperblockChoice chooseSuperblock(const NsfSource& source, const NsfHeader& header, NsfReport& report) {
  SuperblockChoice choice;
  std::vector<SuperblockCopy> copies;
  int slot = 0, signedCopies = 0, unsupported = 0;
  quint32 highestRefused = 0;
  const auto refuse = [&](const SuperblockCopy& copy, const QString& reason, bool hasCount) {
    report.add({NsfProblemKind::Superblock, quint32(copy.slot), copy.position, reason});
    if (hasCount) highestRefused = std::max(highestRefused, copy.writeCount);
  };
  for (const NsfArea& area : header.superblocks) {
    ++slot;
    if (area.position == 0) continue;
    SuperblockCopy copy{slot, area.position, {}, {}, 0, {}};
    if (!source.read(area.position, kSuperblockHead, copy.head)) {
      refuse(copy, QStringLiteral("it lies beyond the end of the file"), false);
      ++signedCopies;
      continue;
    }
    const RecordBytes head(copy.head);
    copy.writeCount = head.u32(60);
    if (!head.isSigned(nsfsignature::Superblock)) {
      if (!isFill(copy.head))
        refuse(copy, QStringLiteral("it does not begin with its signature"), head.u32(64) <= area.size);
      continue;
    }
    ++signedCopies;
    copy.time = head.time(2);
    copy.packed = {.position = area.position,
                   .area = area.size,
                   .stored = head.u32(64),
                   .compression = head.u16(68),
                   .inflated = head.u32(10),
                   .headSize = kSuperblockHead,
                   .time = copy.time};
    copies.push_back(std::move(copy));
  }
  choice.noneWasSigned = signedCopies == 0;
  std::stable_sort(copies.begin(), copies.end(),
                   [](const auto& a, const auto& b) { return a.writeCount > b.writeCount; });
  for (const SuperblockCopy& copy : copies) {
    // The head has no checksum of its own: its sizes must agree with each other.
    const SuperblockLayout layout{RecordBytes(copy.head)};
    if (!layout.hasOtherPages() && layout.total() != copy.packed.inflated) {
      refuse(copy, QStringLiteral("its parts do not add up to its size"), true);
      continue;
    }
    const UnpackedBlock body = unpackBlock(source, copy.packed);
    if (!body.reason.isEmpty()) {
      unsupported += body.isUnsupported;
      refuse(copy, body.reason, true);
    } else if (choice.block.slot == 0) {
      choice.block = readSuperblock(copy, body.bytes);
    }
  }
  choice.isOlder = choice.block.slot != 0 && highestRefused > choice.block.writeCount;
  choice.isUnsupported = choice.block.slot == 0 && unsupported > 0 && unsupported == signedCopies;
  return choice;
}

QByteArray superblockHeads(const NsfSource& source, const NsfHeader& header) {
  QByteArray heads, head;
  for (const NsfArea& area : header.superblocks)
    if (area.position != 0 && source.read(area.position, kSuperblockHead, head)) heads += head;
  return heads;
}

}  // namespace lens

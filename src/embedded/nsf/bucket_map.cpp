#include "embedded/nsf/bucket_map.h"

#include <algorithm>

#include "embedded/nsf/file_scan.h"

namespace lens {

BucketMap::BucketMap(const NsfSource& source, NsfReport& report, QVector<qint64> positions, qint64 searchFrom,
                     quint32 limit)
    : source_(source),
      report_(report),
      positions_(std::move(positions)),
      searchFrom_(searchFrom),
      limit_(limit) {}

std::shared_ptr<const SummaryBucket> BucketMap::bucket(quint32 number) {
  if (const auto known = byNumber_.constFind(number); known != byNumber_.constEnd()) {
    kept_.splice(kept_.begin(), kept_, *known);
    return kept_.front();
  }
  if (missing_.contains(number)) return nullptr;
  std::shared_ptr<const SummaryBucket> bucket = read(number);
  if (!bucket) {
    missing_.insert(number);
    ++report_.bucketsDamaged;
    report_.add({NsfProblemKind::SummaryBucket, number, -1,
                 QStringLiteral("there is no sound bucket of this number")});
    return nullptr;
  }
  if (!seen_.contains(number)) {
    seen_.insert(number);
    ++report_.buckets;
    if (bucket->isTorn()) {
      ++report_.bucketsTorn;
      report_.add({NsfProblemKind::SummaryBucket, number, position(number),
                   QStringLiteral("its last write was interrupted: notes in it may be of two states"), true});
    }
  }
  kept_.push_front(bucket);
  byNumber_.insert(number, kept_.begin());
  if (kept_.size() > kKept) {
    byNumber_.remove(kept_.back()->number());
    kept_.pop_back();
  }
  return bucket;
}

std::shared_ptr<const SummaryBucket> BucketMap::read(quint32 number) {
  if (number >= 1 && qint64(number) <= positions_.size() && positions_[number - 1] != 0) {
    if (auto bucket = readAt(number, positions_[number - 1])) return bucket;
  }
  if (number == 0 || number > limit_) return nullptr;
  search();
  const auto place = scanned_.constFind(number);
  return place == scanned_.constEnd() ? nullptr : readAt(number, *place);
}

std::shared_ptr<const SummaryBucket> BucketMap::readAt(quint32 number, qint64 position) {
  QByteArray bytes;
  SummaryBucketHead head;
  if (!source_.read(position, SummaryBucketHead::kSize, bytes) || !SummaryBucketHead::read(bytes, head) ||
      head.number != number || !source_.read(position, head.size, bytes))
    return nullptr;
  found_.insert(number, position);
  return std::make_shared<SummaryBucket>(head, std::move(bytes));
}

void BucketMap::search() {
  if (searched_) return;
  searched_ = true;
  report_.bucketsScanned = true;
  QHash<quint32, quint64> times;
  scanUnits(source_, searchFrom_, SummaryBucketHead::kSize, [&](qint64 position, QByteArrayView unit) {
    SummaryBucketHead head;
    if (!SummaryBucketHead::read(unit, head) || head.number > limit_ || head.size > source_.size() - position)
      return;
    const quint64 time = instantOrder(head.time);
    const auto known = times.constFind(head.number);
    if (known != times.constEnd() && *known >= time) return;
    times.insert(head.number, time);
    scanned_.insert(head.number, position);
  });
}

QVector<quint32> BucketMap::searchAll() {
  search();
  QVector<quint32> numbers(scanned_.keyBegin(), scanned_.keyEnd());
  std::sort(numbers.begin(), numbers.end());
  return numbers;
}

}  // namespace lens

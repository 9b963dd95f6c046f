// The buckets of notes by their number: where they lie, and the ones that were read last.
#pragma once

#include <QHash>
#include <QSet>
#include <QVector>
#include <list>
#include <memory>

#include "embedded/nsf/nsf_report.h"
#include "embedded/nsf/nsf_source.h"
#include "embedded/nsf/summary_bucket.h"

namespace lens {

class BucketMap {
 public:
  // The positions by bucket number less one; none: buckets are looked for. Of those that are found only
  // numbers up to the limit count.
  BucketMap(const NsfSource& source, NsfReport& report, QVector<qint64> positions, qint64 searchFrom,
            quint32 limit);

  // Null where there is no sound bucket of that number, which is reported once. Valid until the next call but
  // for the buckets that were asked for last, kKept of them.
  std::shared_ptr<const SummaryBucket> bucket(quint32 number);
  // Of a bucket that was read; in bytes.
  qint64 position(quint32 number) const { return found_.value(number, -1); }
  // All that are found by looking for them, in order of their numbers.
  QVector<quint32> searchAll();

 private:
  static constexpr size_t kKept = 64;
  std::shared_ptr<const SummaryBucket> read(quint32 number);
  std::shared_ptr<const SummaryBucket> readAt(quint32 number, qint64 position);
  void search();

  const NsfSource& source_;
  NsfReport& report_;
  QVector<qint64> positions_;
  qint64 searchFrom_;
  quint32 limit_;
  bool searched_ = false;
  QHash<quint32, qint64> scanned_, found_;
  QSet<quint32> missing_, seen_;
  std::list<std::shared_ptr<const SummaryBucket>> kept_;  // the last used first
  QHash<quint32, std::list<std::shared_ptr<const SummaryBucket>>::iterator> byNumber_;
};

}  // namespace lens

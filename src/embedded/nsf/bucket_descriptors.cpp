#include "embedded/nsf/bucket_descriptors.h"

#include <algorithm>
#include <vector>

#include "embedded/format/lmbcs.h"
#include "embedded/nsf/packed_block.h"
#include "embedded/nsf/record_bytes.h"

namespace lens {
namespace {

constexpr qint64 kIdBucketEntry = 8, kNameEntry = 10, kHashEntry = 2;
constexpr qint64 kDescriptorHead = 66;

struct DescriptorCopy {
  int slot = 0;
  qint64 position = 0;
  quint32 writeCount = 0;
  QByteArray head;
};

// The head proves itself: its checksum leaves out its own place.
bool isHeadWhole(const RecordBytes& head) {
  QByteArray covered = head.part(0, 54).toByteArray();
  covered += head.part(58, 8);
  return head.u32(54) == xorOfWords(covered);
}

// "" with the block when the copy is whole.
QString readDescriptorCopy(const NsfSource& source, const DescriptorCopy& copy, qint64 area,
                           BucketDescriptors& block, bool& isUnsupported) {
  const RecordBytes head(copy.head);
  if (!isHeadWhole(head)) return QStringLiteral("the checksum of its head is wrong");
  UnpackedBlock body = unpackBlock(source, {.position = copy.position,
                                            .area = area,
                                            .stored = head.u32(14),
                                            .compression = head.u16(4),
                                            .inflated = head.u32(6),
                                            .headSize = kDescriptorHead,
                                            .time = head.time(18)});
  isUnsupported = body.isUnsupported;
  if (!body.reason.isEmpty()) return body.reason;
  block = BucketDescriptors(std::move(body.bytes), head.u32(38), head.u32(26), head.u32(34), head.u32(42));
  return block.isWhole() ? QString() : QStringLiteral("its parts do not add up to its size");
}

}  // namespace

BucketDescriptors::BucketDescriptors(QByteArray body, qint64 idBuckets, qint64 names, qint64 textSize,
                                     qint64 hashes)
    : body_(std::move(body)), idBuckets_(idBuckets), names_(names), textSize_(textSize) {
  const qint64 textSizeAt = idBuckets * kIdBucketEntry + names * kNameEntry;
  const RecordBytes bytes(body_);
  whole_ = textSizeAt + 4 + textSize + hashes * kHashEntry == bytes.size() &&
           bytes.u32(textSizeAt) == quint32(textSize);
}

QVector<BucketDescriptors::IdBucketPlace> BucketDescriptors::idBuckets() const {
  constexpr quint32 kDesignMark = 1;
  const RecordBytes bytes(body_);
  QVector<IdBucketPlace> places;
  places.reserve(idBuckets_);
  for (qint64 i = 0; i < idBuckets_; ++i) {
    const qint64 at = i * kIdBucketEntry;
    places.push_back({bytePosition(bytes.u32(at) & ~kDesignMark), bytes.u32(at + 4)});
  }
  return places;
}

bool BucketDescriptors::name(qint64 index, QString& name, quint16& type) const {
  if (index < 0 || index >= names_) return false;
  const RecordBytes bytes(body_);
  const qint64 entry = idBuckets_ * kIdBucketEntry + index * kNameEntry;
  const qint64 texts = idBuckets_ * kIdBucketEntry + names_ * kNameEntry + 4;
  const qint64 offset = bytes.u32(entry), length = bytes.u16(entry + 4);
  if (length > textSize_ || offset > textSize_ - length) return false;
  type = bytes.u16(entry + 6);
  auto known = decoded_.constFind(quint32(index));
  if (known == decoded_.constEnd())
    known = decoded_.insert(quint32(index), fromLmbcs(bytes.part(texts + offset, length)));
  name = *known;
  return true;
}

DescriptorChoice chooseDescriptors(const NsfSource& source, const NsfHeader& header, NsfReport& report) {
  DescriptorChoice choice;
  std::vector<DescriptorCopy> copies;
  int slot = 0, present = 0, unsupported = 0;
  quint32 highestRefused = 0;
  const auto refuse = [&](const DescriptorCopy& copy, const QString& reason) {
    report.add({NsfProblemKind::Descriptors, quint32(copy.slot), copy.position, reason});
    highestRefused = std::max(highestRefused, copy.writeCount);
  };
  for (const NsfArea& area : header.descriptors) {
    ++slot;
    if (area.position == 0) continue;
    ++present;
    DescriptorCopy copy{slot, area.position, 0, {}};
    if (!source.read(area.position, kDescriptorHead, copy.head)) {
      refuse(copy, QStringLiteral("it lies beyond the end of the file"));
      continue;
    }
    const RecordBytes head(copy.head);
    copy.writeCount = head.u32(10);
    if (head.isSigned(nsfsignature::Descriptors))
      copies.push_back(std::move(copy));
    else
      refuse(copy, QStringLiteral("it does not begin with its signature"));
  }
  std::stable_sort(copies.begin(), copies.end(),
                   [](const auto& a, const auto& b) { return a.writeCount > b.writeCount; });
  for (const DescriptorCopy& copy : copies) {
    BucketDescriptors block;
    bool isUnsupported = false;
    const qint64 area = header.descriptors[size_t(copy.slot - 1)].size;
    const QString reason = readDescriptorCopy(source, copy, area, block, isUnsupported);
    unsupported += isUnsupported;
    if (!reason.isEmpty()) {
      refuse(copy, reason);
    } else if (choice.slot == 0) {
      choice.block = std::move(block);
      choice.slot = copy.slot;
      choice.isOlder = highestRefused > copy.writeCount;
    }
  }
  choice.isUnsupported = choice.slot == 0 && unsupported > 0 && unsupported == present;
  return choice;
}

}  // namespace lens

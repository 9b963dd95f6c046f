#include "embedded/nsf/maker/made_blocks.h"

#include "embedded/nsf/maker/made_bytes.h"

namespace lens::made {
namespace {

constexpr qsizetype kSummaryPage = 8206, kBodyPage = 8198, kDescriptors = 224, kBitmapDescriptor = 20;
constexpr quint32 kBitmapSize = 4096, kLogSize = 300;

QByteArray stored(const QByteArray& body, Packing packing) {
  return packing == Packing::None ? body : packedBits(body, packing);
}

// The page of descriptors that lies in the superblock: the only one, or the last with an index of the others.
QByteArray summaryPage(const MadeSuperblock& block, int pages) {
  QByteArray page = zeros(kSummaryPage);
  const qsizetype onOthers = (pages - 1) * kDescriptorsOfPage;
  const qsizetype begin = kDescriptors + 14 * (pages - 1);
  putTime(page, 4, block.time);
  for (qsizetype i = onOthers; i < block.buckets.size(); ++i) {
    const qsizetype at = begin + 14 * (i - onOthers);
    if (at + 14 > page.size()) break;
    put32(page, at, block.buckets[i].position);
    putTime(page, at + 4, block.buckets[i].time);
    put16(page, at + 12, 0x0503);
  }
  return page;
}

QByteArray pageOfBodies(const MadeSuperblock& block) {
  constexpr qsizetype kFirst = 70, kDescriptor = 6;
  QByteArray page = zeros(kBodyPage);
  for (qsizetype i = 0; i < block.bodyBuckets.size(); ++i) {
    put32(page, kFirst + i * kDescriptor, block.bodyBuckets[i]);
    put16(page, kFirst + i * kDescriptor + 4, 0x0305);
  }
  return page;
}

// What no reader needs and what looks like something that one may look for.
QByteArray logOfChanges() {
  QByteArray log(kLogSize, '\x3C');
  put16(log, 100, 0x2006);
  return log;
}

void addFooter(QByteArray& block, const TimeDate& time, qsizetype summedFrom) {
  const quint32 sum = wordSum(QByteArrayView(block).sliced(summedFrom));
  addTime(block, time);
  add32(block, sum);
}

}  // namespace

QByteArray superblockBytes(const MadeSuperblock& block, int copy, const MadeChange& change) {
  const int buckets = int(block.buckets.size());
  int pages = (buckets + kDescriptorsOfPage - 1) / kDescriptorsOfPage;
  if (block.severalPages) pages = std::max(pages, 2);
  pages = std::max(pages, 1);
  QByteArray body = summaryPage(block, pages);
  if (pages > 1) body += QByteArray(32, '\x11');
  const bool hasBodies = block.pageOfBodies || !block.bodyBuckets.isEmpty();
  if (hasBodies) body += pageOfBodies(block);
  body += zeros(kBitmapDescriptor) + block.rrvCopy + QByteArray(kBitmapSize, '\x7F') + block.listedNotes +
          logOfChanges();
  if (change) change(MadePart::SuperblockBody, quint32(copy), body);

  QByteArray header = zeros(100);
  put16(header, 0, 0x000E);
  putTime(header, 2, block.time);
  put32(header, 10, quint32(body.size()));
  put32(header, 14, quint32(buckets));
  put32(header, 18, quint32(block.bodyBuckets.size()));
  put32(header, 22, 1);
  put32(header, 26, quint32(block.rrvCopy.size()));
  put32(header, 30, block.rrvPosition);
  put32(header, 34, block.firstId);
  put32(header, 38, block.firstId + 4 * (kIdsOfTable - 1));
  put32(header, 42, kBitmapSize);
  put32(header, 46, quint32(block.listedNotes.size()));
  put32(header, 50, kLogSize);
  put32(header, 60, block.writeCount);
  put16(header, 68, block.packing == Packing::None ? 0 : 1);
  put32(header, 70, quint32(pages));
  put32(header, 74, hasBodies ? 1 : 0);
  put32(header, 88, 0xFFFFFFFF);
  const QByteArray packed = stored(body, block.packing);
  put32(header, 64, quint32(104 + packed.size() + 12));
  if (change) change(MadePart::SuperblockHeader, quint32(copy), header);

  QByteArray bytes = header;
  add32(bytes, quint32(packed.size()));
  bytes += packed;
  addFooter(bytes, block.time, 100);
  return bytes;
}

QByteArray descriptorBytes(const MadeDescriptors& block, int copy, const MadeChange& change) {
  constexpr quint32 kHashes = 7;
  QByteArray body, table, text;
  for (const MadeDescriptors::Rrv& bucket : block.rrvBuckets) {
    add32(body, bucket.position | (bucket.ofDocuments ? 0 : 1));
    add32(body, bucket.firstId);
  }
  for (const MadeName& name : block.names) {
    add32(table, quint32(text.size()));
    add16(table, quint32(name.text.size()));
    add8(table, quint8(name.type));
    add8(table, quint8(name.type >> 8));
    add16(table, 0);
    text += name.text;
  }
  body += table;
  add32(body, quint32(text.size()));
  body += text + QByteArray(kHashes * 2, '\x0D');
  if (change) change(MadePart::DescriptorBody, quint32(copy), body);

  const QByteArray packed = stored(body, block.packing);
  QByteArray header = zeros(70);
  put16(header, 0, 0x0001);
  put16(header, 2, 2);
  put16(header, 4, block.packing == Packing::None ? 0 : 1);
  put32(header, 6, quint32(body.size()));
  put32(header, 10, block.writeCount);
  put32(header, 14, quint32(70 + packed.size() + 12));
  putTime(header, 18, block.time);
  put32(header, 26, quint32(block.names.size()));
  put32(header, 30, 1);
  put32(header, 34, quint32(text.size()));
  put32(header, 38, quint32(block.rrvBuckets.size()));
  put32(header, 42, kHashes);
  put32(header, 66, quint32(packed.size()));
  if (change) change(MadePart::DescriptorHeader, quint32(copy), header);
  put32(header, 54, wordSum(header.first(54) + header.sliced(58, 8)));

  QByteArray bytes = header + packed;
  addFooter(bytes, block.time, 66);
  return bytes;
}

}  // namespace lens::made

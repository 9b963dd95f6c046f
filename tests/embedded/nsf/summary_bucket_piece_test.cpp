#include <gtest/gtest.h>
#include <QtEndian>

#include "embedded/nsf/record_bytes.h"
#include "embedded/nsf/summary_bucket.h"

namespace lens {
namespace {

void put16(QByteArray& bytes, qsizetype at, quint16 value) {
  qToLittleEndian(value, bytes.data() + at);
}
void put32(QByteArray& bytes, qsizetype at, quint32 value) {
  qToLittleEndian(value, bytes.data() + at);
}

// A bucket of 8192 bytes with three slots: a record over several sectors, an empty slot, a short record.
constexpr qsizetype kSize = 8192, kFooter = 8;
QByteArray plainBucket() {
  QByteArray bytes(kSize, '\0');
  bytes[0] = 0x02;
  bytes[1] = 0x42;
  put32(bytes, 2, 6);
  put32(bytes, 6, kSize);
  put32(bytes, 44, 3);
  put32(bytes, 50, kFooter);
  for (qsizetype at = 68; at < 68 + 2000; ++at) bytes[at] = char(at * 31 + 5);
  for (qsizetype at = 2100; at < 2150; ++at) bytes[at] = 'r';
  const qsizetype table = kSize - kFooter;
  put16(bytes, table - 4, 68);
  put16(bytes, table - 2, 2000);
  put16(bytes, table - 12, 2100);
  put16(bytes, table - 10, 50);
  return bytes;
}

// As it is put on disk: a half byte of each sector becomes the mark and is kept at the end.
QByteArray marked(QByteArray bytes, int mark = 9) {
  for (qsizetype sector = 0; sector < kSize / 512; ++sector) {
    const qsizetype at = 0x42 + sector * 512, keep = kSize - 1 - sector / 2;
    const quint8 half = quint8(bytes[at]) & 15;
    const quint8 kept = quint8(bytes[keep]);
    bytes[keep] = char(sector % 2 == 0 ? (kept & 0x0F) | half << 4 : (kept & 0xF0) | half);
    bytes[at] = char((quint8(bytes[at]) & 0xF0) | mark);
  }
  return bytes;
}

SummaryBucket bucketOf(const QByteArray& bytes) {
  SummaryBucketHead head;
  EXPECT_TRUE(SummaryBucketHead::read(bytes, head));
  return SummaryBucket(head, bytes);
}

TEST(SummaryBucket, TellsItselfByItsHead) {
  SummaryBucketHead head;
  ASSERT_TRUE(SummaryBucketHead::read(marked(plainBucket()), head));
  EXPECT_EQ(head.number, 7u);
  EXPECT_EQ(head.size, kSize);
}

TEST(SummaryBucket, IsNoneWithAnyWrongFieldOfItsHead) {
  const auto isBucket = [](const auto& change) {
    QByteArray bytes = plainBucket();
    change(bytes);
    SummaryBucketHead head;
    return SummaryBucketHead::read(bytes, head);
  };
  EXPECT_TRUE(isBucket([](QByteArray&) {}));
  EXPECT_FALSE(isBucket([](QByteArray& bytes) { bytes[1] = 0x41; }));
  EXPECT_FALSE(isBucket([](QByteArray& bytes) { put32(bytes, 2, 0xFFFFFFFF); }));
  EXPECT_FALSE(isBucket([](QByteArray& bytes) { put32(bytes, 6, 8193); }));
  EXPECT_FALSE(isBucket([](QByteArray& bytes) { put32(bytes, 6, 3072), put32(bytes, 50, 3); }));
  EXPECT_FALSE(isBucket([](QByteArray& bytes) { put32(bytes, 6, 66560), put32(bytes, 50, 65); }));
  EXPECT_FALSE(isBucket([](QByteArray& bytes) { put32(bytes, 50, 7); }));
  EXPECT_FALSE(isBucket([](QByteArray& bytes) { put32(bytes, 44, 2048); }));
  EXPECT_FALSE(isBucket([](QByteArray& bytes) { put32(bytes, 44, 0xFFFFFFFF); }));
  EXPECT_FALSE(isBucket([](QByteArray& bytes) { bytes.truncate(65); }));
}

TEST(SummaryBucket, GivesBackWhatTheMarksOfItsSectorsHide) {
  const QByteArray plain = plainBucket();
  ASSERT_NE(marked(plain).mid(68, 2000), plain.mid(68, 2000));
  for (int mark = 0; mark < 16; ++mark) {
    const SummaryBucket bucket = bucketOf(marked(plain, mark));
    QByteArrayView record;
    qint64 offset = 0;
    ASSERT_TRUE(bucket.record(1, record, offset));
    EXPECT_EQ(record, plain.mid(68, 2000));
    EXPECT_EQ(offset, 68);
    EXPECT_FALSE(bucket.isTorn());
  }
}

TEST(SummaryBucket, NoticesAWriteThatWasInterrupted) {
  QByteArray bytes = marked(plainBucket(), 3);
  bytes[0x42 + 512 * 5] = char((quint8(bytes[0x42 + 512 * 5]) & 0xF0) | 4);
  EXPECT_TRUE(bucketOf(bytes).isTorn());
}

TEST(SummaryBucket, LeadsBySlotToARecordOrNowhere) {
  const SummaryBucket bucket = bucketOf(marked(plainBucket()));
  QByteArrayView record;
  qint64 offset = 0;
  ASSERT_TRUE(bucket.record(3, record, offset));
  EXPECT_EQ(record, QByteArray(50, 'r'));
  EXPECT_TRUE(bucket.record(2, record, offset));
  EXPECT_TRUE(record.isEmpty());
  EXPECT_FALSE(bucket.record(0, record, offset));
  EXPECT_FALSE(bucket.record(4, record, offset));
}

TEST(SummaryBucket, NoRecordLiesInTheHeadOrTheTableOfSlots) {
  const auto leadsTo = [](quint16 at, quint16 size) {
    QByteArray bytes = plainBucket();
    put16(bytes, kSize - kFooter - 4, at);
    put16(bytes, kSize - kFooter - 2, size);
    QByteArrayView record;
    qint64 offset = 0;
    return bucketOf(marked(bytes)).record(1, record, offset);
  };
  const quint16 end = kSize - kFooter - 12;
  EXPECT_TRUE(leadsTo(68, end - 68));
  EXPECT_FALSE(leadsTo(68, end - 67));
  EXPECT_FALSE(leadsTo(67, 100));
  EXPECT_FALSE(leadsTo(68, 15));
  EXPECT_FALSE(leadsTo(0xFFFF, 0xFFFF));
}

TEST(RecordBytes, GivesZerosForWhatIsNotThere) {
  const QByteArray raw = QByteArray::fromHex("0102030405");
  const RecordBytes bytes{QByteArrayView(raw)};
  EXPECT_EQ(bytes.u16(1), 0x0302);
  EXPECT_EQ(bytes.u32(1), 0x05040302u);
  EXPECT_EQ(bytes.u32(2), 0u);
  EXPECT_EQ(bytes.u8(-1), 0);
  EXPECT_FALSE(bytes.has(1, 5));
  EXPECT_FALSE(bytes.has(Q_INT64_C(0x7FFFFFFFFFFFFFFF), Q_INT64_C(0x7FFFFFFFFFFFFFFF)));
  EXPECT_TRUE(bytes.part(4, 2).isEmpty());
}

TEST(RecordBytes, ChecksumFillsUpTheLastWord) {
  EXPECT_EQ(xorOfWords(QByteArray::fromHex("0100000002000000")), 3u);
  EXPECT_EQ(xorOfWords(QByteArray::fromHex("0100000002")), 3u);
  EXPECT_EQ(xorOfWords(QByteArray::fromHex("010000000203")), 0x303u);
  EXPECT_EQ(xorOfWords({}), 0u);
}

}  // namespace
}  // namespace lens

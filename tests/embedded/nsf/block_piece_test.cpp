// Superblocks and descriptor blocks: which copy is taken, and what each field that is wrong leads to.
#include <gtest/gtest.h>
#include <QtEndian>

#include "embedded/nsf/bucket_descriptors.h"
#include "embedded/nsf/cx_writer.h"
#include "embedded/nsf/record_bytes.h"
#include "embedded/nsf/superblock.h"

namespace lens {
namespace {

constexpr TimeDate kWritten{{4711, 2459000}};

void setU16(QByteArray& bytes, qsizetype at, quint16 value) {
  qToLittleEndian(value, bytes.data() + at);
}
void setU32(QByteArray& bytes, qsizetype at, quint32 value) {
  qToLittleEndian(value, bytes.data() + at);
}
void setTime(QByteArray& bytes, qsizetype at, const TimeDate& time) {
  setU32(bytes, at, time.innards[0]);
  setU32(bytes, at + 4, time.innards[1]);
}

// Count, packed body and footer behind a head; the checksum begins behind the head.
QByteArray withBody(QByteArray block, const QByteArray& body) {
  const qsizetype head = block.size();
  const QByteArray packed = cxLiterals(body);
  block.resize(head + 4);
  setU32(block, head, quint32(packed.size()));
  block += packed;
  const quint32 sum = xorOfWords(QByteArrayView(block).sliced(head));
  const qsizetype footer = block.size();
  block.resize(footer + 12);
  setTime(block, footer, kWritten);
  setU32(block, footer + 8, sum);
  return block;
}

constexpr quint32 kFirstId = 0x8F6;
QByteArray superblockBytes(quint32 writeCount, quint32 buckets = 2) {
  QByteArray body(8206 + 20 + 4096 + 4096, '\0');
  for (quint32 i = 0; i < buckets; ++i) setU32(body, 224 + 14 * qsizetype(i), 100 + i);
  const qsizetype ids = 8206 + 20;
  setU16(body, ids, nsfsignature::IdBucket);
  setU32(body, ids + 6, kFirstId);
  QByteArray list(18 + 5, '\0');
  setU32(list, 0, 4);
  setU16(list, 4, 3);
  setU16(list, 6, 1);
  list[18] = 2;
  setU32(list, 19, kFirstId);
  body += list;

  QByteArray block(100, '\0');
  setU16(block, 0, nsfsignature::Superblock);
  setTime(block, 2, kWritten);
  setU32(block, 10, quint32(body.size()));
  setU32(block, 14, buckets);
  setU32(block, 22, 1);
  setU32(block, 26, 4096);
  setU32(block, 34, kFirstId);
  setU32(block, 42, 4096);
  setU32(block, 46, quint32(list.size()));
  setU32(block, 60, writeCount);
  setU16(block, 68, 1);
  setU32(block, 70, 1);
  block = withBody(block, body);
  setU32(block, 64, quint32(block.size()));
  return block;
}

QByteArray descriptorBytes(quint32 writeCount) {
  const QByteArray texts = "SubjectBody";
  QByteArray body(8 + 2 * 10 + 4, '\0');
  setU32(body, 0, 16 | 1);
  setU32(body, 4, 0x106);
  setU16(body, 8 + 4, 7);
  setU16(body, 8 + 6, 0x0500);
  setU32(body, 18, 7);
  setU16(body, 18 + 4, 4);
  setU16(body, 18 + 6, 0x0001);
  setU32(body, 28, quint32(texts.size()));
  body += texts;
  body += QByteArray(6, '\0');

  QByteArray block(66, '\0');
  setU16(block, 0, nsfsignature::Descriptors);
  setU16(block, 2, 2);
  setU16(block, 4, 1);
  setU32(block, 6, quint32(body.size()));
  setU32(block, 10, writeCount);
  setTime(block, 18, kWritten);
  setU32(block, 26, 2);
  setU32(block, 34, quint32(texts.size()));
  setU32(block, 38, 1);
  setU32(block, 42, 3);
  const qsizetype size = withBody(block, body).size();
  setU32(block, 14, quint32(size));
  setU32(block, 54, xorOfWords(block.first(54) + block.sliced(58, 8)));
  return withBody(block, body);
}

// Copies at fixed places, a kibibyte before the first one.
struct CopiesInAFile {
  static constexpr qsizetype kRoom = 64 * 1024;
  QByteArray bytes = QByteArray(1024, '\0');
  NsfHeader header;
  NsfReport report;

  template <class Areas>
  void put(Areas& areas, size_t slot, const QByteArray& copy) {
    areas[slot] = {bytes.size(), kRoom};
    bytes += copy.leftJustified(kRoom, '\xAA');
  }
  SuperblockChoice superblock() { return chooseSuperblock(NsfBytesSource(bytes), header, report); }
  DescriptorChoice descriptors() { return chooseDescriptors(NsfBytesSource(bytes), header, report); }
};

CopiesInAFile superblocks(const QByteArray& first, const QByteArray& second) {
  CopiesInAFile file;
  file.put(file.header.superblocks, 0, first);
  file.put(file.header.superblocks, 1, second);
  file.put(file.header.superblocks, 2, {});
  return file;
}

TEST(Superblock, TheCopyThatWasWrittenLastIsTaken) {
  CopiesInAFile file = superblocks(superblockBytes(7, 3), superblockBytes(8, 2));
  const SuperblockChoice choice = file.superblock();
  EXPECT_EQ(choice.block.slot, 2);
  EXPECT_FALSE(choice.isOlder);
  EXPECT_EQ(choice.block.bucketPositions, (QVector<qint64>{25600, 25856}));
  EXPECT_EQ(choice.block.currentIdBucket.size(), 4096);
  EXPECT_TRUE(choice.block.hasDocuments);
  EXPECT_EQ(choice.block.documents.count(), 3);
  EXPECT_TRUE(file.report.problems.isEmpty());  // the area that was never written is no problem
}

TEST(Superblock, NoFlippedByteOfTheBodyIsTakenForTheNewestCopy) {
  const QByteArray newer = superblockBytes(8);
  for (qsizetype at = 100; at < newer.size(); at += at < 300 ? 1 : 997) {
    QByteArray damaged = newer;
    damaged[at] = char(damaged[at] ^ 0x10);
    CopiesInAFile file = superblocks(superblockBytes(7), damaged);
    const SuperblockChoice choice = file.superblock();
    EXPECT_EQ(choice.block.slot, 1) << at;
    EXPECT_TRUE(choice.isOlder) << at;
    ASSERT_EQ(file.report.problems.size(), 1) << at;
    EXPECT_EQ(file.report.problems[0].id, 2u);
    EXPECT_FALSE(file.report.problems[0].reason.isEmpty());
  }
}

TEST(Superblock, ALostSignatureIsTold) {
  QByteArray damaged = superblockBytes(8);
  damaged[0] = 0x0F;
  CopiesInAFile file = superblocks(superblockBytes(7), damaged);
  const SuperblockChoice choice = file.superblock();
  EXPECT_EQ(choice.block.slot, 1);
  EXPECT_TRUE(choice.isOlder);
  EXPECT_EQ(file.report.problems.size(), 1);
}

TEST(Superblock, WithoutASignedCopyTheFileMayBeEncrypted) {
  CopiesInAFile file = superblocks(QByteArray(5000, '\x5C'), {});
  EXPECT_TRUE(file.superblock().noneWasSigned);
}

TEST(Superblock, ACopyBeyondTheEndOfTheFileIsNoSignOfEncryption) {
  CopiesInAFile file = superblocks(superblockBytes(7), superblockBytes(8));
  file.bytes.truncate(512);
  const SuperblockChoice choice = file.superblock();
  EXPECT_EQ(choice.block.slot, 0);
  EXPECT_FALSE(choice.noneWasSigned);
}

TEST(Superblock, TellsAPackingThatIsNotKnown) {
  QByteArray first = superblockBytes(7), second = superblockBytes(8);
  setU16(first, 68, 2);
  setU16(second, 68, 2);
  CopiesInAFile file = superblocks(first, second);
  EXPECT_TRUE(file.superblock().isUnsupported);
}

TEST(Superblock, WithSeveralPagesTheMapIsNotGuessed) {
  QByteArray block = superblockBytes(8);
  setU32(block, 70, 2);
  CopiesInAFile file = superblocks(block, {});
  const SuperblockChoice choice = file.superblock();
  EXPECT_EQ(choice.block.slot, 1);
  EXPECT_TRUE(choice.block.bucketPositions.isEmpty());
  EXPECT_EQ(choice.block.currentIdBucket.size(), 4096);
}

TEST(Superblock, SizesOfEveryKindAreRefusedWithoutHarm) {
  for (const qsizetype field : {10, 14, 18, 22, 26, 42, 46, 50, 54, 64, 70, 74}) {
    for (const quint32 value : {0u, 1u, 0x7FFFFFFFu, 0xFFFFFFFFu}) {
      QByteArray block = superblockBytes(8);
      setU32(block, field, value);
      CopiesInAFile file = superblocks(block, superblockBytes(7));
      EXPECT_GT(file.superblock().block.slot, 0) << field << ' ' << value;
    }
  }
}

CopiesInAFile descriptorBlocks(const QByteArray& first, const QByteArray& second) {
  CopiesInAFile file;
  file.put(file.header.descriptors, 0, first);
  file.put(file.header.descriptors, 1, second);
  return file;
}

TEST(BucketDescriptors, GiveNamesWithTypesAndPlacesOfTheTableOfIds) {
  CopiesInAFile file = descriptorBlocks(descriptorBytes(4), descriptorBytes(5));
  const DescriptorChoice choice = file.descriptors();
  EXPECT_EQ(choice.slot, 2);
  EXPECT_FALSE(choice.isOlder);
  QString name;
  quint16 type = 0;
  ASSERT_TRUE(choice.block.name(0, name, type));
  EXPECT_EQ(name, QStringLiteral("Subject"));
  EXPECT_EQ(type, 0x0500);
  ASSERT_TRUE(choice.block.name(1, name, type));
  EXPECT_EQ(name, QStringLiteral("Body"));
  EXPECT_EQ(type, 0x0001);
  EXPECT_FALSE(choice.block.name(2, name, type));
  const auto places = choice.block.idBuckets();
  ASSERT_EQ(places.size(), 1);
  EXPECT_EQ(places[0].position, 4096);  // the mark of design notes is not part of it
  EXPECT_EQ(places[0].firstId, 0x106u);
}

TEST(BucketDescriptors, NoFlippedByteIsTakenForTheNewestCopy) {
  const QByteArray newer = descriptorBytes(5);
  for (qsizetype at = 0; at < newer.size(); ++at) {
    QByteArray damaged = newer;
    damaged[at] = char(damaged[at] ^ 0x40);
    CopiesInAFile file = descriptorBlocks(descriptorBytes(4), damaged);
    EXPECT_EQ(file.descriptors().slot, 1) << at;
    EXPECT_EQ(file.report.problems.size(), 1) << at;
  }
}

TEST(BucketDescriptors, NoneIsWholeInWhatIsCutShort) {
  CopiesInAFile file = descriptorBlocks(descriptorBytes(4), descriptorBytes(5));
  file.bytes.truncate(1024 + 80);
  const DescriptorChoice choice = file.descriptors();
  EXPECT_EQ(choice.slot, 0);
  EXPECT_EQ(file.report.problems.size(), 2);
}

TEST(NsfIdTable, KeepsRuns) {
  QByteArray bytes(18 + 10, '\0');
  setU32(bytes, 0, 4);
  setU16(bytes, 4, 4);
  setU16(bytes, 6, 2);
  bytes[18] = 2;
  setU32(bytes, 19, 0x106);
  bytes[23] = 0;
  setU32(bytes, 24, 0x2FA);
  bytes += "filler that is no run";
  const NsfIdTable table(bytes);
  EXPECT_TRUE(table.isWhole());
  QVector<NoteId> ids;
  table.forEach([&](NoteId id) { ids.push_back(id); });
  EXPECT_EQ(ids, (QVector{NoteId(0x106), NoteId(0x10A), NoteId(0x10E), NoteId(0x2FA)}));
  EXPECT_TRUE(table.contains(NoteId(0x10E)));
  EXPECT_TRUE(table.contains(NoteId(0x2FA)));
  for (const quint32 id : {0u, 0x102u, 0x107u, 0x112u, 0x2F6u, 0x2FEu, 0xFFFFFFFFu})
    EXPECT_FALSE(table.contains(NoteId(id))) << id;
  setU16(bytes, 4, 5);
  EXPECT_FALSE(NsfIdTable(bytes).isWhole());
  EXPECT_FALSE(NsfIdTable(QByteArray()).isWhole());
}

TEST(NsfIdTable, CountsBeyondSixteenBits) {
  // 300 runs of 256 IDs.
  QByteArray bytes(18 + 300 * 5, '\0');
  setU32(bytes, 0, 4);
  setU16(bytes, 4, quint16(300 * 256));
  setU16(bytes, 6, 300);
  for (qsizetype i = 0; i < 300; ++i) {
    bytes[18 + i * 5] = char(255);
    setU32(bytes, 19 + i * 5, quint32(0x106 + i * 2048));
  }
  const NsfIdTable table(bytes);
  EXPECT_TRUE(table.isWhole());
  EXPECT_EQ(table.count(), 300 * 256);
}

}  // namespace
}  // namespace lens

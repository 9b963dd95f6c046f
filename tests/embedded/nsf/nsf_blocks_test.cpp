// The blocks that all else hangs on: which copy is taken, what is packed how, and what is refused.
#include "embedded/nsf/nsf_test.h"

namespace lens::made {
namespace {

// The older copies know less: the last document is not in the table, the last name not in the list.
MadeDatabase withOlderCopies(int newestSuperblock, int newestDescriptor) {
  MadeDatabase described;
  described.newestSuperblock = newestSuperblock;
  described.newestDescriptor = newestDescriptor;
  described.notesSince = 1;
  described.namesSince = 1;
  described.add(document(1, "early"));
  MadeNote last = document(2, "late");
  last.items.push_back({"Latest", 0x0500, flag::Summary, "z"});
  described.add(last);
  return described;
}

void flip(QByteArray& bytes, qint64 at) {
  bytes[at] = char(bytes[at] ^ 0x10);
}

TEST(NsfBlocks, TheNewestCopiesAreTakenWhereverTheyLie) {
  for (const int superblock : {0, 1})
    for (const int descriptor : {0, 1}) {
      const MadeDatabase described = withOlderCopies(superblock, descriptor);
      const auto read = readBytes(makeFile(described).bytes);
      EXPECT_EQ(difference(*read, described).toStdString(), "");
      EXPECT_EQ(read->report().superblock, superblock + 1);
      EXPECT_EQ(read->report().descriptors, descriptor + 1);
      EXPECT_FALSE(read->report().olderSuperblock);
      EXPECT_FALSE(read->report().olderDescriptors);
    }
}

// Each place of the newest that a check covers: signature, size, footer, checksum, contents.
TEST(NsfBlocks, AnOlderSuperblockIsTakenWhenTheNewestDoesNotCheck) {
  for (const int newest : {0, 1}) {
    const MadeDatabase described = withOlderCopies(newest, 0);
    const MadeFile file = makeFile(described);
    const MadePlace place = file.superblocks[newest];
    for (const qint64 at :
         {qint64(0), qint64(3), qint64(66), qint64(102), qint64(140), place.size - 12, place.size - 1}) {
      QByteArray bytes = file.bytes;
      flip(bytes, place.at + at);
      const auto read = readBytes(bytes);
      ASSERT_TRUE(read->isOpen()) << at << " " << read->report().refused.toStdString();
      EXPECT_EQ(read->report().superblock, 2 - newest) << at;
      EXPECT_TRUE(read->report().olderSuperblock) << at;
      EXPECT_TRUE(isShown(*read, described.notes[0].id));
      EXPECT_FALSE(isShown(*read, described.notes[1].id)) << at;
    }
  }
}

TEST(NsfBlocks, OlderDescriptorsAreTakenWhenTheNewestDoNotCheck) {
  for (const int newest : {0, 1}) {
    const MadeDatabase described = withOlderCopies(1, newest);
    const MadeFile file = makeFile(described);
    const MadePlace place = file.descriptorBlocks[newest];
    for (const qint64 at :
         {qint64(0), qint64(10), qint64(27), qint64(54), qint64(80), place.size - 12, place.size - 1}) {
      QByteArray bytes = file.bytes;
      flip(bytes, place.at + at);
      const auto read = readBytes(bytes);
      ASSERT_TRUE(read->isOpen()) << at << " " << read->report().refused.toStdString();
      EXPECT_EQ(read->report().descriptors, 2 - newest) << at;
      const NsfNote late = noteOf(*read, described.notes[1].id);
      ASSERT_EQ(late.items.size(), 2) << at;
      EXPECT_EQ(late.items[0].item.name, u"Subject");
      EXPECT_EQ(late.items[0].state, NsfItemState::Whole);
      EXPECT_TRUE(late.items[1].item.name.startsWith(u'?')) << late.items[1].item.name.toStdString();
      EXPECT_EQ(late.items[1].state, NsfItemState::Damaged);
    }
  }
}

// The table of IDs in force went with them: what looks like a note is shown, and the report says that it is
// no more.
TEST(NsfBlocks, WithoutAWholeSuperblockNotesAreLookedFor) {
  const MadeDatabase described = sampleDatabase();
  const MadeFile file = makeFile(described);
  QByteArray bytes = file.bytes;
  for (const int copy : {0, 1}) flip(bytes, file.superblocks[copy].end() - 1);
  const auto read = readBytes(bytes);
  ASSERT_TRUE(read->isOpen()) << read->report().refused.toStdString();
  EXPECT_EQ(difference(*read, described).toStdString(), "");
  EXPECT_EQ(read->report().superblock, 0);
  EXPECT_TRUE(read->report().bucketsScanned);
  EXPECT_TRUE(read->report().salvaged);
  EXPECT_GE(problemsOf(read->report(), NsfProblemKind::Superblock), 2);
}

TEST(NsfBlocks, WithoutWholeDescriptorsItemsHaveNoNames) {
  const MadeDatabase described = sampleDatabase();
  const MadeFile file = makeFile(described);
  QByteArray bytes = file.bytes;
  for (const int copy : {0, 1}) flip(bytes, file.descriptorBlocks[copy].end() - 1);
  const auto read = readBytes(bytes);
  ASSERT_TRUE(read->isOpen()) << read->report().refused.toStdString();
  EXPECT_EQ(read->report().descriptors, 0);
  EXPECT_GE(problemsOf(read->report(), NsfProblemKind::Descriptors), 2);
  for (const MadeNote& made : described.notes) {
    if (made.stub) continue;
    const NsfNote note = noteOf(*read, made.id);
    EXPECT_EQ(note.header.unid.text(), unidText(made.unid));
    EXPECT_EQ(note.items.size(), made.items.size());
    for (const NsfItem& item : note.items) {
      EXPECT_TRUE(item.item.name.startsWith(u'?')) << item.item.name.toStdString();
      EXPECT_EQ(item.state, NsfItemState::Damaged);
    }
  }
}

TEST(NsfBlocks, BlocksWithoutSignaturesMayBeEncrypted) {
  const MadeFile file = makeFile(sampleDatabase());
  QByteArray scrambled = file.bytes;
  for (const int copy : {0, 1})
    for (qint64 at = file.superblocks[copy].at; at < file.superblocks[copy].end(); ++at)
      scrambled[at] = char(at * 7 + 3);
  EXPECT_EQ(readBytes(scrambled)->refusal(), NsfRefusal::Encrypted);
  QByteArray said = scrambled;
  said[646] = 1;
  const auto read = readBytes(said);
  EXPECT_EQ(read->refusal(), NsfRefusal::Encrypted);
  EXPECT_TRUE(read->report().refused.contains(u"encrypt")) << read->report().refused.toStdString();
}

TEST(NsfBlocks, EveryPackingIsRead) {
  for (const Packing packing : {Packing::None, Packing::Literals, Packing::Matches}) {
    MadeDatabase described = sampleDatabase();
    described.packing = packing;
    const auto read = readBytes(makeFile(described).bytes);
    EXPECT_EQ(difference(*read, described).toStdString(), "") << int(packing);
  }
}

TEST(NsfBlocks, AnUnknownPackingIsRefusedAsUnsupported) {
  ChangedSample sample;
  for (const quint32 copy : {0u, 1u})
    sample.with(MadePart::SuperblockHeader, copy, [](QByteArray& header) { put16(header, 68, 2); });
  EXPECT_EQ(sample.read()->refusal(), NsfRefusal::Unsupported);
  ChangedSample other;
  for (const quint32 copy : {0u, 1u})
    other.with(MadePart::DescriptorHeader, copy, [](QByteArray& header) { put16(header, 4, 7); });
  EXPECT_EQ(other.read()->refusal(), NsfRefusal::Unsupported);
}

TEST(NsfBlocks, OldReleasesAreRefusedByTheirVersion) {
  for (const quint32 ods : {0u, 16u, 17u, 20u, 41u, 42u}) {
    MadeDatabase described = sampleDatabase();
    described.ods = ods;
    const auto read = readBytes(makeFile(described).bytes);
    EXPECT_EQ(read->refusal(), NsfRefusal::TooOld) << ods;
    EXPECT_TRUE(read->report().refused.contains(QString::number(ods)))
        << read->report().refused.toStdString();
  }
}

TEST(NsfBlocks, OtherFilesAreNoDatabases) {
  const QByteArray whole = makeFile(sampleDatabase()).bytes;
  QByteArray other = whole;
  other[0] = 'S';
  for (const QByteArray& bytes :
       {QByteArray(), QByteArray("x"), whole.first(2), whole.first(1023), other, QByteArray(5000, '\0'),
        QByteArray("SQLite format 3") + QByteArray(9000, '\0')})
    EXPECT_EQ(readBytes(bytes)->refusal(), NsfRefusal::NotADatabase) << bytes.size();
}

TEST(NsfBlocks, FormerBucketsAreNotTakenForThoseOfToday) {
  for (const bool severalPages : {false, true}) {
    MadeDatabase described = sampleDatabase();
    described.formerBuckets = true;
    described.severalPages = severalPages;
    const auto read = readBytes(makeFile(described).bytes);
    EXPECT_EQ(difference(*read, described).toStdString(), "");
    EXPECT_EQ(read->report().bucketsScanned, severalPages);
  }
}

TEST(NsfBlocks, APageOfBodiesIsSteppedOver) {
  MadeDatabase described = sampleDatabase();
  described.pageOfBodies = true;
  EXPECT_EQ(difference(*readBytes(makeFile(described).bytes), described).toStdString(), "");
}

TEST(NsfBlocks, BucketsOfEverySizeAreRead) {
  for (quint32 size = 4096; size <= 63488; size += 3072) {
    MadeDatabase described = sampleDatabase();
    described.bucketSize = size;
    described.mark = quint8(size / 1024);
    EXPECT_EQ(difference(*readBytes(makeFile(described).bytes), described).toStdString(), "") << size;
  }
}

// Each value of what a mark covers comes back: letters over all sectors, in every half of a byte.
TEST(NsfBlocks, MarksOfSectorsAreUndone) {
  for (int first = 0; first < 256; first += 17) {
    MadeDatabase described;
    described.mark = quint8(first);
    for (quint32 i = 0; i < 12; ++i) {
      QByteArray text(1900, '\0');
      for (qsizetype at = 0; at < text.size(); ++at) text[at] = char(first + at * 3 + qsizetype(i));
      described.add(document(i, text));
    }
    EXPECT_EQ(difference(*readBytes(makeFile(described).bytes), described).toStdString(), "") << first;
  }
}

// The table of IDs on disk is old where the superblock has a copy.
TEST(NsfBlocks, TheSuperblocksTableOfIdsIsTheOneInForce) {
  ChangedSample sample;
  sample.with(MadePart::RrvBucket, 1, [&](QByteArray& bucket) {
    // Leads to another note.
    put32(bucket, 32, 0x80000001);
    put32(bucket, 36, 2);
  });
  EXPECT_EQ(difference(*sample.read(), sample.described).toStdString(), "");
}

TEST(NsfBlocks, ATruncatedFileGivesWhatIsWhole) {
  MadeDatabase described = sampleDatabase();
  described.bucketSize = 4096;
  const MadeFile file = makeFile(described);
  ASSERT_GT(file.buckets.size(), 1);
  const MadePlace last = file.buckets.back();
  const auto read = readBytes(file.bytes.first(last.at + 100));
  ASSERT_TRUE(read->isOpen()) << read->report().refused.toStdString();
  EXPECT_TRUE(read->report().truncated);
  QSet<quint32> lost;
  for (const MadeNote& note : described.notes)
    if (file.notes[note.id].bucket == file.buckets.size() - 1) lost.insert(note.id);
  ASSERT_FALSE(lost.isEmpty());
  EXPECT_EQ(difference(*read, described, lost).toStdString(), "");
  for (const quint32 id : lost) EXPECT_FALSE(isShown(*read, id));
  EXPECT_EQ(read->report().notesFound + read->report().stubsFound, int(described.notes.size()));
  EXPECT_FALSE(read->report().problems.isEmpty());
}

TEST(NsfBlocks, SalvageFindsNotesWhereTheBlocksAreLost) {
  const MadeDatabase described = sampleDatabase();
  const MadeFile file = makeFile(described);
  QByteArray bytes = file.bytes;
  for (const int copy : {0, 1}) flip(bytes, file.superblocks[copy].end() - 1);
  const auto read = readBytes(bytes, NsfReading::Salvage);
  ASSERT_TRUE(read->isOpen()) << read->report().refused.toStdString();
  EXPECT_TRUE(read->report().salvaged);
  for (const MadeNote& note : described.notes) EXPECT_TRUE(note.stub || isShown(*read, note.id)) << note.id;
}

}  // namespace
}  // namespace lens::made

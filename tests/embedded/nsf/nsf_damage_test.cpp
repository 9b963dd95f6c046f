// One thing is wrong in an otherwise whole file: the smallest unit around it cannot be read and is reported,
// all else is as it was written.
#include "embedded/nsf/nsf_test.h"

namespace lens::made {
namespace {

using Change = ChangedSample::Change;

// The note alone is not shown, and the report names it.
void expectLost(ChangedSample& sample, quint32 id, NsfProblemKind kind = NsfProblemKind::NoteRecord) {
  const auto read = sample.read();
  EXPECT_FALSE(isShown(*read, id));
  NsfNote none;
  EXPECT_FALSE(read->readNote(NoteId(id), none));
  EXPECT_EQ(difference(*read, sample.described, {id}).toStdString(), "");
  EXPECT_GE(problemsOf(read->report(), kind, id), 1) << read->report().text().toStdString();
  EXPECT_EQ(read->report().notesFound, read->report().notesProven + 1);
  EXPECT_EQ(read->report().listedButMissing, 1);
}

TEST(NsfDamage, ARecordThatIsNotItsOwnIsNotShown) {
  const quint32 id = ChangedSample().ids.plain;
  const Change changes[] = {[](QByteArray& record) { put16(record, 0, 0x0005); },
                            [](QByteArray& record) { put32(record, 6, get32(record, 6) + 4); },
                            [](QByteArray& record) { put32(record, 6, 0); },
                            [](QByteArray& record) { put32(record, 2, get32(record, 2) + 1); },
                            [](QByteArray& record) { put32(record, 2, 0xFFFFFFFF); }};
  for (const Change& change : changes) {
    ChangedSample sample;
    sample.with(MadePart::Record, id, change);
    expectLost(sample, id);
  }
}

// A deletion leaves a head and nothing else: a note whose status was damaged is no proven deletion.
TEST(NsfDamage, ARecordWithItemsIsNoStub) {
  ChangedSample sample;
  sample.with(MadePart::Record, sample.ids.plain,
              [](QByteArray& record) { put16(record, 38, get16(record, 38) | status::Stub); });
  const auto read = sample.read();
  EXPECT_EQ(read->stubs().size(), 1);
  EXPECT_EQ(difference(*read, sample.described, {sample.ids.plain}).toStdString(), "");
  EXPECT_GE(problemsOf(read->report(), NsfProblemKind::NoteRecord, sample.ids.plain), 1);
}

TEST(NsfDamage, ASlotThatLeadsElsewhereLosesItsNoteOnly) {
  ChangedSample sample;
  sample.described.bucketSize = 16384;
  const MadeFile file = sample.file();
  const MadeNotePlaces places = file.notes[sample.ids.plain], others = file.notes[sample.ids.inRecord];
  ASSERT_EQ(places.bucket, others.bucket);
  const qint64 bucket = file.buckets[places.bucket].at;
  struct Slot {
    qint64 offset, length;
  };
  const Slot wrong[] = {{others.record.at - bucket, others.record.size},
                        {20, places.record.size},
                        {67, places.record.size},
                        {0, 0},
                        {places.record.at - bucket, 15},
                        {places.record.at - bucket, 65535},
                        {65535, 65535},
                        {16384 - 40, 300}};
  for (const Slot& slot : wrong) {
    QByteArray bytes = file.bytes;
    put16(bytes, places.slot.at, quint32(slot.offset));
    put16(bytes, places.slot.at + 2, quint32(slot.length));
    const auto read = readBytes(bytes);
    EXPECT_FALSE(isShown(*read, sample.ids.plain)) << slot.offset;
    EXPECT_EQ(difference(*read, sample.described, {sample.ids.plain}).toStdString(), "") << slot.offset;
    EXPECT_GE(problemsOf(read->report(), NsfProblemKind::NoteRecord, sample.ids.plain), 1) << slot.offset;
  }
}

TEST(NsfDamage, AnEntryThatLeadsElsewhereLosesItsNoteOnly) {
  const MadeEntry entries[] = {{0x80000000, 1}, {0x80000001, 0}, {0x80000001, 0x7FF},
                               {0x80FFFFFF, 1}, {0x80000063, 1}, {0x00000001, 0},
                               {0x7FFFFFFE, 0}, {0x00FFFFFF, 0}, {0xFFFFFFFF, 1}};
  for (const MadeEntry& entry : entries) {
    ChangedSample sample;
    sample.described.entries.insert(sample.ids.plain, entry);
    const auto read = sample.read();
    EXPECT_FALSE(isShown(*read, sample.ids.plain)) << std::hex << entry.a;
    EXPECT_EQ(difference(*read, sample.described, {sample.ids.plain}).toStdString(), "")
        << std::hex << entry.a;
    EXPECT_EQ(read->report().listedButMissing, 1) << std::hex << entry.a;
    EXPECT_FALSE(read->report().problems.isEmpty()) << std::hex << entry.a;
  }
}

TEST(NsfDamage, MoreItemsThanTheRecordHoldsAreNotMadeUp) {
  for (const quint32 count : {19u, 200u, 65535u}) {
    ChangedSample sample;
    sample.with(MadePart::Record, sample.ids.plain, [&](QByteArray& record) { put16(record, 50, count); });
    const auto read = sample.read();
    EXPECT_EQ(difference(*read, sample.described, {sample.ids.plain}).toStdString(), "") << count;
    NsfNote note;
    if (!read->readNote(NoteId(sample.ids.plain), note)) continue;
    bool isMarked = false;
    for (const NsfItem& item : note.items) isMarked |= item.state == NsfItemState::Damaged;
    EXPECT_TRUE(isMarked) << count;
    EXPECT_GT(read->report().itemsDamaged, 0) << count;
    EXPECT_LT(note.items.size(), 300) << count;
  }
}

TEST(NsfDamage, ANameThatIsNotInTheTableIsShownByItsNumber) {
  ChangedSample sample;
  sample.with(MadePart::Record, sample.ids.plain,
              [](QByteArray& record) { put16(record, 100 + 3 * 8, 0xABCD); });
  const auto read = sample.read();
  const NsfNote note = noteOf(*read, sample.ids.plain);
  const MadeNote& made = sample.described.note(sample.ids.plain);
  ASSERT_EQ(note.items.size(), made.items.size());
  for (int i = 0; i < 3; ++i) {
    EXPECT_EQ(note.items[i].state, NsfItemState::Whole);
    EXPECT_EQ(note.items[i].item.data().toByteArray(), made.items[i].value);
  }
  EXPECT_EQ(note.items[3].item.name.toUpper(), u"?ABCD");
  EXPECT_EQ(note.items[3].state, NsfItemState::Damaged);
  for (qsizetype i = 4; i < note.items.size(); ++i) EXPECT_NE(note.items[i].state, NsfItemState::Whole) << i;
  EXPECT_EQ(difference(*read, sample.described, {sample.ids.plain}).toStdString(), "");
}

TEST(NsfDamage, ValuesBeyondTheRecordAreNotShown) {
  ChangedSample sample;
  sample.with(MadePart::Record, sample.ids.plain,
              [](QByteArray& record) { put16(record, 100 + 3 * 8 + 4, 65000); });
  const auto read = sample.read();
  const NsfNote note = noteOf(*read, sample.ids.plain);
  const MadeNote& made = sample.described.note(sample.ids.plain);
  for (int i = 0; i < 3; ++i) EXPECT_EQ(note.items[i].item.data().toByteArray(), made.items[i].value);
  EXPECT_EQ(note.items[3].state, NsfItemState::Damaged);
  EXPECT_GT(read->report().itemsDamaged, 0);
}

// The bytes are shown all the same: they are those of the file.
TEST(NsfDamage, ValuesThatAreNotLaidOutAsTheirTypeAreMarked) {
  const std::pair<quint16, const char*> values[] = {{0x0501, "02000100"},
                                                    {0x0501, "0100050061"},
                                                    {0x0501, "010001006162"},
                                                    {0x0300, "00000000000000"},
                                                    {0x0300, "000000000000000000"},
                                                    {0x0400, "00"},
                                                    {0x0301, "01000000"},
                                                    {0x0301, "ffffffff"},
                                                    {0x0401, "010000000000000000000000ff"},
                                                    {0x0004, "0200cb961e9c9ec69c482c815a00f8852585"},
                                                    {0x0001, "8101"},
                                                    {0x0001, "85ff0300"},
                                                    {0x0001, "8500030000000000"},
                                                    {0x0001, "85ffff00"}};
  for (const auto& [type, hex] : values) {
    MadeDatabase described;
    MadeNote note = document(1);
    note.items.push_back({"Odd", type, 0, QByteArray::fromHex(hex)});
    note.items.push_back({"Behind", 0x0500, 0, "whole"});
    const quint32 id = described.add(note);
    const auto read = readBytes(makeFile(described).bytes);
    const NsfNote shown = noteOf(*read, id);
    ASSERT_EQ(shown.items.size(), 3);
    EXPECT_EQ(shown.items[1].state, NsfItemState::Damaged) << type << " " << hex;
    EXPECT_EQ(shown.items[1].item.data().toByteArray(), QByteArray::fromHex(hex)) << type;
    EXPECT_EQ(shown.items[2].state, NsfItemState::Whole);
    EXPECT_EQ(shown.items[2].item.data().toByteArray(), "whole");
    EXPECT_EQ(read->report().itemsDamaged, 1);
  }
}

TEST(NsfDamage, EmptyValuesOfEveryTypeAreWhole) {
  MadeDatabase described;
  MadeNote note = document(1);
  for (const quint16 type :
       {0x0001, 0x0002, 0x0004, 0x0300, 0x0301, 0x0400, 0x0401, 0x0501, 0x0502, 0x0600, 0x0019})
    note.items.push_back({"Item" + QByteArray::number(type), type, flag::Summary, {}});
  described.add(note);
  EXPECT_EQ(difference(*readBytes(makeFile(described).bytes), described).toStdString(), "");
}

TEST(NsfDamage, ABodyThatIsNotItsOwnLeavesTheSummary) {
  const Change changes[] = {[](QByteArray& body) { put16(body, 0, 0x0011); },
                            [](QByteArray& body) { put32(body, 6, get32(body, 6) + 4); },
                            [](QByteArray& body) { put8(body, 10, get8(body, 10) ^ 1); },
                            [](QByteArray& body) { put32(body, 2, get32(body, 2) - 1); },
                            [](QByteArray& body) { put32(body, 2, 0xFFFFFFFF); }};
  for (const Change& change : changes) {
    ChangedSample sample;
    sample.with(MadePart::Body, sample.ids.plain, change);
    const auto read = sample.read();
    const NsfNote note = noteOf(*read, sample.ids.plain);
    const MadeNote& made = sample.described.note(sample.ids.plain);
    ASSERT_EQ(note.items.size(), made.items.size());
    for (qsizetype i = 0; i < note.items.size(); ++i) {
      if (made.items[i].flags & flag::Summary) {
        EXPECT_EQ(note.items[i].item.data().toByteArray(), made.items[i].value) << i;
        EXPECT_EQ(note.items[i].state, NsfItemState::Whole) << i;
      } else if (!made.items[i].value.isEmpty()) {
        EXPECT_EQ(note.items[i].state, NsfItemState::Unreadable) << i;
        EXPECT_TRUE(note.items[i].item.data().isEmpty()) << i;
      }
    }
    EXPECT_GE(problemsOf(read->report(), NsfProblemKind::NonSummary, sample.ids.plain), 1);
    EXPECT_GT(read->report().itemsUnreadable, 0);
    EXPECT_EQ(difference(*read, sample.described, {sample.ids.plain}).toStdString(), "");
    // The store takes what has a value.
    EXPECT_LT(note.toNote().items.size(), note.items.size());
  }
}

TEST(NsfDamage, ABodyWithAnotherSequenceIsToldAndShown) {
  ChangedSample sample;
  sample.with(MadePart::Body, sample.ids.plain, [](QByteArray& body) { put32(body, 26, 77); });
  const auto read = sample.read();
  EXPECT_EQ(difference(*read, sample.described).toStdString(), "");
  EXPECT_EQ(problemsOf(read->report(), NsfProblemKind::NonSummary, sample.ids.plain), 1);
}

TEST(NsfDamage, AWrongSumOfABodyIsAWarning) {
  const MadeDatabase described = sampleDatabase();
  SampleIds ids;
  const MadeFile file = makeFile(sampleDatabase(&ids));
  QByteArray bytes = file.bytes;
  const qint64 at = file.notes[ids.plain].body.at + 68 + 9;
  bytes[at] = char(bytes[at] ^ 1);
  const auto read = readBytes(bytes);
  EXPECT_EQ(difference(*read, described, {ids.plain}).toStdString(), "");
  EXPECT_EQ(noteOf(*read, ids.plain).items.size(), sampleDatabase().note(ids.plain).items.size());
  EXPECT_EQ(read->report().nonSummaryChecksumsWrong, 1);
  ASSERT_EQ(problemsOf(read->report(), NsfProblemKind::NonSummary, ids.plain), 1);
  for (const NsfProblem& problem : read->report().problems)
    EXPECT_TRUE(problem.kind != NsfProblemKind::NonSummary || problem.isWarning);
}

TEST(NsfDamage, ABodyInABucketOfBodiesIsMarked) {
  ChangedSample sample;
  sample.described.note(sample.ids.plain).bodyInBucket = true;
  const auto read = sample.read();
  const NsfNote note = noteOf(*read, sample.ids.plain);
  EXPECT_EQ(note.items[0].state, NsfItemState::Whole);
  EXPECT_EQ(note.items[5].state, NsfItemState::Unreadable);
  EXPECT_EQ(difference(*read, sample.described, {sample.ids.plain}).toStdString(), "");
}

// What is only guessed is shown when all of it agrees, and not at all otherwise.
TEST(NsfDamage, ABodyInABucketOfBodiesIsReadWhereItProvesItself) {
  for (const auto buckets : {MadeDatabase::BodyBuckets::Plain, MadeDatabase::BodyBuckets::Marked}) {
    SampleIds ids;
    MadeDatabase described = sampleDatabase(&ids);
    described.bodyBuckets = buckets;
    described.note(ids.plain).bodyInBucket = true;
    described.note(ids.attached).items.push_back({"Body", 0x0001, 0, richTextValue({"papers"})});
    described.note(ids.attached).bodyInBucket = true;
    const auto read = readBytes(makeFile(described).bytes);
    EXPECT_EQ(difference(*read, described).toStdString(), "");
    EXPECT_EQ(read->report().dataBuckets, 1);
    EXPECT_TRUE(read->report().isComplete()) << read->report().text().toStdString();
    struct Case {
      qsizetype at;  // in the block of the body
      const char* what;
    };
    for (const Case& wrong : {Case{0, "signature"},
                              {2, "size"},
                              {6, "ID"},
                              {10, "UNID"},
                              {25, "UNID"},
                              {58, "checksum"},
                              {70, "first value"},
                              {3000, "a letter"}}) {
      MadeDatabase changed = described;
      changed.change = [&](MadePart part, quint32 number, QByteArray& bytes) {
        if (part == MadePart::Body && number == ids.plain) bytes[wrong.at] = char(bytes[wrong.at] ^ 0x10);
      };
      const auto damaged = readBytes(makeFile(changed).bytes);
      EXPECT_EQ(difference(*damaged, described, {ids.plain}).toStdString(), "") << wrong.what;
      const NsfNote note = noteOf(*damaged, ids.plain);
      ASSERT_EQ(note.items.size(), described.note(ids.plain).items.size());
      for (const NsfItem& item : note.items)
        EXPECT_EQ(item.state == NsfItemState::Unreadable, !(item.item.flags & itemflag::Summary))
            << wrong.what << ": " << item.item.name.toStdString();
      EXPECT_EQ(problemsOf(damaged->report(), NsfProblemKind::NonSummary, ids.plain), 1) << wrong.what;
    }
  }
}

TEST(NsfDamage, PlacesInBucketsOfBodiesThatAreNoneAreMarked) {
  for (const quint32 place : {0x80000000u, 0x81000000u, 0x80000001u, 0x82000001u, 0xFF000001u, 0x81000002u,
                              0xFFFFFFFFu, 0x81FFFFFFu}) {
    ChangedSample sample;
    sample.described.bodyBuckets = MadeDatabase::BodyBuckets::Plain;
    sample.described.note(sample.ids.plain).bodyInBucket = true;
    sample.with(MadePart::Record, sample.ids.plain, [&](QByteArray& record) { put32(record, 56, place); });
    const auto read = sample.read();
    EXPECT_EQ(difference(*read, sample.described, {sample.ids.plain}).toStdString(), "") << place;
    EXPECT_EQ(noteOf(*read, sample.ids.plain).items[5].state, NsfItemState::Unreadable) << place;
  }
}

TEST(NsfDamage, SizesOfBodiesBeyondTheFileAreNotAllocated) {
  for (const quint32 size : {0x7FFFFFFFu, 0xFFFFFFFFu, 0x80000000u, 100'000'000u})
    for (const quint32 place : {0u, 1u, 0x7FFFFFFFu, 0x00FFFFFFu}) {
      ChangedSample sample;
      sample.with(MadePart::Record, sample.ids.plain, [&](QByteArray& record) {
        put32(record, 56, place);
        put32(record, 60, size);
      });
      sample.with(MadePart::Record, sample.ids.inRecord, [&](QByteArray& record) {
        put32(record, 56, place);
        put32(record, 60, size);
      });
      const auto read = sample.read();
      EXPECT_EQ(difference(*read, sample.described, {sample.ids.plain, sample.ids.inRecord}).toStdString(),
                "");
      EXPECT_EQ(noteOf(*read, sample.ids.inRecord).items[0].state, NsfItemState::Unreadable);
    }
}

TEST(NsfDamage, MarksThatDifferAreATornWrite) {
  SampleIds ids;
  const MadeDatabase described = sampleDatabase(&ids);
  const MadeFile file = makeFile(described);
  QByteArray bytes = file.bytes;
  const qint64 at = file.buckets[0].at + 0x42 + 3 * 512;
  bytes[at] = char((bytes[at] & 0xF0) | 0x0E);
  const auto read = readBytes(bytes);
  EXPECT_EQ(difference(*read, described).toStdString(), "");
  EXPECT_EQ(read->report().bucketsTorn, 1);
  ASSERT_EQ(problemsOf(read->report(), NsfProblemKind::SummaryBucket), 1);
  EXPECT_EQ(readBytes(file.bytes)->report().bucketsTorn, 0);
}

TEST(NsfDamage, ADescriptorThatLeadsToNoBucketIsFoundByLooking) {
  for (const quint32 position : {0u, 1u, 0x00FFFFFFu, 0xFFFFFFFFu}) {
    ChangedSample sample;
    sample.with(MadePart::SuperblockBody, 1, [&](QByteArray& body) { put32(body, 224, position); });
    const auto read = sample.read();
    EXPECT_EQ(difference(*read, sample.described).toStdString(), "") << position;
    EXPECT_TRUE(read->report().bucketsScanned) << position;
  }
}

// Two descriptors of one place: a bucket knows its number.
TEST(NsfDamage, OverlappingBucketsAreToldApartByTheirNumbers) {
  ChangedSample sample;
  sample.described.bucketSize = 4096;
  sample.with(MadePart::SuperblockBody, 1, [](QByteArray& body) { put32(body, 224 + 14, get32(body, 224)); });
  ASSERT_GT(sample.file().buckets.size(), 1);
  EXPECT_EQ(difference(*sample.read(), sample.described).toStdString(), "");
}

TEST(NsfDamage, ABucketThatIsNoneLosesItsNotes) {
  const Change changes[] = {[](QByteArray& bucket) { put16(bucket, 0, 0x4203); },
                            [](QByteArray& bucket) { put32(bucket, 2, 7); },
                            [](QByteArray& bucket) { put32(bucket, 6, 8000); },
                            [](QByteArray& bucket) { put32(bucket, 6, 0xFFFFFC00); },
                            [](QByteArray& bucket) { put32(bucket, 6, 0); },
                            [](QByteArray& bucket) { put32(bucket, 44, 0xFFFFFFFF); },
                            [](QByteArray& bucket) { put32(bucket, 44, 0x40000001); },
                            [](QByteArray& bucket) { put32(bucket, 50, 3); }};
  for (const Change& change : changes) {
    ChangedSample sample;
    sample.with(MadePart::Bucket, 0, change);
    const MadeFile file = sample.file();
    QSet<quint32> lost;
    for (const MadeNote& note : sample.described.notes)
      if (file.notes[note.id].bucket == 0) lost.insert(note.id);
    const auto read = readBytes(file.bytes);
    EXPECT_EQ(difference(*read, sample.described, lost).toStdString(), "");
    for (const quint32 id : lost) EXPECT_FALSE(isShown(*read, id));
    EXPECT_FALSE(read->report().problems.isEmpty());
    EXPECT_EQ(read->report().notesFound + read->report().stubsFound, int(sample.described.notes.size()));
  }
}

TEST(NsfDamage, ATableOfIdsThatIsNoneLosesItsIds) {
  const Change changes[] = {[](QByteArray& bucket) { put16(bucket, 0, 0x2007); },
                            [](QByteArray& bucket) { put32(bucket, 6, 0x8F6); }};
  for (const Change& change : changes) {
    ChangedSample sample;
    sample.with(MadePart::RrvBucket, 0, change);
    QSet<quint32> lost;
    for (const MadeNote& note : sample.described.notes)
      if (note.id < 0x8F6) lost.insert(note.id);
    const auto read = sample.read();
    EXPECT_EQ(difference(*read, sample.described, lost).toStdString(), "");
    EXPECT_GE(problemsOf(read->report(), NsfProblemKind::IdTable), 1);
  }
}

TEST(NsfDamage, AWrongSumOfATableOfIdsIsAWarning) {
  const MadeDatabase described = sampleDatabase();
  const MadeFile file = makeFile(described);
  QByteArray bytes = file.bytes;
  const qint64 unused = file.rrvBuckets[0].end() - 8;
  put32(bytes, unused, 0x7FFFFFFF);
  put32(bytes, unused + 4, 0);
  const auto read = readBytes(bytes);
  EXPECT_EQ(difference(*read, described).toStdString(), "");
  ASSERT_EQ(problemsOf(read->report(), NsfProblemKind::IdTable), 1);
  EXPECT_TRUE(read->report().problems[0].isWarning);
}

TEST(NsfDamage, TablesOfIdsThatOverlapAreReadOnce) {
  ChangedSample sample;
  for (const quint32 copy : {0u, 1u})
    sample.with(MadePart::DescriptorBody, copy,
                [](QByteArray& body) { putBytes(body, 0, body.sliced(8, 8)); });
  const auto read = sample.read();
  ASSERT_TRUE(read->isOpen());
  EXPECT_GE(problemsOf(read->report(), NsfProblemKind::IdTable), 1);
  QSet<quint32> lost;
  for (const MadeNote& note : sample.described.notes)
    if (note.id < 0x8F6) lost.insert(note.id);
  EXPECT_EQ(difference(*read, sample.described, lost).toStdString(), "");
}

// Whatever counts and sizes say, the file is not larger than it is.
TEST(NsfDamage, CountsOfEverySizeComeToAnEnd) {
  for (const quint32 count : {0xFFFFFFFFu, 0x7FFFFFFFu, 0x40000000u, 0u}) {
    for (const int at : {10, 14, 18, 22, 26, 30, 34, 42, 46, 50, 54, 60, 64, 70, 74}) {
      ChangedSample sample;
      for (const quint32 copy : {0u, 1u})
        sample.with(MadePart::SuperblockHeader, copy, [&](QByteArray& header) { put32(header, at, count); });
      const auto read = sample.read();
      read->forEachNote([](NsfNote&) { return true; });
      EXPECT_FALSE(read->report().text().isEmpty()) << at;
    }
    for (const int at : {6, 10, 14, 26, 30, 34, 38, 42, 66}) {
      ChangedSample sample;
      for (const quint32 copy : {0u, 1u})
        sample.with(MadePart::DescriptorHeader, copy, [&](QByteArray& header) { put32(header, at, count); });
      const auto read = sample.read();
      read->forEachNote([](NsfNote&) { return true; });
      EXPECT_FALSE(read->report().text().isEmpty()) << at;
    }
  }
}

TEST(NsfDamage, NumbersOfTheHeadAreNotTrusted) {
  const MadeFile file = makeFile(sampleDatabase());
  for (const quint32 number : {0xFFFFFFFFu, 0x7FFFFFFFu, 0u})
    for (int at = 2; at < 650; at += at < 100 || at > 550 ? 2 : 16) {
      QByteArray bytes = file.bytes;
      put32(bytes, at, number);
      const auto read = readBytes(bytes);
      read->forEachNote([](NsfNote&) { return true; });
      read->acl();
      EXPECT_FALSE(read->report().text().isEmpty()) << at;
    }
}

TEST(NsfDamage, NamesThatLieOutsideTheirTextAreNotRead) {
  for (const quint32 offset : {0xFFFFFFFFu, 0x7FFFFFFFu, 100'000u}) {
    ChangedSample sample;
    for (const quint32 copy : {0u, 1u})
      sample.with(MadePart::DescriptorBody, copy, [&](QByteArray& body) { put32(body, 2 * 8, offset); });
    const auto read = sample.read();
    ASSERT_TRUE(read->isOpen());
    int shown = 0;
    read->forEachNote([&](NsfNote&) { return ++shown > 0; });
    EXPECT_EQ(shown, int(sample.described.notes.size()) - 1);
  }
}

TEST(NsfDamage, ParentsInACircleComeToAnEnd) {
  ChangedSample sample;
  MadeNote& parent = sample.described.note(sample.ids.parent);
  parent.parent = sample.ids.response;
  MadeNote& response = sample.described.note(sample.ids.response);
  response.responses = {sample.ids.parent, sample.ids.response};
  sample.described.note(sample.ids.ghost).parent = sample.ids.ghost;
  EXPECT_EQ(difference(*sample.read(), sample.described).toStdString(), "");
}

TEST(NsfDamage, AListOfResponsesBeyondTheRecordIsCut) {
  ChangedSample sample;
  sample.with(MadePart::Record, sample.ids.parent, [](QByteArray& record) { put16(record, 54, 65535); });
  const auto read = sample.read();
  EXPECT_EQ(difference(*read, sample.described, {sample.ids.parent}).toStdString(), "");
  NsfNote note;
  if (read->readNote(NoteId(sample.ids.parent), note)) {
    EXPECT_LT(note.responses.size(), 100);
  }
}

TEST(NsfDamage, TwoNotesOfOneUnidAreBothShownAndTold) {
  ChangedSample sample;
  sample.described.note(sample.ids.ghost).unid = sample.described.note(sample.ids.plain).unid;
  const auto read = sample.read();
  EXPECT_EQ(difference(*read, sample.described).toStdString(), "");
  EXPECT_EQ(read->noteIdOf(Unid::fromText(unidText(sample.described.note(sample.ids.plain).unid))),
            NoteId(sample.ids.plain));
  EXPECT_GE(problemsOf(read->report(), NsfProblemKind::NoteRecord), 1);
}

TEST(NsfDamage, DocumentsThatTheFilesListLacksAreCounted) {
  ChangedSample sample;
  sample.with(MadePart::Record, sample.ids.ghost, [](QByteArray& record) { put16(record, 38, 0); });
  sample.described.note(sample.ids.inRecord).status = 0;
  const auto read = sample.read();
  EXPECT_EQ(read->report().foundButUnlisted, 1);
  EXPECT_EQ(read->report().listedButMissing, 0);
}

TEST(NsfDamage, AnObjectThatIsNoneLeavesTheNote) {
  const Change changes[] = {[](QByteArray& object) { put16(object, 0, 0x0007); },
                            [](QByteArray& object) { put32(object, 2, 114); },
                            [](QByteArray& object) { put32(object, 2, 0xFFFFFFFF); }};
  ChangedSample whole;
  const quint32 first = whole.described.objects[0].id;
  for (const Change& change : changes) {
    ChangedSample sample;
    sample.with(MadePart::Object, first, change);
    const auto read = sample.read();
    EXPECT_EQ(difference(*read, sample.described).toStdString(), "");
    EXPECT_FALSE(read->objectIds().contains(first));
    EXPECT_GE(problemsOf(read->report(), NsfProblemKind::ObjectRecord, first), 1);
    QByteArray content;
    EXPECT_NE(attachmentOf(*read, noteOf(*read, sample.ids.attached).items[1], content), u"");
    content.clear();
    EXPECT_EQ(attachmentOf(*read, noteOf(*read, sample.ids.attached).items[2], content), u"");
    EXPECT_EQ(content, sampleContent());
  }
}

TEST(NsfDamage, TheListOfProblemsHasAnEnd) {
  MadeDatabase described;
  for (quint32 i = 0; i < 1500; ++i) described.add(document(i));
  described.change = [](MadePart part, quint32, QByteArray& bytes) {
    if (part == MadePart::Record) put16(bytes, 0, 0xEEEE);
  };
  const auto read = readBytes(makeFile(described).bytes);
  EXPECT_EQ(read->report().problems.size(), NsfReport::kMaxProblems);
  EXPECT_GE(read->report().moreProblems, 500);
  EXPECT_EQ(read->report().notesFound, 1500);
  EXPECT_EQ(read->report().notesProven, 0);
}

TEST(NsfDamage, NothingIsLeftOutOfTheReport) {
  ChangedSample sample;
  sample.with(MadePart::Record, sample.ids.plain, [](QByteArray& record) { put32(record, 6, 2); });
  const auto read = sample.read();
  const QString text = read->report().text();
  EXPECT_TRUE(text.contains(NoteId(sample.ids.plain).hexText())) << text.toStdString();
  const QJsonObject json = read->report().json();
  EXPECT_FALSE(json.isEmpty());
}

}  // namespace
}  // namespace lens::made

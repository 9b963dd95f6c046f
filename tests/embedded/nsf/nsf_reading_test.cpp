// What is written into a file of the platform's format comes out of it: IDs, UNIDs, classes, sequence
// numbers, times, items in order with their types, flags and bytes.
#include "embedded/nsf/nsf_test.h"

namespace lens::made {
namespace {

TEST(NsfReading, ASampleIsReadAsItWasWritten) {
  for (const quint32 ods : {43u, 48u, 51u, 52u, 53u, 54u, 55u}) {
    MadeDatabase described = sampleDatabase();
    described.ods = ods;
    const auto read = readBytes(makeFile(described).bytes);
    EXPECT_EQ(difference(*read, described).toStdString(), "") << ods;
    EXPECT_EQ(read->report().odsVersion, int(ods));
    EXPECT_EQ(read->report().isTestedVersion, ods == 52 || ods == 55);
    EXPECT_TRUE(read->report().problems.isEmpty()) << read->report().text().toStdString();
  }
}

TEST(NsfReading, CountsAgreeWithWhatWasWritten) {
  SampleIds ids;
  const MadeDatabase described = sampleDatabase(&ids);
  const auto read = readBytes(makeFile(described).bytes);
  const int notes = int(described.notes.size()) - 1, objects = int(described.objects.size());
  read->forEachNote([](NsfNote&) { return true; });
  const NsfReport& report = read->report();
  EXPECT_EQ(report.entries, notes + 1 + objects);
  EXPECT_EQ(report.notesFound, notes);
  EXPECT_EQ(report.notesProven, notes);
  EXPECT_EQ(report.stubsFound, 1);
  EXPECT_EQ(report.stubsProven, 1);
  EXPECT_EQ(report.objectsFound, objects);
  EXPECT_EQ(report.objectsProven, objects);
  EXPECT_EQ(report.listedDocuments, 26);
  EXPECT_EQ(report.listedButMissing, 0);
  EXPECT_EQ(report.foundButUnlisted, 0);
  EXPECT_EQ(report.notesRead, notes);
  EXPECT_EQ(report.itemsDamaged, 0);
  EXPECT_EQ(report.itemsUnreadable, 0);
  EXPECT_EQ(report.itemsSealed, 1);
  EXPECT_EQ(report.nonSummaryBlocks, 1);
  EXPECT_EQ(report.nonSummaryChecksumsWrong, 0);
}

TEST(NsfReading, ReadingTwiceCountsOnce) {
  const auto read = readBytes(makeFile(sampleDatabase()).bytes);
  read->forEachNote([](NsfNote&) { return true; });
  const int items = read->report().items;
  read->forEachNote([](NsfNote&) { return true; });
  NsfNote note;
  read->readNote(read->noteIds().first(), note);
  EXPECT_EQ(read->report().items, items);
}

TEST(NsfReading, RandomDatabasesAreReadItemByItem) {
  const quint32 step = qEnvironmentVariableIsSet("LENS_SOAK") ? 1 : 3;
  for (quint32 seed = 1; seed <= 40; seed += step) {
    const MadeDatabase described = randomDatabase(seed, 20 + int(seed) * 3);
    const auto read = readBytes(makeFile(described).bytes);
    EXPECT_EQ(difference(*read, described).toStdString(), "") << "seed " << seed;
    EXPECT_EQ(objectsDifference(*read, described).toStdString(), "") << "seed " << seed;
    EXPECT_EQ(read->report().nonSummaryChecksumsWrong, 0) << "seed " << seed;
    EXPECT_TRUE(read->report().problems.isEmpty()) << "seed " << seed << "\n"
                                                   << read->report().text().toStdString();
  }
}

// Several tables of IDs, more buckets than one page of descriptors names.
TEST(NsfReading, ManyBucketsOnSeveralPages) {
  MadeDatabase described;
  described.bucketSize = 4096;
  described.formerBuckets = true;
  described.changed = someTime(10);
  for (quint32 i = 0; i < 1800; ++i)
    described.add(document(i, QByteArray(1000 + i % 500, char('a' + i % 26))));
  const MadeFile file = makeFile(described);
  ASSERT_GT(file.buckets.size(), 570);
  ASSERT_GE(file.rrvBuckets.size(), 4);
  const auto read = readBytes(file.bytes);
  EXPECT_EQ(difference(*read, described).toStdString(), "");
  EXPECT_TRUE(read->report().bucketsScanned);
  EXPECT_EQ(read->report().buckets, file.buckets.size());
}

// A list of IDs counts in 16 bits.
TEST(NsfReading, MoreDocumentsThanAListCounts) {
  MadeDatabase described;
  described.bucketSize = 63488;
  for (quint32 i = 0; i < 66'000; ++i) described.add(document(i));
  const auto read = readBytes(makeFile(described).bytes);
  EXPECT_EQ(difference(*read, described).toStdString(), "");
  EXPECT_EQ(read->report().foundButUnlisted, 0);
  EXPECT_EQ(read->report().listedButMissing, 0);
}

// Bytes of a real file's note, by hand.
TEST(NsfReading, AUnidIsWrittenAsTheProductWritesIt) {
  MadeDatabase described;
  MadeNote note = document(1);
  note.unid = QByteArray::fromHex("cb961e9c9ec69c482c815a00f8852585");
  const quint32 id = described.add(note);
  const auto read = readBytes(makeFile(described).bytes);
  const Unid unid = Unid::fromText(u"489CC69E9C1E96CB852585F8005A812C");
  EXPECT_EQ(noteOf(*read, id).header.unid, unid);
  EXPECT_EQ(read->noteIdOf(unid), NoteId(id));
  EXPECT_TRUE(read->noteIdOf(Unid()).isNull());
}

TEST(NsfReading, PropertiesOfTheDatabase) {
  MadeDatabase described = sampleDatabase();
  described.replicationOptions = 0x4021;
  const auto read = readBytes(makeFile(described).bytes);
  const NsfProperties& properties = read->properties();
  EXPECT_EQ(properties.title, u"Papers");
  EXPECT_EQ(properties.categories, u"Tools");
  EXPECT_EQ(properties.templateName, u"pumps");
  EXPECT_EQ(properties.inheritsFrom, u"papers");
  EXPECT_EQ(properties.databaseClass, 0xFF01);
  EXPECT_EQ(properties.flags, 0x4240);
  EXPECT_EQ(properties.replicationFlags, 0x4021);
  EXPECT_EQ(properties.cutoffDays, 90);
  EXPECT_EQ(read->report().replicaId, u"852585F8005AE191");
}

TEST(NsfReading, ATitleAloneHasNoTemplate) {
  MadeDatabase described = sampleDatabase();
  for (const auto& [text, title, categories, made, inherited] :
       {std::array<const char*, 5>{"Only", "Only", "", "", ""},
        {"", "", "", "", ""},
        {"T\n#2x", "T", "", "", "x"},
        {"T\n#1y", "T", "", "y", ""},
        {"Gr\x81n\nk", "Grün", "k", "", ""}}) {
    described.information = text;
    const auto read = readBytes(makeFile(described).bytes);
    EXPECT_EQ(read->properties().title, QString::fromUtf8(title));
    EXPECT_EQ(read->properties().categories, QString::fromUtf8(categories)) << text;
    EXPECT_EQ(read->properties().templateName, QString::fromUtf8(made)) << text;
    EXPECT_EQ(read->properties().inheritsFrom, QString::fromUtf8(inherited)) << text;
  }
}

TEST(NsfReading, SpecialNotesAreThoseOfTheHeader) {
  ChangedSample sample;
  const auto read = sample.read();
  EXPECT_EQ(read->specialNote(noteclass::Form), NoteId(sample.ids.form));
  EXPECT_EQ(read->specialNote(noteclass::View), NoteId(sample.ids.view));
  EXPECT_EQ(read->specialNote(noteclass::Icon), NoteId(sample.ids.icon));
  EXPECT_EQ(read->specialNote(noteclass::Acl), NoteId(sample.ids.acl));
  EXPECT_TRUE(read->specialNote(noteclass::About).isNull());
}

TEST(NsfReading, AFolderNamesItsDocuments) {
  ChangedSample sample;
  const auto read = sample.read();
  const QVector<NoteId> listed = {NoteId(sample.ids.plain), NoteId(sample.ids.response),
                                  NoteId(sample.ids.attached)};
  EXPECT_EQ(read->folderDocuments(noteOf(*read, sample.ids.folder)), listed);
  EXPECT_TRUE(read->folderDocuments(noteOf(*read, sample.ids.view)).isEmpty());
  EXPECT_TRUE(read->folderDocuments(noteOf(*read, sample.ids.plain)).isEmpty());
}

TEST(NsfReading, KindsOfNotesAreToldApart) {
  ChangedSample sample;
  const auto read = sample.read();
  EXPECT_TRUE(noteOf(*read, sample.ids.profile).isGhost());
  EXPECT_TRUE(noteOf(*read, sample.ids.ghost).isGhost());
  EXPECT_FALSE(noteOf(*read, sample.ids.plain).isGhost());
  EXPECT_TRUE(noteOf(*read, sample.ids.softDeleted).isSoftDeleted());
  EXPECT_FALSE(isShown(*read, sample.ids.stub));
  NsfNote none;
  EXPECT_FALSE(read->readNote(NoteId(sample.ids.stub), none));
  EXPECT_FALSE(read->readNote(NoteId(sample.ids.accessList), none));
  EXPECT_FALSE(read->readNote(NoteId(0x10001), none));
}

TEST(NsfReading, ANoteForTheStoreKeepsItemsInOrder) {
  ChangedSample sample;
  const auto read = sample.read();
  const NsfNote note = noteOf(*read, sample.ids.plain);
  const Note kept = note.toNote();
  ASSERT_EQ(kept.items.size(), note.items.size());
  for (qsizetype i = 0; i < kept.items.size(); ++i) EXPECT_EQ(kept.items[i].name, note.items[i].item.name);
  EXPECT_EQ(kept.text(u"Form"), u"Memo");
}

TEST(NsfReading, ARecordThatLiesByItselfHasNoMarks) {
  MadeDatabase described;
  MadeNote note = document(1);
  note.items = {{"Large", 0x0500, flag::Summary, QByteArray(60'000, 'L')},
                {"Larger", 0x0500, flag::Summary, QByteArray(60'000, 'M')}};
  note.byPosition = true;
  described.add(note);
  const auto read = readBytes(makeFile(described).bytes);
  EXPECT_EQ(difference(*read, described).toStdString(), "");
}

TEST(NsfReading, AVisitorEndsTheWalk) {
  const auto read = readBytes(makeFile(sampleDatabase()).bytes);
  int seen = 0;
  read->forEachNote([&](NsfNote&) { return ++seen < 3; });
  EXPECT_EQ(seen, 3);
}

TEST(NsfReading, AnEmptyDatabaseHasNoNotes) {
  const auto read = readBytes(makeFile({}).bytes);
  EXPECT_TRUE(read->isOpen()) << read->report().refused.toStdString();
  EXPECT_TRUE(read->noteIds().isEmpty());
  EXPECT_FALSE(read->acl().has_value());
}

// The maker by itself: what it writes lies where it says.
TEST(NsfMaker, PlacesAreThoseOfTheFile) {
  SampleIds ids;
  const MadeFile file = makeFile(sampleDatabase(&ids));
  const MadeNotePlaces places = file.notes[ids.plain];
  EXPECT_EQ(get16(file.bytes, places.body.at), 0x0010);
  EXPECT_EQ(get32(file.bytes, places.body.at + 6), ids.plain);
  const MadePlace bucket = file.buckets[places.bucket];
  EXPECT_EQ(get16(file.bytes, bucket.at), 0x4202);
  EXPECT_EQ(get16(file.bytes, places.slot.at), places.record.at - bucket.at);
  EXPECT_EQ(get16(file.bytes, places.slot.at + 2), places.record.size);
  EXPECT_EQ(get16(file.bytes, file.objects[ids.accessList].at), 0x001B);
  EXPECT_EQ(file.bytes.size() % 256, 0);
}

}  // namespace
}  // namespace lens::made

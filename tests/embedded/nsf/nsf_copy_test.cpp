// A real database in a store of ours: the same IDs, UNIDs, numbers, times, classes, flags and items in their
// order.
#include "embedded/nsf/nsf_copy.h"

#include "embedded/nsf/nsf_acl_items.h"
#include "embedded/nsf/nsf_test.h"
#include "embedded/views/folder_documents.h"

namespace lens::made {
namespace {

bool isSame(const TimeDate& a, const TimeDate& b) {
  return a.innards[0] == b.innards[0] && a.innards[1] == b.innards[1];
}

// What a copy has to show of a note that was described.
bool isCopied(const MadeNote& note) {
  const bool isPlaceholder = (note.status & status::Ghost) != 0 && (note.status & status::Named) == 0;
  return !note.stub && !isPlaceholder && (note.status & status::SoftDeleted) == 0;
}

void expectCopied(const Database& copy, const MadeNote& made) {
  SCOPED_TRACE(testing::Message() << "note " << std::hex << made.id);
  Note note;
  ASSERT_TRUE(copy.notes().read(NoteId(made.id), note));
  EXPECT_EQ(note.header.unid.text(), unidText(made.unid));
  EXPECT_EQ(note.header.noteClass, made.noteClass);
  EXPECT_EQ(note.header.sequence, made.sequence);
  EXPECT_TRUE(isSame(note.header.sequenceTime, made.sequenceTime));
  EXPECT_TRUE(isSame(note.header.modified, made.modified));
  EXPECT_TRUE(isSame(note.header.added, made.added));
  EXPECT_TRUE(isSame(note.header.accessed, made.accessed));
  // Behind its own items the note of the access control list has the list.
  constexpr qsizetype kListItems = 4;
  const bool hasList = (made.noteClass & 0x0FFF) == 0x0040;
  ASSERT_EQ(note.items.size(), made.items.size() + (hasList ? kListItems : 0));
  for (qsizetype i = 0; i < made.items.size(); ++i) {
    EXPECT_EQ(note.items[i].type(), made.items[i].type) << i;
    EXPECT_EQ(note.items[i].flags, made.items[i].flags) << i;
    EXPECT_EQ(note.items[i].data().toByteArray(), made.items[i].value) << i;
  }
}

class NsfCopy : public testing::Test {
 protected:
  std::shared_ptr<Database> copyOf(const MadeDatabase& described) {
    source = readBytes(makeFile(described).bytes);
    counts = copyNsf(*source, path);
    return Database::open(path);
  }

  QTemporaryDir directory;
  const QString path = directory.filePath(u"copy.nsf"_s);
  std::unique_ptr<NsfDatabase> source;
  NsfCopyCounts counts;
};

TEST_F(NsfCopy, KeepsWhatTheFileHas) {
  SampleIds ids;
  const MadeDatabase described = sampleDatabase(&ids);
  const auto copy = copyOf(described);
  int notes = 0;
  for (const MadeNote& note : described.notes) {
    if (!isCopied(note)) continue;
    expectCopied(*copy, note);
    ++notes;
  }
  EXPECT_EQ(counts.notes, notes);
  EXPECT_EQ(counts.stubs, 1);
  EXPECT_EQ(counts.hidden, 2);
  EXPECT_EQ(counts.doubled, 0);
  EXPECT_EQ(copy->notes().state(NoteId(ids.stub)), NoteState::Stub);
  EXPECT_NE(copy->notes().state(NoteId(ids.softDeleted)), NoteState::Live);
  EXPECT_EQ(copy->info().title, u"Papers");
}

TEST_F(NsfCopy, AResponseKnowsItsParent) {
  SampleIds ids;
  MadeDatabase described = sampleDatabase(&ids);
  const auto copy = copyOf(described);
  Note note;
  ASSERT_TRUE(copy->notes().read(NoteId(ids.response), note));
  EXPECT_EQ(note.header.parent.text(), unidText(described.note(ids.parent).unid));
}

TEST_F(NsfCopy, RandomDatabasesAreCopiedItemByItem) {
  for (quint32 seed = 200; seed < 206; ++seed) {
    const MadeDatabase described = randomDatabase(seed, 80);
    const auto copy = copyOf(described);
    for (const MadeNote& note : described.notes)
      if (isCopied(note)) expectCopied(*copy, note);
    EXPECT_EQ(copy->notes().highestIssuedId() >= NoteId(described.notes.last().id), true);
    ASSERT_TRUE(QFile::remove(path));
  }
}

// One of them has the UNID first; the other one is counted.
TEST_F(NsfCopy, OfTwoNotesWithOneUnidOneIsTaken) {
  SampleIds ids;
  MadeDatabase described = sampleDatabase(&ids);
  described.note(ids.inRecord).unid = described.note(ids.plain).unid;
  const auto copy = copyOf(described);
  EXPECT_EQ(counts.doubled, 1);
  Note note;
  EXPECT_TRUE(copy->notes().read(NoteId(ids.plain), note));
  EXPECT_FALSE(copy->notes().read(NoteId(ids.inRecord), note));
}

TEST_F(NsfCopy, TheAccessControlListStandsInItsNote) {
  SampleIds ids;
  const auto copy = copyOf(sampleDatabase(&ids));
  Note note;
  ASSERT_TRUE(copy->notes().read(NoteId(ids.acl), note));
  QString entries = note.text(u"$ACLEntries");
  EXPECT_TRUE(entries.startsWith(u"-Default-; default=true; level=reader; "_s)) << entries.toStdString();
  EXPECT_TRUE(note.has(u"$ACLDigest"));
  Note written = note;
  written.items.clear();
  addAclItems(*source->acl(), written);
  for (const Item& item : std::as_const(written.items)) {
    ASSERT_TRUE(note.find(item.name)) << item.name.toStdString();
    EXPECT_EQ(note.find(item.name)->value, item.value);
  }
}

TEST_F(NsfCopy, WithoutAReadableListTheNoteIsAsItIs) {
  SampleIds ids;
  MadeDatabase described = sampleDatabase(&ids);
  described.change = [&ids](MadePart part, quint32 number, QByteArray& bytes) {
    if (part == MadePart::Object && number == ids.accessList) put16(bytes, 115, 0x5858);
  };
  const auto copy = copyOf(described);
  Note note;
  ASSERT_TRUE(copy->notes().read(NoteId(ids.acl), note));
  EXPECT_EQ(note.items.size(), described.note(ids.acl).items.size());
  EXPECT_EQ(problemsOf(source->report(), NsfProblemKind::Acl), 1);
  EXPECT_FALSE(source->report().isComplete());
}

}  // namespace
}  // namespace lens::made

#include "embedded/store/change_record.h"

#include <QBuffer>
#include <QRandomGenerator>
#include <map>
#include <thread>
#include <vector>

#include "embedded/format/stored_object.h"
#include "embedded/support/store_test.h"

namespace lens {
namespace {

class ChangeRecordTest : public StoreTest {
 protected:
  QString record() const { return path(QStringLiteral("record")); }
  // Records what the action changes.
  template <class Action>
  bool recorded(const Action& action) {
    ChangeRecording recording(*database);
    action();
    return recording.writeTo(record());
  }
  TakenBack back() { return takeBack(*database, record()); }
  // Some forty changes of any kind.
  void changeAnything(QRandomGenerator& random) {
    for (int step = 0; step < 40; ++step) {
      const auto notes = database->notes().list(0x7FFF);
      const NoteSummary one = notes[random.bounded(int(notes.size()))];
      switch (random.bounded(5)) {
        case 0:
          saved(QStringLiteral("new %1").arg(step));
          break;
        case 1:
          database->notes().remove(one.id, random.bounded(2) == 0);
          break;
        default:
          change(one.id, QStringLiteral("changed %1").arg(step));
      }
    }
  }
  // What is in the notes, by UNID.
  std::map<std::string, std::string> all() {
    std::map<std::string, std::string> notes;
    for (const NoteSummary& summary : database->notes().list(0x7FFF)) {
      Note note;
      EXPECT_TRUE(database->notes().read(summary.id, note));
      notes[note.header.unid.text().toStdString()] =
          note.text(u"Subject").toStdString() + '#' + std::to_string(note.header.sequence) + '#' +
          std::to_string(packTime(note.header.modified)) + '#' + std::to_string(note.header.noteClass);
    }
    return notes;
  }
  void change(NoteId id, const QString& subject) {
    Note note;
    ASSERT_TRUE(database->notes().read(id, note));
    note.items = noteWith(subject).items;
    database->notes().saveAsGiven(note);
  }
};

TEST_F(ChangeRecordTest, BringsBackWhatWasChangedAndRemovesWhatWasBrought) {
  const NoteId kept = saved(QStringLiteral("kept")), changed = saved(QStringLiteral("first"));
  Note before;
  ASSERT_TRUE(database->notes().read(changed, before));
  NoteId brought;
  ASSERT_TRUE(recorded([&] {
    change(changed, QStringLiteral("second"));
    change(changed, QStringLiteral("third"));
    brought = saved(QStringLiteral("new"));
  }));
  const TakenBack result = back();
  EXPECT_EQ(result.removed, 1);
  EXPECT_EQ(result.restored, 1);
  EXPECT_TRUE(result.left.isEmpty());
  Note now;
  ASSERT_TRUE(database->notes().read(changed, now));
  EXPECT_EQ(now.text(u"Subject"), QStringLiteral("first"));
  EXPECT_EQ(now.header.sequence, before.header.sequence);
  EXPECT_EQ(packTime(now.header.modified), packTime(before.header.modified));
  EXPECT_EQ(database->notes().state(brought), NoteState::Gone) << "no stub of what nobody else has";
  EXPECT_EQ(subjectOf(kept), QStringLiteral("kept"));
}

TEST_F(ChangeRecordTest, LeavesWhatSomebodyChangedOrDeletedSince) {
  const NoteId one = saved(QStringLiteral("one")), two = saved(QStringLiteral("two"));
  NoteId brought, removed;
  ASSERT_TRUE(recorded([&] {
    change(one, QStringLiteral("imported"));
    change(two, QStringLiteral("imported"));
    brought = saved(QStringLiteral("new"));
    removed = saved(QStringLiteral("new too"));
  }));
  change(one, QStringLiteral("by hand"));
  change(brought, QStringLiteral("by hand"));
  ASSERT_TRUE(database->notes().remove(two));
  ASSERT_TRUE(database->notes().remove(removed));
  const TakenBack result = back();
  EXPECT_EQ(result.removed, 0);
  EXPECT_EQ(result.restored, 0);
  ASSERT_EQ(result.left.size(), 3);
  std::map<NoteId, LeftNote::Reason> reasons;
  for (const LeftNote& left : result.left) reasons[left.id] = left.reason;
  EXPECT_EQ(reasons.at(one), LeftNote::Reason::Changed);
  EXPECT_EQ(reasons.at(two), LeftNote::Reason::Deleted);
  EXPECT_EQ(reasons.at(brought), LeftNote::Reason::Changed);
  EXPECT_EQ(subjectOf(one), QStringLiteral("by hand"));
  EXPECT_EQ(subjectOf(brought), QStringLiteral("by hand"));
}

TEST_F(ChangeRecordTest, ForgetsWhatWasUndoneAndWhatOthersChange) {
  const NoteId mine = saved(QStringLiteral("mine")), theirs = saved(QStringLiteral("theirs"));
  EXPECT_FALSE(recorded([&] {
    {
      const Database::Transaction undone(*database);
      change(mine, QStringLiteral("undone"));
      saved(QStringLiteral("undone too"));
    }
    std::thread([&] {
      const auto other = Database::open(path());
      Note note;
      ASSERT_TRUE(other->notes().read(theirs, note));
      other->notes().save(note);
    }).join();
  }));
  EXPECT_FALSE(QFile::exists(record()));
}

TEST_F(ChangeRecordTest, EndsWithItsOwner) {
  { const ChangeRecording recording(*database); }
  saved(QStringLiteral("later"));
  EXPECT_FALSE(recorded([] {})) << "a second recording begins empty";
}

TEST_F(ChangeRecordTest, ASingleNoteComesBackUnlessItsPlaceIsTaken) {
  const NoteId icon = saved(QStringLiteral("old icon"), noteclass::Icon);
  const auto replaceIcon = [&] {
    database->notes().remove(icon, false);
    saved(QStringLiteral("new icon"), noteclass::Icon);
  };
  ASSERT_TRUE(recorded(replaceIcon));
  TakenBack result = back();
  EXPECT_EQ(result.removed, 1);
  EXPECT_EQ(result.restored, 1);
  EXPECT_EQ(subjectOf(database->notes().specialNote(noteclass::Icon)), QStringLiteral("old icon"));

  const NoteId restored = database->notes().specialNote(noteclass::Icon);
  QFile::remove(record());
  ASSERT_TRUE(recorded([&] {
    database->notes().remove(restored, false);
    saved(QStringLiteral("newer icon"), noteclass::Icon);
  }));
  change(database->notes().specialNote(noteclass::Icon), QStringLiteral("by hand"));
  result = back();
  ASSERT_EQ(result.left.size(), 2);
  EXPECT_EQ(result.left[0].reason, LeftNote::Reason::Changed);
  EXPECT_EQ(result.left[1].reason, LeftNote::Reason::Displaced);
  EXPECT_EQ(database->notes().noteCount(noteclass::Icon), 1);
}

TEST_F(ChangeRecordTest, ANoteWhoseAttachmentHasGoneStays) {
  QBuffer bytes;
  bytes.setData("attached");
  bytes.open(QIODevice::ReadOnly);
  FileObject file;
  file.name = QStringLiteral("a.txt");
  file.objectId = database->objects().add(bytes).id;
  file.size = 8;
  Note note = noteWith(QStringLiteral("with file"));
  note.add(QStringLiteral("$FILE"), itemflag::Summary, fileObjectValue(file));
  database->notes().save(note);
  ASSERT_TRUE(recorded([&] { change(note.header.id, QStringLiteral("without")); }));
  database->objects().remove(file.objectId);
  const TakenBack result = back();
  ASSERT_EQ(result.left.size(), 1);
  EXPECT_EQ(result.left[0].reason, LeftNote::Reason::WithoutFile);
  EXPECT_EQ(subjectOf(note.header.id), QStringLiteral("without"));
}

TEST_F(ChangeRecordTest, ANoteThatTookThePlaceOfAStubLeavesOneAgain) {
  const NoteId id = saved(QStringLiteral("deleted"));
  Note note;
  ASSERT_TRUE(database->notes().read(id, note));
  ASSERT_TRUE(database->notes().remove(id));
  ASSERT_TRUE(recorded([&] {
    note.header.id = {};
    database->notes().saveAsGiven(note);
  }));
  EXPECT_EQ(back().removed, 1);
  NoteVersion version;
  ASSERT_TRUE(database->versions().findVersion(note.header.unid, version));
  EXPECT_FALSE(version.live);
}

TEST_F(ChangeRecordTest, ACancelledUndoChangesNothing) {
  const NoteId id = saved(QStringLiteral("one"));
  ASSERT_TRUE(recorded([&] {
    change(id, QStringLiteral("imported"));
    saved(QStringLiteral("new"));
  }));
  const TakenBack result = takeBack(*database, record(), [](qint64 done, qint64) { return done < 1; });
  EXPECT_TRUE(result.cancelled);
  EXPECT_EQ(subjectOf(id), QStringLiteral("imported"));
  EXPECT_EQ(database->notes().noteCount(noteclass::Document), 2);
  EXPECT_EQ(back().removed, 1) << "and it can be done again";
}

TEST_F(ChangeRecordTest, ARecordThatFindsNoRoomIsNamedAndTheChangesStay) {
  ChangeRecording recording(*database);
  const NoteId id = saved(QStringLiteral("new"));
  const QString nowhere = path(QStringLiteral("no/such/folder/record"));
  QString told;
  EXPECT_EQ(errorNumber([&] { recording.writeTo(QString()); }, &told), enginefault::NotSaved);
  EXPECT_TRUE(told.contains(path())) << told.toStdString();
  EXPECT_NE(errorNumber([&] { recording.writeTo(nowhere); }, &told), 0);
  EXPECT_TRUE(told.contains(nowhere)) << told.toStdString();
  EXPECT_EQ(subjectOf(id), QStringLiteral("new"));
}

TEST_F(ChangeRecordTest, ADamagedRecordChangesNothing) {
  const NoteId id = saved(QStringLiteral("one"));
  ASSERT_TRUE(recorded([&] { change(id, QStringLiteral("imported")); }));
  QByteArray bytes = contentOf(record());
  for (qsizetype at = 4096; at < bytes.size(); ++at) bytes[at] = char(0xA5);
  writeFile(record(), bytes);
  EXPECT_EQ(errorNumber([&] { back(); }), enginefault::Damaged);
  EXPECT_EQ(subjectOf(id), QStringLiteral("imported"));
}

// Whatever is done to a database while it is recorded, taking it back gives the notes as they were.
TEST_F(ChangeRecordTest, GivesTheNotesAsTheyWereAfterAnyChanges) {
  QRandomGenerator random(7);
  for (int i = 0; i < 30; ++i) saved(QStringLiteral("start %1").arg(i));
  saved(QStringLiteral("icon"), noteclass::Icon);
  for (int round = 0; round < 20; ++round) {
    const auto before = all();
    QFile::remove(record());
    recorded([&] { changeAnything(random); });
    const TakenBack result = back();
    EXPECT_EQ(all(), before) << round;
    EXPECT_TRUE(result.left.isEmpty());
  }
}

// What a later undo puts back is no change by anybody.
TEST_F(ChangeRecordTest, RecordsAreTakenBackOneAfterTheOther) {
  QRandomGenerator random(11);
  for (int i = 0; i < 30; ++i) saved(QStringLiteral("start %1").arg(i));
  saved(QStringLiteral("icon"), noteclass::Icon);
  for (int round = 0; round < 2; ++round) {
    QStringList records;
    std::vector<std::map<std::string, std::string>> states;
    for (int i = 0; i < 4; ++i) {
      records += path(QStringLiteral("record %1 %2").arg(round).arg(i));
      states.push_back(all());
      ChangeRecording recording(*database);
      changeAnything(random);
      ASSERT_TRUE(recording.writeTo(records.last()));
    }
    while (!records.isEmpty()) {
      const QString last = records.takeLast();
      const TakenBack result = takeBack(*database, last, {}, records);
      EXPECT_TRUE(result.left.isEmpty());
      EXPECT_EQ(all(), states.back()) << round << ' ' << records.size();
      states.pop_back();
    }
  }
}

TEST_F(ChangeRecordTest, ARecordThatHasGoneIsNotWaitedFor) {
  const NoteId id = saved(QStringLiteral("one"));
  ASSERT_TRUE(recorded([&] { change(id, QStringLiteral("imported")); }));
  takeBack(*database, record(), {}, {path(QStringLiteral("gone"))});
  EXPECT_EQ(subjectOf(id), QStringLiteral("one"));
  EXPECT_FALSE(QFile::exists(path(QStringLiteral("gone"))));
}

}  // namespace
}  // namespace lens

// What becomes of each kind of change when two replicas meet.
#include "replica_fixture.h"

namespace lens {
namespace {
using namespace Qt::Literals::StringLiterals;

TEST_F(Pair, ANewNoteArrivesWithItsNumbersAndTimes) {
  EXPECT_EQ(subject(*b, unid), u"first"_s);
  expectAlike();
}

TEST_F(Pair, AChangeTravelsEitherWay) {
  edit(*a, unid, u"by a"_s);
  ReplicationReport report = replicate(*a, *b);
  EXPECT_EQ(report.updated, 1);
  EXPECT_EQ(subject(*b, unid), u"by a"_s);
  edit(*b, unid, u"by b"_s);
  report = replicate(*a, *b);
  EXPECT_EQ(report.updated, 1);
  EXPECT_EQ(report.conflicts, 0);
  EXPECT_EQ(subject(*a, unid), u"by b"_s);
  expectAlike();
}

TEST_F(Pair, ManyChangesOnOneSideAreOneStepForTheOther) {
  for (int i = 0; i < 20; ++i) edit(*a, unid, QString::number(i));
  EXPECT_EQ(replicate(*b, *a).conflicts, 0);
  EXPECT_EQ(subject(*b, unid), u"19"_s);
  expectAlike();
}

TEST_F(Pair, NothingHappensTheSecondTime) {
  edit(*a, unid, u"by a"_s);
  replicate(*a, *b);
  const qint64 changes = a->versions().changeSequence() + b->versions().changeSequence();
  const ReplicationReport again = replicate(*a, *b);
  EXPECT_EQ(again.added + again.updated + again.deleted + again.conflicts, 0);
  EXPECT_EQ(a->versions().changeSequence() + b->versions().changeSequence(), changes);
}

TEST_F(Pair, ADeletionTravelsAsAStub) {
  remove(*b, unid);
  EXPECT_EQ(replicate(*a, *b).deleted, 1);
  EXPECT_EQ(subject(*a, unid), u"(none)"_s);
  expectAlike();
}

TEST_F(Pair, AStubGoesToAReplicaThatNeverHadTheNoteAndKeepsItOut) {
  const auto c = make(u"c"_s), old = make(u"old"_s);
  replicate(*a, *old);
  remove(*a, unid);
  replicate(*a, *c);
  replicate(*c, *old);
  EXPECT_EQ(subject(*c, unid), u"(none)"_s);
  EXPECT_EQ(subject(*old, unid), u"(none)"_s);
}

TEST_F(Pair, ANoteErasedWithoutAStubComesBack) {
  remove(*a, unid, false);
  EXPECT_EQ(replicate(*a, *b).added, 1);
  EXPECT_EQ(subject(*a, unid), u"first"_s);
  expectAlike();
}

TEST_F(Pair, WhatIsWrittenAfterANoteCameBackDoesNotHideALaterVersionElsewhere) {
  const auto c = make(u"c"_s);
  edit(*a, unid, u"second"_s);
  replicate(*a, *c);
  remove(*a, unid, false);
  replicate(*a, *b);
  edit(*a, unid, u"other second"_s);
  EXPECT_EQ(replicate(*a, *c).conflicts, 1);
}

TEST_F(Pair, ChangedOnBothSidesOneStaysAndTheOtherIsItsConflictDocument) {
  edit(*a, unid, u"by a"_s);
  edit(*b, unid, u"by b"_s);
  edit(*b, unid, u"by b again"_s);
  EXPECT_EQ(replicate(*a, *b).conflicts, 1);
  EXPECT_EQ(subject(*a, unid), u"by b again"_s);
  const QVector<Note> conflicts = conflictsIn(*a);
  ASSERT_EQ(conflicts.size(), 1);
  EXPECT_EQ(conflicts[0].text(u"Subject"), u"by a"_s);
  EXPECT_EQ(conflicts[0].header.parent, unid);
  EXPECT_EQ(itemValues(*conflicts[0].find(u"$REF")).at(0).text(), unid.text());
  expectAlike();
  EXPECT_EQ(replicate(*b, *a).conflicts, 0);
  EXPECT_EQ(conflictsIn(*b).size(), 1);
}

TEST_F(Pair, EditsOfTheSameMomentAreAConflictToo) {
  for (int round = 0; round < 5; ++round) {
    edit(*a, unid, u"a %1"_s.arg(round));
    edit(*b, unid, u"b %1"_s.arg(round));
    EXPECT_EQ(replicate(*a, *b).conflicts, 1);
    expectAlike();
  }
  EXPECT_EQ(conflictsIn(*a).size(), 5);
}

TEST_F(Pair, TheSameChangeOnBothSidesIsNoConflict) {
  edit(*a, unid, u"same"_s);
  edit(*b, unid, u"same"_s);
  EXPECT_EQ(replicate(*a, *b).conflicts, 0);
  expectAlike();
  edit(*a, unid, u"later"_s);
  EXPECT_EQ(replicate(*a, *b).conflicts, 0);
}

TEST_F(Pair, AnEditStaysBeforeADeletionOnTheOtherSide) {
  edit(*a, unid, u"kept"_s);
  edit(*b, unid, u"gone"_s);
  edit(*b, unid, u"gone"_s);
  remove(*b, unid);
  EXPECT_EQ(replicate(*a, *b).conflicts, 0);
  EXPECT_EQ(subject(*b, unid), u"kept"_s);
  expectAlike();
  remove(*a, unid);
  replicate(*a, *b);
  EXPECT_EQ(subject(*b, unid), u"(none)"_s);
}

TEST_F(Pair, AConflictDocumentCanBeInConflictItself) {
  edit(*a, unid, u"by a"_s);
  edit(*b, unid, u"by b"_s);
  replicate(*a, *b);
  const Unid conflict = conflictsIn(*a).first().header.unid;
  edit(*a, conflict, u"conflict by a"_s);
  edit(*b, conflict, u"conflict by b"_s);
  EXPECT_EQ(replicate(*a, *b).conflicts, 1);
  EXPECT_EQ(conflictsIn(*a).size(), 2);
  int below = 0;
  for (const Note& note : conflictsIn(*b)) below += note.header.parent == conflict ? 1 : 0;
  EXPECT_EQ(below, 1);
  expectAlike();
}

TEST_F(Pair, AConflictThatWasResolvedByDeletionStaysResolved) {
  const auto c = make(u"c"_s), d = make(u"d"_s);
  replicate(*a, *c);
  edit(*a, unid, u"by a"_s);
  edit(*c, unid, u"by c"_s);
  replicate(*a, *b);
  replicate(*c, *d);
  replicate(*a, *c);
  remove(*a, conflictsIn(*a).first().header.unid);
  // The same two versions meet for a second time in replicas that know nothing of it.
  EXPECT_EQ(replicate(*b, *d).conflicts, 1);
  replicate(*a, *b);
  replicate(*a, *d);
  EXPECT_TRUE(conflictsIn(*b).isEmpty());
  EXPECT_TRUE(conflictsIn(*d).isEmpty());
}

TEST_F(Pair, TheSameConflictSettledInTwoPlacesIsOneDocument) {
  const auto c = make(u"c"_s), d = make(u"d"_s);
  replicate(*a, *c);
  edit(*a, unid, u"by a"_s);
  edit(*c, unid, u"by c"_s);
  replicate(*a, *b);
  replicate(*c, *d);
  replicate(*a, *c);
  replicate(*b, *d);
  for (Database* other : {b.get(), c.get(), d.get()}) replicate(*a, *other);
  for (Database* other : {a.get(), b.get(), c.get(), d.get()}) {
    EXPECT_EQ(conflictsIn(*other).size(), 1);
    EXPECT_EQ(differenceOf(*other, *a), "");
  }
}

TEST_F(Pair, AChainOfReplicasTakesNoChangeForAConflict) {
  const auto c = make(u"c"_s);
  replicate(*b, *c);
  edit(*a, unid, u"by a"_s);
  replicate(*a, *b);
  edit(*b, unid, u"by b"_s);
  replicate(*b, *c);
  edit(*c, unid, u"by c"_s);
  // c never met a, and knows of all its versions.
  EXPECT_EQ(replicate(*a, *c).conflicts, 0);
  EXPECT_EQ(subject(*a, unid), u"by c"_s);
  EXPECT_EQ(replicate(*a, *b).conflicts, 0);
  EXPECT_EQ(subject(*b, unid), u"by c"_s);
}

TEST_F(Pair, AnAttachmentIsCopiedOnceAndWhole) {
  const QByteArray bytes(700000, 'x');
  attach(*a, unid, bytes);
  replicate(*a, *b);
  expectAlike();
  edit(*a, unid, u"text only"_s);
  replicate(*a, *b);
  expectAlike();
  EXPECT_EQ(objectsIn(*b), 1);
}

TEST_F(Pair, AConflictDocumentHasTheAttachmentsOfItsVersion) {
  attach(*a, unid, "of a");
  edit(*b, unid, u"by b"_s);
  edit(*b, unid, u"by b"_s);
  EXPECT_EQ(replicate(*a, *b).conflicts, 1);
  expectAlike();
  for (const auto& side : {a, b}) {
    const Note conflict = conflictsIn(*side).value(0);
    ASSERT_TRUE(conflict.has(u"$FILE"));
    QBuffer file;
    file.open(QIODevice::WriteOnly);
    side->objects().read(objectIn(*conflict.find(u"$FILE")), file);
    EXPECT_EQ(file.data(), "of a");
  }
}

TEST_F(Pair, ADamagedAttachmentKeepsItsNoteBackAndNoOther) {
  attach(*a, unid, QByteArray(1000, 'x'));
  const Unid other = add(*a, u"other"_s);
  ASSERT_EQ(
      sqlite3_exec(a->handle(), "UPDATE object_chunk SET bytes = zeroblob(1000)", nullptr, nullptr, nullptr),
      0);
  const ReplicationReport report = replicate(*a, *b);
  ASSERT_EQ(report.leftOut.size(), 1);
  EXPECT_TRUE(report.leftOut[0].contains(a->path()));
  EXPECT_EQ(subject(*b, other), u"other"_s);
  EXPECT_EQ(objectsIn(*b), 0);
}

TEST_F(Pair, ADamagedNoteIsHealedByALaterVersionAndOtherwiseLeftOut) {
  const auto breakNotes = [&] {
    return sqlite3_exec(b->handle(), "UPDATE note SET items = x'00112233'", nullptr, nullptr, nullptr);
  };
  ASSERT_EQ(breakNotes(), 0);
  edit(*a, unid, u"later"_s);
  EXPECT_TRUE(replicate(*a, *b).leftOut.isEmpty());
  EXPECT_EQ(subject(*b, unid), u"later"_s);
  edit(*b, unid, u"latest"_s);
  ASSERT_EQ(breakNotes(), 0);
  EXPECT_EQ(replicate(*a, *b).leftOut.size(), 1);
  EXPECT_EQ(subject(*a, unid), u"later"_s);
}

TEST_F(Pair, DesignNotesTravelAndLeaveNoConflict) {
  const Unid view = add(*a, u"By date"_s, noteclass::View);
  replicate(*a, *b);
  edit(*a, view, u"by a"_s);
  edit(*b, view, u"by b"_s);
  edit(*b, view, u"by b, later"_s);
  EXPECT_EQ(replicate(*a, *b).conflicts, 0);
  EXPECT_EQ(subject(*a, view), u"by b, later"_s);
  EXPECT_EQ(a->notes().noteCount(noteclass::View), 1);
  expectAlike();
}

TEST_F(Pair, ThereIsOneIconAndOneAccessListAndOneOfOtherSingleNotes) {
  for (const quint16 noteClass :
       {noteclass::Icon, noteclass::Acl, noteclass::About, noteclass::Design, noteclass::HelpIndex}) {
    add(*a, u"a"_s, noteClass);
    const Unid stays = add(*b, u"b"_s, noteClass);
    edit(*b, stays, u"b, changed"_s);
    replicate(*a, *b);
    replicate(*a, *b);
    for (const auto& side : {a, b}) {
      EXPECT_EQ(side->notes().noteCount(noteClass), 1);
      EXPECT_EQ(subject(*side, stays), u"b, changed"_s);
    }
  }
  expectAlike();
}

TEST_F(Pair, AConflictDocumentKeepsThePlacesOfItsItemsAndAnswersTheOtherOne) {
  Note note;
  ASSERT_TRUE(a->notes().read(unid, note));
  note.items.insert(0, {u"$Ref"_s, itemflag::Summary, noteRefsValue({Unid::create()})});
  a->notes().save(note);
  replicate(*a, *b);
  edit(*a, unid, u"by a"_s);
  edit(*b, unid, u"by b"_s);
  edit(*b, unid, u"by b again"_s);
  replicate(*a, *b);
  const QVector<Note> conflicts = conflictsIn(*a);
  ASSERT_EQ(conflicts.size(), 1);
  QStringList names;
  for (const Item& item : conflicts[0].items) names << item.name;
  EXPECT_EQ(names.join(u' '), u"$Ref Subject $Conflict"_s);
  EXPECT_EQ(itemValues(conflicts[0].items[0]).at(0).text(), unid.text());
  expectAlike();
}

TEST_F(Pair, ThereIsOneProfileOfAName) {
  const auto addProfile = [](Database& database, const QString& name, const QString& text) {
    Note note = noteWith(text);
    note.add(u"$Name"_s, itemflag::Summary, textValue(name));
    database.notes().save(note);
    return note.header.unid;
  };
  addProfile(*a, u"$profile_010Settings__"_s, u"a"_s);
  const Unid stays = addProfile(*b, u"$PROFILE_010settings__"_s, u"b"_s);
  edit(*b, stays, u"b, changed"_s);
  addProfile(*b, u"$profile_005other_"_s, u"other"_s);
  replicate(*a, *b);
  replicate(*a, *b);
  EXPECT_EQ(a->notes().noteCount(noteclass::Document), 3);
  EXPECT_EQ(subject(*a, stays), u"b, changed"_s);
  EXPECT_TRUE(conflictsIn(*a).isEmpty());
  expectAlike();
}

TEST_F(Pair, AnImportOverANoteIsAChangeOfIt) {
  Note before;
  ASSERT_TRUE(a->notes().read(unid, before));
  edit(*a, unid, u"later"_s);
  replicate(*a, *b);
  a->notes().saveAsGiven(before);
  EXPECT_EQ(replicate(*a, *b).conflicts, 0);
  EXPECT_EQ(subject(*b, unid), u"first"_s);
}

TEST_F(Pair, TheSameExportInBothReplicasIsTheSameVersion) {
  Note given = noteWith(u"given"_s);
  given.header.unid = Unid::create();
  given.header.sequence = 3;
  given.header.sequenceTime = timeDateNow();
  Note inB = given;
  a->notes().saveAsGiven(given);
  b->notes().saveAsGiven(inB);
  edit(*a, given.header.unid, u"changed"_s);
  EXPECT_EQ(replicate(*a, *b).conflicts, 0);
  EXPECT_EQ(subject(*b, given.header.unid), u"changed"_s);
}

TEST_F(Pair, ANoteThatWasMadeAnewOverItsStubComesToAll) {
  Note note;
  ASSERT_TRUE(a->notes().read(unid, note));
  remove(*a, unid);
  replicate(*a, *b);
  a->notes().saveAsGiven(note);
  replicate(*a, *b);
  EXPECT_EQ(subject(*b, unid), u"first"_s);
  expectAlike();
}

TEST_F(Pair, AFileThatWasCopiedIsAReplicaOfItsOwn) {
  a.reset();
  ASSERT_TRUE(QFile::copy(path(u"a"_s), path(u"copy"_s)));
  a = Database::open(path(u"a"_s));
  const auto copy = Database::open(path(u"copy"_s));
  edit(*a, unid, u"by a"_s);
  edit(*copy, unid, u"by the copy"_s);
  EXPECT_EQ(replicate(*a, *copy).conflicts, 1);
  EXPECT_EQ(differenceOf(*a, *copy), "");
}

TEST_F(Pair, AReplicaThatWasAwayForHundredsOfWritersLosesNothing) {
  edit(*b, unid, u"by b"_s);
  for (int i = 0; i < 300; ++i) {
    a.reset();
    a = Database::open(path(u"a"_s));
    edit(*a, unid, QString::number(i));
  }
  EXPECT_EQ(replicate(*a, *b).conflicts, 1);
  EXPECT_EQ(conflictsIn(*b).value(0).text(u"Subject"), u"by b"_s);
  expectAlike();
}

TEST_F(Pair, OtherDatabasesAndTheSameFileAreRefused) {
  const auto foreign = Database::create(path(u"foreign"_s), {});
  QString why;
  EXPECT_EQ(errorNumber([&] { replicate(*a, *foreign); }, &why), replicationfault::NotReplicas);
  EXPECT_TRUE(why.contains(a->path()) && why.contains(foreign->path()));
  EXPECT_EQ(errorNumber([&] { replicate(*a, *a); }), replicationfault::NotReplicas);
}

TEST_F(Pair, AnOlderSchemaLearnsToReplicate) {
  a.reset();
  sqlite3* handle = nullptr;
  ASSERT_EQ(sqlite3_open(path(u"a"_s).toUtf8().constData(), &handle), SQLITE_OK);
  EXPECT_EQ(
      sqlite3_exec(handle, "DROP TABLE lineage; PRAGMA user_version = 2; PRAGMA wal_checkpoint(TRUNCATE)",
                   nullptr, nullptr, nullptr),
      SQLITE_OK);
  sqlite3_close(handle);
  a = Database::open(path(u"a"_s));
  edit(*a, unid, u"by a"_s);
  EXPECT_EQ(replicate(*a, *b).conflicts, 0);
  EXPECT_EQ(subject(*b, unid), u"by a"_s);
}

}  // namespace
}  // namespace lens

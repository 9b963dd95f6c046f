#include "embedded/support/store_test.h"

namespace lens {
namespace {

TEST_F(StoreTest, SavedNoteIsReadBack) {
  Note note = noteWith(QStringLiteral(u"Grüße"));
  note.add(QStringLiteral("Subject"), itemflag::Names, textValue(u"second"));
  database->notes().save(note);
  EXPECT_EQ(note.header.id, NoteId(0x8FAu));
  EXPECT_EQ(note.header.sequence, 1u);
  EXPECT_FALSE(note.header.unid.isNull());
  reopen();
  Note read;
  ASSERT_TRUE(database->notes().read(NoteId(0x8FA), read));
  EXPECT_EQ(read.header.unid, note.header.unid);
  EXPECT_EQ(read.header.noteClass, noteclass::Document);
  EXPECT_TRUE(read.header.parent.isNull());
  EXPECT_EQ(read.items.size(), 2);
  EXPECT_EQ(read.text(u"subject"), QStringLiteral(u"Grüße"));
  EXPECT_EQ(read.items[1].flags, itemflag::Names);
  Note byUnid;
  ASSERT_TRUE(database->notes().read(note.header.unid, byUnid));
  EXPECT_EQ(byUnid.header.id, NoteId(0x8FA));
}

TEST_F(StoreTest, TimeOfCreationIsThatOfTheUnid) {
  Note note = noteWith(QStringLiteral("a"));
  database->notes().save(note);
  const TimeDate half = readTimeDate(note.header.unid.bytes().constData() + 8);
  EXPECT_EQ(instantOf(note.header.created), instantOf(half));
  EXPECT_TRUE(instantOf(note.header.added).isValid());
  EXPECT_TRUE(instantOf(note.header.modified).isValid());
  EXPECT_TRUE(instantOf(note.header.sequenceTime).isValid());
}

TEST_F(StoreTest, SecondSaveTakesTheNextSequenceNumber) {
  Note note = noteWith(QStringLiteral("a"));
  note.header.modified = timeDateOfDate(QDate(2001, 1, 1));
  database->notes().save(note);
  EXPECT_EQ(localOf(note.header.modified).date, QDate(2001, 1, 1));
  const TimeDate created = note.header.created;
  note.items[0].value = textValue(u"b");
  note.header.sequence = 77;
  database->notes().save(note);
  EXPECT_EQ(note.header.sequence, 2u);
  EXPECT_TRUE(instantOf(note.header.modified).isValid());
  Note read;
  ASSERT_TRUE(database->notes().read(note.header.id, read));
  EXPECT_EQ(read.header.sequence, 2u);
  EXPECT_EQ(read.header.created.innards[0], created.innards[0]);
  EXPECT_EQ(read.text(u"Subject"), QStringLiteral("b"));
}

TEST_F(StoreTest, ChangedClassUnidAndParentAreSavedToo) {
  Note note = noteWith(QStringLiteral("a"));
  database->notes().save(note);
  const Unid before = note.header.unid;
  note.header.unid = Unid::create();
  note.header.parent = before;
  note.header.noteClass = noteclass::Form | noteclass::Default;
  database->notes().save(note);
  Note read;
  EXPECT_FALSE(database->notes().read(before, read));
  ASSERT_TRUE(database->notes().read(note.header.unid, read));
  EXPECT_EQ(read.header.parent, before);
  EXPECT_TRUE(database->notes().list(noteclass::Document).isEmpty());
  ASSERT_EQ(database->notes().list(noteclass::Form).size(), 1);
  EXPECT_EQ(database->notes().list(noteclass::Form)[0].parent, before);
}

TEST_F(StoreTest, IdsAreStepsOfFourAndNeverUsedAgain) {
  const NoteId first = saved(QStringLiteral("a")), second = saved(QStringLiteral("b"));
  EXPECT_EQ(second, NoteId(first.value() + 4));
  EXPECT_TRUE(database->notes().remove(second, false));
  EXPECT_EQ(database->notes().highestIssuedId(), second);
  reopen();
  EXPECT_EQ(database->notes().highestIssuedId(), second);
  EXPECT_EQ(saved(QStringLiteral("c")), NoteId(second.value() + 4));
  EXPECT_TRUE(database->notes().remove(NoteId(second.value() + 4), false));
  EXPECT_TRUE(database->notes().remove(first, false));
  reopen();
  EXPECT_EQ(saved(QStringLiteral("d")), NoteId(second.value() + 8));
}

TEST_F(StoreTest, StatesOfAnId) {
  EXPECT_EQ(database->notes().state(NoteId(0x8FA)), NoteState::NeverIssued);
  EXPECT_EQ(database->notes().highestIssuedId(), NoteId());
  const NoteId gone = saved(QStringLiteral("a")), stub = saved(QStringLiteral("b")),
               live = saved(QStringLiteral("c"));
  database->notes().remove(gone, false);
  database->notes().remove(stub);
  EXPECT_EQ(database->notes().state(gone), NoteState::Gone);
  EXPECT_EQ(database->notes().state(stub), NoteState::Stub);
  EXPECT_EQ(database->notes().state(live), NoteState::Live);
  EXPECT_EQ(database->notes().state(NoteId(live.value() - 1)), NoteState::Gone);
  EXPECT_EQ(database->notes().state(NoteId(4)), NoteState::Gone);
  EXPECT_EQ(database->notes().state(NoteId(0)), NoteState::NeverIssued);
  EXPECT_EQ(database->notes().state(NoteId(live.value() + 4)), NoteState::NeverIssued);
  EXPECT_EQ(database->notes().state(NoteId(0xFFFF0010)), NoteState::NeverIssued);
}

TEST_F(StoreTest, StubIsNoNoteAndKeepsItsUnid) {
  Note note = noteWith(QStringLiteral("a"));
  database->notes().save(note);
  EXPECT_TRUE(database->notes().remove(note.header.id));
  EXPECT_FALSE(database->notes().remove(note.header.id));
  EXPECT_FALSE(database->notes().remove(note.header.id, false));
  Note read;
  Item item;
  EXPECT_FALSE(database->notes().read(note.header.id, read));
  EXPECT_FALSE(database->notes().read(note.header.unid, read));
  EXPECT_FALSE(database->notes().readItem(note.header.id, u"Subject", item));
  EXPECT_TRUE(database->notes().list(0xFFFF).isEmpty());
  EXPECT_EQ(database->notes().noteCount(0xFFFF), 0);
  EXPECT_EQ(errorNumber([&] { database->notes().save(note); }), enginefault::UnknownNote);
}

TEST_F(StoreTest, NoteOfAStubsUnidTakesItsPlaceUnderANewId) {
  Note note = noteWith(QStringLiteral("a"));
  database->notes().save(note);
  const NoteId before = note.header.id;
  database->notes().remove(before);
  EXPECT_FALSE(database->notes().saveAsGiven(note));
  EXPECT_EQ(note.header.id, NoteId(before.value() + 4));
  EXPECT_EQ(database->notes().state(before), NoteState::Gone);
  EXPECT_EQ(subjectOf(NoteId(before.value() + 4)), QStringLiteral("a"));
}

TEST_F(StoreTest, NoteAsGivenKeepsSequenceAndTimes) {
  Note note = noteWith(QStringLiteral("a"));
  ASSERT_TRUE(Unid::parse(u"0123456789ABCDEF0123456789ABCDEF", note.header.unid));
  note.header.id = NoteId(0x7FFFFFFA);
  note.header.sequence = 12;
  note.header.created = timeDateOfDate(QDate(1999, 1, 1));
  EXPECT_FALSE(database->notes().saveAsGiven(note));
  EXPECT_EQ(note.header.id, NoteId(0x8FA));
  Note again = noteWith(QStringLiteral("b"));
  again.header = note.header;
  again.header.id = {};
  again.header.sequence = 5;
  EXPECT_TRUE(database->notes().saveAsGiven(again));
  EXPECT_EQ(again.header.id, NoteId(0x8FA));
  Note read;
  ASSERT_TRUE(database->notes().read(NoteId(0x8FA), read));
  EXPECT_EQ(read.header.sequence, 5u);
  EXPECT_EQ(localOf(read.header.created).date, QDate(1999, 1, 1));
  EXPECT_EQ(read.header.added.innards[1], 0u);
  EXPECT_EQ(read.text(u"Subject"), QStringLiteral("b"));
  EXPECT_EQ(database->notes().noteCount(0xFFFF), 1);
}

TEST_F(StoreTest, SecondNoteOfAUnidIsRefusedAndLeftAsItWas) {
  Note note = noteWith(QStringLiteral("a"));
  database->notes().save(note);
  Note twin = noteWith(QStringLiteral("b"));
  twin.header.unid = note.header.unid;
  EXPECT_EQ(errorNumber([&] { database->notes().save(twin); }), enginefault::NotSaved);
  EXPECT_EQ(twin.header.id, NoteId());
  EXPECT_EQ(twin.header.sequence, 0u);
  EXPECT_EQ(subjectOf(note.header.id), QStringLiteral("a"));
}

TEST_F(StoreTest, ListingIsByClassWithoutMarksInOrderOfId) {
  const NoteId view = saved(QStringLiteral("v"), noteclass::View), doc = saved(QStringLiteral("d")),
               form = saved(QStringLiteral("f"), noteclass::Form | noteclass::Default),
               folder = saved(QStringLiteral("p"), noteclass::View | noteclass::Private);
  const auto ids = [&](quint16 mask) {
    QVector<NoteId> result;
    for (const NoteSummary& note : database->notes().list(mask)) result.push_back(note.id);
    return result;
  };
  EXPECT_EQ(ids(noteclass::View), (QVector<NoteId>{view, folder}));
  EXPECT_EQ(ids(noteclass::View | noteclass::Form), (QVector<NoteId>{view, form, folder}));
  EXPECT_EQ(ids(0x7FFF), (QVector<NoteId>{view, doc, form, folder}));
  EXPECT_EQ(ids(noteclass::Default | noteclass::Private), QVector<NoteId>());
  EXPECT_EQ(database->notes().noteCount(noteclass::View), 2);
  QVector<NoteId> scanned;
  database->notes().scan(0x7FFF, [&](const Note& note) {
    scanned.push_back(note.header.id);
    return scanned.size() < 3;
  });
  EXPECT_EQ(scanned, (QVector<NoteId>{view, doc, form}));
}

TEST_F(StoreTest, VisitorOfAScanMayChangeTheDatabase) {
  for (int i = 0; i < 5; ++i) saved(QString::number(i));
  int seen = 0;
  database->notes().scan(noteclass::Document, [&](const Note& note) {
    ++seen;
    Note copy = note;
    database->notes().save(copy);
    if (seen == 1) database->notes().remove(NoteId(note.header.id.value() + 4));
    return true;
  });
  EXPECT_EQ(seen, 4);
  EXPECT_EQ(database->notes().noteCount(noteclass::Document), 4);
}

TEST_F(StoreTest, SpecialNoteIsFoundByItsClass) {
  EXPECT_EQ(database->notes().specialNote(noteclass::Icon), NoteId());
  const NoteId form = saved(QStringLiteral("f"), noteclass::Form),
               standard = saved(QStringLiteral("d"), noteclass::Form | noteclass::Default),
               icon = saved(QStringLiteral("i"), noteclass::Icon | noteclass::Default);
  EXPECT_EQ(database->notes().specialNote(noteclass::Icon), icon);
  EXPECT_EQ(database->notes().specialNote(noteclass::Form), form);
  EXPECT_EQ(database->notes().specialNote(noteclass::Form | noteclass::Default), standard);
}

TEST_F(StoreTest, OneItemIsReadAlone) {
  const NoteId id = saved(QStringLiteral("alone"));
  Item item;
  ASSERT_TRUE(database->notes().readItem(id, u"SUBJECT", item));
  EXPECT_EQ(item.value, textValue(u"alone"));
  EXPECT_EQ(item.flags, itemflag::Summary);
  EXPECT_FALSE(database->notes().readItem(id, u"Body", item));
  EXPECT_FALSE(database->notes().readItem(NoteId(id.value() + 4), u"Subject", item));
}

TEST_F(StoreTest, EveryChangeCountsAndTheCountSurvives) {
  qint64 last = database->versions().changeSequence();
  const auto grown = [&] {
    const qint64 before = last;
    last = database->versions().changeSequence();
    return last > before;
  };
  Note note = noteWith(QStringLiteral("a"));
  database->notes().save(note);
  EXPECT_TRUE(grown());
  database->notes().save(note);
  EXPECT_TRUE(grown());
  database->notes().saveAsGiven(note);
  EXPECT_TRUE(grown());
  database->notes().remove(note.header.id, false);
  EXPECT_TRUE(grown());
  reopen();
  EXPECT_EQ(database->versions().changeSequence(), last);
  saved(QStringLiteral("b"));
  EXPECT_TRUE(grown());
  database->notes().remove(database->notes().highestIssuedId());
  EXPECT_TRUE(grown());
}

TEST_F(StoreTest, PropertiesComeBack) {
  EXPECT_EQ(database->info().title, QStringLiteral("Letters"));
  EXPECT_EQ(database->info().replicaId.size(), 16);
  const DatabaseInfo info{QStringLiteral(u"Größe"), QStringLiteral("0123456789ABCDEF"),
                          QStringLiteral("Own"),    QStringLiteral("StdMail"),
                          QStringLiteral("a,b"),    true};
  database->setInfo(info);
  reopen();
  const DatabaseInfo read = database->info();
  EXPECT_EQ(read.title, info.title);
  EXPECT_EQ(read.replicaId, info.replicaId);
  EXPECT_EQ(read.templateName, info.templateName);
  EXPECT_EQ(read.inheritsFrom, info.inheritsFrom);
  EXPECT_EQ(read.categories, info.categories);
  EXPECT_TRUE(read.publicAddressBook);
}

TEST_F(StoreTest, TransactionWithoutCommitIsUndone) {
  const NoteId kept = saved(QStringLiteral("kept"));
  {
    Database::Transaction transaction(*database);
    saved(QStringLiteral("lost"));
    database->notes().remove(kept);
  }
  EXPECT_EQ(subjectOf(kept), QStringLiteral("kept"));
  EXPECT_EQ(database->notes().noteCount(0xFFFF), 1);
  EXPECT_EQ(database->notes().highestIssuedId(), kept);
}

TEST_F(StoreTest, InnerTransactionIsUndoneAlone) {
  {
    Database::Transaction outer(*database);
    saved(QStringLiteral("outer"));
    {
      Database::Transaction inner(*database);
      saved(QStringLiteral("inner"));
    }
    outer.commit();
  }
  EXPECT_EQ(database->notes().noteCount(0xFFFF), 1);
  EXPECT_EQ(subjectOf(NoteId(0x8FA)), QStringLiteral("outer"));
}

TEST_F(StoreTest, InnerCommitHangsOnTheOuterTransaction) {
  {
    Database::Transaction outer(*database);
    Database::Transaction inner(*database);
    saved(QStringLiteral("a"));
    inner.commit();
  }
  EXPECT_EQ(database->notes().noteCount(0xFFFF), 0);
}

TEST_F(StoreTest, FailedSaveInsideATransactionLeavesTheRest) {
  Database::Transaction transaction(*database);
  Note note = noteWith(QStringLiteral("a"));
  database->notes().save(note);
  Note twin = note;
  twin.header.id = {};
  EXPECT_EQ(errorNumber([&] { database->notes().save(twin); }), enginefault::NotSaved);
  transaction.commit();
  EXPECT_EQ(database->notes().noteCount(0xFFFF), 1);
}

TEST_F(StoreTest, ItemsThatCannotBeStoredAreToldWithTheFileAndTheNote) {
  Note note = noteWith(QStringLiteral("a"));
  database->notes().save(note);
  note.add(QString(70'000, u'n'), 0, textValue(u"x"));
  QString description;
  EXPECT_EQ(errorNumber([&] { database->notes().save(note); }, &description), enginefault::NotSaved);
  EXPECT_TRUE(description.startsWith(path()) && description.contains(u"8FA")) << description.toStdString();
  note.items.last() = {QStringLiteral("B"), 0, QByteArray("x")};
  EXPECT_EQ(errorNumber([&] { database->notes().saveAsGiven(note); }, &description), err::InvalidCall);
  EXPECT_TRUE(description.startsWith(path()) && description.contains(u"\"B\"")) << description.toStdString();
  EXPECT_EQ(subjectOf(note.header.id), QStringLiteral("a"));
}

TEST_F(StoreTest, DamagedNoteIsToldAndCanBeRemoved) {
  const NoteId id = saved(QStringLiteral("a")), whole = saved(QStringLiteral("b"));
  damage("UPDATE note SET items = x'544C49310100000000' WHERE id = 2298");
  EXPECT_EQ(database->notes().state(id), NoteState::Damaged);
  Note note;
  Item item;
  QString description;
  EXPECT_EQ(errorNumber([&] { database->notes().read(id, note); }, &description), enginefault::Damaged);
  EXPECT_TRUE(description.contains(path()));
  EXPECT_TRUE(description.contains(u"8FA"));
  EXPECT_EQ(errorNumber([&] { database->notes().readItem(id, u"Subject", item); }), enginefault::Damaged);
  int seen = 0;
  database->notes().scan(0xFFFF, [&](const Note& found) {
    EXPECT_EQ(found.header.id, whole);
    return ++seen > 0;
  });
  EXPECT_EQ(seen, 1);
  EXPECT_TRUE(database->notes().remove(id));
  EXPECT_EQ(database->notes().state(id), NoteState::Stub);
}

}  // namespace
}  // namespace lens

// Saving, copying and removing documents.
#include <thread>

#include "embedded/model/open_note.h"
#include "embedded/model/support/test_documents.h"
#include "embedded/store/note_copy.h"

using namespace lens;
using namespace lens::testbed;
using namespace Qt::Literals::StringLiterals;

namespace {

struct Saving : Documents {
  Saving() {
    id = t.add({{u"Form"_s, textValue(u"Memo")}, {u"Body"_s, richValue(u"old text"_s), 0}});
    document = t.document(id);
    t.workspace->setChangeListener([this](const DatabasePlace& place) { told.append(place.path); });
  }
  Value set(const Object& target, const QString& text) {
    return target.call(u"REPLACEITEMVALUE"_s, u"Form"_s, text);
  }
  QString form() { return valueOf(t.document(id), u"Form"_s).at(0).text(); }
  Object database(const QString& file) { return t.session().call(u"GETDATABASE"_s, u""_s, file).object(); }
  NoteId id;
  Object document;
  QStringList told;
};

}  // namespace

TEST_F(Saving, WhatWasSavedIsReadByAllWhoReadAnew) {
  set(document, u"Letter"_s);
  EXPECT_EQ(document.call(u"sAVE"_s, true, false), Value(true));
  EXPECT_EQ(form(), u"Letter"_s);
  EXPECT_EQ(told, QStringList(u"mail.nsf"_s));
  EXPECT_EQ(document.call(u"Save"_s, true, false, true), Value(true));
  EXPECT_EQ(raised([&] { document.call(u"SAVE"_s, true); }), 449);
}

TEST_F(Saving, AnUnchangedDocumentGetsANewSequence) {
  const quint32 before = stored(id).header.sequence;
  saveForced(document);
  saveForced(document);
  EXPECT_EQ(stored(id).header.sequence, before + 2);
}

TEST_F(Saving, ForceOverwritesWhatSomebodyElseSaved) {
  const Object other = t.document(id);
  set(other, u"other"_s);
  saveForced(other);
  set(document, u"mine"_s);
  saveForced(document);
  EXPECT_EQ(form(), u"mine"_s);
  EXPECT_EQ(t.store->notes().noteCount(noteclass::Document), 1);
}

TEST_F(Saving, WithoutForceAChangedDocumentIsNotOverwritten) {
  const Object other = t.document(id);
  set(other, u"other"_s);
  saveForced(other);
  set(document, u"mine"_s);
  const QString reason = reasonOf([&] { document.call(u"SAVE"_s, false, false); });
  EXPECT_TRUE(reason.contains(u"mail.nsf"_s) && reason.contains(t.hex(id))) << reason.toStdString();
  EXPECT_EQ(raised([&] { document.call(u"SAVE"_s, false, false); }), modelfault::ChangedMeanwhile);
  EXPECT_EQ(form(), u"other"_s);
  EXPECT_EQ(valueOf(document, u"Form"_s), listOf({u"mine"}));
  other.call(u"SAVE"_s, false, false);
}

TEST_F(Saving, AChangedDocumentCanBecomeAConflictThatAnswersTheOther) {
  const Object other = t.document(id);
  set(other, u"other"_s);
  saveForced(other);
  set(document, u"mine"_s);
  document.call(u"SAVE"_s, false, true);
  EXPECT_EQ(form(), u"other"_s);
  const QString conflictId = document.get(u"NOTEID"_s).text();
  EXPECT_NE(conflictId, t.hex(id));
  const Note conflict = stored(NoteId(conflictId.toUInt(nullptr, 16)));
  EXPECT_EQ(conflict.header.parent, stored(id).header.unid);
  EXPECT_EQ(conflict.text(u"Form"), u"mine"_s);
  EXPECT_TRUE(conflict.has(u"$Conflict"));
  EXPECT_EQ(valueOf(document, u"$REF"_s), listOf({stored(id).header.unid.text()}));
  // The object goes on as that document.
  set(document, u"again"_s);
  document.call(u"SAVE"_s, false, false);
  EXPECT_EQ(t.store->notes().noteCount(noteclass::Document), 2);
}

TEST_F(Saving, AConflictOfAnAnswerKeepsThePlacesOfItsItems) {
  Note answer = stored(id);
  answer.items.insert(0, {u"$Ref"_s, itemflag::Summary, noteRefsValue({Unid::create()})});
  t.store->notes().save(answer);
  document = t.document(id);
  const Object form = itemOf(document, u"Form"_s), other = t.document(id);
  set(other, u"other"_s);
  saveForced(other);
  set(document, u"mine"_s);
  document.call(u"SAVE"_s, false, true);
  EXPECT_EQ(valueOf(document, u"$REF"_s), listOf({stored(id).header.unid.text()}));
  EXPECT_EQ(form.get(u"Text"_s).text(), u"mine"_s);
  const Note conflict = stored(NoteId(document.get(u"NOTEID"_s).text().toUInt(nullptr, 16)));
  EXPECT_EQ(conflict.items.first().name, u"$Ref"_s);
  EXPECT_EQ(conflict.items.last().name, u"$Conflict"_s);
}

TEST_F(Saving, ADeletedDocumentIsNotSaved) {
  t.store->notes().remove(id);
  set(document, u"mine"_s);
  EXPECT_GT(raised([&] { saveForced(document); }), 0);
  EXPECT_EQ(raised([&] { document.call(u"SAVE"_s, false, true); }), modelfault::NoSuchDocument);
  EXPECT_EQ(t.store->notes().state(id), NoteState::Stub);
  EXPECT_TRUE(told.isEmpty());
}

TEST_F(Saving, AReadOnlyDatabaseRefusesAllChangesAndNamesItself) {
  sql("PRAGMA query_only = 1");
  set(document, u"mine"_s);
  const QString source = write(u"a.txt"_s, "x");
  const Object body = itemOf(document, u"Body"_s);
  const auto refused = [&](const auto& change) {
    EXPECT_TRUE(reasonOf(change).contains(u"mail.nsf"_s)) << reasonOf(change).toStdString();
    EXPECT_NE(raised(change), 4000);
  };
  refused([&] { saveForced(document); });
  refused([&] { document.call(u"Remove"_s, true); });
  refused([&] { document.call(u"REMOVEPERMANENTLY"_s, true); });
  refused([&] { document.call(u"COPYTODATABASE"_s, t.mail()); });
  refused([&] { body.call(u"EMBEDOBJECT"_s, 1454, u""_s, source); });
  EXPECT_EQ(form(), u"Memo"_s);
  EXPECT_TRUE(told.isEmpty());
  sql("PRAGMA query_only = 0");
  saveForced(document);
  EXPECT_EQ(form(), u"mine"_s);
}

TEST_F(Saving, AnotherConnectionIsNoticed) {
  const QString path = t.store->path();
  std::thread([&] {
    const std::shared_ptr<Database> beside = Database::open(path);
    Note note;
    ASSERT_TRUE(beside->notes().read(id, note));
    note.find(u"Form")->value = textValue(u"beside");
    beside->notes().save(note);
  }).join();
  set(document, u"mine"_s);
  EXPECT_EQ(raised([&] { document.call(u"SAVE"_s, false, false); }), modelfault::ChangedMeanwhile);
  EXPECT_EQ(form(), u"beside"_s);
  saveForced(document);
  EXPECT_EQ(form(), u"mine"_s);
}

TEST_F(Saving, ALockedDatabaseRefusesAndGoesOnLater) {
  sqlite3* beside = nullptr;
  ASSERT_EQ(sqlite3_open(t.store->path().toUtf8().constData(), &beside), SQLITE_OK);
  ASSERT_EQ(sqlite3_exec(beside, "BEGIN IMMEDIATE", nullptr, nullptr, nullptr), SQLITE_OK);
  sqlite3_busy_timeout(t.store->handle(), 10);
  set(document, u"mine"_s);
  EXPECT_TRUE(reasonOf([&] { saveForced(document); }).contains(u"mail.nsf"_s));
  sqlite3_exec(beside, "ROLLBACK", nullptr, nullptr, nullptr);
  sqlite3_close(beside);
  saveForced(document);
  EXPECT_EQ(form(), u"mine"_s);
}

TEST_F(Saving, ACopyIsSavedAtOnceWithIdsOfItsOwn) {
  t.workspace->createDatabase({}, u"target.nsf"_s, {});
  const Object target = database(u"target.nsf"_s);
  set(document, u"unsaved"_s);
  const Object copy = document.call(u"copyToDatabase"_s, target).object();
  EXPECT_EQ(copy.get(u"PARENTDATABASE"_s).object().get(u"FILEPATH"_s).text(), u"target.nsf"_s);
  EXPECT_NE(copy.get(u"UNIVERSALID"_s).text(), document.get(u"UNIVERSALID"_s).text());
  const Object again = target.call(u"GETDOCUMENTBYID"_s, copy.get(u"NOTEID"_s).text()).object();
  EXPECT_EQ(valueOf(again, u"Form"_s), listOf({u"unsaved"}));
  EXPECT_EQ(form(), u"Memo"_s);
  EXPECT_EQ(told, QStringList(u"target.nsf"_s));
  copy.call(u"REPLACEITEMVALUE"_s, u"Form"_s, u"copy"_s);
  copy.call(u"SAVE"_s, true, false, true);
  EXPECT_EQ(valueOf(document, u"Form"_s), listOf({u"unsaved"}));
}

TEST_F(Saving, ACopyInTheSameDatabaseIsAnotherDocument) {
  const Object copy = document.call(u"COPYTODATABASE"_s, t.mail()).object();
  EXPECT_NE(copy.get(u"NOTEID"_s).text(), t.hex(id));
  EXPECT_EQ(t.store->notes().noteCount(noteclass::Document), 2);
  document.call(u"Remove"_s, true);
  EXPECT_EQ(valueOf(t.document(NoteId(copy.get(u"NOTEID"_s).text().toUInt(nullptr, 16))), u"Form"_s),
            listOf({u"Memo"}));
}

TEST_F(Saving, ACopyNeedsAnOpenDatabase) {
  EXPECT_EQ(raised([&] { document.call(u"COPYTODATABASE"_s, Object()); }), err::ObjectNotSet);
  EXPECT_EQ(raised([&] { document.call(u"COPYTODATABASE"_s, document); }), modelfault::WrongKind);
  EXPECT_GT(raised([&] { document.call(u"COPYTODATABASE"_s, u"mail.nsf"_s); }), 0);
  const Object closed = t.mail();
  closed.call(u"Close"_s);
  EXPECT_EQ(raised([&] { document.call(u"COPYTODATABASE"_s, closed); }), modelfault::DatabaseClosed);
  EXPECT_EQ(t.store->notes().noteCount(noteclass::Document), 1);
}

TEST_F(Saving, DesignNotesAreCopiedAndASecondIconIsRefused) {
  t.workspace->createDatabase({}, u"target.nsf"_s, {});
  const Object target = database(u"target.nsf"_s);
  const Object view = t.document(t.addView(u"All"_s));
  const Object icon = t.document(t.add({{u"$TITLE"_s, textValue(u"x")}}, noteclass::Icon));
  for (const Object& note : {view, icon, view}) note.call(u"COPYTODATABASE"_s, target);
  EXPECT_EQ(target.get(u"VIEWS"_s).upperBound(), 1);
  EXPECT_EQ(raised([&] { icon.call(u"COPYTODATABASE"_s, target); }), kSecondSingleNote);
}

TEST_F(Saving, RemoveLeavesAStubAndRemovePermanentlyNothing) {
  const NoteId second = t.add({{u"A"_s, textValue(u"x")}});
  document.call(u"rEMOVE"_s, true);
  t.document(second).call(u"RemovePermanently"_s, true);
  EXPECT_EQ(t.store->notes().state(id), NoteState::Stub);
  EXPECT_EQ(t.store->notes().state(second), NoteState::Gone);
  EXPECT_TRUE(t.document(id).isNothing());
  EXPECT_EQ(told.size(), 2);
}

TEST_F(Saving, ARemovedDocumentHasNoMembersAnyMore) {
  const Object item = itemOf(document, u"Body"_s);
  const Object range = item.call(u"CREATERANGE"_s).object();
  const Object attached = t.document(t.addFile(u"a"_s, "x"));
  const Object file = attached.call(u"GETATTACHMENT"_s, u"a"_s).object();
  document.call(u"Remove"_s, true);
  attached.call(u"REMOVEPERMANENTLY"_s, true);
  const auto gone = [](const auto& use) { EXPECT_EQ(raised(use), modelfault::NoSuchDocument); };
  gone([&] { document.get(u"NoteID"_s); });
  gone([&] { document.call(u"GETITEMVALUE"_s, u"Form"_s); });
  gone([&] { saveForced(document); });
  gone([&] { document.call(u"Remove"_s, true); });
  gone([&] { item.get(u"Name"_s); });
  gone([&] { item.set(u"ISSIGNED"_s, true); });
  gone([&] { range.call(u"FINDANDREPLACE"_s, u"old"_s, u"new"_s, 17); });
  gone([&] { file.call(u"EXTRACTFILE"_s, t.file(u"a"_s)); });
  const QString reason = reasonOf([&] { document.get(u"NOTEID"_s); });
  EXPECT_TRUE(reason.contains(u"mail.nsf"_s) && reason.contains(t.hex(id))) << reason.toStdString();
}

TEST_F(Saving, RemovingWhatIsGoneIsAFailure) {
  const Object other = t.document(id);
  document.call(u"Remove"_s, true);
  EXPECT_EQ(raised([&] { other.call(u"Remove"_s, true); }), modelfault::NoSuchDocument);
  EXPECT_EQ(raised([&] { other.call(u"REMOVEPERMANENTLY"_s, true); }), modelfault::NoSuchDocument);
  EXPECT_EQ(t.store->notes().state(id), NoteState::Stub);
}

TEST_F(Saving, WithoutForceAChangedDocumentIsNotRemoved) {
  saveForced(t.document(id));
  EXPECT_EQ(raised([&] { document.call(u"Remove"_s, false); }), modelfault::ChangedMeanwhile);
  EXPECT_EQ(t.store->notes().state(id), NoteState::Live);
  t.document(id).call(u"Remove"_s, false);
  EXPECT_EQ(t.store->notes().state(id), NoteState::Stub);
}

TEST_F(Saving, AnItemObjectOutlivesTheDocumentObjectAndChangesNothingStored) {
  const Object item = itemOf(document, u"Form"_s);
  document.release();
  item.set(u"ISSIGNED"_s, true);
  EXPECT_TRUE(item.get(u"ISSIGNED"_s).boolean());
  EXPECT_FALSE(itemOf(t.document(id), u"Form"_s).get(u"ISSIGNED"_s).boolean());
}

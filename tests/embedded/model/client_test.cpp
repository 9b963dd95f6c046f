#include <gtest/gtest.h>

#include "embedded/model/support/test_workspace.h"

using namespace lens;
using namespace lens::testbed;
using namespace Qt::Literals::StringLiterals;

namespace {

struct Recorder : ClientListener {
  QStringList told;
  void refreshView() override { told.append(u"refresh"_s); }
  void documentClosed() override { told.append(u"document"_s); }
  void databaseClosed() override { told.append(u"database"_s); }
};

struct Client : ::testing::Test {
  Client() {
    first = t.add({{u"Subject"_s, textValue(u"One")}});
    second = t.add({{u"Subject"_s, textValue(u"Two")}});
    t.workspace->client().setListener(&recorder);
    t.workspace->client().showDatabase(DatabasePlace{{}, u"mail.nsf"_s});
  }
  TestWorkspace t;
  Recorder recorder;
  NoteId first = NoteId(0), second = NoteId(0);
};

}  // namespace

TEST_F(Client, WithoutDatabaseOnTopThereIsNothing) {
  t.workspace->client().showNoDatabase();
  EXPECT_TRUE(t.ui().get(u"CurrentDatabase"_s).object().isNothing());
  EXPECT_TRUE(t.ui().get(u"CurrentDocument"_s).object().isNothing());
}

TEST_F(Client, OpenDocumentIsReadFromTheStoreEachTime) {
  t.workspace->client().showDocument(second);
  const Object window = t.ui().get(u"CURRENTDOCUMENT"_s).object();
  EXPECT_EQ(window.get(u"Document"_s).object().get(u"NoteID"_s).text(), t.hex(second));
  Note note;
  ASSERT_TRUE(t.store->notes().read(second, note));
  note.find(u"Subject")->value = textValue(u"Changed");
  t.store->notes().save(note);
  const Object again = window.get(u"DOCUMENT"_s).object();
  EXPECT_EQ(again.call(u"GETITEMVALUE"_s, u"Subject"_s).at(0).text(), u"Changed"_s);
}

TEST_F(Client, WithoutOpenDocumentItsMembersRaise91) {
  EXPECT_EQ(raised([&] { t.ui().get(u"CURRENTDOCUMENT"_s).object().get(u"DOCUMENT"_s); }), err::ObjectNotSet);
}

TEST_F(Client, ClosingTheDocumentTellsTheWindow) {
  t.workspace->client().showDocument(first);
  const Object window = t.ui().get(u"CURRENTDOCUMENT"_s).object();
  window.call(u"close"_s);
  EXPECT_EQ(t.workspace->client().document(), NoteId());
  EXPECT_EQ(recorder.told, QStringList(u"document"_s));
  t.workspace->client().showDocument(second);
  window.call(u"Close"_s);  // that window is gone, the new one stays
  EXPECT_EQ(t.workspace->client().document(), second);
}

TEST_F(Client, SelectionIsSeenWhileTheViewIsOnTop) {
  t.workspace->client().select({second, first});
  const Object selected =
      t.session().get(u"CURRENTDATABASE"_s).object().get(u"UnprocessedDocuments"_s).object();
  EXPECT_EQ(selected.get(u"Count"_s).number(), 2);
  EXPECT_EQ(selected.call(u"GETFIRSTDOCUMENT"_s).object().get(u"NOTEID"_s).text(), t.hex(second));
  t.workspace->client().showDocument(first);
  EXPECT_EQ(
      t.session().get(u"CURRENTDATABASE"_s).object().get(u"UNPROCESSEDDOCUMENTS"_s).object().get(u"count"_s),
      Value(0));
}

TEST_F(Client, AnotherDatabaseHasNoSelection) {
  t.workspace->client().select({first});
  t.workspace->createDatabase({}, u"other.nsf"_s, {});
  const Object other = t.session().call(u"GETDATABASE"_s, u""_s, u"other.nsf"_s).object();
  EXPECT_EQ(other.get(u"UNPROCESSEDDOCUMENTS"_s).object().get(u"count"_s), Value(0));
  t.workspace->client().showDatabase(DatabasePlace{{}, u"other.nsf"_s});
  EXPECT_TRUE(t.workspace->client().visibleSelection().isEmpty());
}

TEST_F(Client, BackEndSessionSeesNoSelection) {
  t.workspace->client().select({first});
  const Object session = t.gateway.create(u"Lotus.NotesSession"_s);
  session.call(u"Initialize"_s);
  const Object mail = session.call(u"GETDATABASE"_s, u""_s, u"mail.nsf"_s).object();
  EXPECT_EQ(mail.get(u"UNPROCESSEDDOCUMENTS"_s).object().get(u"count"_s), Value(0));
}

TEST_F(Client, OpenDatabasePutsADatabaseOnTopOrRaisesAndKeepsTheOldOne) {
  t.workspace->addServer(u"CN=Hub1/O=Acme"_s);
  t.workspace->createDatabase(u"Hub1/Acme"_s, u"crm.nsf"_s, {});
  for (const QString& file : {u""_s, u"none.nsf"_s})
    EXPECT_GT(raised([&] { t.ui().call(u"OpenDatabase"_s, u""_s, file); }), 0);
  EXPECT_GT(raised([&] { t.ui().call(u"OPENDATABASE"_s, u"Hub9/Acme"_s, u"crm.nsf"_s); }), 0);
  EXPECT_EQ(t.ui().get(u"CURRENTDATABASE"_s).object().get(u"FILEPATH"_s).text(), u"mail.nsf"_s);
  t.ui().call(u"OPENDATABASE"_s, u"hub1/acme"_s, u"CRM"_s);
  EXPECT_EQ(t.session().get(u"CurrentDatabase"_s).object().get(u"FILEPATH"_s).text(), u"crm.nsf"_s);
  EXPECT_EQ(t.session().get(u"CURRENTDATABASE"_s).object().get(u"SERVER"_s).text(), u"CN=Hub1/O=Acme"_s);
}

TEST_F(Client, ViewRefreshTellsTheWindowAndNeedsNone) {
  t.ui().call(u"ViewRefresh"_s);
  EXPECT_EQ(recorder.told, QStringList(u"refresh"_s));
  t.workspace->client().setListener(nullptr);
  t.ui().call(u"VIEWREFRESH"_s);
}

TEST_F(Client, OnlyTheWorkspacesDatabaseClosesTheWindow) {
  t.session().get(u"CURRENTDATABASE"_s).object().call(u"Close"_s);
  EXPECT_TRUE(t.workspace->client().database());
  t.ui().get(u"CURRENTDATABASE"_s).object().call(u"Close"_s);
  EXPECT_FALSE(t.workspace->client().database());
  EXPECT_EQ(recorder.told, QStringList(u"database"_s));
}

TEST_F(Client, CollectionWalksItsDocumentsAndPassesOverGoneOnes) {
  const NoteId third = t.add({{u"Subject"_s, textValue(u"Three")}});
  t.workspace->client().select({third, first, second});
  const Object selected =
      t.session().get(u"CURRENTDATABASE"_s).object().get(u"UNPROCESSEDDOCUMENTS"_s).object();
  t.store->notes().remove(first);
  Object document = selected.call(u"GetFirstDocument"_s).object();
  EXPECT_EQ(document.get(u"NoteID"_s).text(), t.hex(third));
  document = selected.call(u"GetNextDocument"_s, document).object();
  EXPECT_EQ(document.get(u"NoteID"_s).text(), t.hex(second));
  EXPECT_TRUE(selected.call(u"GETNEXTDOCUMENT"_s, document).object().isNothing());
  EXPECT_EQ(selected.call(u"GETNTHDOCUMENT"_s, 3).object().get(u"NoteID"_s).text(), t.hex(second));
  EXPECT_TRUE(selected.call(u"GETNTHDOCUMENT"_s, 4).object().isNothing());
  EXPECT_TRUE(selected.call(u"GETNTHDOCUMENT"_s, 0).object().isNothing());
  EXPECT_GT(raised([&] { selected.call(u"GETNTHDOCUMENT"_s, 2); }), 0);
  EXPECT_GT(raised([&] { selected.call(u"GETNEXTDOCUMENT"_s, u"text"_s); }), 0);
}

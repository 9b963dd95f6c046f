#include "shell/database_lists.h"

#include "support/lens_fixture.h"

namespace lens {
namespace {

class DatabaseListsTest : public LensFixture {
 protected:
  DatabaseListsTest() {
    openDatabase(u"mail.nsf"_s);
    workspace->createDatabase({}, u"master.ntf"_s, {});
    build();
    app->sessions.GetSessionProbe();
    box.setSorted(true);
    notes().log.clear();
  }
  QStringList listed() const {
    QStringList texts;
    for (int row = 0; row < box.listCount(); ++row) texts += box.list(row);
    return texts;
  }

  ListBox box;
};

TEST_F(DatabaseListsTest, AWindowsListIsClearedAndFilledWithoutAFilter) {
  app->databases.registerList(u"lstDBNamesDest"_s, u"Form2"_s, box);
  box.addItem(u"old"_s);
  app->databases.GetDbs(u"Local"_s, u"lstDBNamesDest"_s, u"Form2"_s);
  EXPECT_EQ(listed(), QStringList({u"mail.nsf"_s, u"master.ntf"_s}));
  EXPECT_EQ(host.pointers, QVector<int>({pointer::Hourglass, pointer::Default}));
}

TEST_F(DatabaseListsTest, AnUnknownCombinationTouchesNoListAndStillWalksTheDirectory) {
  app->databases.registerList(u"lstDBNamesDest"_s, u"Form2"_s, box);
  box.addItem(u"old"_s);
  for (const auto& [list, window] :
       {std::pair(u"lstDBNames"_s, u"Form2"_s), std::pair(u"lstDBNamesDest"_s, u"form2"_s),
        std::pair(u"LSTDBNAMESDEST"_s, u"Form2"_s)}) {
    notes().log.clear();
    app->databases.GetDbs(u"Local"_s, list, window);
    EXPECT_EQ(listed(), QStringList(u"old"_s));
    EXPECT_EQ(notes().log, QStringList({u"GETDBDIRECTORY"_s, u"GETFIRSTDATABASE"_s, u"GETNEXTDATABASE"_s,
                                        u"GETNEXTDATABASE"_s}));
  }
}

TEST_F(DatabaseListsTest, AFailureKeepsTheRowsBeforeItAndShowsOneBox) {
  app->databases.registerList(u"lstDBNamesDest"_s, u"Form3"_s, box);
  notes().failing.insert(u"GETNEXTDATABASE"_s, RuntimeError(4711, u"gone"_s));
  app->databases.GetDbs(u"Local"_s, u"lstDBNamesDest"_s, u"Form3"_s);
  EXPECT_EQ(listed(), QStringList(u"mail.nsf"_s));
  EXPECT_EQ(host.boxes,
            QVector<ShownBox>({{u"gone in line 0"_s, box::Critical, u"Program Error in: GetDbs"_s}}));
  EXPECT_EQ(host.pointerCode, pointer::Default);
}

TEST_F(DatabaseListsTest, OnlyTheWordLocalIsThisMachine) {
  EXPECT_EQ(namedServer(u"Local"_s), "");
  for (const QString& text : {u"local"_s, u"LOCAL"_s, u" Local"_s, u"Hub/Acme"_s, QString()})
    EXPECT_EQ(namedServer(text), text);
}

TEST_F(DatabaseListsTest, OfTwoPublicAddressBooksTheFirstOneGivesTheServers) {
  for (const QString& server : {u"CN=A/O=Acme"_s, u"CN=B/O=Acme"_s}) {
    workspace->addServer(server);
    DatabaseInfo info;
    info.publicAddressBook = true;
    const auto book = workspace->createDatabase(server, u"names.nsf"_s, info);
    Note view;
    view.header.noteClass = noteclass::View;
    view.add(u"$TITLE"_s, itemflag::Summary, textValue(u"($Servers)"_s));
    book->notes().save(view);
    Note note = document(u"Server"_s);
    note.add(u"ServerName"_s, itemflag::Summary, textValue(server));
    book->notes().save(note);
  }
  ComboBox combo;
  combo.setEditable(true);
  app->servers.registerWindow(u"Form3"_s, {&combo});
  workspace->setIniValue(u"Names"_s, u"B/Acme!!names.nsf,A/Acme!!names.nsf"_s);
  app->servers.GetServerList2(u"Form3"_s);
  ASSERT_EQ(combo.listCount(), 2);
  EXPECT_EQ(combo.list(0), "Local");
  EXPECT_EQ(combo.list(1), "CN=B/O=Acme");
  EXPECT_EQ(combo.text(), "CN=B/O=Acme") << "the text is a row";
  EXPECT_EQ(host.boxes.size(), 0);
}

}  // namespace
}  // namespace lens

// What the client window keeps between two starts.
#include <QHeaderView>
#include <QMenu>
#include <QSplitter>

#include "client/client_fixture.h"
#include "client/kept_databases.h"
#include "embedded/nsf/made_samples.h"
#include "embedded/nsf/maker/nsf_maker.h"

namespace lens {

class KeptState : public Client {
 protected:
  ~KeptState() override { window.reset(); }  // before what it keeps its state in
  // The next start of the program: another window on another workspace object, the same file.
  void startKept() {
    window.reset();
    settings = std::make_unique<KeptSettings>(directory.path() + u"/windows.ini"_s);
    start();
    hadPlace = window->keepState(*settings);
  }
  QSplitter& splitter(const char* name) { return part<QSplitter>(name); }
  QStringList recent() {
    QStringList names;
    for (const QAction* action : part<QMenu>("recentMenu").actions())
      if (action->text().contains(u" on "_s)) names += action->text();
    return names;
  }
  // Waits until what the user did last is in the file.
  void rest() { QTest::qWait(400); }

  std::unique_ptr<KeptSettings> settings;
  bool hadPlace = false;
};

TEST_F(KeptState, PlaceAndSizeComeBack) {
  startKept();
  EXPECT_FALSE(hadPlace);
  window->setGeometry(30, 40, 720, 500);
  window->close();
  startKept();
  EXPECT_TRUE(hadPlace);
  EXPECT_EQ(window->geometry(), QRect(30, 40, 720, 500));
}

TEST_F(KeptState, SplittersComeBack) {
  save(memo(u"A"_s));
  startKept();
  openMail();
  for (const char* name : {"panes", "viewPanes"}) {
    const QList<int> sizes = splitter(name).sizes();
    splitter(name).setSizes({sizes[0] + 50, sizes[1] - 50});
    Q_EMIT splitter(name).splitterMoved(0, 1);
  }
  rest();
  const QList<int> panes = splitter("panes").sizes(), views = splitter("viewPanes").sizes();
  startKept();
  openMail();
  EXPECT_EQ(splitter("panes").sizes(), panes);
  EXPECT_EQ(splitter("viewPanes").sizes(), views);
}

TEST_F(KeptState, WidthsOfColumnsComeBackForTheSameColumns) {
  const NoteId id = save(memo(u"A"_s));
  startKept();
  openMail();
  rest();
  QHeaderView* documents = table().horizontalHeader();
  documents->resizeSection(0, documents->sectionSize(0) + 37);
  const int form = documents->sectionSize(0);
  ASSERT_TRUE(window->openDocument(id));
  rest();
  auto* items = part<QTableView>("readerItems").horizontalHeader();
  items->resizeSection(1, 77);
  rest();
  startKept();
  ASSERT_TRUE(window->openDatabase({QString(), u"mail.nsf"_s}));
  rest();
  EXPECT_EQ(table().horizontalHeader()->sectionSize(0), form);
  ASSERT_TRUE(window->openDocument(id));
  rest();
  EXPECT_EQ(part<QTableView>("readerItems").horizontalHeader()->sectionSize(1), 77);
}

TEST_F(KeptState, TheDatabaseOnTopAndItsDocumentComeBack) {
  const NoteId id = save(memo(u"A"_s));
  startKept();
  openMail();
  ASSERT_TRUE(window->openDocument(id));
  window.reset();
  workspace->client().showNoDatabase();
  ASSERT_TRUE(openKeptDatabase(*workspace, *settings));
  ASSERT_TRUE(workspace->client().database());
  EXPECT_EQ(workspace->client().database()->path, u"mail.nsf"_s);
  EXPECT_EQ(workspace->client().document(), id);
}

TEST_F(KeptState, ADocumentThatHasGoneLeavesItsDatabase) {
  const NoteId id = save(memo(u"A"_s));
  startKept();
  openMail();
  ASSERT_TRUE(window->openDocument(id));
  window.reset();
  workspace->client().showNoDatabase();
  mail->notes().remove(id);
  ASSERT_TRUE(openKeptDatabase(*workspace, *settings));
  EXPECT_TRUE(workspace->client().document().isNull());
}

TEST_F(KeptState, WhatHasGoneOrWasClosedDoesNotComeBack) {
  startKept();
  openMail();
  window->closeDatabase();
  window.reset();
  EXPECT_FALSE(openKeptDatabase(*workspace, *settings));
  startKept();
  openMail();
  window.reset();
  workspace->client().showNoDatabase();
  mail.reset();
  ASSERT_TRUE(QFile::remove(directory.path() + u"/workspace/data/mail.nsf"_s));
  EXPECT_FALSE(openKeptDatabase(*workspace, *settings));
  EXPECT_FALSE(workspace->client().database());
}

TEST_F(KeptState, RecentDatabasesAreAMenuTheLastOneFirst) {
  workspace->createDatabase({}, u"a&b.nsf"_s, {});
  workspace->createDatabase(u"CN=Hub/O=Acme"_s, u"hub.nsf"_s, {});
  startKept();
  EXPECT_FALSE(part<QMenu>("recentMenu").menuAction()->isEnabled());
  openMail();
  ASSERT_TRUE(window->openDatabase({QString(), u"a&b.nsf"_s}));
  ASSERT_TRUE(window->openDatabase({u"CN=Hub/O=Acme"_s, u"hub.nsf"_s}));
  openMail();
  startKept();
  EXPECT_EQ(recent(),
            QStringList({u"&1 mail.nsf on Local"_s, u"&2 hub.nsf on Hub/Acme"_s, u"&3 a&&b.nsf on Local"_s}));
  part<QMenu>("recentMenu").actions().value(1)->trigger();
  EXPECT_TRUE(QTest::qWaitFor([&] { return window->windowTitle() == u"Client: hub.nsf"_s; }))
      << window->windowTitle().toStdString();
  EXPECT_EQ(recent().first(), u"&1 hub.nsf on Hub/Acme"_s);
}

TEST_F(KeptState, ARecentDatabaseThatHasGoneIsToldAndForgotten) {
  startKept();
  openMail();
  window->closeDatabase();
  mail.reset();
  ASSERT_TRUE(QFile::remove(directory.path() + u"/workspace/data/mail.nsf"_s));
  part<QMenu>("recentMenu").actions().first()->trigger();
  EXPECT_TRUE(QTest::qWaitFor([&] { return recent().isEmpty(); }));
  EXPECT_TRUE(error().contains(u"mail.nsf"_s)) << error().toStdString();
}

TEST_F(KeptState, RecentDatabasesAreNineAndCanBeForgotten) {
  startKept();
  for (int i = 0; i < 12; ++i) {
    workspace->createDatabase({}, u"%1.nsf"_s.arg(i), {});
    ASSERT_TRUE(window->openDatabase({QString(), u"%1.nsf"_s.arg(i)}));
  }
  EXPECT_EQ(recent().size(), 9);
  EXPECT_EQ(recent().first(), u"&1 11.nsf on Local"_s);
  part<QMenu>("recentMenu").actions().last()->trigger();
  EXPECT_TRUE(QTest::qWaitFor([&] { return recent().isEmpty(); }));
}

TEST_F(KeptState, ARealDatabaseThatIsToBeReadComesUpInTheWindowAndHoldsUpNoStart) {
  const QString file = directory.path() + u"/real.nsf"_s;
  QFile real(file);
  ASSERT_TRUE(real.open(QIODevice::WriteOnly));
  made::SampleIds ids;
  real.write(made::makeFile(made::sampleDatabase(&ids)).bytes);
  real.close();
  startKept();
  ASSERT_TRUE(window->openDatabase({QString(), file}));
  window.reset();
  workspace->client().showNoDatabase();
  ASSERT_TRUE(QDir(workspace->directory() + u"/cache"_s).removeRecursively());
  EXPECT_FALSE(openKeptDatabase(*workspace, *settings)) << "nothing is read before the first screen";
  startKept();
  EXPECT_TRUE(QTest::qWaitFor([&] { return window->windowTitle().contains(u"read-only copy"_s); }))
      << window->windowTitle().toStdString();
}

TEST_F(KeptState, AnotherWorkspaceHasItsOwnDatabases) {
  startKept();
  openMail();
  const auto other = Workspace::open(directory.path() + u"/other"_s, Regional(QLocale::c()));
  EXPECT_FALSE(KeptDatabases(*settings, *other).top());
  EXPECT_TRUE(KeptDatabases(*settings, *other).recent().isEmpty());
  EXPECT_TRUE(KeptDatabases(*settings, *workspace).top());
}

TEST_F(KeptState, JunkInTheFileDoesNoHarm) {
  startKept();
  openMail();
  for (const char* key : {"client/place", "client/panes", "client/viewPanes", "client/readerHalves"})
    settings->set(QString::fromLatin1(key), QByteArray("junk"));
  startKept();
  openMail();
  EXPECT_GT(table().width(), 100);
  EXPECT_FALSE(hadPlace);
}

}  // namespace lens

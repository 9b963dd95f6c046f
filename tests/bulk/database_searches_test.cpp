#include "bulk/database_searches.h"

#include "bulk/bulk_fixture.h"
#include "embedded/workspace/workspace_fault.h"

namespace lens {
namespace {

const QString kServer = u"CN=Hub/O=Acme"_s;

class DatabaseSearchesTest : public ReplicDeskTest {
 protected:
  DatabaseSearchesTest() {
    workspace->addServer(kServer);
    provideSound();
  }
  // One with an index, a view "By Subject" and these documents.
  std::shared_ptr<Database> indexed(const QString& path, const QStringList& subjects,
                                    const QString& server = QString()) {
    auto database = makeDatabase(path, server);
    addView(*database, u"By Subject|subjects"_s);
    for (const QString& subject : subjects) add(*database, subject);
    createFullTextIndex(*database);
    return database;
  }
  void onServer() { window.lstServer->setText(u"Hub/Acme"_s); }
  void search(const QString& text, CommandButton* button) {
    window.txtTemplale->setText(text);
    host.boxes.clear();
    host.sounds.clear();
    press(button);
  }
  QStringList found() { return rowsOf(*window.lstDBNamesDest); }
  QStringList marked() { return markedRowsOf(*window.lstDBNames); }
  bool soundPlayed() const { return host.sounds.size() == 1; }
  static ShownBox cannotOpen() { return {u"Can't open the Database!!"_s, box::Critical, u"Open Notes DB"_s}; }
  // Another program's doing at the moment of the n-th call of a member.
  void atCall(const QString& member, int n, std::function<void()> happens) {
    notes().onCall = [this, member, n, happens, seen = 0](const QString& name) mutable {
      if (name.compare(member, Qt::CaseInsensitive) == 0 && ++seen == n) happens();
    };
  }

  DatabaseSearches searches{desk};
};

// --- Words ---------------------------------------------------------------------------------------------

TEST_F(DatabaseSearchesTest, ListDatabasesWithAHitAmongTheMarkedOnes) {
  indexed(u"a.nsf"_s, {u"red pump"_s});
  indexed(u"b.nsf"_s, {u"green valve"_s});
  indexed(u"c.nsf"_s, {u"pump, blue"_s});
  indexed(u"d.nsf"_s, {u"pump"_s});
  add(*makeDatabase(u"e.nsf"_s), u"pump"_s);
  fillMarked(*window.lstDBNames, {u"a.nsf"_s, u"b.nsf"_s, u"c.nsf"_s, u"d.nsf"_s, u"e.nsf"_s});
  window.lstDBNames->setSelected(3, false);
  fill(*window.lstViewNames, {u"v"_s});
  fill(*window.lstAgentNames, {u"g"_s});
  fill(*window.lstDBNamesDest, {u"former.nsf"_s});
  window.txtDocsSelected->setText(u"9"_s);
  globals.gStopFlag = true;
  search(u"pump AND (red OR blue)"_s, window.cmdSearch);
  EXPECT_EQ(host.boxes, Boxes());
  EXPECT_EQ(found(), QStringList({u"a.nsf"_s, u"c.nsf"_s}));
  EXPECT_EQ(rowsOf(*window.lstViewNames) + rowsOf(*window.lstAgentNames), QStringList());
  EXPECT_EQ(window.txtProc->text(), u"4"_s) << "one without an index counts too";
  EXPECT_EQ(window.txtDocsSelected->text(), QString());
  EXPECT_EQ(marked().size(), 4);
  EXPECT_FALSE(globals.gSearchBusy);
  EXPECT_TRUE(globals.gDb.isNothing());
  EXPECT_EQ(globals.gDbPath, u"e.nsf"_s);
  EXPECT_TRUE(soundPlayed());
}

TEST_F(DatabaseSearchesTest, WithNoMarkedDatabaseOnlyPlayTheSound) {
  indexed(u"a.nsf"_s, {u"pump"_s});
  fill(*window.lstDBNames, {u"a.nsf"_s});
  for (CommandButton* button :
       {static_cast<CommandButton*>(window.cmdSearch), static_cast<CommandButton*>(window.cmdSearchAZ),
        static_cast<CommandButton*>(window.cmdSearchInViews)}) {
    notes().log.clear();
    search(u"pump"_s, button);
    EXPECT_EQ(notes().log, QStringList());
    EXPECT_EQ(host.boxes, Boxes());
    EXPECT_TRUE(soundPlayed());
    EXPECT_FALSE(globals.gSearchBusy);
    EXPECT_EQ(window.txtProc->text(), QString());
    EXPECT_EQ(window.txtDocsSelected->text(), button == window.cmdSearchAZ ? u"1"_s : QString());
  }
}

TEST_F(DatabaseSearchesTest, PassABadQueryOverInSilenceOnAServer) {
  for (const QString& path : {u"a.nsf"_s, u"b.nsf"_s, u"c.nsf"_s}) indexed(path, {u"pump"_s}, kServer);
  fillMarked(*window.lstDBNames, {u"a.nsf"_s, u"b.nsf"_s, u"c.nsf"_s});
  onServer();
  search(u"("_s, window.cmdSearch);
  EXPECT_EQ(host.boxes, Boxes());
  EXPECT_EQ(found(), QStringList());
  EXPECT_EQ(window.txtProc->text(), u"3"_s);
  EXPECT_TRUE(soundPlayed());
  EXPECT_FALSE(globals.gSearchBusy);
}

TEST_F(DatabaseSearchesTest, ReportABadQueryOnThisMachineAndStayBusy) {
  indexed(u"a.nsf"_s, {u"pump"_s});
  fillMarked(*window.lstDBNames, {u"a.nsf"_s});
  search(u"("_s, window.cmdSearch);
  EXPECT_TRUE(onlyBox().text.startsWith(u"Run-time error '"_s)) << onlyBox().text.toStdString();
  EXPECT_FALSE(soundPlayed());
  EXPECT_TRUE(globals.gSearchBusy);
  search(u"pump"_s, window.cmdSearch);
  EXPECT_FALSE(globals.gSearchBusy) << "until a search ends";
}

TEST_F(DatabaseSearchesTest, EndAtADatabaseOnAServerThatCannotBeOpened) {
  indexed(u"a.nsf"_s, {u"pump"_s}, kServer);
  indexed(u"c.nsf"_s, {u"pump"_s}, kServer);
  addView(*workspace->database(kServer, u"a.nsf"_s), u"pump"_s);
  fill(*window.lstViewNames, {u"By Subject"_s});
  onServer();
  for (CommandButton* button : {static_cast<CommandButton*>(window.cmdSearch),
                                static_cast<CommandButton*>(window.cmdSearchInViews)}) {
    fillMarked(*window.lstDBNames, {u"a.nsf"_s, u"gone.nsf"_s, u"zz.nsf"_s});
    search(u"pump"_s, button);
    EXPECT_EQ(host.boxes, Boxes({cannotOpen()}));
    EXPECT_EQ(found(), button == window.cmdSearch ? QStringList(u"a.nsf"_s) : QStringList(u"a.nsf 1"_s));
    EXPECT_EQ(window.txtProc->text(), u"1"_s);
    EXPECT_FALSE(soundPlayed());
    EXPECT_TRUE(globals.gSearchBusy);
  }
  fill(*window.lstViewNames, {u"By Subject"_s});
  window.lstViewNames->setListIndex(0);
  fillMarked(*window.lstDBNames, {u"gone.nsf"_s, u"zz.nsf"_s});
  search(u"x"_s, window.cmdSearchAZ);
  EXPECT_EQ(host.boxes, Boxes({cannotOpen()}));
  EXPECT_EQ(marked().size(), 2);
}

// A passed failure of one database is not that of the next one.
TEST_F(DatabaseSearchesTest, OpenADatabaseBehindOneWhoseQueryFailed) {
  for (const QString& path : {u"a.nsf"_s, u"b.nsf"_s}) indexed(path, {u"pump"_s}, kServer);
  fillMarked(*window.lstDBNames, {u"a.nsf"_s, u"b.nsf"_s});
  onServer();
  atCall(u"FTSEARCH"_s, 1, [] { throw RuntimeError(70); });
  search(u"pump"_s, window.cmdSearch);
  EXPECT_EQ(host.boxes, Boxes());
  EXPECT_EQ(found(), QStringList(u"b.nsf"_s)) << "no hit is taken over from the database before";
}

TEST_F(DatabaseSearchesTest, StopBeforeTheNextDatabase) {
  for (const QString& path : {u"a.nsf"_s, u"b.nsf"_s, u"c.nsf"_s}) indexed(path, {u"pump"_s});
  fill(*window.lstViewNames, {u"By Subject"_s});
  for (CommandButton* button :
       {static_cast<CommandButton*>(window.cmdSearch), static_cast<CommandButton*>(window.cmdSearchAZ),
        static_cast<CommandButton*>(window.cmdSearchInViews)}) {
    fillMarked(*window.lstDBNames, {u"a.nsf"_s, u"b.nsf"_s, u"c.nsf"_s});
    notes().log.clear();
    atCall(u"GETDATABASE"_s, 2, [this] { globals.gStopFlag = true; });
    search(u"By Subject"_s, button);
    EXPECT_EQ(notes().log.filter(u"GETDATABASE"_s).size(), 2);
    EXPECT_TRUE(soundPlayed());
    EXPECT_FALSE(globals.gSearchBusy);
    EXPECT_TRUE(globals.gStopFlag);
    EXPECT_EQ(host.yields, 0);
  }
}

// --- Keys ----------------------------------------------------------------------------------------------

TEST_F(DatabaseSearchesTest, LeaveTheDatabasesMarkedThatHaveTheKey) {
  indexed(u"a.nsf"_s, {u"Smith"_s});
  indexed(u"b.nsf"_s, {u"Smithers"_s});
  indexed(u"c.nsf"_s, {u"SMITH"_s, u"a"_s});
  makeDatabase(u"d.nsf"_s);
  addView(*makeDatabase(u"e.nsf"_s), u"By Subject"_s, false);
  fillMarked(*window.lstDBNames, {u"a.nsf"_s, u"b.nsf"_s, u"c.nsf"_s, u"d.nsf"_s, u"e.nsf"_s, u"f.nsf"_s});
  window.lstDBNames->setListIndex(1);
  fill(*window.lstViewNames, {u"By Subject"_s, u"z"_s});
  window.lstViewNames->setListIndex(0);
  fill(*window.lstDBNamesDest, {u"target.nsf"_s});
  fill(*window.lstAgentNames, {u"g"_s});
  window.txtProc->setText(u"9"_s);
  search(u"smith"_s, window.cmdSearchAZ);
  EXPECT_EQ(host.boxes, Boxes());
  // d has no such view, which is no failure; e has no sorted column, f is not there.
  EXPECT_EQ(marked(), QStringList({u"a.nsf"_s, u"c.nsf"_s, u"d.nsf"_s}));
  EXPECT_EQ(window.lstDBNames->listIndex(), 1) << "unmarking does not move the index";
  EXPECT_EQ(found(), QStringList(u"target.nsf"_s));
  EXPECT_EQ(rowsOf(*window.lstAgentNames), QStringList(u"g"_s));
  EXPECT_EQ(window.lstViewNames->text(), u"By Subject"_s);
  EXPECT_EQ(window.txtProc->text(), QString());
  EXPECT_EQ(window.txtDocsSelected->text(), u"6"_s);
  EXPECT_TRUE(soundPlayed());
  EXPECT_FALSE(globals.gSearchBusy);
  EXPECT_TRUE(globals.gDb.isNothing());
}

TEST_F(DatabaseSearchesTest, KeepAllMarksWithoutAChosenView) {
  indexed(u"a.nsf"_s, {u"x"_s});
  indexed(u"b.nsf"_s, {u"y"_s});
  fillMarked(*window.lstDBNames, {u"a.nsf"_s, u"b.nsf"_s});
  search(u"x"_s, window.cmdSearchAZ);
  EXPECT_EQ(marked().size(), 2);
  EXPECT_EQ(host.boxes, Boxes());
}

TEST_F(DatabaseSearchesTest, UnmarkARowWhoseLookUpFailsBehindAHit) {
  for (const QString& server : {QString(), kServer})
    for (const QString& path : {u"a.nsf"_s, u"b.nsf"_s, u"c.nsf"_s}) indexed(path, {u"x"_s}, server);
  fill(*window.lstViewNames, {u"By Subject"_s});
  window.lstViewNames->setListIndex(0);
  for (const QString& server : {u"Local"_s, u"Hub/Acme"_s}) {
    window.lstServer->setText(server);
    for (const QString& member : {u"GETENTRYBYKEY"_s, u"GETVIEW"_s}) {
      fillMarked(*window.lstDBNames, {u"a.nsf"_s, u"b.nsf"_s, u"c.nsf"_s});
      atCall(member, 2, [] { throw RuntimeError(70); });
      search(u"x"_s, window.cmdSearchAZ);
      EXPECT_EQ(marked(), QStringList({u"a.nsf"_s, u"c.nsf"_s})) << member.toStdString();
      EXPECT_EQ(host.boxes, Boxes());
    }
  }
}

TEST_F(DatabaseSearchesTest, FindNoCategoryButTheDocumentBelowIt) {
  auto database = makeDatabase(u"a.nsf"_s);
  addView(*database, u"By Subject"_s, true, true);
  add(*database, u"North"_s);
  fill(*window.lstViewNames, {u"By Subject"_s});
  window.lstViewNames->setListIndex(0);
  fillMarked(*window.lstDBNames, {u"a.nsf"_s});
  search(u"north"_s, window.cmdSearchAZ);
  EXPECT_EQ(marked().size(), 1);
  search(u"nort"_s, window.cmdSearchAZ);
  EXPECT_EQ(marked().size(), 0);
}

// --- Counts --------------------------------------------------------------------------------------------

TEST_F(DatabaseSearchesTest, ListTheNumberOfEntriesOfAView) {
  indexed(u"a.nsf"_s, {u"x"_s, u"y"_s});
  indexed(u"b.nsf"_s, {});
  makeDatabase(u"c.nsf"_s);
  auto categorised = makeDatabase(u"d.nsf"_s);
  addView(*categorised, u"subjects"_s, true, true);
  add(*categorised, u"x"_s);
  fillMarked(*window.lstDBNames, {u"a.nsf"_s, u"b.nsf"_s, u"c.nsf"_s, u"d.nsf"_s});
  fill(*window.lstViewNames, {u"v"_s});
  search(u"SUBJECTS"_s, window.cmdSearchInViews);
  EXPECT_EQ(host.boxes, Boxes());
  EXPECT_EQ(found(), QStringList({u"a.nsf 2"_s, u"d.nsf 2"_s})) << "categories count";
  EXPECT_EQ(window.txtProc->text(), u"4"_s);
  EXPECT_EQ(window.txtDocsSelected->text(), QString());
  EXPECT_TRUE(soundPlayed());
}

TEST_F(DatabaseSearchesTest, AskForTheViewsNameAfterTheListsAreCleared) {
  fillMarked(*window.lstDBNames, {u"a.nsf"_s});
  fill(*window.lstDBNamesDest, {u"t.nsf"_s});
  window.txtProc->setText(u"9"_s);
  search(QString(), window.cmdSearchInViews);
  EXPECT_EQ(host.boxes, Boxes({{u"Specify the view name in the field above!"_s, box::Plain,
                                u"Search for number of docs in the view."_s}}));
  EXPECT_EQ(found(), QStringList());
  EXPECT_EQ(window.txtProc->text(), QString());
  EXPECT_TRUE(globals.gSearchBusy);
  EXPECT_FALSE(soundPlayed());
  EXPECT_EQ(notes().log, QStringList());
}

// Once a row without a mark was passed, databases can be opened by a double click again.
TEST_F(DatabaseSearchesTest, AreBusyUntilARowWithoutAMarkIsPassed) {
  for (const QString& path : {u"a.nsf"_s, u"c.nsf"_s}) indexed(path, {u"x"_s});
  const auto flags = [&](CommandButton* button) {
    QVector<bool> busy;
    fillMarked(*window.lstDBNames, {u"a.nsf"_s, u"b.nsf"_s, u"c.nsf"_s});
    window.lstDBNames->setSelected(1, false);
    notes().onCall = [&](const QString& name) {
      if (name == u"GETDATABASE") busy += globals.gSearchBusy;
    };
    search(u"x"_s, button);
    notes().onCall = nullptr;
    return busy;
  };
  EXPECT_EQ(flags(window.cmdSearchInViews), QVector<bool>({true, false}));
  EXPECT_EQ(flags(window.cmdSearch), QVector<bool>({true, true}));
  EXPECT_EQ(flags(window.cmdSearchAZ), QVector<bool>({true, true}));
}

// --- Every failure -------------------------------------------------------------------------------------

// On a server only a database that cannot be opened is told; on this machine a search for a key tells
// nothing, and the others end in a report.
TEST_F(DatabaseSearchesTest, AlwaysReturnAndTellOnlyWhatIsTold) {
  for (const QString& server : {QString(), kServer})
    for (const QString& path : {u"a.nsf"_s, u"b.nsf"_s}) indexed(path, {u"By Subject"_s}, server);
  for (const QString& server : {u"Local"_s, u"Hub/Acme"_s}) {
    window.lstServer->setText(server);
    const bool local = server == u"Local";
    for (CommandButton* button :
         {static_cast<CommandButton*>(window.cmdSearch), static_cast<CommandButton*>(window.cmdSearchAZ),
          static_cast<CommandButton*>(window.cmdSearchInViews)}) {
      SCOPED_TRACE(button->text().toStdString() + " on " + server.toStdString());
      const bool byKey = button == window.cmdSearchAZ;
      const auto run = [&](int n) {
        fillMarked(*window.lstDBNames, {u"a.nsf"_s, u"b.nsf"_s});
        fill(*window.lstViewNames, {u"By Subject"_s});
        window.lstViewNames->setListIndex(0);
        notes().log.clear();
        return reachesFault(notes(), n, [&] { search(u"By Subject"_s, button); });
      };
      const int runs = withEveryFault(run, [&](int n) {
        const bool opening = notes().log[n - 1] == u"GETDATABASE";
        Boxes expected;
        if (!local && opening) expected += cannotOpen();
        if (local && !byKey) expected += report(70);
        EXPECT_EQ(host.boxes, expected) << notes().log[n - 1].toStdString();
        EXPECT_EQ(globals.gSearchBusy, !expected.isEmpty());
        EXPECT_EQ(soundPlayed(), expected.isEmpty());
        const bool inFirst = n <= notes().log.size() / 2 || notes().log.count(u"GETDATABASE"_s) == 1;
        if (byKey && expected.isEmpty()) {
          EXPECT_EQ(marked(), QStringList(inFirst ? u"b.nsf"_s : u"a.nsf"_s));
        }
        if (!byKey) {
          EXPECT_LE(found().size(), 1);
        }
      });
      EXPECT_EQ(runs, button == window.cmdSearch ? 8 : 6);
      EXPECT_EQ(host.boxes, Boxes());
    }
  }
}

}  // namespace
}  // namespace lens

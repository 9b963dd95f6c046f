#include "shell/form1_lifecycle.h"

#include <QMouseEvent>
#include <QTest>

#include "support/lens_fixture.h"

namespace lens {
namespace {

class MainWindowTest : public LensFixture {
 protected:
  void startWithDocument() {
    openDatabase(u"mail/kmeier.nsf"_s);
    Note memo = document(u"Memo"_s);
    openDocument(save(memo));
    start();
  }
};

TEST_F(MainWindowTest, LoadFillsTheTypeTableInItsOrderWithoutABlankRow) {
  startWithDocument();
  EXPECT_EQ(rows("cmbFieldType").size(), 30);
  EXPECT_TRUE(rows("cmbFieldType")[0].startsWith(u"ACTIONCD (16)"));
  EXPECT_TRUE(rows("cmbFieldType")[29].startsWith(u"VIEWMAPLAYOUT (19)"));
  EXPECT_EQ(state().gDocTypes.count(), 30);
  EXPECT_EQ(boxes(), QStringList());
}

TEST_F(MainWindowTest, TheErrorItemHasTheKey156AndSaysTwoHundredFiftySix) {
  startWithDocument();
  EXPECT_EQ(state().gDocTypes.item(u"156"_s),
            "ERRORITEM (256) means an error occurred while accessing the type");
  EXPECT_FALSE(state().gDocTypes.contains(u"256"_s));
}

TEST_F(MainWindowTest, ASecondTypeTableRaisesADuplicateKey) {
  startWithDocument();
  app->lifecycle.addDocTypes.raise();
  EXPECT_EQ(boxes(),
            QStringList(u"Error 457 (This key is already associated with an element of this collection) "
                        "in procedure addDocTypes of Modul Globals"_s));
  EXPECT_EQ(rows("cmbFieldType").size(), 30);
}

TEST_F(MainWindowTest, LoadShowsVersionHidesTheTwoPictureButtonsAndReadsTheDataDirectory) {
  startWithDocument();
  EXPECT_EQ(text("lblVer"), "Ver. 1.0.0");
  EXPECT_FALSE(isShown("cmdScroll"));
  EXPECT_FALSE(isShown("cmdDelRT"));
  EXPECT_EQ(state().gDataDir, workspace->dataDirectory());
  EXPECT_FALSE(state().gDataDir.endsWith(u'/'));
  EXPECT_EQ(control<StatusBar>("sbrMain").background(), QColor(0xFF, 0xFF, 0xC0));
  for (const ListBox* list : {form().fldList, form().idList})
    EXPECT_EQ(list->horizontalExtent(), 2 * list->width()) << list->objectName().toStdString();
}

TEST_F(MainWindowTest, TheFirstScreenShowsTheOpenDocument) {
  startWithDocument();
  EXPECT_TRUE(form().isVisible());
  EXPECT_EQ(rows("fldList"), QStringList(u"Form: Memo"_s));
  EXPECT_EQ(caption(), u"Current UI document in: mail/kmeier.nsf!!"_s);
}

TEST_F(MainWindowTest, WithoutAClientThereAreTwoBoxesAndAWindowWithoutData) {
  notes().failing.insert(u"LOTUS.NOTESSESSION"_s, RuntimeError(err::CannotCreateObject));
  notes().failing.insert(u"NOTES.NOTESSESSION"_s, RuntimeError(err::CannotCreateObject));
  notes().failing.insert(u"NOTES.NOTESUIWORKSPACE"_s, RuntimeError(err::CannotCreateObject));
  start();
  ASSERT_EQ(host.boxes.size(), 2);
  EXPECT_EQ(host.boxes[0], (ShownBox{u"Start NotesClient !!!  ActiveX component can't create object"_s,
                                     box::Critical, QString()}));
  EXPECT_EQ(host.boxes[1].text,
            "Error 429 (ActiveX component can't create object) in procedure Form_Load of Formular Form1");
  EXPECT_TRUE(form().isVisible());
  EXPECT_EQ(state().gDataDir, "");
  EXPECT_EQ(rows("lstServerList"), QStringList());
  host.boxes.clear();
  const QRect place = form().cmdEnd->geometry();
  form().resize(900, 700);
  EXPECT_EQ(boxes(), QStringList());
  EXPECT_EQ(form().cmdEnd->geometry(), place);
}

TEST_F(MainWindowTest, WithoutADatabaseTheCaptureSaysSoBeforeTheWindowAppears) {
  bool shownBehindTheBox = true;
  host.whileBoxIsShown = [&](const ShownBox&) { shownBehindTheBox = form().isVisible(); };
  start();
  ASSERT_FALSE(boxes().isEmpty());
  EXPECT_EQ(boxes().last(), "Cann't open DB try again");
  EXPECT_FALSE(shownBehindTheBox);
  EXPECT_TRUE(form().isVisible());
}

TEST_F(MainWindowTest, TheServerListTakesTheServersOfThePublicAddressBook) {
  const QString hub = u"CN=ACME-HUB01/O=Acme"_s;
  workspace->addServer(hub);
  DatabaseInfo info;
  info.publicAddressBook = true;
  const auto book = workspace->createDatabase(hub, u"names.nsf"_s, info);
  Note view;
  view.header.noteClass = noteclass::View;
  view.add(u"$TITLE"_s, itemflag::Summary, textValue(u"($Servers)"));
  book->notes().save(view);
  for (const QString& server : {hub, u"CN=ACME-MAIL01/O=Acme"_s}) {
    Note note = document(u"Server"_s);
    note.add(u"ServerName"_s, itemflag::Summary, textValue(server));
    book->notes().save(note);
  }
  startWithDocument();
  EXPECT_EQ(rows("lstServerList"), QStringList({u"Local"_s, hub, u"CN=ACME-MAIL01/O=Acme"_s}));
  EXPECT_EQ(text("lstServerList"), hub);
}

TEST_F(MainWindowTest, AnAddressBookThatCannotBeOpenedLeavesLocalWithoutRowsAndWithoutABox) {
  workspace->addServer(u"CN=ACME-HUB01/O=Acme"_s);
  workspace->setIniValue(u"Names"_s, u"ACME-HUB01/Acme!!names.nsf"_s);
  startWithDocument();
  EXPECT_EQ(text("lstServerList"), "Local");
  EXPECT_EQ(rows("lstServerList"), QStringList());
  EXPECT_EQ(host.boxes.size(), 0);
}

TEST_F(MainWindowTest, WithoutAnAddressBookTheServerListReadsLocalAndHasNoRows) {
  startWithDocument();
  EXPECT_EQ(text("lstServerList"), "Local");
  EXPECT_EQ(rows("lstServerList"), QStringList());
}

TEST_F(MainWindowTest, AFailingAddressBookListShowsTheBoxOfTheServerListAndTheLoadGoesOn) {
  notes().failing.insert(u"ADDRESSBOOKS"_s, RuntimeError(7000, u"no book"_s));
  startWithDocument();
  ASSERT_EQ(host.boxes.size(), 1);
  EXPECT_EQ(host.boxes[0],
            (ShownBox{u"GetServerList2: in line 0 no book"_s, box::Critical, u"Replic Notes DB's"_s}));
  EXPECT_EQ(rows("fldList"), QStringList(u"Form: Memo"_s));
}

TEST_F(MainWindowTest, AFailingServerListOfTheLibraryShowsItsOwnBox) {
  capi().failFunction = u"NSGetServerList"_s;
  startWithDocument();
  ASSERT_EQ(host.boxes.size(), 1);
  EXPECT_EQ(host.boxes[0],
            (ShownBox{u"Specified DLL function not found"_s, box::Plain, u"Marrowgate/Notes Client?"_s}));
  EXPECT_EQ(text("lstServerList"), "Local");
}

TEST_F(MainWindowTest, ServersOfTheLibraryGoToTheFallbackBoxWhicheverWindowAsked) {
  workspace->addServer(u"CN=A/O=Acme"_s);
  workspace->addServer(u"CN=B/O=Acme"_s);
  build();
  ComboBox fallback;
  int loads = 0;
  app->servers.setFallbackBox([&]() -> ComboBox& {
    // Referring to the window loads it, and its load asks for the servers too.
    if (loads++ == 0) app->servers.GetServerList2(u"Form2"_s);
    return fallback;
  });
  app->sessions.GetSessionProbe();
  app->servers.GetServerList2(u"Form1"_s);
  QStringList names;
  for (int row = 0; row < fallback.listCount(); ++row) names += fallback.list(row);
  EXPECT_EQ(names, QStringList({u"CN=A/O=Acme"_s, u"CN=B/O=Acme"_s, u"CN=A/O=Acme"_s, u"CN=B/O=Acme"_s}));
  EXPECT_EQ(rows("lstServerList"), QStringList());
}

// A list of the library with an empty entry between two names, the second one padded.
class ListWithAGap : public ForwardingCApi {
 public:
  using ForwardingCApi::ForwardingCApi;
  Status ListGetText(const char*, int, quint16 index, const char*& text, quint16& length) override {
    static const QByteArray entries[] = {"CN=A", "", "CN=B"};
    if (index >= 3) return 0x0605;
    text = entries[index].constData();
    length = quint16(entries[index].size());
    return 0;
  }
};

TEST_F(MainWindowTest, AnEmptyEntryOfTheServerListIsPassedOver) {
  workspace->addServer(u"CN=A/O=Acme"_s);
  build();
  ListWithAGap api(*engineCapi);
  ServerLists servers(state(), host, api, app->routines);
  ComboBox box;
  servers.setFallbackBox([&]() -> ComboBox& { return box; });
  servers.GetNotesServerNames();
  ASSERT_EQ(box.listCount(), 2);
  EXPECT_EQ(box.list(0), "CN=A");
  EXPECT_EQ(box.list(1), "CN=B");
}

TEST_F(MainWindowTest, ComingBackFromTheTrayKeepsColoursAndCaret) {
  startWithDocument();
  form().txtFieldContent->setText(u"abc"_s);
  form().txtFieldContent->setSelStart(0);
  form().txtFieldContent->setSelLength(2);
  form().txtFieldContent->setSelColor(255);
  form().mnuBarHide->raise();
  form().mnuBarShow->raise();
  EXPECT_EQ(form().txtFieldContent->colorAt(0), 255u);
  EXPECT_EQ(form().txtFieldContent->selLength(), 2);
}

TEST_F(MainWindowTest, TheClockShowsTheTimeWithTheBlankBeforeIt) {
  startWithDocument();
  EXPECT_EQ(text("lblTime"), " 14:05:09");
  host.clock = QDateTime(QDate(2024, 3, 11), QTime(0, 0, 0));
  app->lifecycle.Timer2_Timer();
  EXPECT_EQ(text("lblTime"), "");
}

TEST_F(MainWindowTest, TheTwoStopButtonsRunOppositeWays) {
  startWithDocument();
  state().gIdScanRunning = true;
  click("cmdStop");
  EXPECT_FALSE(state().gIdScanRunning);
  EXPECT_EQ(host.yields, 1);
  click("Command1");
  EXPECT_TRUE(state().gDesignStop);
}

TEST_F(MainWindowTest, HidingPutsAnIconIntoTheTrayAndALeftClickBringsTheWindowBack) {
  startWithDocument();
  form().mnuBarHide->raise();
  EXPECT_FALSE(form().isVisible());
  EXPECT_EQ(host.trayTip, u"Rechte Maustaste für Menü"_s);
  ASSERT_TRUE(host.trayCallback);
  const auto callback = host.trayCallback;
  callback(512);
  EXPECT_FALSE(form().isVisible());
  callback(513);
  EXPECT_TRUE(form().isVisible());
  EXPECT_FALSE(host.trayCallback);
}

TEST_F(MainWindowTest, TheTrayMenuOpensAlsoWhileTheWindowIsHidden) {
  startWithDocument();
  form().mnuBarHide->raise();
  const auto callback = host.trayCallback;
  callback(517);
  EXPECT_TRUE(form().mnuBar->isVisible());
  form().mnuBar->close();
}

TEST_F(MainWindowTest, ADesktopWithoutATrayMinimisesInstead) {
  host.hasTray = false;
  startWithDocument();
  form().mnuBarHide->raise();
  EXPECT_TRUE(form().isMinimized());
  form().mnuBarShow->raise();
  EXPECT_FALSE(form().isMinimized());
  EXPECT_TRUE(form().isVisible());
}

TEST_F(MainWindowTest, TheRightButtonOpensTheMenuOnTheBareFormOnly) {
  startWithDocument();
  QTest::mouseClick(&form(), Qt::RightButton, {}, QPoint(352, 700));
  EXPECT_TRUE(form().mnuBar->isVisible());
  form().mnuBar->close();
  QTest::mouseClick(form().Label9, Qt::RightButton);
  EXPECT_FALSE(form().mnuBar->isVisible());
}

TEST_F(MainWindowTest, EndReleasesTheSharedObjectsSetsTheFlagAndEndsTheProcess) {
  startWithDocument();
  EXPECT_TRUE(state().gDoc);
  EXPECT_TRUE(endsProcess([&] { click("cmdEnd"); }));
  EXPECT_TRUE(state().gSession.isNothing());
  EXPECT_TRUE(state().gDb.isNothing());
  EXPECT_TRUE(state().gUIWorkspace.isNothing());
  EXPECT_TRUE(state().gDoc.isNothing());
  EXPECT_TRUE(state().gEnding);
}

TEST_F(MainWindowTest, EndReleasesInItsOrderBeforeTheFlagIsSet) {
  startWithDocument();
  struct Marked : Dispatch {
    Marked(QStringList& log, Globals& state, QString name)
        : log_(log), state_(state), name_(std::move(name)) {}
    ~Marked() override { log_ += name_ + (state_.gEnding ? u" after the flag" : u""); }
    Value get(const QString&) override { return {}; }
    void set(const QString&, const Value&) override {}
    Value call(const QString&, const QVector<Value>&) override { return {}; }
    QStringList& log_;
    Globals& state_;
    QString name_;
  };
  QStringList log;
  state().gSession = Object(std::make_shared<Marked>(log, state(), u"gSession"_s));
  state().gDb = Object(std::make_shared<Marked>(log, state(), u"gDb"_s));
  state().gUIWorkspace = Object(std::make_shared<Marked>(log, state(), u"gUIWorkspace"_s));
  state().gDoc = Object(std::make_shared<Marked>(log, state(), u"gDoc"_s));
  EXPECT_TRUE(endsProcess([&] { click("cmdEnd"); }));
  EXPECT_EQ(log, QStringList({u"gSession"_s, u"gDb"_s, u"gUIWorkspace"_s, u"gDoc"_s}));
}

TEST_F(MainWindowTest, UnloadAndTheMenusExitEndTheProcessAndLeaveTheTrayIconToTheDesktop) {
  startWithDocument();
  form().mnuBarHide->raise();
  EXPECT_TRUE(endsProcess([&] { form().mnuBarExit->raise(); }));
  EXPECT_TRUE(host.trayCallback);
  EXPECT_TRUE(endsProcess([&] { form().unload.raise(); }));
  EXPECT_TRUE(endsProcess([&] { form().terminate.raise(); }));
  EXPECT_FALSE(state().gEnding);
}

TEST_F(MainWindowTest, AboutShowsTheVersionOnTopAndGoesWithAClickOnThePicture) {
  startWithDocument();
  click("Label6");
  QPointer<About> about = app->lifecycle.about();
  ASSERT_TRUE(about);
  EXPECT_TRUE(about->isVisible());
  EXPECT_EQ(about->windowModality(), Qt::WindowModal);
  EXPECT_TRUE(about->windowFlags() & Qt::WindowStaysOnTopHint);
  EXPECT_EQ(about->lblVer->text(), "Ver. 1.0.0");
  EXPECT_EQ(about->Label0->text(), "Tessaly Lens and UI viewer");
  about->Image1->raiseClick();
  QCoreApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete);
  EXPECT_FALSE(about);
}

TEST_F(MainWindowTest, ClosingAboutWhileEndingEndsTheProcess) {
  startWithDocument();
  click("Label6");
  About* about = app->lifecycle.about();
  state().gEnding = true;
  EXPECT_TRUE(endsProcess([&] { about->unload.raise(); }));
}

TEST_F(MainWindowTest, TheLineInAboutMakesTheEmptyClipboardDatabase) {
  startWithDocument();
  click("Label6");
  app->lifecycle.about()->Label0->raiseClick();
  EXPECT_TRUE(workspace->databases(QString()).contains(u"empty.nsf"_s));
  app->lifecycle.about()->Label0->raiseClick();
  EXPECT_EQ(boxes(), QStringList());
  EXPECT_EQ(capi().log.count(u"NotesInitExtended"_s), capi().log.count(u"NotesTerm"_s));
}

TEST_F(MainWindowTest, WaitingForAProcessThatIsGoneIsNoError) {
  startWithDocument();
  app->lifecycle.WaitForTerm(4711);
  EXPECT_EQ(host.waitedFor, QVector<qint64>({4711}));
  EXPECT_EQ(boxes(), QStringList());
}

TEST_F(MainWindowTest, AFailureThatNoProcedureHandledIsReportedAndTheProgramLivesOn) {
  startWithDocument();
  form().txtReplace->change = [] { throw RuntimeError(11); };
  type("txtReplace", u"x"_s);
  EXPECT_EQ(text("txtReplace"), "x");
  ASSERT_EQ(host.boxes.size(), 1);
  EXPECT_EQ(host.boxes[0],
            (ShownBox{u"Run-time error '11':\n\nDivision by zero"_s, box::Critical, QString()}));
}

TEST_F(MainWindowTest, AFailureOfAProcedureRunByAnotherGoesToItsCaller) {
  startWithDocument();
  form().cmdReplace->click = [] { throw RuntimeError(11); };
  EXPECT_FALSE(trapped(host, {u"caller"_s}, [&] { click("cmdReplace"); }));
  EXPECT_EQ(boxes(), QStringList(u"Error 11 (Division by zero) in procedure caller of Formular Form1"_s));
}

}  // namespace
}  // namespace lens

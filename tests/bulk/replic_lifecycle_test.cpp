#include "bulk/replic_lifecycle.h"

#include <QPushButton>
#include <utility>

#include "bulk/shown_replic.h"
#include "support/every_fault.h"

namespace lens {
namespace {

class ReplicWindowTest : public ShownReplic {
 protected:
  ReplicLifecycle& lifecycle() { return app->bulk().lifecycle; }
  QHash<QString, QRect> places() {
    QHash<QString, QRect> found;
    for (const QWidget* control : layoutControls(window()))
      found.insert(control->objectName(), control->geometry());
    found.insert(u"window"_s, QRect(QPoint(), window().size()));
    return found;
  }
};

TEST_F(ReplicWindowTest, OpensOverTheMainWindowWithoutABoxAndBlocksIt) {
  addServers();
  make(u"apps/orders.nsf"_s, kHub);
  start();
  ASSERT_TRUE(form().cmdCMRcoll->isEnabled());
  host.boxes.clear();
  QTest::mouseClick(form().cmdCMRcoll, Qt::LeftButton);
  EXPECT_EQ(host.boxes, Boxes());
  ASSERT_TRUE(window().isVisible());
  EXPECT_EQ(window().windowModality(), Qt::WindowModal);
  EXPECT_EQ(window().parentWidget(), &form());
  QWidget client;
  client.show();
  EXPECT_EQ(QApplication::activeModalWidget(), &window());
  int pressed = 0;
  form().cmdDECHEX->click = [&] { ++pressed; };
  QTest::mouseClick(form().windowHandle(), Qt::LeftButton, {},
                    form().cmdDECHEX->mapTo(&form(), form().cmdDECHEX->rect().center()));
  EXPECT_EQ(pressed, 0) << "blocked";
  QPushButton ofClient(&client);
  QObject::connect(&ofClient, &QPushButton::clicked, &client, [&] { ++pressed; });
  ofClient.show();
  QTest::mouseClick(client.windowHandle(), Qt::LeftButton, {}, ofClient.geometry().center());
  EXPECT_EQ(pressed, 1) << "another window stays usable";
}

TEST_F(ReplicWindowTest, LoadFillsServersAndTheSourceDatabases) {
  addServers();
  make(u"apps/orders.nsf"_s, kHub);
  make(u"orders.ntf"_s, kHub);
  openTool();
  EXPECT_EQ(rowsOf(*window().lstServer), QStringList({u"Local"_s, kHub, kMail}));
  EXPECT_EQ(rowsOf(*window().lstDesignServer), QStringList({u"Local"_s, kHub, kMail}));
  EXPECT_EQ(window().lstServer->text(), kHub);
  EXPECT_EQ(window().lstDesignServer->text(), kHub);
  EXPECT_EQ(sources(), QStringList({native(u"apps/orders.nsf"_s), u"names.nsf"_s, u"orders.ntf"_s}));
  EXPECT_EQ(targets(), QStringList());
  EXPECT_EQ(window().lblDB->text(), u"Databases on: "_s + kHub);
  EXPECT_EQ(window().lblDB2->text(), "Select target DB");
  EXPECT_EQ(state().gServer, kHub);
  EXPECT_EQ(host.pointerCode, pointer::Default);
}

TEST_F(ReplicWindowTest, LoadKeepsItsOrder) {
  openTool();
  window().close();
  QStringList order;
  state().gStopFlag = true;
  const auto note = [&](const QString& step) {
    return [&, step] {
      QString text = step + u' ' + QString::number(sources().size());
      if (state().gSession) text += u" session"_s;
      if (state().gStopFlag) text += u" stopped"_s;
      text += u' ' + QString::number(window().fldList->horizontalExtent());
      order += text;
    };
  };
  window().fldList->setHorizontalExtent(0);
  lifecycle().findSettings = note(u"find"_s);
  lifecycle().provideSettings = note(u"provide"_s);
  lifecycle().readSettings = note(u"read"_s);
  showTool();
  const QString wide = QString::number(3 * window().fldList->width());
  EXPECT_EQ(order, QStringList({u"find 0 stopped 0"_s, u"provide 1 session stopped "_s + wide,
                                u"read 1 session stopped "_s + wide}));
  EXPECT_FALSE(state().gStopFlag);
  EXPECT_EQ(host.pointers,
            QVector<int>({pointer::Hourglass, pointer::Default, pointer::Hourglass, pointer::Default}))
      << "placing the window, then listing";
}

TEST_F(ReplicWindowTest, StandsInTheMiddleOfItsScreen) {
  openTool();
  const QRect screen = window().screen()->geometry();
  const QSize size = window().size();
  EXPECT_EQ(window().pos(), screen.topLeft() + QPoint((screen.width() >> 1) - (size.width() >> 1),
                                                      (screen.height() >> 1) - (size.height() >> 1)));
}

TEST_F(ReplicWindowTest, ListsScrollSidewaysToTwiceTheirWidthAndThoseOfTheFieldsToThreeTimes) {
  openTool();
  for (const QSize& size : {window().size(), QSize(1900, 1200)}) {
    window().resize(size);
    for (const ListBox* list : window().findChildren<ListBox*>()) {
      const int times = list == window().fldList ? 3 : 2;
      EXPECT_EQ(list->horizontalExtent(), times * list->width()) << list->objectName().toStdString();
    }
  }
}

TEST_F(ReplicWindowTest, RestoringTheDesignSizeShowsTheDesignToThePixel) {
  addServers();
  make(u"apps/orders.nsf"_s, kHub);
  openTool();
  const QHash<QString, QRect> before = places();
  const QSize designed = window().size();
  const QImage design = window().grab().toImage();
  for (const QSize size : {QSize(1920, 1001), QSize(1283, 599), QSize(2560, 1440), designed})
    window().resize(size);
  EXPECT_EQ(places(), before);
  EXPECT_EQ(window().grab().toImage(), design);
}

TEST_F(ReplicWindowTest, EachOpeningStartsFromTheDesignWithEachServerOnce) {
  addServers();
  openTool();
  const auto design = places();
  const QStringList servers = rowsOf(*window().lstServer), databases = sources();
  window().resize(1700, 1100);
  EXPECT_NE(places(), design);
  window().txtNumDocs->setText(u"7"_s);
  window().txtTemplale->setText(u"Master"_s);
  window().txtMaskSorce->setText(u"none"_s);
  window().txtListToPrint->setText(u"x"_s);
  window().lblDB2->setText(u"Databases on: x"_s);
  window().chkFields->setValue(1);
  window().Opt[1]->setValue(true);
  window().fldList->addItem(u"Form: Memo"_s);
  window().lstDBNamesDest->addItem(u"x.nsf"_s);
  choose(*window().lstDBNames, u"names"_s);
  window().lstDesignServer->setText(u"x"_s);
  window().close();
  EXPECT_FALSE(window().isVisible());
  showTool();
  EXPECT_EQ(places(), design);
  EXPECT_EQ(rowsOf(*window().lstServer), servers);
  EXPECT_EQ(rowsOf(*window().lstDesignServer), servers);
  EXPECT_EQ(sources(), databases);
  EXPECT_EQ(window().lstDBNames->selCount(), 0);
  EXPECT_EQ(window().lstDBNames->listIndex(), -1);
  EXPECT_EQ(fields() + targets(), QStringList());
  EXPECT_EQ(window().txtNumDocs->text(), "250");
  EXPECT_EQ(window().txtTemplale->text() + window().txtMaskSorce->text(), "");
  EXPECT_EQ(window().txtListToPrint->text(), "c:\\Dumplist.txt");
  EXPECT_EQ(window().lblDB2->text(), "Select target DB");
  EXPECT_EQ(window().lstDesignServer->text(), kHub);
  EXPECT_EQ(window().chkFields->value(), 0);
  EXPECT_TRUE(window().Opt[0]->value());
  EXPECT_EQ(host.boxes, Boxes());
}

TEST_F(ReplicWindowTest, ResizingScalesItsOwnControlsAndLeavesThoseOfTheMainWindow) {
  openTool();
  const QRect end = form().cmdEnd->geometry(), stop = window().cmdStop->geometry();
  const auto design = places();
  form().resize(form().width() + 200, form().height() + 100);
  EXPECT_EQ(places(), design);
  form().resize(form().width() - 200, form().height() - 100);
  window().resize(2 * window().width(), 2 * window().height());
  EXPECT_EQ(form().cmdEnd->geometry(), end);
  EXPECT_EQ(window().cmdStop->geometry(),
            QRect(2 * stop.x(), 2 * stop.y(), 2 * stop.width(), 2 * stop.height()));
  EXPECT_EQ(window().cmdStop->font().pointSize(), 16);
  EXPECT_EQ(window().fldList->rowHeight(), 32);
  window().resize(window().width() / 2, window().height() / 2);
  EXPECT_EQ(places(), design);
  EXPECT_EQ(window().cmdStop->font().pointSize(), 8);
}

TEST_F(ReplicWindowTest, ControlsThatAreHiddenScaleTooAndStandRightWhenTheyAreShown) {
  openTool();
  const QRect place = window().lblRunAgent->geometry();
  window().resize(2 * window().width(), 2 * window().height());
  window().lblRunAgent->show();
  EXPECT_EQ(window().lblRunAgent->geometry(),
            QRect(2 * place.x(), 2 * place.y(), 2 * place.width(), 2 * place.height()));
}

TEST_F(ReplicWindowTest, MinimisingShrinksEverythingAndRestoringPutsItBack) {
  openTool();
  const auto design = places();
  window().showMinimized();
  EXPECT_EQ(window().cmdStop->font().pointSize(), 1);
  EXPECT_EQ(window().cmdStop->height(), 0);
  window().showNormal();
  EXPECT_EQ(places(), design);
  EXPECT_EQ(window().cmdStop->font().pointSize(), 8);
}

TEST_F(ReplicWindowTest, ComesUpInReadableTextOnAScreenLowerThanItsDesign) {
  openTool();
  ASSERT_LT(window().screen()->availableSize().height(), 820) << "the test's screen is low";
  EXPECT_LE(window().height(), window().screen()->availableSize().height());
  EXPECT_EQ(window().cmdStop->font().pointSize(), 8);
  EXPECT_LE(window().Frame1->geometry().bottom(), window().height());
  const int asked = window().height();
  window().resize(window().width(), asked - 50);  // the desktop's answer
  EXPECT_TRUE(QTest::qWaitFor([&] { return window().cmdStop->font().pointSize() == 8; }));
}

TEST_F(ReplicWindowTest, ClosingHidesItEmptiesTheSessionAndTheNextOpeningMakesANewOne) {
  openTool();
  ASSERT_TRUE(state().gSession);
  QTest::keyClick(&window(), Qt::Key_Escape);
  EXPECT_TRUE(window().isVisible());
  int written = 0;
  lifecycle().writeSettings = [&] { ++written; };
  window().close();
  EXPECT_FALSE(window().isVisible());
  EXPECT_EQ(QApplication::activeModalWidget(), nullptr);
  EXPECT_TRUE(state().gSession.isNothing());
  EXPECT_EQ(written, 0) << "only the button saves";
  showTool();
  EXPECT_TRUE(state().gSession);
  EXPECT_EQ(notes().log.count(u"Lotus.NotesSession"_s), 1);
}

TEST_F(ReplicWindowTest, TheEndButtonWritesTheSettingsAndCloses) {
  openTool();
  QStringList order;
  lifecycle().writeSettings = [&] { order += window().isVisible() ? u"open"_s : u"closed"_s; };
  QTest::mouseClick(window().cmdEnd, Qt::LeftButton);
  EXPECT_EQ(order, QStringList(u"open"_s));
  EXPECT_FALSE(window().isVisible());
  EXPECT_TRUE(state().gSession.isNothing());
}

TEST_F(ReplicWindowTest, SettingsThatCannotBeWrittenAreReportedAndTheWindowStays) {
  openTool();
  lifecycle().writeSettings = [] { throw RuntimeError(err::PathFileAccess); };
  window().cmdEnd->click.fire();
  EXPECT_EQ(host.boxes, Boxes({report(err::PathFileAccess)}));
  EXPECT_TRUE(window().isVisible());
}

TEST_F(ReplicWindowTest, SettingsThatCannotBeReadAreReportedAndTheWindowComesUpWithoutALayout) {
  openTool();
  window().close();
  state().gStopFlag = true;
  lifecycle().readSettings = [this] {
    EXPECT_FALSE(window().isVisible());
    throw RuntimeError(err::InputPastEnd);
  };
  showTool();
  EXPECT_EQ(host.boxes, Boxes({report(err::InputPastEnd)}));
  EXPECT_TRUE(window().isVisible());
  EXPECT_TRUE(state().gStopFlag) << "the load ended before";
  const QRect place = window().cmdStop->geometry();
  window().resize(1500, 1000);
  EXPECT_EQ(window().cmdStop->geometry(), place);
  EXPECT_EQ(host.boxes.size(), 1);
}

TEST_F(ReplicWindowTest, TheLoadButtonReadsTheSettingsAgain) {
  openTool();
  int read = 0;
  lifecycle().readSettings = [&] { ++read; };
  QTest::mouseClick(window().cmdLoadLast, Qt::LeftButton);
  EXPECT_EQ(read, 1);
  lifecycle().readSettings = [] { throw RuntimeError(err::FileNotFound); };
  window().cmdLoadLast->click.fire();
  EXPECT_EQ(host.boxes, Boxes({report(err::FileNotFound)}));
}

TEST_F(ReplicWindowTest, WithoutAClientThereAreTwoBoxesAndTheLoadGoesOn) {
  start();
  state().gSession.release();
  notes().failing.insert(u"LOTUS.NOTESSESSION"_s, RuntimeError(err::CannotCreateObject));
  int read = 0;
  lifecycle().readSettings = [&] { ++read; };
  showTool();
  EXPECT_EQ(host.boxes,
            Boxes({{u"Start NotesClient !!!  ActiveX component can't create object"_s, box::Critical, {}},
                   {u"GetServerList2: in line 0 Object variable or With block variable not set"_s,
                    box::Critical, u"Replic Notes DB's"_s}}));
  EXPECT_EQ(read, 1);
  EXPECT_TRUE(window().isVisible());
  EXPECT_EQ(sources(), QStringList());
  window().resize(2 * window().width(), 2 * window().height());
  EXPECT_EQ(window().cmdStop->font().pointSize(), 16) << "the record was made";
}

TEST_F(ReplicWindowTest, AFailureInAnyPlaceOfTheLoadShowsTheWindowAllTheSame) {
  addServers();
  make(u"apps/orders.nsf"_s, kHub);
  start();
  const int runs = withEveryFault(
      [&](int n) {
        if (app->bulk().window.isVisible()) window().close();
        host.boxes.clear();
        notes().log.clear();
        return reachesFault(notes(), n, [&] { form().cmdCMRcoll->click.fire(); });
      },
      [&](int n) {
        EXPECT_TRUE(window().isVisible());
        EXPECT_EQ(host.pointerCode, pointer::Default);
        // A book that cannot be opened is no failure: there are no servers then.
        const bool isBook = notes().log[n - 1] == u"GETDATABASE";
        EXPECT_EQ(host.boxes.isEmpty(), isBook) << notes().log[n - 1].toStdString();
        if (isBook) {
          EXPECT_EQ(window().lstServer->text(), "Local");
        }
        for (const ShownBox& box : host.boxes)
          EXPECT_TRUE(box.text.startsWith(u"Start NotesClient !!!  ") || box.title == u"Replic Notes DB's" ||
                      box.title == u"Program Error in: GetDbs")
              << box.text.toStdString();
      });
  EXPECT_GT(runs, 15);
}

// --- while a run goes on ---

TEST_F(ReplicWindowTest, ShowingAgainDuringARunLoadsNothing) {
  openTool();
  window().txtNumDocs->setText(u"7"_s);
  window().fldList->addItem(u"Form: Memo"_s);
  {
    const ReplicRun run(window());
    window().close();
    EXPECT_FALSE(window().isVisible());
    EXPECT_EQ(fields(), QStringList(u"Form: Memo"_s)) << "the run reads them";
    int read = 0;
    lifecycle().readSettings = [&] { ++read; };
    showTool();
    EXPECT_TRUE(window().isVisible());
    EXPECT_EQ(read, 0);
    EXPECT_TRUE(state().gSession) << "the window can be worked with";
    EXPECT_EQ(window().txtNumDocs->text(), "7");
    EXPECT_EQ(fields(), QStringList(u"Form: Memo"_s));
    window().close();
  }
  showTool();
  EXPECT_EQ(fields(), QStringList());
}

// --- small buttons ---

TEST_F(ReplicWindowTest, TheStopButtonStopsByMousePressKeyAndClick) {
  openTool();
  const auto stopped = [this] { return std::exchange(state().gStopFlag, false); };
  QTest::mousePress(window().cmdStop, Qt::LeftButton);
  EXPECT_TRUE(stopped()) << "before the button is let go";
  QTest::mouseRelease(window().cmdStop, Qt::LeftButton);
  EXPECT_TRUE(stopped()) << "the click";
  QTest::mouseClick(window().cmdStop, Qt::RightButton);
  EXPECT_TRUE(stopped());
  for (const Qt::Key key :
       {Qt::Key_Return, Qt::Key_Enter, Qt::Key_Escape, Qt::Key_X, Qt::Key_Space, Qt::Key_Backspace}) {
    QTest::keyPress(window().cmdStop, key);
    EXPECT_TRUE(stopped()) << key;
    QTest::keyRelease(window().cmdStop, key);
    stopped();
  }
  EXPECT_TRUE(window().isVisible());
  for (const Qt::Key key : {Qt::Key_Down, Qt::Key_Shift, Qt::Key_F5}) {
    window().cmdStop->setFocus();
    QTest::keyClick(window().cmdStop, key);
    EXPECT_FALSE(stopped()) << key;
  }
  window().activateWindow();
  QCoreApplication::processEvents();
  QTest::keyClick(&window(), Qt::Key_S, Qt::AltModifier);
  EXPECT_TRUE(QTest::qWaitFor(stopped)) << "the access key";
}

TEST_F(ReplicWindowTest, FieldsAreMarkedAllAndClearedByTheirButtons) {
  openTool();
  ListBox& list = *window().fldList;
  for (const char16_t* row : {u"Subject: a", u"Form: Memo", u"Body: b"})
    list.addItem(QString::fromUtf16(row));
  list.setSelected(1, true);
  QTest::mouseClick(window().Command2, Qt::LeftButton);
  EXPECT_EQ(list.selCount(), 3);
  QTest::mouseClick(window().Command2, Qt::LeftButton);
  EXPECT_EQ(list.selCount(), 3) << "marks, not toggles";
  QTest::mouseClick(window().cmdClearFldList, Qt::LeftButton);
  EXPECT_EQ(fields(), QStringList());
  QTest::mouseClick(window().Command2, Qt::LeftButton);
  EXPECT_EQ(host.boxes, Boxes());
}

TEST_F(ReplicWindowTest, TheSearchTextIsClearedByItsButton) {
  openTool();
  window().txtTemplale->setText(u"StdMail"_s);
  window().txtFind->setText(u"kept"_s);
  QTest::mouseClick(window().cmdClearMe, Qt::LeftButton);
  EXPECT_EQ(window().txtTemplale->text(), "");
  EXPECT_EQ(window().txtFind->text(), "kept");
}

TEST_F(ReplicWindowTest, ANumberOfDocumentsThatBeginsWithNoNumberIsRefusedAndStays) {
  openTool();
  const ShownBox refused{u"Eingabe nicht numerisch!!"_s, box::Plain, u"INFO"_s};
  const QVector<std::pair<QString, bool>> inputs = {{u"12a"_s, true}, {u"a12"_s, false}, {u"1"_s, true},
                                                    {u"0"_s, false},  {u"0x"_s, false},  {u"0.5"_s, true},
                                                    {u"-3"_s, true},  {u" 4"_s, true},   {u"x"_s, false},
                                                    {u"250"_s, true}, {u""_s, false}};
  for (const auto& [text, good] : inputs) {
    host.boxes.clear();
    window().txtNumDocs->setText(text);
    EXPECT_EQ(host.boxes, good ? Boxes() : Boxes({refused})) << text.toStdString();
    EXPECT_EQ(window().txtNumDocs->text(), text);
  }
  host.boxes.clear();
  window().txtNumDocs->setFocus();
  QTest::keyClicks(window().txtNumDocs, u"0"_s);
  QTest::keyClicks(window().txtNumDocs, u"1"_s);
  EXPECT_EQ(host.boxes, Boxes({refused})) << "01 is a number";
}

}  // namespace
}  // namespace lens

#include "controls/list_box.h"

#include <QApplication>
#include <QClipboard>
#include <QHelpEvent>
#include <QMenu>
#include <QScrollBar>
#include <QToolTip>

#include "control_test.h"
#include "controls/look.h"

namespace lens {
namespace {

// A shown list of the rows "row 0", "row 1", ...
struct ShownList {
  explicit ShownList(int rows, bool multiSelect = false) : clicks(list.click) {
    list.setMultiSelect(multiSelect);
    list.resize(200, 16 * 6 + 8);
    for (int row = 0; row < rows; ++row) list.addItem(QStringLiteral("row %1").arg(row));
    showWithFocus(list);
  }
  QPoint at(int row) { return QPoint(60, 3 + 16 * (row - list.topIndex()) + 8); }
  void press(int row, Qt::KeyboardModifiers modifiers = Qt::NoModifier) {
    QTest::mouseClick(list.viewport(), Qt::LeftButton, modifiers, at(row));
  }
  QString marks() {
    QString text;
    for (int row = 0; row < list.listCount(); ++row) text += QChar(list.selected(row) ? u'x' : u'.');
    return text;
  }
  ListBox list;
  Counter clicks;
};

TEST(ListBox, FocusAloneChoosesNoRow) {
  ShownList shown(3);
  QTest::keyClick(&shown.list, Qt::Key_Tab);
  shown.list.clearFocus();
  shown.list.setFocus(Qt::TabFocusReason);
  EXPECT_TRUE(shown.list.hasFocus());
  EXPECT_EQ(shown.list.listIndex(), -1);
  EXPECT_FALSE(shown.list.currentIndex().isValid());
  EXPECT_EQ(shown.clicks.take(), 0);
}

TEST(ListBox, SettingTheIndexFiresEachTime) {
  ShownList shown(3);
  shown.list.setListIndex(1);
  shown.list.setListIndex(1);
  EXPECT_EQ(shown.clicks.take(), 2);
  EXPECT_EQ(shown.list.text(), QStringLiteral("row 1"));
  EXPECT_TRUE(shown.list.selected(1));
  shown.list.setListIndex(-1);
  EXPECT_EQ(shown.clicks.take(), 0);
  EXPECT_EQ(shown.list.text(), QString());
  EXPECT_EQ(shown.list.selCount(), 0);
}

TEST(ListBox, ClearingAddingAndRemovingFireNothing) {
  ShownList shown(3);
  shown.list.setListIndex(1);
  shown.clicks.take();
  shown.list.addItem(QStringLiteral("more"));
  shown.list.removeItem(0);
  shown.list.removeItem(0);
  EXPECT_EQ(shown.list.listIndex(), -1);
  shown.list.clear();
  EXPECT_EQ(shown.list.listIndex(), -1);
  EXPECT_EQ(shown.list.listCount(), 0);
  EXPECT_EQ(shown.clicks.take(), 0);
}

TEST(ListBox, RowsAddedOrRemovedBeforeTheIndexCarryItAlong) {
  ShownList shown(4, true);
  shown.list.setSelected(2, true);
  shown.list.addItem(QStringLiteral("first"), 0);
  EXPECT_EQ(shown.list.listIndex(), 3);
  EXPECT_EQ(shown.marks(), QStringLiteral("...x."));
  shown.list.removeItem(1);
  EXPECT_EQ(shown.list.listIndex(), 2);
  EXPECT_EQ(shown.list.text(), QStringLiteral("row 2"));
  EXPECT_EQ(shown.marks(), QStringLiteral("..x."));
}

TEST(ListBox, RowsOutsideRaise) {
  ShownList shown(2);
  EXPECT_EQ(errorOf([&] { shown.list.removeItem(2); }), 5);
  EXPECT_EQ(errorOf([&] { shown.list.addItem(QStringLiteral("x"), 3); }), 5);
  EXPECT_EQ(errorOf([&] { shown.list.setListIndex(2); }), 380);
  EXPECT_EQ(errorOf([&] { shown.list.setListIndex(-2); }), 380);
  EXPECT_EQ(errorOf([&] { shown.list.setSelected(-1, true); }), 381);
  EXPECT_EQ(errorOf([&] { shown.list.selected(2); }), 381);
  EXPECT_EQ(shown.list.list(2), QString());
  EXPECT_EQ(shown.list.list(-1), QString());
}

TEST(ListBox, PressingTheChosenRowFiresAgain) {
  ShownList shown(3);
  shown.press(1);
  shown.press(1);
  EXPECT_EQ(shown.clicks.take(), 2);
  EXPECT_EQ(shown.list.listIndex(), 1);
}

TEST(ListBox, SingleListKeepsItsMarkOnControlClickAndClickIntoTheVoid) {
  ShownList shown(3);
  shown.press(1);
  shown.press(1, Qt::ControlModifier);
  EXPECT_TRUE(shown.list.selected(1));
  shown.clicks.take();
  QTest::mouseClick(shown.list.viewport(), Qt::LeftButton, {}, shown.at(5));
  EXPECT_EQ(shown.list.listIndex(), 1);
  EXPECT_EQ(shown.clicks.take(), 0);
  shown.list.setSelected(1, false);
  EXPECT_EQ(shown.marks(), QStringLiteral(".x."));
}

TEST(ListBox, MarkingInCodeAddsTheMarkAndMovesTheIndex) {
  ShownList shown(4, true);
  shown.list.setSelected(0, true);
  shown.list.setSelected(2, true);
  EXPECT_EQ(shown.marks(), QStringLiteral("x.x."));
  EXPECT_EQ(shown.list.listIndex(), 2);
  shown.list.setSelected(0, false);
  EXPECT_EQ(shown.marks(), QStringLiteral("..x."));
  EXPECT_EQ(shown.list.listIndex(), 2);
  EXPECT_EQ(shown.list.selCount(), 1);
  EXPECT_EQ(shown.clicks.take(), 3);
}

TEST(ListBox, MarkingInASingleListMovesTheMark) {
  ShownList shown(3);
  shown.list.setSelected(0, true);
  shown.list.setSelected(2, true);
  EXPECT_EQ(shown.marks(), QStringLiteral("..x"));
  EXPECT_EQ(shown.list.listIndex(), 2);
}

TEST(ListBox, IndexOfAMultiListMarksNothing) {
  ShownList shown(3, true);
  shown.list.setListIndex(1);
  EXPECT_EQ(shown.marks(), QStringLiteral("..."));
  EXPECT_EQ(shown.list.text(), QStringLiteral("row 1"));
  EXPECT_EQ(shown.clicks.take(), 1);
}

TEST(ListBox, MousePressesOfAMultiListMarkToggleAndRange) {
  ShownList shown(5, true);
  shown.press(0);
  shown.press(2, Qt::ControlModifier);
  EXPECT_EQ(shown.marks(), QStringLiteral("x.x.."));
  shown.press(0, Qt::ControlModifier);
  EXPECT_EQ(shown.marks(), QStringLiteral("..x.."));
  EXPECT_EQ(shown.list.listIndex(), 0);
  shown.press(1);
  EXPECT_EQ(shown.marks(), QStringLiteral(".x..."));
  shown.press(4, Qt::ShiftModifier);
  EXPECT_EQ(shown.marks(), QStringLiteral(".xxxx"));
  shown.press(0, Qt::ShiftModifier);
  EXPECT_EQ(shown.marks(), QStringLiteral("xx..."));
  EXPECT_EQ(shown.clicks.take(), 6);
}

TEST(ListBox, ArrowHomeEndAndPageKeysFire) {
  ShownList shown(20);
  QTest::keyClick(&shown.list, Qt::Key_Down);
  EXPECT_EQ(shown.list.listIndex(), 0);
  QTest::keyClick(&shown.list, Qt::Key_Down);
  EXPECT_EQ(shown.list.listIndex(), 1);
  QTest::keyClick(&shown.list, Qt::Key_Up);
  EXPECT_EQ(shown.list.listIndex(), 0);
  QTest::keyClick(&shown.list, Qt::Key_End);
  EXPECT_EQ(shown.list.listIndex(), 19);
  EXPECT_EQ(shown.list.topIndex(), 14);
  QTest::keyClick(&shown.list, Qt::Key_PageUp);
  EXPECT_EQ(shown.list.listIndex(), 14);
  QTest::keyClick(&shown.list, Qt::Key_PageDown);
  EXPECT_EQ(shown.list.listIndex(), 19);
  QTest::keyClick(&shown.list, Qt::Key_Home);
  EXPECT_EQ(shown.list.listIndex(), 0);
  EXPECT_EQ(shown.clicks.take(), 7);
}

TEST(ListBox, ShiftArrowExtendsTheMarks) {
  ShownList shown(4, true);
  shown.press(1);
  QTest::keyClick(&shown.list, Qt::Key_Down, Qt::ShiftModifier);
  EXPECT_EQ(shown.marks(), QStringLiteral(".xx."));
  QTest::keyClick(&shown.list, Qt::Key_Down, Qt::ControlModifier);
  EXPECT_EQ(shown.marks(), QStringLiteral(".xx."));
  EXPECT_EQ(shown.list.listIndex(), 3);
  QTest::keyClick(&shown.list, Qt::Key_Space, Qt::ControlModifier);
  EXPECT_EQ(shown.marks(), QStringLiteral(".xxx"));
}

TEST(ListBox, SortedListKeepsIndexAndMarksOnTheirRows) {
  ListBox list;
  list.setSorted(true);
  list.setMultiSelect(true);
  for (const char16_t* text : {u"m", u"t"}) list.addItem(QString::fromUtf16(text));
  list.setSelected(1, true);
  Counter clicks(list.click);
  for (const char16_t* text : {u"B", u"a", u"z", u"T"}) list.addItem(QString::fromUtf16(text));
  QStringList rows;
  for (int row = 0; row < list.listCount(); ++row) rows << list.list(row);
  EXPECT_EQ(rows.join(QString()), QStringLiteral("aBmtTz"));
  EXPECT_EQ(list.listIndex(), 3);
  EXPECT_TRUE(list.selected(3));
  EXPECT_EQ(list.selCount(), 1);
  EXPECT_EQ(clicks.take(), 0);
}

TEST(ListBox, ListThatBecomesSortedKeepsItsIndex) {
  ListBox list;
  for (const char16_t* text : {u"c", u"a", u"b"}) list.addItem(QString::fromUtf16(text));
  list.setListIndex(0);
  list.setSorted(true);
  EXPECT_EQ(list.list(0), QStringLiteral("a"));
  EXPECT_EQ(list.listIndex(), 2);
}

TEST(ListBox, SharpSDoesNotBecomeTwoLettersInTheOrder) {
  ListBox list;
  list.setSorted(true);
  list.addItem(QStringLiteral("stra\u00DFe"));
  list.addItem(QStringLiteral("strasz"));
  list.addItem(QStringLiteral("STRAT"));
  EXPECT_EQ(list.list(0), QStringLiteral("strasz"));
  EXPECT_EQ(list.list(1), QStringLiteral("STRAT"));
  EXPECT_EQ(list.list(2), QStringLiteral("stra\u00DFe"));
}

TEST(ListBox, UnmarkingARowLeavesTheIndexOnItsOwn) {
  for (const bool checked : {false, true}) {
    ShownList shown(5, !checked);
    shown.list.setChecked(checked);
    for (int row : {0, 2, 3, 4, 1}) shown.list.setSelected(row, true);
    shown.list.setSelected(3, false);
    EXPECT_EQ(shown.list.listIndex(), 1);
    EXPECT_EQ(shown.marks(), QStringLiteral("xxx.x"));
    shown.list.setSelected(1, false);
    EXPECT_EQ(shown.list.listIndex(), 1);
    EXPECT_FALSE(shown.list.selected(shown.list.listIndex())) << "the row at the index may be unmarked";
  }
}

TEST(ListBox, ControlClickTakesTheMarkOfTheIndexAndAClickIntoTheVoidTakesNone) {
  ShownList shown(5, true);
  shown.press(1);
  shown.press(3, Qt::ControlModifier);
  shown.press(3, Qt::ControlModifier);
  EXPECT_EQ(shown.marks(), QStringLiteral(".x..."));
  EXPECT_EQ(shown.list.listIndex(), 3);
  QTest::mouseClick(shown.list.viewport(), Qt::LeftButton, {}, shown.at(5));
  EXPECT_EQ(shown.marks(), QStringLiteral(".x..."));
  EXPECT_EQ(shown.list.listIndex(), 3);
  shown.list.clear();
  EXPECT_EQ(shown.list.selCount(), 0);
  shown.list.addItem(QStringLiteral("new"));
  EXPECT_EQ(shown.marks(), QStringLiteral("."));
}

TEST(ListBox, SortsByCapitalsWithoutTheMachinesLanguage) {
  ListBox list;
  list.setSorted(true);
  list.setChecked(true);
  const auto rows = [&list] {
    QStringList texts;
    for (int row = 0; row < list.listCount(); ++row)
      texts << (list.selected(row) ? QStringLiteral("x") : QString()) + list.list(row);
    return texts.join(QLatin1Char(' ')).toStdString();
  };
  for (const char* text : {"b", "A", "a", "_x"}) list.addItem(QString::fromLatin1(text));
  EXPECT_EQ(rows(), "A a b _x");
  list.setSelected(2, true);
  list.setSelected(3, true);
  for (const char* text : {"B", "Z", "^", "\xe4", "\xc4"}) list.addItem(QString::fromLatin1(text));
  EXPECT_EQ(rows(), "A a xb B Z ^ x_x " + QStringLiteral("\u00E4 \u00C4").toStdString())
      << "equal ones as they came";
  EXPECT_EQ(list.listIndex(), 6);
  EXPECT_EQ(list.list(list.listCount()), QString());
}

TEST(ListBox, CheckIsTheMarkOfACheckedList) {
  ShownList shown(3);
  shown.list.setChecked(true);
  shown.press(1);
  EXPECT_EQ(shown.list.listIndex(), 1);
  EXPECT_EQ(shown.marks(), QStringLiteral("..."));
  QTest::mouseClick(shown.list.viewport(), Qt::LeftButton, {}, QPoint(8, shown.at(2).y()));
  EXPECT_EQ(shown.marks(), QStringLiteral("..x"));
  QTest::keyClick(&shown.list, Qt::Key_Space);
  EXPECT_EQ(shown.marks(), QStringLiteral("..."));
  shown.list.setSelected(0, true);
  shown.list.setListIndex(1);
  EXPECT_EQ(shown.marks(), QStringLiteral("x.."));
}

TEST(ListBox, DoubleClickIsTheMousesAndEnterDoesTheSame) {
  ShownList shown(3);
  QTest::keyClick(&shown.list, Qt::Key_Return);
  Counter doubles(shown.list.dblClick);
  QTest::keyClick(&shown.list, Qt::Key_Return);
  EXPECT_EQ(doubles.take(), 0);
  shown.press(1);
  EXPECT_EQ(doubles.take(), 0);
  QTest::mouseDClick(shown.list.viewport(), Qt::LeftButton, {}, shown.at(1));
  EXPECT_EQ(doubles.take(), 1);
  QTest::keyClick(&shown.list, Qt::Key_Return);
  EXPECT_EQ(doubles.take(), 1);
  QTest::mouseDClick(shown.list.viewport(), Qt::LeftButton, {}, shown.at(4));
  EXPECT_EQ(doubles.take(), 0);
}

TEST(ListBox, KeysReachTheirProcedures) {
  ShownList shown(3);
  QVector<int> downs, typed;
  shown.list.keyDown = [&](int code, int shift) {
    if (code != 16) downs << code << shift;
  };
  shown.list.keyPress = [&](int& code) { typed << code; };
  QTest::keyClick(&shown.list, Qt::Key_Escape);
  QTest::keyClick(&shown.list, Qt::Key_Return);
  QTest::keyClick(&shown.list, 'r');
  QTest::keyClick(&shown.list, Qt::Key_Delete, Qt::ShiftModifier);
  EXPECT_EQ(downs, (QVector<int>{27, 0, 13, 0, 'R', 0, 46, 1}));
  EXPECT_EQ(typed, (QVector<int>{27, 13, 'r'}));
  EXPECT_EQ(shown.list.listIndex(), 0);
}

TEST(ListBox, LineEndsOfARowAreKeptAndDrawnAsOneLine) {
  ShownList shown(1);
  shown.list.setList(0, QStringLiteral("a\r\nb\nc"));
  EXPECT_EQ(shown.list.list(0), QStringLiteral("a\r\nb\nc"));
  const QImage several = shown.list.viewport()->grab().toImage();
  shown.list.setList(0, QStringLiteral("a b c"));
  EXPECT_EQ(several, shown.list.viewport()->grab().toImage());
}

TEST(ListBox, CopyJoinsTheMarkedRows) {
  ShownList shown(3, true);
  shown.list.setListIndex(1);
  QTest::keyClick(&shown.list, Qt::Key_C, Qt::ControlModifier);
  EXPECT_EQ(QApplication::clipboard()->text(), QStringLiteral("row 1"));
  shown.list.setSelected(2, true);
  shown.list.setSelected(0, true);
  QTest::keyClick(&shown.list, Qt::Key_C, Qt::ControlModifier);
  EXPECT_EQ(QApplication::clipboard()->text(), QStringLiteral("row 0\r\nrow 2"));
  QTest::keyClick(&shown.list, Qt::Key_A, Qt::ControlModifier);
  EXPECT_EQ(shown.list.selCount(), 3);
}

TEST(ListBox, MenuOffersCopyAndSelectAll) {
  ShownList shown(2, true);
  QContextMenuEvent ask(QContextMenuEvent::Mouse, shown.at(0), QPoint(1, 1));
  QApplication::sendEvent(shown.list.viewport(), &ask);
  auto* menu = shown.list.findChild<QMenu*>();
  ASSERT_TRUE(menu);
  ASSERT_EQ(menu->actions().size(), 2);
  menu->actions().at(1)->trigger();
  EXPECT_EQ(shown.list.selCount(), 2);
  menu->close();
}

TEST(ListBox, RefreshKeepsIndexAndMarks) {
  ShownList shown(5, true);
  for (int row : {0, 2, 3}) shown.list.setSelected(row, true);
  shown.list.refresh();
  EXPECT_EQ(shown.marks(), QStringLiteral("x.xx."));
  EXPECT_EQ(shown.list.listIndex(), 3);
}

TEST(ListBox, SidewaysExtentGivesAPermanentBarAsThickAsARow) {
  ShownList shown(30);
  EXPECT_FALSE(shown.list.horizontalScrollBar()->isVisible());
  shown.list.setHorizontalExtent(400);
  QCoreApplication::processEvents();
  EXPECT_TRUE(shown.list.horizontalScrollBar()->isVisible());
  EXPECT_EQ(shown.list.horizontalScrollBar()->height(), 16);
  EXPECT_EQ(shown.list.horizontalScrollBar()->maximum(), 400 - shown.list.viewport()->width());
  EXPECT_EQ(shown.list.verticalScrollBar()->maximum(), 25);
  shown.list.setRowHeight(20);
  QCoreApplication::processEvents();
  EXPECT_EQ(shown.list.horizontalScrollBar()->height(), 20);
}

TEST(ListBox, IsNotPaintedForRowsBelowTheView) {
  ShownList shown(30);
  int paints = 0;
  class Counter : public QObject {
   public:
    explicit Counter(int& paints) : paints_(paints) {}
    bool eventFilter(QObject*, QEvent* event) override {
      if (event->type() == QEvent::Paint) ++paints_;
      return false;
    }

   private:
    int& paints_;
  } counter(paints);
  shown.list.viewport()->installEventFilter(&counter);
  for (int i = 0; i < 100; ++i) {
    shown.list.addItem(QStringLiteral("row"));
    QCoreApplication::processEvents();
  }
  EXPECT_EQ(paints, 0);
  EXPECT_TRUE(QTest::qWaitFor([&] { return shown.list.verticalScrollBar()->maximum() == 124; }));
  shown.list.addItem(QStringLiteral("first"), 0);
  EXPECT_TRUE(QTest::qWaitFor([&] { return paints > 0; }));
}

TEST(ListBox, WholeRowsFillTheDesignHeight) {
  ShownList shown(30);
  EXPECT_EQ(shown.list.verticalScrollBar()->maximum(), 24);
  EXPECT_EQ(shown.list.visualRect(shown.list.model()->index(5, 0)).bottom(), 3 + 6 * 16 - 1);
}

// A row that is cut in half can neither be read nor trusted.
TEST(ListBox, OnlyWholeRowsAreShownAndCanBePressed) {
  ShownList shown(30);
  shown.list.setListIndex(3);
  const auto below = [&] {
    const QImage image = shown.list.viewport()->grab().toImage();
    int drawn = 0;
    for (int y = 3 + 16 * 6; y < image.height(); ++y)
      for (int x = 0; x < image.width(); ++x) drawn += image.pixel(x, y) != image.pixel(0, 0);
    return drawn;
  };
  for (int gap = 0; gap < 16; ++gap) {
    shown.list.resize(200, 16 * 6 + 8 + gap);
    EXPECT_EQ(below(), 0) << gap;
    const QPoint inGap(60, shown.list.viewport()->height() - 2);
    QTest::mouseClick(shown.list.viewport(), Qt::LeftButton, {}, inGap);
    QTest::mouseDClick(shown.list.viewport(), Qt::LeftButton, {}, inGap);
    EXPECT_EQ(shown.list.listIndex(), 3) << gap;
    EXPECT_FALSE(shown.list.indexAt(inGap).isValid()) << gap;
  }
  shown.list.setTopIndex(24);
  EXPECT_EQ(shown.list.topIndex(), 24) << "the last row comes into view whole";
  EXPECT_EQ(below(), 0);
}

// Paths of databases are often longer than the lists of the small windows.
TEST(ListBox, ARowThatIsCutShowsItselfWholeBesideTheMouse) {
  ShownList shown(3);
  const QString path =
      QStringLiteral("departments/engineering/<b>projects</b>/a path that nobody calls short.nsf");
  shown.list.setList(1, path);
  const auto ask = [&](int row) {
    QHelpEvent event(QEvent::ToolTip, shown.at(row), shown.list.viewport()->mapToGlobal(shown.at(row)));
    QApplication::sendEvent(shown.list.viewport(), &event);
  };
  const auto isHidden = [] { return QTest::qWaitFor([] { return !QToolTip::isVisible(); }); };
  ask(1);
  EXPECT_EQ(QToolTip::text(), plainTip(path));
  ask(0);
  EXPECT_TRUE(isHidden());
  ask(1);
  ask(5);
  EXPECT_TRUE(isHidden()) << "below the rows";
  shown.list.setHorizontalExtent(400);
  ask(1);
  EXPECT_FALSE(QToolTip::isVisible()) << "the bar leads to the row's end";
}

TEST(ListBox, DraggingBelowTheViewScrolls) {
  ShownList shown(30);
  QTest::mousePress(shown.list.viewport(), Qt::LeftButton, {}, shown.at(5));
  QMouseEvent drag(QEvent::MouseMove, shown.at(7), shown.list.viewport()->mapToGlobal(shown.at(7)),
                   Qt::NoButton, Qt::LeftButton, {});
  QApplication::sendEvent(shown.list.viewport(), &drag);
  EXPECT_EQ(shown.list.listIndex(), 7);
  EXPECT_EQ(shown.list.topIndex(), 2);
  QTest::mouseRelease(shown.list.viewport(), Qt::LeftButton);
}

TEST(ListBox, ChoosingBeforeTheListIsShownScrollsOnlyAsFarAsNeeded) {
  QWidget window;
  ListBox list(&window);
  list.setGeometry(8, 8, 200, 16 * 6 + 8);
  for (int row = 0; row < 30; ++row) list.addItem(QString::number(row));
  list.setListIndex(5);
  EXPECT_EQ(list.topIndex(), 0);
  window.show();
  EXPECT_EQ(list.topIndex(), 0);
  list.setListIndex(6);
  EXPECT_EQ(list.topIndex(), 1);
}

TEST(ListBox, FindForgivesCapitalsAndStartsWhereTold) {
  ShownList shown(12);
  EXPECT_EQ(shown.list.find(QStringLiteral("ROW 1")), 1);
  EXPECT_EQ(shown.list.find(QStringLiteral("ROW 1"), 2), 10);
  EXPECT_EQ(shown.list.find(QStringLiteral("none")), -1);
}

TEST(ListBox, FailureOfAClickGoesToTheCodeThatSetTheRowAndToTheReportBelowTheUser) {
  Untrapped untrapped;
  ShownList shown(3);
  shown.list.click = [] { throw RuntimeError(91); };
  EXPECT_EQ(errorOf([&] { shown.list.setListIndex(1); }), 91);
  EXPECT_EQ(shown.list.listIndex(), 1);
  EXPECT_EQ(errorOf([&] { shown.list.setSelected(2, true); }), 91);
  EXPECT_EQ(shown.list.listIndex(), 2);
  EXPECT_EQ(errorOf([&] { shown.list.raiseClick(); }), 91);
  EXPECT_TRUE(untrapped.numbers.isEmpty());
  QTest::mouseClick(shown.list.viewport(), Qt::LeftButton, {}, shown.at(0));
  EXPECT_EQ(shown.list.listIndex(), 0);
  EXPECT_EQ(untrapped.numbers, QVector<int>{91});
}

TEST(ListBox, ProcedureMayClearTheListUnderTheMouse) {
  ShownList shown(3);
  shown.list.click = [&] { shown.list.clear(); };
  Counter doubles(shown.list.dblClick);
  const QPoint place = shown.at(1);
  QTest::mouseDClick(shown.list.viewport(), Qt::LeftButton, {}, place);
  EXPECT_EQ(shown.list.listCount(), 0);
  EXPECT_EQ(doubles.take(), 0);
}

TEST(ListBox, AMillionRowsAddSelectScrollAndSearch) {
  ShownList shown(0, true);
  for (int row = 0; row < 1000000; ++row) shown.list.addItem(QString::number(row));
  QTest::keyClick(&shown.list, Qt::Key_End);
  EXPECT_EQ(shown.list.listIndex(), 999999);
  EXPECT_EQ(shown.list.topIndex(), 999994);
  shown.list.grab();
  QTest::keyClick(&shown.list, Qt::Key_A, Qt::ControlModifier);
  EXPECT_EQ(shown.list.selCount(), 1000000);
  for (int row = 0; row < 1000000; row += 2) shown.list.setSelected(row, false);
  EXPECT_EQ(shown.list.selCount(), 500000);
  EXPECT_EQ(shown.list.find(QStringLiteral("99999"), 100000), 999990);
  shown.list.setTopIndex(500000);
  shown.list.refresh();
  shown.press(500003);
  EXPECT_EQ(shown.list.text(), QStringLiteral("500003"));
  EXPECT_EQ(shown.list.selCount(), 1);
}

TEST(ListBox, ManySortedRowsFindTheirPlaces) {
  ListBox list;
  list.setSorted(true);
  for (int row = 0; row < 100000; ++row)
    list.addItem(QString::number((row * 7919) % 100000).rightJustified(5, QChar(u'0')));
  EXPECT_EQ(list.list(0), QStringLiteral("00000"));
  EXPECT_EQ(list.list(54321), QStringLiteral("54321"));
}

}  // namespace
}  // namespace lens

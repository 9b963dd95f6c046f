// What a user does while the list of a class is being built.
#include <QKeyEvent>
#include <QTest>

#include "design/design_fixture.h"

namespace lens {
namespace {

class RunningList : public DesignTest {
 protected:
  // Starts the program with so many documents in the database.
  void startWith(int documents) {
    {
      Database::Transaction transaction(*database);
      for (int i = 0; i < documents; ++i) ids += memo();
      transaction.commit();
    }
    start();
    host.yields = 0;
    notes().log.clear();
  }
  // Does something at the n-th note, once.
  void atNote(int n, std::function<void()> action) {
    host.whileYielding = [this, n, action = std::move(action)] {
      if (host.yields != n || std::exchange(acted_, true)) return;
      action();
    };
  }
  QStringList firstRows(int count) const {
    QStringList texts;
    for (int i = 0; i < count; ++i) texts += digits(ids[i]);
    return texts;
  }
  void expectStoppedAfter(int count) {
    EXPECT_EQ(rows("idList"), firstRows(count));
    EXPECT_EQ(host.yields, count);
    EXPECT_EQ(text("lblCounter"), QString::number(count));
    EXPECT_EQ(caption(), "DOCUMENTS documents in: !!mail.nsf");
    EXPECT_EQ(state().gDocKind, "DESIGN");
    EXPECT_EQ(host.pointerCode, pointer::Default);
    EXPECT_FALSE(state().gDesignStop);
    EXPECT_EQ(host.boxes, Boxes());
  }

  QVector<NoteId> ids;

 private:
  bool acted_ = false;
};

TEST_F(RunningList, StopsAtEscInTheList) {
  startWith(4);
  atNote(2, [&] { QTest::keyClick(form().lstDesigns, Qt::Key_Escape); });
  list(u"SELECTDOCUMENTS"_s);
  expectStoppedAfter(2);
}

TEST_F(RunningList, StopsAtEachOfTheTwoHandlersOfEsc) {
  startWith(4);
  atNote(1, [&] { form().lstDesigns->keyDown.fire(27, 0); });
  list(u"SELECTDOCUMENTS"_s);
  expectStoppedAfter(1);
  host.yields = 0;
  host.whileYielding = [&] {
    int key = 27;
    form().lstDesigns->keyPress.fire(key);
  };
  doubleClick();
  expectStoppedAfter(1);
}

TEST_F(RunningList, GoesOnAtOtherKeys) {
  startWith(3);
  host.whileYielding = [&] {
    for (int code : {13, 26, 28, 32}) {
      form().lstDesigns->keyDown.fire(code, 0);
      form().lstDesigns->keyPress.fire(code);
    }
  };
  list(u"SELECTDOCUMENTS"_s);
  expectStoppedAfter(3);
}

TEST_F(RunningList, StopsAtTheStopButton) {
  startWith(4);
  atNote(3, [&] { QTest::mouseClick(form().Command1, Qt::LeftButton); });
  list(u"SELECTDOCUMENTS"_s);
  expectStoppedAfter(3);
}

TEST_F(RunningList, IsNotStoppedByTheButtonOfTheScan) {
  startWith(3);
  form().cmdStop->setVisible(true);
  atNote(1, [&] {
    QTest::mouseClick(form().cmdStop, Qt::LeftButton);
    host.yields = 1;
  });
  list(u"SELECTDOCUMENTS"_s);
  expectStoppedAfter(3);
}

TEST_F(RunningList, IsNotStoppedByARequestFromBefore) {
  startWith(3);
  click("Command1");
  list(u"SELECTDOCUMENTS"_s);
  expectStoppedAfter(3);
}

TEST_F(RunningList, OfThousandsStopsAtOnceAndTakesEventsOncePerNote) {
  startWith(5000);
  atNote(1234, [&] { click("Command1"); });
  list(u"SELECTDOCUMENTS"_s);
  expectStoppedAfter(1234);
  EXPECT_EQ(callsOf(u"GETDOCUMENTBYID"_s), 1234);
  host.yields = 0;
  doubleClick();
  expectStoppedAfter(5000);
}

TEST_F(RunningList, OfMoreThanItsCounterHoldsStopsEarlyAndLateAndIsUsableMeanwhile) {
  startWith(33'000);
  atNote(7, [&] { click("Command1"); });
  list(u"SELECTDOCUMENTS"_s);
  expectStoppedAfter(7);
  host.yields = 0;
  ListBox& list = control<ListBox>("idList");
  host.whileYielding = [&] {
    if (host.yields == 32'800) {
      QTest::mouseClick(list.viewport(), Qt::LeftButton, {}, QPoint(20, 4));
      EXPECT_EQ(list.listIndex(), 0);
      QTest::keyClick(&list, Qt::Key_End);
      EXPECT_EQ(list.listIndex(), 32'799);
    }
    if (host.yields == 32'990) click("Command1");
  };
  doubleClick();
  EXPECT_EQ(host.yields, 32'990);
  EXPECT_EQ(list.listCount(), 32'990);
  // The rows are there; only their number is beyond what the counter holds.
  EXPECT_EQ(host.boxes, Boxes({errorBox(u"lstDesigns_DblClick"_s, err::Overflow)}));
  EXPECT_EQ(host.pointerCode, pointer::Hourglass);
}

TEST_F(RunningList, LetsTheClockMove) {
  startWith(3);
  form().Timer2->setInterval(1);
  QStringList times;
  host.whileYielding = [&] {
    host.clock = host.clock.addSecs(1);
    const QString now = host.clock.toString(u" HH:mm:ss"_s);
    EXPECT_TRUE(QTest::qWaitFor([&] { return text("lblTime") == now; }));
    times += text("lblTime");
  };
  list(u"SELECTDOCUMENTS"_s);
  EXPECT_EQ(times, QStringList({u" 14:05:10"_s, u" 14:05:11"_s, u" 14:05:12"_s}));
}

TEST_F(RunningList, RunsASecondDoubleClickInsideAndEndsWhereItsIdsEnd) {
  const NoteId form1 = design(noteclass::Form, u"One"_s), form2 = design(noteclass::Form, u"Two"_s);
  startWith(3);
  QStringList inside;
  host.whileYielding = [&] {
    host.whileYielding = nullptr;
    list(u"SELECTFORMS"_s);
    inside = rows("idList");
    EXPECT_EQ(text("lblCounter"), "2");
    EXPECT_EQ(state().gDocKind, "DESIGN");
  };
  list(u"SELECTDOCUMENTS"_s);
  const QStringList forms{row(u"One"_s, form1), row(u"Two"_s, form2)};
  EXPECT_EQ(inside, forms);
  // The next ID was taken before; the forms' collection knows none behind it.
  EXPECT_EQ(rows("idList"), forms + QStringList(digits(ids[1])));
  EXPECT_EQ(host.boxes, Boxes({errorBox(u"lstDesigns_DblClick"_s, err::ObjectNotSet)}));
  EXPECT_EQ(caption(), "FORMS documents in: !!mail.nsf");
  EXPECT_EQ(text("lblCounter"), "2");
}

TEST_F(RunningList, RunsASecondDoubleClickOfTheMouseOnTheSameClassAndGoesOnBehindIt) {
  startWith(3);
  choose(u"SELECTDOCUMENTS"_s);
  ListBox& list = control<ListBox>("lstDesigns");
  host.whileYielding = [&] {
    host.whileYielding = nullptr;
    const QPoint place = list.visualRect(list.model()->index(list.listIndex(), 0)).center();
    QTest::mouseDClick(list.viewport(), Qt::LeftButton, {}, place);
  };
  doubleClick();
  EXPECT_EQ(rows("idList"), firstRows(3) + QStringList({digits(ids[1]), digits(ids[2])}));
  EXPECT_EQ(text("lblCounter"), "5");
  EXPECT_EQ(host.boxes, Boxes());
}

// Each repetition of a held key would otherwise begin one more list inside of the last one.
TEST_F(RunningList, TakesAHeldEnterKeyForOne) {
  startWith(3);
  choose(u"SELECTDOCUMENTS"_s);
  host.whileYielding = [&] {
    QKeyEvent held(QEvent::KeyPress, Qt::Key_Return, Qt::NoModifier, u"\r"_s, true);
    QApplication::sendEvent(form().lstDesigns, &held);
  };
  QTest::keyClick(form().lstDesigns, Qt::Key_Return);
  expectStoppedAfter(3);
}

TEST_F(RunningList, AStopInsideStopsOnlyTheInnerRun) {
  startWith(3);
  host.whileYielding = [&] {
    host.whileYielding = [&] {
      host.whileYielding = nullptr;
      click("Command1");
    };
    doubleClick();
    EXPECT_EQ(rows("idList"), firstRows(1));
  };
  list(u"SELECTDOCUMENTS"_s);
  EXPECT_EQ(rows("idList"), firstRows(3));
  EXPECT_EQ(host.boxes, Boxes());
}

TEST_F(RunningList, EndsWithTheProcess) {
  startWith(2);
  host.whileYielding = [&] { click("cmdEnd"); };
  choose(u"SELECTDOCUMENTS"_s);
  EXPECT_TRUE(endsProcess([&] { doubleClick(); }));
  EXPECT_EQ(host.boxes, Boxes());
}

}  // namespace
}  // namespace lens

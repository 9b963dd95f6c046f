// Copy, move, replace and delete with a failure in every place: each call through the door fails once, and
// the disk is full from every moment on.
#include "bulk/operations_fixture.h"
#include "embedded/faults/faulty_disk.h"

namespace lens {
namespace {

// Before any database is opened.
struct BulkDisk {
  BulkDisk() { testbed::FaultyDisk::count(); }
  ~BulkDisk() { testbed::FaultyDisk::count(); }
};

class OperationFaults : private BulkDisk, public OperationsTest {
 protected:
  static constexpr int kMemos = 3;

  // As before the first run: three memos with a number, nothing in the target.
  void refill() {
    for (Database* in : {source.get(), target.get()})
      for (const NoteSummary& note : in->notes().list(noteclass::Document)) in->notes().remove(note.id);
    for (int i = 1; i <= kMemos; ++i) {
      Note note = memoNote(u"m%1"_s.arg(i));
      note.add(u"Kinds"_s, itemflag::Summary, textListValue({u"m"_s, u"x"_s}));
      save(note);
    }
    chooseView();
    markFields({u"Subject: m1"_s, u"Kinds: m"_s}, u"m"_s, u"n"_s);
    host.boxes.clear();
    host.pointers.clear();
    globals.gStopFlag = false;
    notes().log.clear();
  }
  bool failedIn(int n, const QString& name) {
    return notes().log[n - 1].compare(name, Qt::CaseInsensitive) == 0;
  }
  // A copy as COPYTODATABASE saved it, or replaced and traced.
  void expectWholeCopies(const QString& trace) {
    for (const Note& made : documents(*target)) {
      const bool traced = made.has(trace);
      EXPECT_TRUE(made.text(u"Subject").startsWith(traced ? u'n' : u'm'));
      EXPECT_EQ(values(made, u"Kinds"_s), QStringList({traced ? u"n"_s : u"m"_s, u"x"_s}));
      EXPECT_EQ(made.items.size(), traced ? 4 : 3);
    }
  }
};

TEST_F(OperationFaults, EveryFailureOfACopyEndsInOneBoxAndTheNormalPointer) {
  const auto run = [&](int n) {
    refill();
    return reachesFault(notes(), n, [&] { press(window.cmdCopy); });
  };
  const int runs = withEveryFault(run, [&](int n) {
    SCOPED_TRACE(notes().log[n - 1].toStdString());
    EXPECT_EQ(host.boxes, Boxes({failure(u"in Copy"_s, 70)}));
    EXPECT_EQ(host.pointers, QVector<int>({pointer::ArrowHourglass, pointer::Default}));
    EXPECT_EQ(subjects(*source), QStringList({u"m1"_s, u"m2"_s, u"m3"_s}));
    expectWholeCopies(u"qvCopiedFromAt"_s);
  });
  EXPECT_GT(runs, 40);
  EXPECT_EQ(host.boxes, Boxes());
  EXPECT_EQ(subjects(*target), QStringList({u"n1"_s, u"n2"_s, u"n3"_s}));
}

TEST_F(OperationFaults, EveryFailureOfAMoveKeepsTheSourceOrComesBehindTheRemoval) {
  const auto run = [&](int n) {
    refill();
    return reachesFault(notes(), n, [&] { press(window.cmdMoveDocs); });
  };
  const int runs = withEveryFault(run, [&](int n) {
    SCOPED_TRACE(notes().log[n - 1].toStdString());
    EXPECT_EQ(host.boxes, Boxes({failure(u"in Move"_s, 70)}));
    EXPECT_EQ(host.pointerCode, pointer::Default);
    if (failedIn(n, u"count"_s))
      EXPECT_EQ(subjects(*source), QStringList());
    else
      EXPECT_EQ(subjects(*source), QStringList({u"m1"_s, u"m2"_s, u"m3"_s}));
    expectWholeCopies(u"zpMovedFromAt"_s);
  });
  EXPECT_GT(runs, 40);
  EXPECT_EQ(host.boxes, Boxes());
  EXPECT_EQ(subjects(*source), QStringList());
}

TEST_F(OperationFaults, EveryFailureOfAReplacementIsReportedAndKeepsWhatWasSaved) {
  const auto run = [&](int n) {
    refill();
    return reachesFault(notes(), n, [&] { press(window.cmdReplace); });
  };
  const int runs = withEveryFault(run, [&](int n) {
    SCOPED_TRACE(notes().log[n - 1].toStdString());
    EXPECT_EQ(host.boxes, Boxes({report(70)}));
    EXPECT_EQ(host.pointers, QVector<int>());
    const QString all = subjects(*source).join(u' ');
    EXPECT_TRUE(QStringList({u"m1 m2 m3"_s, u"n1 m2 m3"_s, u"n1 n2 m3"_s, u"n1 n2 n3"_s}).contains(all))
        << all.toStdString();
  });
  EXPECT_GT(runs, 25);
  EXPECT_EQ(host.boxes, Boxes());
}

TEST_F(OperationFaults, EveryFailureOfADeletionIsReportedAndRemovesAllOrNone) {
  const auto run = [&](int n) {
    refill();
    return reachesFault(notes(), n, [&] { press(window.cmdDelDocs); });
  };
  const int runs = withEveryFault(run, [&](int n) {
    SCOPED_TRACE(notes().log[n - 1].toStdString());
    ASSERT_FALSE(host.boxes.isEmpty());
    EXPECT_EQ(host.boxes.last(), report(70));
    const qsizetype left = subjects(*source).size();
    EXPECT_TRUE(left == 0 || left == kMemos);
  });
  EXPECT_EQ(runs, 7);
}

TEST_F(OperationFaults, AFullDiskInTheMiddleOfAMoveLeavesWholeCopiesAndTheWholeSource) {
  int ended = 0;
  bool finished = false;
  for (int moment = 1; !finished && moment < 400; ++moment) {
    SCOPED_TRACE(moment);
    refill();
    testbed::FaultyDisk::fullFrom(moment);
    press(window.cmdMoveDocs);
    const bool reached = testbed::FaultyDisk::changes() >= moment;
    testbed::FaultyDisk::count();
    expectWholeCopies(u"zpMovedFromAt"_s);
    const qsizetype left = subjects(*source).size();
    ASSERT_TRUE(left == kMemos || (left == 0 && subjects(*target).size() == kMemos)) << left;
    finished = !reached && host.boxes.isEmpty();
    if (host.boxes.isEmpty()) continue;
    ++ended;
    ASSERT_EQ(host.boxes.size(), 1);
    EXPECT_EQ(host.boxes[0].title, "in Move");
    EXPECT_TRUE(host.boxes[0].text.contains(u".nsf"_s)) << host.boxes[0].text.toStdString();
  }
  EXPECT_TRUE(finished);
  EXPECT_GE(ended, 6);
}

}  // namespace
}  // namespace lens

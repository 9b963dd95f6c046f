// Whole runs over two servers as a person does them: from the opened window to the sound, by keyboard.
#include "bulk/shown_replic.h"
#include "embedded/support/view_fixture.h"

namespace lens {
namespace {

class WholeRun : public ShownReplic {
 protected:
  // The source is open and its view chosen, and so is the target.
  void SetUp() override {
    addServers();
    letters = make(u"letters.nsf"_s, kHub);
    archive = make(u"archive.nsf"_s, kMail);
    Note view = testbed::viewNote(
        u"Memos"_s, {.formula = u"SELECT Form = \"Memo\""_s, .columns = {testbed::sorted(u"Subject"_s)}});
    letters->notes().save(view);
    for (const QString& subject : {u"pump one"_s, u"pump two"_s, u"valve"_s})
      addDocument(*letters, {{u"Form"_s, u"Memo"_s}, {u"Subject"_s, subject}});
    openTool();
    choose(*window().lstDBNames, u"letters.nsf"_s);
    QTest::keyClick(window().lstDBNames, Qt::Key_Return);
    QTest::keyClick(window().lstViewNames, Qt::Key_Home);
    ASSERT_EQ(window().lstViewNames->text(), u"Memos"_s);
    window().lstDesignServer->setText(kMail);
    QTest::keyClick(window().lstDesignServer, Qt::Key_Return);
    choose(*window().lstDBNamesDest, u"archive.nsf"_s);
    ASSERT_EQ(host.boxes, Boxes());
  }
  QStringList subjects(const Database& of) {
    QStringList texts;
    of.notes().scan(noteclass::Document, [&](const Note& note) {
      texts += note.text(u"Subject");
      return true;
    });
    return texts;
  }

  std::shared_ptr<Database> letters, archive;
};

TEST_F(WholeRun, CopiesWithReplacedFields) {
  QTest::keyClick(window().chkFields, Qt::Key_Space);
  QTest::keyClicks(window().txtFind, u"pump"_s);
  QTest::keyClicks(window().txtReplace, u"motor"_s);
  QTest::keyClick(window().lstViewNames, Qt::Key_Home);
  ASSERT_EQ(fields(), QStringList(u"Subject: pump one"_s));
  QTest::keyClick(window().fldList, Qt::Key_Home);
  QTest::keyClick(window().fldList, Qt::Key_Space);
  QTest::keyClick(window().cmdCopy, Qt::Key_Space);
  EXPECT_EQ(host.boxes, Boxes());
  EXPECT_EQ(subjects(*archive), QStringList({u"motor one"_s, u"motor two"_s, u"valve"_s}));
  EXPECT_EQ(subjects(*letters), QStringList({u"pump one"_s, u"pump two"_s, u"valve"_s}));
  archive->notes().scan(noteclass::Document, [&](const Note& note) {
    EXPECT_EQ(note.text(u"qvCopiedFromAt"), kHub + u"!!letters.nsf at: 11.03.2024 14:05:09"_s);
    return true;
  });
  EXPECT_EQ(window().txtProc->text(), "3");
  EXPECT_EQ(window().txtDocsSelected->text(), "3");
}

TEST_F(WholeRun, AMoveThatAKeyOnTheStopButtonEndsHasEmptiedTheView) {
  host.whileYielding = [this] { QTest::keyClick(window().cmdStop, Qt::Key_X); };
  QTest::keyClick(window().cmdMoveDocs, Qt::Key_Space);
  EXPECT_EQ(host.boxes, Boxes());
  EXPECT_EQ(subjects(*archive), QStringList(u"pump one"_s));
  EXPECT_EQ(subjects(*letters), QStringList());
  EXPECT_EQ(window().txtProc->text(), "1");
  EXPECT_EQ(window().txtDocsSelected->text(), "0");
  EXPECT_FALSE(state().gStopFlag);
}

TEST_F(WholeRun, IsFinishedWhenItsWindowIsClosedAndOpenedOnTheWay) {
  window().chkFields->setValue(1);
  window().fldList->addItem(u"Subject: pump one"_s);
  window().fldList->setSelected(0, true);
  window().txtFind->setText(u"pump"_s);
  window().txtReplace->setText(u"motor"_s);
  host.whileYielding = [this] {
    window().close();
    if (host.yields == 2) showTool();
  };
  host.yields = 0;
  QTest::keyClick(window().cmdCopy, Qt::Key_Space);
  EXPECT_EQ(host.boxes, Boxes());
  EXPECT_EQ(subjects(*archive), QStringList({u"motor one"_s, u"motor two"_s, u"valve"_s}));
  EXPECT_FALSE(window().isVisible()) << "closed in the last yield";
  host.whileYielding = nullptr;
  showTool();
  EXPECT_EQ(fields(), QStringList()) << "the next showing is a fresh one";
}

TEST_F(WholeRun, DeletesTheViewAfterTheQuestion) {
  host.answers.enqueue(answer::Cancel);
  QTest::keyClick(window().cmdDelDocs, Qt::Key_Space);
  EXPECT_EQ(subjects(*letters).size(), 3);
  QTest::keyClick(window().cmdDelDocs, Qt::Key_Space);
  EXPECT_EQ(subjects(*letters), QStringList());
  const ShownBox question{u"Are you sure to delete the documents from: letters.nsf ?"_s, box::OkCancel,
                          u"Remove documents"_s};
  EXPECT_EQ(host.boxes, Boxes({question, question}));
}

}  // namespace
}  // namespace lens

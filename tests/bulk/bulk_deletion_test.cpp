// "Delete documents from selected view", and the removal of databases that no control is wired to.
#include <sqlite3.h>

#include <QRegularExpression>

#include "bulk/operations_fixture.h"

namespace lens {
namespace {

const ShownBox kDeleteQuestion{QStringLiteral("Are you sure to delete the documents from: source.nsf ?"),
                               box::OkCancel, QStringLiteral("Remove documents")};

class DeletingDocuments : public OperationsTest {
 protected:
  void remove() { press(window.cmdDelDocs); }
  static ShownBox refused() { return refusal(u"Choose View !!"_s, u"Delete documents from view"_s); }
};

TEST_F(DeletingDocuments, EmptiesTheViewAfterAQuestionThatNamesTheDatabase) {
  memos(3);
  Note task = document(u"Task"_s);
  task.add(u"Subject"_s, itemflag::Summary, textValue(u"task"_s));
  save(task);
  chooseView();
  provideSound();
  window.txtProc->setText(u"17"_s);
  remove();
  EXPECT_EQ(host.boxes, Boxes({kDeleteQuestion}));
  EXPECT_EQ(subjects(*source), QStringList(u"task"_s));
  EXPECT_EQ(selectedCount(), "0");
  EXPECT_EQ(processed(), QString());
  EXPECT_EQ(host.sounds.size(), 1);
  EXPECT_EQ(host.pointers, QVector<int>());
  EXPECT_TRUE(globals.gDb.isNothing());
  EXPECT_EQ(source->notes().list(noteclass::View).size(), 1);
}

TEST_F(DeletingDocuments, OnCancelChangesNothing) {
  memos(2);
  chooseView();
  provideSound();
  answerWith({answer::Cancel});
  remove();
  EXPECT_EQ(host.boxes, Boxes({kDeleteQuestion}));
  EXPECT_EQ(subjects(*source).size(), 2);
  EXPECT_EQ(host.sounds, QStringList());
  EXPECT_EQ(selectedCount(), QString());
}

TEST_F(DeletingDocuments, KeepsWhatCameWhileTheQuestionStood) {
  memos(2);
  chooseView();
  host.whileBoxIsShown = [this](const ShownBox&) { memo(u"late"_s); };
  remove();
  EXPECT_EQ(subjects(*source), QStringList(u"late"_s));
  EXPECT_EQ(selectedCount(), "1");
}

TEST_F(DeletingDocuments, TakesAChangedDocumentAllTheSame) {
  const NoteId id = memo(u"one"_s);
  chooseView();
  host.whileBoxIsShown = [this, id](const ShownBox&) {
    Note note;
    ASSERT_TRUE(source->notes().read(id, note));
    source->notes().save(note);
  };
  remove();
  EXPECT_EQ(subjects(*source), QStringList());
}

TEST_F(DeletingDocuments, SaysTheSameForAMissingDatabaseAndAMissingView) {
  remove();
  EXPECT_EQ(notes().log, QStringList());
  chooseSource();
  remove();
  EXPECT_EQ(host.boxes, Boxes({refused(), refused()}));
  EXPECT_FALSE(globals.gDb.isNothing()) << "the database is open by then";
}

TEST_F(DeletingDocuments, TakesTheRowAtTheIndexMarkedOrNot) {
  memos(1);
  workspace->createDatabase({}, u"another.nsf"_s, {});
  chooseView();
  window.lstDBNames->addItem(u"another.nsf"_s);
  window.lstDBNames->setSelected(0, true);
  window.lstDBNames->setListIndex(1);
  window.lstDBNames->setSelected(1, false);
  ASSERT_TRUE(window.lstDBNames->selected(0));
  ASSERT_EQ(window.lstDBNames->text(), "source.nsf");
  remove();
  EXPECT_EQ(host.boxes, Boxes({kDeleteQuestion}));
  EXPECT_EQ(subjects(*source), QStringList());
}

TEST_F(DeletingDocuments, AFailureRemovesNoneAndGoesToTheReport) {
  memos(2);
  const NoteId last = memo(u"m3"_s);
  chooseView();
  sqlite3_exec(source->handle(),
               qPrintable(u"CREATE TEMP TRIGGER refuse BEFORE UPDATE ON main.note WHEN old.id = %1"
                          " BEGIN SELECT raise(ABORT, 'disk'); END"_s.arg(last.value())),
               nullptr, nullptr, nullptr);
  remove();
  ASSERT_EQ(host.boxes.size(), 2);
  EXPECT_TRUE(host.boxes[1].text.startsWith(u"Run-time error '"_s)) << host.boxes[1].text.toStdString();
  EXPECT_EQ(subjects(*source).size(), 3);
}

TEST_F(DeletingDocuments, RemovesDamagedDocumentsToo) {
  const NoteId bad = memo(u"bad"_s);
  memos(1);
  chooseView();
  host.whileBoxIsShown = [this, bad](const ShownBox&) { damage(*source, bad); };
  remove();
  EXPECT_EQ(host.boxes, Boxes({kDeleteQuestion}));
  EXPECT_EQ(source->notes().state(bad), NoteState::Stub);
}

// --- Whole databases -----------------------------------------------------------------------------------

class RemovingDatabases : public OperationsTest {
 protected:
  RemovingDatabases() {
    for (const QString& name : names()) workspace->createDatabase(kHub, name, {});
    window.lstServer->setText(kHub);
    list(names());
  }
  static QStringList names() { return {u"a.nsf"_s, u"b.nsf"_s, u"c.nsf"_s, u"d.nsf"_s, u"e.nsf"_s}; }
  void list(const QStringList& rows) {
    window.lstDBNames->clear();
    for (const QString& row : rows) window.lstDBNames->addItem(row);
    for (int row = 0; row < window.lstDBNames->listCount(); ++row) window.lstDBNames->setSelected(row, true);
  }
  void remove() {
    try {
      deletion.removeDatabases();
    } catch (const RuntimeError& error) {
      reportUntrapped(error);
    }
  }
  QStringList rows() {
    QStringList texts;
    for (int row = 0; row < window.lstDBNames->listCount(); ++row) texts += window.lstDBNames->list(row);
    return texts;
  }
  QStringList marked() {
    QStringList texts;
    for (int row = 0; row < window.lstDBNames->listCount(); ++row)
      if (window.lstDBNames->selected(row)) texts += window.lstDBNames->list(row);
    return texts;
  }
  QStringList files() { return workspace->databaseFiles(kHub); }
  static ShownBox question(const QString& path) {
    return {u"Are you sure to delete the Database: "_s + path + u" ?", box::OkCancel, u"Remove Database"_s};
  }
};

TEST_F(RemovingDatabases, RemovesTheMarkedOnesAndListsWhatIsLeft) {
  window.lstDBNames->setSelected(1, false);
  provideSound();
  remove();
  EXPECT_EQ(host.boxes,
            Boxes({question(u"a.nsf"_s), question(u"c.nsf"_s), question(u"d.nsf"_s), question(u"e.nsf"_s)}));
  EXPECT_EQ(files(), QStringList({u"b.nsf"_s, u"target.nsf"_s}));
  EXPECT_EQ(rows(), files());
  EXPECT_EQ(marked(), QStringList());
  EXPECT_EQ(host.sounds.size(), 1);
  EXPECT_TRUE(globals.gDb.isNothing());
}

TEST_F(RemovingDatabases, CancelOnTheThirdKeepsTheListAndTheOtherMarks) {
  provideSound();
  answerWith({answer::Ok, answer::Ok, answer::Cancel});
  remove();
  EXPECT_EQ(host.boxes.size(), 3);
  EXPECT_EQ(files(), QStringList({u"c.nsf"_s, u"d.nsf"_s, u"e.nsf"_s, u"target.nsf"_s}));
  EXPECT_EQ(rows(), names());
  EXPECT_EQ(marked(), QStringList({u"c.nsf"_s, u"d.nsf"_s, u"e.nsf"_s}));
  EXPECT_EQ(host.sounds, QStringList());
}

TEST_F(RemovingDatabases, ADatabaseThatCannotBeRemovedEndsTheRunThere) {
  const auto held = workspace->database(kHub, u"b.nsf"_s);
  const Database::Transaction change(*held);
  provideSound();
  remove();
  ASSERT_EQ(host.boxes.size(), 3);
  EXPECT_EQ(host.boxes[2].title, "Remove DB");
  EXPECT_EQ(host.boxes[2].style, box::Critical);
  EXPECT_TRUE(host.boxes[2].text.contains(u"b.nsf"_s)) << host.boxes[2].text.toStdString();
  EXPECT_FALSE(host.boxes[2].text.contains(u"line"_s));
  EXPECT_TRUE(files().contains(u"b.nsf"_s));
  EXPECT_FALSE(files().contains(u"a.nsf"_s));
  EXPECT_EQ(marked(), QStringList({u"b.nsf"_s, u"c.nsf"_s, u"d.nsf"_s, u"e.nsf"_s}));
  EXPECT_EQ(rows(), names());
  EXPECT_EQ(host.sounds, QStringList());
}

TEST_F(RemovingDatabases, TheFirstOneThatIsGoneGoesToTheReport) {
  list({u"0gone.nsf"_s, u"a.nsf"_s});
  remove();
  ASSERT_EQ(host.boxes.size(), 1);
  EXPECT_TRUE(host.boxes[0].text.startsWith(u"Run-time error '"_s));
  EXPECT_TRUE(files().contains(u"a.nsf"_s));
}

// Failures are passed over by then; the one before must not be asked for, or removed, in its place.
TEST_F(RemovingDatabases, ALaterOneThatIsGoneIsToldByItsRemoval) {
  list({u"a.nsf"_s, u"agone.nsf"_s, u"b.nsf"_s});
  remove();
  EXPECT_EQ(host.boxes, Boxes({question(u"a.nsf"_s),
                               {standardErrorText(err::ObjectNotSet), box::Critical, u"Remove DB"_s}}));
  EXPECT_EQ(files(), QStringList({u"b.nsf"_s, u"c.nsf"_s, u"d.nsf"_s, u"e.nsf"_s, u"target.nsf"_s}));
  EXPECT_EQ(marked(), QStringList({u"agone.nsf"_s, u"b.nsf"_s}));
}

// Until the first removal a failure is reported, from then on it is passed over; at most one box tells it,
// and nothing is removed that was not asked for.
TEST_F(RemovingDatabases, EveryFailureIsToldOnceOrPassedOver) {
  const auto run = [&](int n) {
    for (const QString& name : {u"a.nsf"_s, u"b.nsf"_s})
      if (!files().contains(name)) workspace->createDatabase(kHub, name, {});
    list({u"a.nsf"_s, u"b.nsf"_s});
    host.boxes.clear();
    return reachesFault(notes(), n, [&] { remove(); });
  };
  const int runs = withEveryFault(run, [&](int n) {
    SCOPED_TRACE(n);
    int asked = 0, told = 0;
    for (const ShownBox& shown : host.boxes) ++(shown.style == box::OkCancel ? asked : told);
    EXPECT_LE(told, 1);
    const qsizetype removed = 2 - files().filter(QRegularExpression(u"^[ab]\\.nsf$"_s)).size();
    EXPECT_LE(removed, asked);
  });
  EXPECT_GT(runs, 6);
}

TEST_F(RemovingDatabases, TakesTheDatabaseAwayFromTheClient) {
  workspace->client().showDatabase({kHub, u"a.nsf"_s});
  list({u"a.nsf"_s});
  remove();
  EXPECT_EQ(workspace->client().database(), nullptr);
}

TEST_F(RemovingDatabases, WithoutMarksPlaysTheSoundAndListsTheServer) {
  for (int row = 0; row < 5; ++row) window.lstDBNames->setSelected(row, false);
  provideSound();
  remove();
  EXPECT_EQ(host.boxes, Boxes());
  EXPECT_EQ(rows(), files());
  EXPECT_EQ(host.sounds.size(), 1);
}

}  // namespace
}  // namespace lens

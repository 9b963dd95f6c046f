// The replication of marked databases, which no control is wired to.
#include "bulk/operations_fixture.h"

namespace lens {
namespace {

class Replicating : public OperationsTest {
 protected:
  void SetUp() override {
    memo(u"one"_s);
    chooseSource();
    window.lstDesignServer->setText(kHub);
  }
  void replicate() { replication.replicateDatabases(); }
  std::shared_ptr<Database> onHub(const QString& path = u"source.nsf"_s) {
    return workspace->database(kHub, path);
  }
  static const QString& title() {
    static const QString text = u"Replicate Database"_s;
    return text;
  }
  QByteArray content(const QString& path) {
    QFile file(path);
    return file.open(QIODevice::ReadOnly) ? file.readAll() : QByteArray();
  }
};

TEST_F(Replicating, MakesAReplicaUnderTheSamePathWhereThereIsNone) {
  provideSound();
  replicate();
  EXPECT_EQ(host.boxes, Boxes());
  EXPECT_EQ(subjects(*onHub()), QStringList(u"one"_s));
  EXPECT_EQ(documents(*onHub()).first().header.unid, documents(*source).first().header.unid);
  EXPECT_EQ(onHub()->info().replicaId, source->info().replicaId);
  EXPECT_FALSE(window.lstDBNames->selected(0));
  EXPECT_EQ(host.sounds.size(), 1);
  EXPECT_EQ(globals.gDbPath, "source.nsf");
}

TEST_F(Replicating, FindsAReplicaUnderAnotherPathAndMakesNoNewOne) {
  replicate();
  ASSERT_TRUE(QFile::rename(onHub()->path(), QFileInfo(onHub()->path()).path() + u"/moved.nsf"_s));
  memo(u"two"_s);
  window.lstDBNames->setSelected(0, true);
  notes().log.clear();
  replicate();
  EXPECT_EQ(host.boxes, Boxes());
  EXPECT_EQ(callsOf(u"CREATEREPLICA"_s), 0);
  EXPECT_EQ(subjects(*onHub(u"moved.nsf"_s)), QStringList({u"one"_s, u"two"_s}));
  EXPECT_EQ(workspace->databaseFiles(kHub), QStringList({u"moved.nsf"_s, u"target.nsf"_s}));
}

TEST_F(Replicating, BringsChangesOfBothSidesTogether) {
  replicate();
  Note there = memoNote(u"there"_s);
  onHub()->notes().save(there);
  memo(u"here"_s);
  window.lstDBNames->setSelected(0, true);
  replicate();
  EXPECT_EQ(host.boxes, Boxes());
  QStringList a = subjects(*source), b = subjects(*onHub());
  a.sort();
  b.sort();
  EXPECT_EQ(a, QStringList({u"here"_s, u"one"_s, u"there"_s}));
  EXPECT_EQ(a, b);
}

TEST_F(Replicating, FromAServerToThisMachine) {
  Note there = memoNote(u"there"_s);
  target->notes().save(there);
  chooseSource(u"target.nsf"_s, kHub);
  window.lstDesignServer->setText(u"Local"_s);
  replicate();
  EXPECT_EQ(host.boxes, Boxes());
  EXPECT_EQ(subjects(*workspace->database({}, u"target.nsf"_s)), QStringList(u"there"_s));
}

TEST_F(Replicating, WithoutATargetServerAsksForOneAndPutsLocal) {
  window.lstDesignServer->setText(QString());
  replicate();
  EXPECT_EQ(host.boxes, Boxes({{u"Please select target Server"_s, box::Plain, u"Replicate database!"_s}}));
  EXPECT_EQ(window.lstDesignServer->text(), "Local");
  EXPECT_EQ(notes().log, QStringList());
  EXPECT_TRUE(window.lstDBNames->selected(0));
}

TEST_F(Replicating, WithItselfOnlyFails) {
  window.lstDesignServer->setText(u"Local"_s);
  provideSound();
  replicate();
  ASSERT_EQ(host.boxes.size(), 1);
  EXPECT_EQ(host.boxes[0].title, title());
  EXPECT_EQ(host.boxes[0].style, box::Critical);
  EXPECT_TRUE(host.boxes[0].text.contains(u"there is no other replica"_s));
  EXPECT_FALSE(host.boxes[0].text.contains(u" in line"_s));
  EXPECT_TRUE(window.lstDBNames->selected(0));
  EXPECT_EQ(host.sounds, QStringList());
}

TEST_F(Replicating, NeverOverwritesAnotherFileAtThePath) {
  const auto other = workspace->createDatabase(kHub, u"source.nsf"_s, infoOf(u"C125000000000009"_s));
  Note note = memoNote(u"other"_s);
  other->notes().save(note);
  replicate();
  ASSERT_EQ(host.boxes.size(), 1);
  EXPECT_EQ(host.boxes[0].title, title());
  EXPECT_EQ(subjects(*onHub()), QStringList(u"other"_s));
}

TEST_F(Replicating, AReplicaThatCannotBeMadeGoesUntoldButTheReplicationFails) {
  notes().failing.insert(u"CREATEREPLICA"_s, RuntimeError(75));
  replicate();
  ASSERT_EQ(host.boxes.size(), 1);
  EXPECT_EQ(host.boxes[0].title, title());
  EXPECT_TRUE(host.boxes[0].text.contains(u"there is no other replica"_s));
  EXPECT_EQ(callsOf(u"REPLICATE"_s), 1);
}

TEST_F(Replicating, KeepsTheMarksFromTheFailedRowOn) {
  workspace->createDatabase({}, u"z.nsf"_s, infoOf(u"C125000000000003"_s));
  window.lstDBNames->addItem(u"t_gone.nsf"_s);
  window.lstDBNames->addItem(u"z.nsf"_s);
  for (int row = 0; row < 3; ++row) window.lstDBNames->setSelected(row, true);
  replicate();
  ASSERT_EQ(host.boxes.size(), 1);
  EXPECT_TRUE(host.boxes[0].text.contains(u"t_gone.nsf"_s));
  EXPECT_FALSE(window.lstDBNames->selected(0));
  EXPECT_TRUE(window.lstDBNames->selected(1));
  EXPECT_TRUE(window.lstDBNames->selected(2));
}

TEST_F(Replicating, AServerThatDoesNotAnswerIsToldByTheReplication) {
  window.lstDesignServer->setText(u"CN=Nobody/O=Acme"_s);
  replicate();
  ASSERT_EQ(host.boxes.size(), 1);
  EXPECT_EQ(host.boxes[0].title, title());
  EXPECT_EQ(callsOf(u"CREATEREPLICA"_s), 1);
  EXPECT_EQ(callsOf(u"REPLICATE"_s), 1);
}

// The replica of the row before must not count for a row whose own cannot be looked for.
TEST_F(Replicating, ASearchThatFailsMakesAReplicaOfItsOwnRow) {
  workspace->createDatabase({}, u"z.nsf"_s, infoOf(u"C125000000000003"_s));
  window.lstDBNames->addItem(u"z.nsf"_s);
  window.lstDBNames->setSelected(1, true);
  int searches = 0;
  notes().onCall = [&](const QString& name) {
    if (name == u"OpenDatabaseByReplicaID" && ++searches == 2) throw RuntimeError(70);
  };
  replicate();
  notes().onCall = nullptr;
  EXPECT_EQ(host.boxes, Boxes());
  EXPECT_EQ(workspace->databaseFiles(kHub), QStringList({u"source.nsf"_s, u"target.nsf"_s, u"z.nsf"_s}));
}

TEST_F(Replicating, EveryFailureEndsInOneBoxOrIsMadeGoodByTheReplication) {
  const auto run = [&](int n) {
    if (QFile::exists(workspace->absolutePath({kHub, u"source.nsf"_s})))
      workspace->removeDatabase({kHub, u"source.nsf"_s});
    host.boxes.clear();
    window.lstDBNames->setSelected(0, true);
    return reachesFault(notes(), n, [&] { replicate(); });
  };
  const int runs = withEveryFault(run, [&](int) {
    EXPECT_EQ(window.lstDBNames->selected(0), !host.boxes.isEmpty());
    for (const ShownBox& shown : host.boxes) {
      EXPECT_EQ(shown.title, title());
      EXPECT_EQ(shown.style, box::Critical);
    }
    EXPECT_LE(host.boxes.size(), 1);
    EXPECT_EQ(subjects(*source), QStringList(u"one"_s));
  });
  EXPECT_EQ(runs, 7);
  EXPECT_EQ(host.boxes, Boxes());
}

}  // namespace
}  // namespace lens

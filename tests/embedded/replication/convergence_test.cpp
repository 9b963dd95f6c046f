// Whatever people do and whoever meets whom: in the end all replicas are alike and no edit is lost.
#include <QRandomGenerator>
#include <QSet>

#include "replica_fixture.h"

namespace lens {
namespace {
using namespace Qt::Literals::StringLiterals;

class Convergence : public Replicas {
 protected:
  void build(int count, quint32 seed) {
    random = QRandomGenerator(seed);
    for (int i = 0; i < count; ++i) replicas.push_back(make(u"r%1_%2"_s.arg(seed).arg(i)));
    for (int i = 0; i < 8; ++i) unids.push_back(add(*any(), nextText()));
  }
  std::shared_ptr<Database> any() { return replicas[random.bounded(int(replicas.size()))]; }
  QString nextText() { return u"text %1"_s.arg(++texts); }

  // A live document of the replica, conflict documents included.
  bool pick(const Database& database, Note& note) {
    const QVector<NoteSummary> all = database.notes().list(noteclass::Document);
    return !all.isEmpty() && database.notes().read(all[random.bounded(int(all.size()))].id, note);
  }

  // An edit starts from what the person sees: the texts that went before live on in it.
  void act() {
    Database& database = *any();
    Note note;
    const int what = random.bounded(10);
    if (what == 0) {
      unids.push_back(add(database, nextText()));
      return;
    }
    if (!pick(database, note)) return;
    const QString old = note.text(u"Subject");
    if (what == 1) {
      database.notes().remove(note.header.id);
      deleted.insert(old);
      return;
    }
    const QString fresh = nextText();
    before.insert(fresh, old);
    note.find(u"Subject")->value = textValue(fresh);
    database.notes().save(note);
    if (what == 2) attach(database, note.header.unid, fresh.toUtf8());
  }

  void meet() {
    const int first = random.bounded(int(replicas.size()));
    const int other = (first + 1 + random.bounded(int(replicas.size()) - 1)) % int(replicas.size());
    const ReplicationReport report = replicate(*replicas[first], *replicas[other]);
    EXPECT_TRUE(report.leftOut.isEmpty());
  }

  // A ring, round after round, until nothing moves.
  int roundsUntilQuiet() {
    for (int round = 1; round <= 20; ++round) {
      int moved = 0;
      for (qsizetype i = 0; i < replicas.size(); ++i) {
        const ReplicationReport report = replicate(*replicas[i], *replicas[(i + 1) % replicas.size()]);
        moved += report.added + report.updated + report.deleted + report.conflicts;
      }
      if (moved == 0) return round;
    }
    return 999;
  }

  // Texts that are to be seen in the end, with all that they replaced by their author's own hand.
  QSet<QString> survivors() const {
    QSet<QString> all;
    replicas[0]->notes().scan(noteclass::Document, [&](const Note& note) {
      for (QString text = note.text(u"Subject"); !text.isEmpty(); text = before.value(text)) all.insert(text);
      return true;
    });
    for (const QString& last : deleted)
      for (QString text = last; !text.isEmpty(); text = before.value(text)) all.insert(text);
    return all;
  }

  QRandomGenerator random;
  QVector<std::shared_ptr<Database>> replicas;
  QVector<Unid> unids;
  QHash<QString, QString> before;
  QSet<QString> deleted;
  int texts = 0;
};

TEST_F(Convergence, AllReplicasBecomeAlikeAndNoEditIsLost) {
  for (quint32 seed = 1; seed <= 6; ++seed) {
    SCOPED_TRACE(seed);
    replicas.clear();
    unids.clear();
    before.clear();
    deleted.clear();
    texts = 0;
    build(3 + int(seed % 2), seed);
    for (int step = 0; step < 120; ++step) random.bounded(4) == 0 ? meet() : act();
    EXPECT_LE(roundsUntilQuiet(), 4);
    for (const auto& replica : replicas) {
      EXPECT_EQ(differenceOf(*replica, *replicas[0]), "");
      EXPECT_EQ(integrityOf(*replica), QByteArray("ok"));
    }
    const QSet<QString> seen = survivors();
    for (int i = 1; i <= texts; ++i) EXPECT_TRUE(seen.contains(u"text %1"_s.arg(i))) << i;
  }
}

TEST_F(Convergence, NoConflictDocumentIsThereTwice) {
  for (quint32 seed = 100; seed <= 102; ++seed) {
    replicas.clear();
    build(4, seed);
    roundsUntilQuiet();
    const Unid unid = unids.last();
    for (const auto& replica : replicas) edit(*replica, unid, nextText());
    for (int i = 0; i < 12; ++i) meet();
    roundsUntilQuiet();
    // Four versions: one stays, three are kept.
    for (const auto& replica : replicas) EXPECT_EQ(conflictsIn(*replica).size(), 3) << seed;
  }
}

}  // namespace
}  // namespace lens

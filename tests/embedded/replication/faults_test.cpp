// Files that can only be read, full disks, replicas that cannot be made.
#include <QDir>

#include "replica_fixture.h"

namespace lens {
namespace {
using namespace Qt::Literals::StringLiterals;

class Faults : public Pair {
 protected:
  void protect(const QString& name) { ASSERT_TRUE(QFile::setPermissions(path(name), QFile::ReadOwner)); }
  static void limitPages(const Database& database, const QByteArray& sql) {
    ASSERT_EQ(sqlite3_exec(database.handle(), sql.constData(), nullptr, nullptr, nullptr), SQLITE_OK);
  }
  static QByteArray bytesOf(const QString& path) {
    QFile file(path);
    return file.open(QIODevice::ReadOnly) ? file.readAll() : QByteArray();
  }
  QStringList files() const { return QDir(directory.path()).entryList(QDir::Files | QDir::Hidden); }
};

TEST_F(Faults, AReadOnlySideGivesWhatItHas) {
  edit(*b, unid, u"by b"_s);
  b.reset();
  protect(u"b"_s);
  b = Database::open(path(u"b"_s));
  EXPECT_EQ(replicate(*a, *b).updated, 1);
  EXPECT_EQ(subject(*a, unid), u"by b"_s);
}

TEST_F(Faults, AReadOnlySideThatLacksSomethingIsNamedAndTheOtherGetsItsPart) {
  const Unid fromB = add(*b, u"from b"_s), fromA = add(*a, u"from a"_s);
  b.reset();
  protect(u"b"_s);
  const QByteArray before = bytesOf(path(u"b"_s));
  b = Database::open(path(u"b"_s));
  QString why;
  EXPECT_EQ(errorNumber([&] { replicate(*a, *b); }, &why), enginefault::NotSaved);
  EXPECT_TRUE(why.contains(path(u"b"_s)));
  EXPECT_EQ(subject(*a, fromB), u"from b"_s);
  EXPECT_EQ(subject(*b, fromA), u"(none)"_s);
  b.reset();
  EXPECT_EQ(bytesOf(path(u"b"_s)), before);
}

TEST_F(Faults, AConflictWithAReadOnlySideLosesNothing) {
  edit(*a, unid, u"by a"_s);
  edit(*a, unid, u"by a"_s);
  edit(*b, unid, u"by b"_s);
  b.reset();
  protect(u"b"_s);
  b = Database::open(path(u"b"_s));
  EXPECT_EQ(errorNumber([&] { replicate(*a, *b); }), enginefault::NotSaved);
  ASSERT_EQ(conflictsIn(*a).size(), 1);
  EXPECT_EQ(conflictsIn(*a)[0].text(u"Subject"), u"by b"_s);
  b.reset();
  ASSERT_TRUE(QFile::setPermissions(path(u"b"_s), QFile::ReadOwner | QFile::WriteOwner));
  b = Database::open(path(u"b"_s));
  replicate(*a, *b);
  EXPECT_EQ(conflictsIn(*b).size(), 1);
  expectAlike();
}

TEST_F(Faults, AReadOnlySideWhoseVersionStaysIsNamedToo) {
  edit(*a, unid, u"by a"_s);
  edit(*b, unid, u"by b"_s);
  edit(*b, unid, u"by b again"_s);
  b.reset();
  protect(u"b"_s);
  b = Database::open(path(u"b"_s));
  QString why;
  // The conflict document has no place there.
  EXPECT_EQ(errorNumber([&] { replicate(*a, *b); }, &why), enginefault::NotSaved);
  EXPECT_TRUE(why.contains(path(u"b"_s))) << why.toStdString();
  EXPECT_EQ(subject(*a, unid), u"by b again"_s);
  EXPECT_EQ(conflictsIn(*a).size(), 1);
}

TEST_F(Faults, AReplicaTellsWhatCouldNotGoAlong) {
  const Unid damaged = add(*a, u"damaged"_s);
  Note note;
  ASSERT_TRUE(a->notes().read(damaged, note));
  limitPages(*a,
             "UPDATE note SET items = x'00112233' WHERE id = " + QByteArray::number(note.header.id.value()));
  EXPECT_EQ(createReplica(*a, path(u"new"_s)).leftOut.size(), 1);
  EXPECT_EQ(subject(*Database::open(path(u"new"_s)), unid), u"first"_s);
}

TEST_F(Faults, AFullDiskEndsTheRunAndTheNextOneGoesOn) {
  for (int i = 0; i < 60; ++i)
    attach(*a, add(*a, u"note %1"_s.arg(i)), QByteArray(20000, char('a' + i % 20)));
  limitPages(*b, "PRAGMA max_page_count = 60");
  QString why;
  EXPECT_EQ(errorNumber([&] { replicate(*a, *b); }, &why), enginefault::NotSaved);
  EXPECT_TRUE(why.contains(path(u"b"_s))) << why.toStdString();
  EXPECT_EQ(integrityOf(*b), QByteArray("ok"));
  b->notes().scan(0x7FFF, [&](const Note& note) {
    EXPECT_EQ(told(*b, note), stateOf(*a).value(note.header.unid.text()));
    return true;
  });
  limitPages(*b, "PRAGMA max_page_count = 1000000");
  replicate(*a, *b);
  expectAlike();
}

TEST_F(Faults, AReplicaIsWhole) {
  attach(*a, unid, QByteArray(300000, 'x'));
  remove(*a, add(*a, u"gone"_s));
  add(*a, u"By date"_s, noteclass::View);
  createReplica(*a, path(u"new"_s));
  EXPECT_EQ(files().filter(u"new"_s), QStringList(u"new.nsf"_s));
  const auto made = Database::open(path(u"new"_s));
  EXPECT_EQ(differenceOf(*made, *a), "");
  EXPECT_EQ(made->info().replicaId, a->info().replicaId);
  EXPECT_EQ(made->info().title, a->info().title);
  edit(*made, unid, u"there"_s);
  EXPECT_EQ(replicate(*a, *made).conflicts, 0);
}

TEST_F(Faults, AFileInThePlaceOfTheReplicaStaysAsItIs) {
  QFile text(path(u"text"_s));
  ASSERT_TRUE(text.open(QIODevice::WriteOnly));
  text.write("text");
  text.close();
  EXPECT_EQ(errorNumber([&] { createReplica(*a, path(u"text"_s)); }), 58);
  EXPECT_EQ(bytesOf(path(u"text"_s)), "text");
  const QStringList before = files();
  EXPECT_NE(errorNumber([&] { createReplica(*a, path(u"no/such"_s)); }), 0);
  EXPECT_EQ(files(), before);
}

}  // namespace
}  // namespace lens

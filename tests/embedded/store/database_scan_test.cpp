// Walks over packed notes say the same as walks over whole ones.
#include "embedded/format/packed_note.h"
#include "embedded/support/store_test.h"

namespace lens {
namespace {

class DatabaseScan : public StoreTest {
 protected:
  QVector<NoteId> ids(quint16 mask) {
    QVector<NoteId> found;
    database->notes().scanPacked(mask, [&](const PackedNote& note) {
      found.push_back(note.header.id);
      return true;
    });
    return found;
  }
  QVector<NoteId> idsOfWholeNotes(quint16 mask) {
    QVector<NoteId> found;
    database->notes().scan(mask, [&](const Note& note) {
      found.push_back(note.header.id);
      return true;
    });
    return found;
  }
  void fill(int count) {
    Database::Transaction transaction(*database);
    for (int i = 0; i < count; ++i) {
      const quint16 noteClass = i % 7 == 3   ? noteclass::Form
                                : i % 5 == 1 ? noteclass::Document | noteclass::Private
                                             : noteclass::Document;
      const NoteId id = saved(QString::number(i), noteClass);
      if (i % 11 == 0) database->notes().remove(id, i % 2);
    }
    transaction.commit();
  }
};

TEST_F(DatabaseScan, ShowsEachLiveNoteOfTheMaskInOrder) {
  fill(1000);
  using namespace noteclass;
  for (quint16 mask : {Document, Form, View, quint16(Document | Form), quint16(Document | Private)}) {
    EXPECT_EQ(ids(mask), idsOfWholeNotes(mask)) << mask;
    EXPECT_EQ(ids(mask).isEmpty(), mask == View);
  }
}

TEST_F(DatabaseScan, ShowsTheHeaderAndAllItems) {
  Note answer = noteWith(QStringLiteral("answer"));
  answer.header.parent = Unid::create();
  answer.add(QStringLiteral("Body"), 0, rawValue(itemtype::RichText, QByteArray(300000, 'y')));
  database->notes().save(answer);
  int shown = 0;
  database->notes().scanPacked(noteclass::Document, [&](const PackedNote& packed) {
    ++shown;
    Note note;
    EXPECT_TRUE(database->notes().read(packed.header.id, note));
    const Note unpacked = packed.unpack();
    EXPECT_EQ(unpacked.header.unid, note.header.unid);
    EXPECT_EQ(unpacked.header.parent, answer.header.parent);
    EXPECT_EQ(unpacked.header.noteClass, note.header.noteClass);
    EXPECT_EQ(timeDateHex(unpacked.header.modified), timeDateHex(note.header.modified));
    EXPECT_EQ(packItems(unpacked.items), packItems(note.items));
    return true;
  });
  EXPECT_EQ(shown, 1);
}

TEST_F(DatabaseScan, PassesOverDamagedNotes) {
  const NoteId one = saved(QStringLiteral("1"));
  saved(QStringLiteral("2"));
  saved(QStringLiteral("3"));
  const NoteId four = saved(QStringLiteral("4"));
  damage("UPDATE note SET items = x'544C4931FFFFFFFF' WHERE id = 0x8FA + 4");
  damage("UPDATE note SET unid = x'01' WHERE id = 0x8FA + 8");
  EXPECT_EQ(ids(noteclass::Document), QVector<NoteId>({one, four}));
}

TEST_F(DatabaseScan, GoesOnBehindAPageThatIsNone) {
  QVector<NoteId> whole;
  for (int i = 0; i < 60; ++i) {
    Note note = noteWith(i == 30 ? QStringLiteral("the middle") : QString::number(i));
    note.add(QStringLiteral("Body"), 0, textValue(QString(1000, u'x')));
    database->notes().save(note);
    whole.push_back(note.header.id);
  }
  database.reset();
  // The head of the page that holds a note from the middle; its neighbours are left alone.
  QByteArray content = contentOf(path());
  const qsizetype page = content.indexOf("the middle") / 8192 * 8192;
  ASSERT_GT(page, 0);
  content.replace(page, 200, QByteArray(200, char(0xEE)));
  writeFile(path(), content);
  database = Database::open(path());
  const QVector<NoteId> found = ids(noteclass::Document);
  EXPECT_EQ(found, idsOfWholeNotes(noteclass::Document));
  EXPECT_LT(found.size(), whole.size());
  EXPECT_EQ(found.last(), whole.last());
}

TEST_F(DatabaseScan, EndsWhereRowsHaveNumbersThatAreNoNoteIds) {
  fill(40);
  const QVector<NoteId> before = ids(noteclass::Document);
  for (int i = 0; i < 600; ++i) saved(QStringLiteral("far"));
  const QByteArray move =
      "UPDATE note SET id = id + 4294967296 WHERE id > " + QByteArray::number(before.last().value());
  ASSERT_EQ(sqlite3_exec(database->handle(), move.constData(), nullptr, nullptr, nullptr), SQLITE_OK);
  EXPECT_EQ(ids(noteclass::Document), before);
}

TEST_F(DatabaseScan, EndsWhenTheVisitorHasEnough) {
  fill(100);
  int shown = 0;
  database->notes().scanPacked(noteclass::Document, [&](const PackedNote&) { return ++shown < 40; });
  EXPECT_EQ(shown, 40);
}

TEST_F(DatabaseScan, LetsTheVisitorChangeTheDatabaseAndScanInTurn) {
  fill(300);
  const QVector<NoteId> before = ids(noteclass::Document);
  QVector<NoteId> shown;
  database->notes().scanPacked(noteclass::Document, [&](const PackedNote& packed) {
    shown.push_back(packed.header.id);
    if (shown.size() % 50 == 0) {
      EXPECT_FALSE(ids(noteclass::Document).isEmpty());
      EXPECT_TRUE(database->notes().remove(packed.header.id));
      Note note = packed.unpack();
      note.header = {};
      if (shown.size() == 100) database->notes().save(note);
    }
    return true;
  });
  EXPECT_EQ(shown.first(shown.size() - 1), before) << "and the new one at the end";
}

TEST_F(DatabaseScan, WhatTheVisitorRaisesComesOut) {
  fill(10);
  const auto raise = [](const PackedNote&) -> bool {
    throw RuntimeError(enginefault::Damaged, QStringLiteral("told by the visitor"));
  };
  EXPECT_EQ(errorNumber([&] { database->notes().scanPacked(noteclass::Document, raise); }),
            enginefault::Damaged);
}

TEST_F(DatabaseScan, ProfilesAreRecognisedWithoutUnpacking) {
  Note profile = noteWith(QStringLiteral("x"));
  profile.add(QStringLiteral("$NAME"), 0, textListValue({QStringLiteral("$Profile_007calprof_")}));
  Note named = noteWith(QStringLiteral("y"));
  named.add(QStringLiteral("$Name"), itemflag::Summary, numberValue(5));
  database->notes().save(profile);
  database->notes().save(named);
  saved(QStringLiteral("z"));
  QVector<bool> seen;
  database->notes().scanPacked(noteclass::Document, [&](const PackedNote& packed) {
    EXPECT_EQ(isProfile(packed), isProfile(packed.unpack()));
    seen.push_back(isProfile(packed));
    return true;
  });
  EXPECT_EQ(seen, QVector<bool>({true, false, false}));
}

}  // namespace
}  // namespace lens

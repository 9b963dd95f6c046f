#include <QBuffer>
#include <QCryptographicHash>

#include "embedded/checks/database_comparison.h"
#include "embedded/store/database_copy.h"
#include "embedded/support/store_test.h"

namespace lens {
namespace {

using namespace Qt::StringLiterals;

// Two databases of the same notes; what a test changes in the second one is what they differ in.
class Comparing : public StoreTest {
 protected:
  Comparing() {
    for (const char16_t* subject : {u"First", u"Second", u"Third"}) notes.push_back(document(subject));
  }
  Note document(const char16_t* subject) {
    Note note = noteWith(QString::fromUtf16(subject));
    note.add(u"Size"_s, itemflag::Summary, numberValue(1));
    note.add(u"Line"_s, 0, textValue(u"one"));
    note.add(u"Line"_s, 0, textValue(u"two"));
    attach(*database, note, "the bytes");
    database->notes().save(note);
    return note;
  }
  static void attach(Database& target, Note& note, const QByteArray& bytes) {
    QByteArray content = bytes;
    QBuffer source(&content);
    source.open(QIODevice::ReadOnly);
    const StoredObject object = target.objects().add(source);
    FileObject file;
    file.objectId = object.id;
    file.name = u"letter.txt"_s;
    file.size = quint32(object.size);
    note.add(u"$FILE"_s, itemflag::Summary, fileObjectValue(file));
  }
  // The second database, as the first stands now.
  void makeCopy() {
    copyDatabase(*database, path(u"copy.nsf"_s));
    other = Database::open(path(u"copy.nsf"_s));
  }
  void change(const std::function<void(Note&)>& how) {
    Note note;
    ASSERT_TRUE(other->notes().read(notes[1].header.unid, note));
    how(note);
    other->notes().save(note);
  }
  static QString wordOf(Difference kind) {
    return kind == Difference::OnlyInFirst ? u"-"_s : kind == Difference::OnlyInSecond ? u"+"_s : u"~"_s;
  }
  // "~Second(~Size,+New)" and the like.
  QStringList differences() const {
    QStringList found;
    compareDatabases(*database, *other, [&](const NoteDifference& note) {
      QStringList items;
      if (note.otherClass) items += u"class"_s;
      if (note.otherParent) items += u"parent"_s;
      for (const ItemDifference& item : note.items) items += wordOf(item.kind) + item.name;
      found +=
          wordOf(note.kind) + note.title + (items.isEmpty() ? QString() : u'(' + items.join(u',') + u')');
    });
    return found;
  }

  QVector<Note> notes;
  std::shared_ptr<Database> other;
};

TEST_F(Comparing, FindsNothingBetweenADatabaseAndItsCopy) {
  makeCopy();
  EXPECT_EQ(differences(), QStringList());
}

// Notes written anew have other note IDs, times and numbers of objects.
TEST_F(Comparing, NumbersOfNotesAndObjectsMakeNoDifference) {
  other = Database::create(path(u"copy.nsf"_s), {});
  Note between = noteWith(u"In between"_s);
  other->notes().save(between);
  for (Note note : std::as_const(notes)) {
    note.header.id = {};
    note.items.removeLast();
    attach(*other, note, "other bytes, gone again");
    note.items.removeLast();
    attach(*other, note, "the bytes");
    other->notes().saveAsGiven(note);
  }
  EXPECT_EQ(differences(), QStringList{u"+In between"_s});
}

TEST_F(Comparing, FindsNotesOfEitherSide) {
  makeCopy();
  ASSERT_TRUE(other->notes().remove(notes[0].header.id));
  Note added = noteWith(u"Fourth"_s);
  other->notes().save(added);
  EXPECT_EQ(differences(), QStringList({u"-First"_s, u"+Fourth"_s}));
}

TEST_F(Comparing, FindsValuesFlagsAndTypes) {
  makeCopy();
  change([](Note& note) {
    note.find(u"Size")->value = numberValue(2);
    note.find(u"Subject")->flags |= itemflag::Sign;
    note.items[2].value = rawValue(itemtype::RichText, "one");
  });
  EXPECT_EQ(differences(), QStringList{u"~Second(~Subject,~Size,~Line)"_s});
}

TEST_F(Comparing, ItemsOfOneNameBelongTogetherByTheirPlace) {
  makeCopy();
  change([](Note& note) {
    note.items[3].value = textValue(u"too");
    note.add(u"LINE"_s, 0, textValue(u"three"));
    note.items.removeAt(1);
    note.add(u"New"_s, 0, textValue(u""));
  });
  EXPECT_EQ(differences(), QStringList{u"~Second(-Size,~Line,+LINE,+New)"_s});
}

TEST_F(Comparing, FindsOtherBytesOfAnAttachment) {
  makeCopy();
  change([&](Note& note) {
    note.items.removeLast();
    attach(*other, note, "the Bytes");
  });
  EXPECT_EQ(differences(), QStringList{u"~Second(~$FILE)"_s});
}

// Files of different age keep checksums of another kind.
TEST_F(Comparing, AnotherKindOfChecksumMakesNoDifference) {
  makeCopy();
  const QByteArray sha = QCryptographicHash::hash("the bytes", QCryptographicHash::Sha256).toHex();
  const QByteArray statement = "UPDATE object SET checksum = x'" + sha + "'";
  ASSERT_EQ(sqlite3_exec(other->handle(), statement.constData(), nullptr, nullptr, nullptr), 0);
  EXPECT_EQ(differences(), QStringList());
  change([&](Note& note) {
    note.items.removeLast();
    attach(*other, note, "the Bytes");
  });
  EXPECT_EQ(differences(), QStringList{u"~Second(~$FILE)"_s});
}

TEST_F(Comparing, FindsAnotherClassAndParent) {
  makeCopy();
  change([&](Note& note) {
    note.header.noteClass = noteclass::Form;
    note.header.parent = notes[0].header.unid;
  });
  EXPECT_EQ(differences(), QStringList{u"~Second(class,parent)"_s});
}

TEST_F(Comparing, ADamagedNoteOfEitherSideIsRaisedAndNotPassedOver) {
  makeCopy();
  ASSERT_EQ(sqlite3_exec(other->handle(), "UPDATE note SET items = x'00' WHERE id = 2302", nullptr, nullptr,
                         nullptr),
            0);
  QString text;
  EXPECT_EQ(errorNumber([&] { differences(); }, &text), enginefault::Damaged);
  EXPECT_TRUE(text.contains(u"copy.nsf"_s)) << text.toStdString();
  database.swap(other);
  EXPECT_EQ(errorNumber([&] { differences(); }), enginefault::Damaged);
}

TEST_F(Comparing, CanBeEnded) {
  makeCopy();
  int asked = 0;
  EXPECT_FALSE(compareDatabases(
      *database, *other, [](const NoteDifference&) {}, [&](qint64, qint64) { return ++asked < 5; }));
  EXPECT_EQ(asked, 5);
}

}  // namespace
}  // namespace lens

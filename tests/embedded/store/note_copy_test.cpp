#include "embedded/store/note_copy.h"

#include "embedded/support/store_test.h"

using namespace lens;
using namespace Qt::Literals::StringLiterals;

namespace {

class NoteCopy : public StoreTest {
 protected:
  NoteCopy() { target = Database::create(path(u"target.nsf"_s), {}); }

  quint32 objectOf(const QByteArray& bytes, Database& store) {
    const quint32 id = store.objects().begin();
    store.objects().append(id, bytes);
    return store.objects().finish(id).id;
  }
  static QByteArray fileValue(const QString& name, quint32 object, qsizetype size) {
    FileObject file;
    file.name = name;
    file.objectId = object;
    file.size = quint32(size);
    return fileObjectValue(file);
  }
  // Of an attachment, or of an object of any other kind.
  QByteArray bytesOf(const Database& store, const Item& item) const {
    store.objects().extract(objectIdOf(item.data()), path(u"out.bin"_s));
    return contentOf(path(u"out.bin"_s));
  }
  int count(Database& store, const char* sql) {
    sqlite3_stmt* statement = nullptr;
    EXPECT_EQ(sqlite3_prepare_v2(store.handle(), sql, -1, &statement, nullptr), SQLITE_OK);
    EXPECT_EQ(sqlite3_step(statement), SQLITE_ROW);
    const int number = sqlite3_column_int(statement, 0);
    sqlite3_finalize(statement);
    return number;
  }
  bool targetIsEmpty() {
    return target->notes().noteCount(0x7FFF) == 0 && count(*target, "SELECT count(*) FROM object") == 0 &&
           count(*target, "SELECT count(*) FROM object_chunk") == 0;
  }

  std::shared_ptr<Database> target;
};

}  // namespace

TEST_F(NoteCopy, KeepsClassParentItemsAndTheirOrder) {
  Note note;
  note.header.noteClass = noteclass::Form | noteclass::Private;
  note.header.parent = Unid::create();
  note.add(u"B"_s, itemflag::Protected, textValue(u"x"));
  note.add(u"A"_s, itemflag::Summary, numberValue(1));
  note.add(u"b"_s, 0, rawValue(itemtype::UserData, "??"));
  database->notes().save(note);
  const Note copy = copyNote(note, *database, *target);
  Note stored;
  ASSERT_TRUE(target->notes().read(copy.header.id, stored));
  EXPECT_NE(stored.header.unid, note.header.unid);
  EXPECT_EQ(stored.header.noteClass, note.header.noteClass);
  EXPECT_EQ(stored.header.parent, note.header.parent);
  ASSERT_EQ(stored.items.size(), 3);
  for (int i = 0; i < 3; ++i) {
    EXPECT_EQ(stored.items[i].name, note.items[i].name);
    EXPECT_EQ(stored.items[i].flags, note.items[i].flags);
    EXPECT_EQ(stored.items[i].value, note.items[i].value);
  }
}

TEST_F(NoteCopy, TakesObjectsAlongUnderNumbersOfTheTarget) {
  objectOf("another one first", *target);
  const QByteArray large(700'000, 'L');
  Note note;
  const quint32 object = objectOf(large, *database);
  note.add(u"$FILE"_s, 0, fileValue(u"large.bin"_s, object, large.size()));
  note.add(u"$FILE"_s, 0, fileValue(u"again.bin"_s, object, large.size()));
  QByteArray runData;
  appendU16(runData, 8);
  appendU32(runData, objectOf("run data", *database));
  note.add(u"$AssistRunInfo"_s, 0, rawValue(itemtype::Object, runData));
  database->notes().save(note);
  const Note copy = copyNote(note, *database, *target);
  EXPECT_EQ(bytesOf(*target, copy.items[0]), large);
  EXPECT_EQ(bytesOf(*target, copy.items[1]), large);
  // One object for both, one for the run data, one that was there.
  EXPECT_EQ(count(*target, "SELECT count(*) FROM object"), 3);
  EXPECT_NE(copy.items[2].value, note.items[2].value);
}

TEST_F(NoteCopy, TakesObjectsOfAnyKindAlongAndLeavesNumbersThatMeanNone) {
  objectOf("another one first", *target);
  const auto ofKind = [](quint16 kind, quint32 number) {
    QByteArray value;
    appendU16(value, kind);
    appendU32(value, number);
    return rawValue(itemtype::Object, value);
  };
  Note note;
  note.add(u"Kept"_s, 0, ofKind(0xFFFF, objectOf("of a kind of its own", *database)));
  note.add(u"None"_s, 0, ofKind(0xFFFF, 77));
  database->notes().save(note);
  const Note copy = copyNote(note, *database, *target);
  EXPECT_EQ(bytesOf(*target, copy.items[0]), "of a kind of its own");
  EXPECT_EQ(copy.items[1].value, note.items[1].value);
}

TEST_F(NoteCopy, WorksWithinOneDatabase) {
  Note note;
  note.add(u"$FILE"_s, 0, fileValue(u"a"_s, objectOf("bytes", *database), 5));
  database->notes().save(note);
  const Note copy = copyNote(note, *database, *database);
  EXPECT_NE(copy.header.id, note.header.id);
  EXPECT_NE(copy.items[0].value, note.items[0].value);
  EXPECT_EQ(bytesOf(*database, copy.items[0]), "bytes");
}

TEST_F(NoteCopy, ADamagedAttachmentLeavesNothingInTheTarget) {
  const QByteArray large(600'000, 'x');
  Note note;
  note.add(u"$FILE"_s, 0, fileValue(u"a"_s, objectOf("good", *database), 4));
  note.add(u"$FILE"_s, 0, fileValue(u"b"_s, objectOf(large, *database), large.size()));
  database->notes().save(note);
  damage("UPDATE object_chunk SET bytes = zeroblob(length(bytes)) WHERE object = 2 AND number = 1");
  EXPECT_EQ(errorNumber([&] { copyNote(note, *database, *target); }), enginefault::Damaged);
  EXPECT_TRUE(targetIsEmpty());
}

TEST_F(NoteCopy, AMissingAttachmentIsAFailure) {
  Note note;
  note.add(u"$FILE"_s, 0, fileValue(u"a"_s, 77, 4));
  EXPECT_EQ(errorNumber([&] { copyNote(note, *database, *target); }), enginefault::Damaged);
  EXPECT_TRUE(targetIsEmpty());
}

TEST_F(NoteCopy, ASecondNoteOfAClassThatADatabaseHasOnceIsRefused) {
  for (const quint16 noteClass :
       {noteclass::Icon, noteclass::Acl, noteclass::About, noteclass::Design, noteclass::HelpIndex}) {
    Note note = noteWith(u"first"_s, noteClass);
    database->notes().save(note);
    copyNote(note, *database, *target);
    QString reason;
    EXPECT_EQ(errorNumber([&] { copyNote(note, *database, *target); }, &reason), kSecondSingleNote);
    EXPECT_TRUE(reason.contains(target->path())) << reason.toStdString();
    EXPECT_EQ(target->notes().noteCount(noteClass), 1);
  }
}

TEST_F(NoteCopy, AFullTargetKeepsItsOwnFailureAndStaysAsItWas) {
  const QByteArray large(900'000, 'x');
  Note note;
  note.add(u"$FILE"_s, 0, fileValue(u"a"_s, objectOf(large, *database), large.size()));
  database->notes().save(note);
  const int pages = count(*target, "PRAGMA page_count");
  for (int more = 0; more < 115; more += 8) {
    const QByteArray limit = "PRAGMA max_page_count = " + QByteArray::number(pages + more);
    ASSERT_EQ(sqlite3_exec(target->handle(), limit.constData(), nullptr, nullptr, nullptr), SQLITE_OK);
    QString reason;
    const int number = errorNumber([&] { copyNote(note, *database, *target); }, &reason);
    if (number == 0) return;
    EXPECT_EQ(number, enginefault::NotSaved);
    EXPECT_TRUE(reason.contains(target->path())) << reason.toStdString();
    EXPECT_TRUE(targetIsEmpty()) << more;
  }
  FAIL() << "it never fits";
}

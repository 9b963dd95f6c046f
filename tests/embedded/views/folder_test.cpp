// Documents that people put into folders.
#include <sqlite3.h>
#include "embedded/views/folder_documents.h"

#include "embedded/support/view_fixture.h"

namespace lens::testbed {
namespace {

class Folders : public ViewTest {
 protected:
  int raised(const std::function<void()>& action) {
    try {
      action();
    } catch (const RuntimeError& error) {
      EXPECT_TRUE(error.description().contains(path()));
      return error.number();
    }
    return 0;
  }
  NoteId addFolder() { return addView({.columns = {sorted(u"Subject"_s)}, .flags = u"F"_s}, u"Folder"_s); }
};

TEST_F(Folders, HoldWhatWasPutIntoThemInTheirOrder) {
  const NoteId folder = addFolder();
  const NoteId c = add(u"c"_s), a = add(u"a"_s), b = add(u"b"_s);
  EXPECT_EQ(lines(folder), QString());
  addToFolder(*database, folder, {c, a});
  EXPECT_EQ(lines(folder), u"a c"_s);
  addToFolder(*database, folder, {b, a});
  EXPECT_EQ(lines(folder), u"a b c"_s);
  removeFromFolder(*database, folder, {a, NoteId(0x7FFF)});
  EXPECT_EQ(lines(folder), u"b c"_s);
  change(b, u"Subject"_s, textValue(u"z"));
  EXPECT_EQ(lines(folder), u"c z"_s);
  dropViewIndexes(*database);
  EXPECT_EQ(lines(folder), u"c z"_s);
  database.reset();
  database = Database::open(path());
  EXPECT_EQ(lines(folder), u"c z"_s);
}

TEST_F(Folders, LoseADocumentForGoodWithItsDeletion) {
  const NoteId folder = addFolder(), other = addFolder(), a = add(u"a"_s), b = add(u"b"_s);
  addToFolder(*database, folder, {b, a});
  Note kept = read(a);
  EXPECT_EQ(lines(folder), u"a b"_s);
  EXPECT_EQ(lines(other), QString());
  database->notes().remove(a);
  EXPECT_EQ(lines(folder), u"b"_s);
  database->notes().saveAsGiven(kept);
  EXPECT_EQ(lines(folder), u"b"_s);
  addToFolder(*database, folder, {kept.header.id});
  EXPECT_EQ(lines(folder), u"a b"_s);
  database->notes().remove(b, false);
  EXPECT_EQ(lines(folder), u"a"_s);
}

TEST_F(Folders, KeepNothingOfWhatWasDeleted) {
  const auto rows = [&] {
    sqlite3_stmt* count = nullptr;
    sqlite3_prepare_v2(database->handle(), "SELECT count(*) FROM folder_document WHERE document <> x''", -1,
                       &count, nullptr);
    sqlite3_step(count);
    const int number = sqlite3_column_int(count, 0);
    sqlite3_finalize(count);
    return number;
  };
  const NoteId folder = addFolder(), other = addFolder();
  const NoteId a = add(u"a"_s), b = add(u"b"_s), c = add(u"c"_s);
  addToFolder(*database, folder, {a, b, c});
  addToFolder(*database, other, {a, b});
  EXPECT_EQ(rows(), 5);
  {
    const Database::Transaction undone(*database);
    database->notes().remove(a);
    EXPECT_EQ(rows(), 3);
  }
  EXPECT_EQ(rows(), 5);
  database->notes().remove(a);
  database->notes().remove(b, false);
  EXPECT_EQ(rows(), 1);
  database->notes().remove(folder);
  EXPECT_EQ(rows(), 0);
}

TEST_F(Folders, ATableOfAnEarlierKindIsBroughtUpToDate) {
  const NoteId folder = addFolder(), a = add(u"a"_s), b = add(u"b"_s), gone = add(u"gone"_s);
  const QByteArray f = unidOf(folder).bytes().toHex(), x = unidOf(a).bytes().toHex(),
                   y = unidOf(gone).bytes().toHex();
  for (const char* const more :
       {"",
        "ALTER TABLE folder_document ADD COLUMN time INTEGER NOT NULL DEFAULT 0;"
        "CREATE TRIGGER IF NOT EXISTS folder_document_erased AFTER DELETE ON note BEGIN"
        "  DELETE FROM folder_document WHERE folder = old.unid;"
        "  DELETE FROM folder_document WHERE document = old.unid;"
        " END;"}) {
    const QByteArray sql =
        QByteArray(
            "DROP TABLE folder_document;"
            "CREATE TABLE folder_document (folder BLOB NOT NULL, document BLOB NOT NULL, change INTEGER"
            " NOT NULL, present INTEGER NOT NULL, PRIMARY KEY (folder, document)) WITHOUT ROWID;"
            "INSERT INTO folder_document VALUES (x'") +
        f + "', x'" + x + "', 1, 1), (x'" + f + "', x'" + y + "', 2, 1);" + more + "PRAGMA user_version = 3";
    ASSERT_EQ(sqlite3_exec(database->handle(), sql.constData(), nullptr, nullptr, nullptr), SQLITE_OK);
    database.reset();
    database = Database::open(path());
    dropViewIndexes(*database);
    EXPECT_EQ(lines(folder), *more ? u"a"_s : u"a gone"_s);
    database->notes().remove(gone);
    EXPECT_EQ(lines(folder), u"a"_s);
    addToFolder(*database, folder, {b});
    EXPECT_EQ(lines(folder), u"a b"_s);
    removeFromFolder(*database, folder, {a});
    EXPECT_EQ(lines(folder), u"b"_s);
  }
}

TEST_F(Folders, TakeDocumentsThatAreThereAndNothingElse) {
  const NoteId folder = addFolder(), view = addView({}), a = add(u"a"_s);
  EXPECT_EQ(raised([&] { addToFolder(*database, view, {a}); }), kNoFolder);
  EXPECT_EQ(raised([&] { addToFolder(*database, NoteId(0x7FFF), {a}); }), enginefault::UnknownNote);
  EXPECT_EQ(raised([&] { addToFolder(*database, folder, {a, NoteId(0x7FFF)}); }), enginefault::UnknownNote);
  EXPECT_EQ(lines(folder), QString()) << "all or none";
}

}  // namespace
}  // namespace lens::testbed

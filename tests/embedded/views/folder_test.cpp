// Documents that people put into folders.
#include "embedded/views/folder_documents.h"
#include "view_fixture.h"

namespace lens::testing {
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
  quint32 addFolder() { return addView({.columns = {sorted(u"Subject"_s)}, .flags = u"F"_s}, u"Folder"_s); }
};

TEST_F(Folders, HoldWhatWasPutIntoThemInTheirOrder) {
  const quint32 folder = addFolder();
  const quint32 c = add(u"c"_s), a = add(u"a"_s), b = add(u"b"_s);
  EXPECT_EQ(lines(folder), QString());
  addToFolder(*database, folder, {c, a});
  EXPECT_EQ(lines(folder), u"a c"_s);
  addToFolder(*database, folder, {b, a});
  EXPECT_EQ(lines(folder), u"a b c"_s);
  removeFromFolder(*database, folder, {a, 0x7FFF});
  EXPECT_EQ(lines(folder), u"b c"_s);
  change(b, u"Subject"_s, textValue(u"z"));
  EXPECT_EQ(lines(folder), u"c z"_s);
  dropViewIndexes(*database);
  EXPECT_EQ(lines(folder), u"c z"_s);
  database.reset();
  database = Database::open(path());
  EXPECT_EQ(lines(folder), u"c z"_s);
}

TEST_F(Folders, LoseADocumentWithItsDeletionAndHaveItAgainWhenItComesBack) {
  const quint32 folder = addFolder(), other = addFolder(), a = add(u"a"_s);
  addToFolder(*database, folder, {a});
  Note kept = read(a);
  EXPECT_EQ(lines(folder), u"a"_s);
  EXPECT_EQ(lines(other), QString());
  database->remove(a);
  EXPECT_EQ(lines(folder), QString());
  database->saveAsGiven(kept);
  EXPECT_EQ(lines(folder), u"a"_s);
}

TEST_F(Folders, TakeDocumentsThatAreThereAndNothingElse) {
  const quint32 folder = addFolder(), view = addView({}), a = add(u"a"_s);
  EXPECT_EQ(raised([&] { addToFolder(*database, view, {a}); }), kNoFolder);
  EXPECT_EQ(raised([&] { addToFolder(*database, 0x7FFF, {a}); }), enginefault::UnknownNote);
  EXPECT_EQ(raised([&] { addToFolder(*database, folder, {a, 0x7FFF}); }), enginefault::UnknownNote);
  EXPECT_EQ(lines(folder), QString()) << "all or none";
}

}  // namespace
}  // namespace lens::testing

#include "embedded/model/model_context.h"
#include "embedded/model/support/test_documents.h"

using namespace lens;
using namespace lens::testbed;
using namespace Qt::Literals::StringLiterals;

namespace {

struct Collections : Documents {
  Collections() {
    for (int i = 0; i < 5; ++i) ids.push_back(t.add({{u"Number"_s, numberValue(i)}}));
    all = t.mail().call(u"SEARCH"_s, u"SELECT @All"_s, Value(), 0).object();
  }
  int live() { return t.store->notes().noteCount(noteclass::Document); }
  int numberOf(const Value& document) { return int(valueOf(document.object(), u"Number"_s).at(0).number()); }
  QVector<NoteId> ids;
  Object all;
};

}  // namespace

TEST_F(Collections, AreWalkedByStepsAndByPosition) {
  EXPECT_EQ(all.get(u"COUNT"_s).number(), 5);
  int expected = 0;
  for (Value at = all.call(u"GetFirstDocument"_s); at.object(); at = all.call(u"getNEXTdocument"_s, at))
    EXPECT_EQ(numberOf(at), expected++);
  EXPECT_EQ(expected, 5);
  EXPECT_EQ(numberOf(all.call(u"GetNthDocument"_s, 3)), 2);
  EXPECT_TRUE(all.call(u"GETNTHDOCUMENT"_s, 0).object().isNothing());
  EXPECT_TRUE(all.call(u"GETNTHDOCUMENT"_s, 6).object().isNothing());
}

TEST_F(Collections, AWalkGoesOnBehindARemovedDocument) {
  const Value first = all.call(u"GETFIRSTDOCUMENT"_s);
  first.object().call(u"Remove"_s, true);
  EXPECT_EQ(numberOf(all.call(u"GETNEXTDOCUMENT"_s, first)), 1);
}

TEST_F(Collections, RemoveAllLeavesStubsAndAnEmptyCollection) {
  const NoteId later = t.add({{u"Number"_s, numberValue(9)}});
  QStringList told;
  t.workspace->setChangeListener([&](const DatabasePlace& place) { told.append(place.path); });
  all.call(u"removeALL"_s, true);
  for (const NoteId id : ids) EXPECT_EQ(t.store->notes().state(id), NoteState::Stub);
  EXPECT_EQ(t.store->notes().state(later), NoteState::Live);
  EXPECT_EQ(all.get(u"count"_s).number(), 0);
  EXPECT_TRUE(all.call(u"GETFIRSTDOCUMENT"_s).object().isNothing());
  EXPECT_EQ(told, QStringList(u"mail.nsf"_s));
  all.call(u"REMOVEALL"_s, true);
}

TEST_F(Collections, RemoveAllPassesOverWhatIsGoneAndTakesWhatIsDamaged) {
  t.store->notes().remove(ids[1]);
  t.store->notes().remove(ids[2], false);
  sql("UPDATE note SET items = x'00' WHERE id = " + QByteArray::number(ids[3].value()));
  all.call(u"REMOVEALL"_s, true);
  EXPECT_EQ(live(), 0);
  EXPECT_EQ(t.store->notes().state(ids[2]), NoteState::Gone);
  EXPECT_EQ(t.store->notes().state(ids[3]), NoteState::Stub);
}

TEST_F(Collections, RemoveAllIsAllOrNothing) {
  int stops = 0;
  for (int at = 1; at < 4000; at += 7) {
    int left = at;
    sqlite3_progress_handler(
        t.store->handle(), 2, [](void* steps) { return --*static_cast<int*>(steps) == 0 ? 1 : 0; }, &left);
    const int failure = raised([&] { all.call(u"REMOVEALL"_s, true); });
    sqlite3_progress_handler(t.store->handle(), 0, nullptr, nullptr);
    if (failure == 0) break;
    ++stops;
    ASSERT_EQ(live(), 5) << at;
    ASSERT_EQ(all.get(u"count"_s).number(), 5);
  }
  EXPECT_GT(stops, 5);
  EXPECT_EQ(live(), 0);
}

TEST_F(Collections, RemoveAllOfAReadOnlyDatabaseIsAFailure) {
  sql("PRAGMA query_only = 1");
  EXPECT_TRUE(reasonOf([&] { all.call(u"REMOVEALL"_s, true); }).contains(u"mail.nsf"_s));
  EXPECT_EQ(all.get(u"count"_s).number(), 5);
  EXPECT_EQ(live(), 5);
}

TEST(CollectionFailures, NameTheDatabase) {
  TestWorkspace t;
  t.add({{u"Form"_s, textValue(u"Memo")}});
  const Object all = t.mail().call(u"SEARCH"_s, u"@All"_s, Value(), 0).object();
  try {
    all.call(u"GetNextDocument"_s, t.mail());
    FAIL() << "no failure";
  } catch (const RuntimeError& error) {
    EXPECT_TRUE(error.description().contains(u"mail.nsf"_s)) << error.description().toStdString();
  }
}

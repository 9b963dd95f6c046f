// Rows by key, columns as lists.
#include "embedded/views/view_lookup.h"

#include "embedded/support/view_fixture.h"

namespace lens::testbed {
namespace {

class ViewLookup : public ViewTest {
 protected:
  QString find(NoteId view, const QString& key, bool exact = true) {
    ViewIndex index(*database, view);
    index.refresh();
    const NoteId found = findByKey(index, {key, exact}, regional);
    return found.isNull() ? QString() : subjectOf(*database, found);
  }
};

TEST_F(ViewLookup, FindsWholeValuesWithoutCaseAndBeginningsOnDemand) {
  const NoteId view = addView({.columns = {column(u"Other"_s), sorted(u"Name"_s)}});
  const NoteId down = addView({.columns = {descending(u"Name"_s)}});
  for (const QString& name : {u"Smithers"_s, u"Smith"_s, u"Zoe"_s}) add(name, {{u"Name"_s, textValue(name)}});
  for (const NoteId each : {view, down}) {
    EXPECT_EQ(find(each, u"SMITH"_s), u"Smith"_s);
    EXPECT_EQ(find(each, u"smi"_s), QString());
    EXPECT_EQ(find(each, u"ZO"_s, false), u"Zoe"_s);
    EXPECT_EQ(find(each, u"x"_s, false), QString());
  }
  EXPECT_EQ(find(view, u"smi"_s, false), u"Smith"_s);
  EXPECT_EQ(find(down, u"smi"_s, false), u"Smithers"_s);
}

TEST_F(ViewLookup, FindsNothingWithoutASortedColumn) {
  const NoteId view = addView({.columns = {column(u"Subject"_s)}});
  add(u"a"_s);
  EXPECT_EQ(find(view, u"a"_s), QString());
  EXPECT_EQ(find(view, QString(), false), QString());
}

TEST_F(ViewLookup, FindsNumbersAndDatesByTheirText) {
  const NoteId up = addView({.columns = {sorted(u"Value"_s)}});
  const NoteId down = addView({.columns = {descending(u"Value"_s)}});
  const auto put = [&](const QString& subject, const QByteArray& value) {
    add(subject, {{u"Value"_s, value}});
  };
  put(u"n12"_s, numberValue(12));
  put(u"n1.5"_s, numberValue(1.5));
  put(u"sum"_s, numberValue(0.1 + 0.2));
  put(u"list"_s, numberListValue({7, 8}));
  put(u"date"_s, timeValue(timeDateOfDate({2024, 3, 9})));
  put(u"time"_s, timeValue(timeDateOf(DateTime{{2024, 3, 9}, {14, 30}})));
  put(u"text"_s, textValue(u"13"));
  for (const NoteId view : {up, down}) {
    EXPECT_EQ(find(view, u"12"_s), u"n12"_s);
    EXPECT_EQ(find(view, u"1.5"_s), u"n1.5"_s);
    EXPECT_EQ(find(view, u"0.3"_s), u"sum"_s);
    EXPECT_EQ(find(view, u"13"_s), u"text"_s);
    EXPECT_EQ(find(view, u"7"_s), QString()) << "only a part of the value";
    EXPECT_EQ(find(view, regional.text(DateTime{{2024, 3, 9}, {}})), u"date"_s);
    EXPECT_EQ(find(view, regional.text(DateTime{{2024, 3, 9}, {14, 30}})), u"time"_s);
    EXPECT_EQ(find(view, u"12.0"_s), QString());
  }
  EXPECT_EQ(find(up, u"1"_s, false), u"n1.5"_s);
  EXPECT_EQ(find(down, u"1"_s, false), u"text"_s);
}

TEST_F(ViewLookup, ACategoryGivesItsFirstDocument) {
  const NoteId view = addView({.columns = {category(u"Kind"_s), sorted(u"Subject"_s)}});
  const auto put = [&](const QString& subject, const QString& kind) {
    return add(subject, {{u"Kind"_s, textValue(kind)}});
  };
  put(u"pear"_s, u"Fruit\\Pear"_s);
  put(u"apple"_s, u"Fruit\\Apple"_s);
  const NoteId bread = put(u"bread"_s, u"Bread"_s);
  EXPECT_EQ(find(view, u"fruit"_s), u"apple"_s);
  EXPECT_EQ(find(view, u"FRUIT\\pear"_s), u"pear"_s);
  EXPECT_EQ(find(view, u"Fruit\\Pe"_s), QString());
  EXPECT_EQ(find(view, u"Fruit\\Pe"_s, false), u"pear"_s);
  EXPECT_EQ(find(view, u"Bread"_s), u"bread"_s);
  database->notes().remove(bread);
  EXPECT_EQ(find(view, u"Bread"_s), QString());
}

TEST_F(ViewLookup, ResponsesAreNotFoundByTheKeyOfTheirParent) {
  const NoteId view = addView({.columns = {sorted(u"Subject"_s)}, .hierarchy = true});
  const NoteId main = add(u"main"_s);
  add(u"answer"_s, {}, unidOf(main));
  EXPECT_EQ(find(view, u"main"_s), u"main"_s);
  EXPECT_EQ(find(view, u"answer"_s), QString());
}

TEST_F(ViewLookup, AColumnIsReadInViewOrderAndACategoryOnce) {
  ViewColumn tags = separate(u"Tags"_s);
  const NoteId view = addView({.columns = {category(u"Kind"_s), sorted(u"Subject"_s), column(u"Size"_s)}});
  const NoteId apart = addView({.columns = {tags}});
  add(u"c"_s, {{u"Kind"_s, textValue(u"y\\z")}, {u"Size"_s, numberValue(3)}});
  add(u"b"_s, {{u"Kind"_s, textValue(u"x")}, {u"Size"_s, numberValue(2)}});
  add(u"a"_s, {{u"Kind"_s, textValue(u"x")}, {u"Tags"_s, textListValue({u"t2"_s, u"t1"_s})}});
  EXPECT_EQ(columnOf(view, 0), QStringList({u"x"_s, u"y"_s, u"y\\z"_s}));
  EXPECT_EQ(columnOf(view, 1), QStringList({u"a"_s, u"b"_s, u"c"_s}));
  EXPECT_EQ(columnOf(view, 2), QStringList({QString(), u"2"_s, u"3"_s})) << "of several types: all texts";
  EXPECT_EQ(columnOf(apart, 0), QStringList({QString(), QString(), u"t1"_s, u"t2"_s}));
}

TEST_F(ViewLookup, LooksUpColumnsItemsAndUnids) {
  const NoteId view = addView({.columns = {sorted(u"Kind"_s), column(u"Subject"_s)}});
  const NoteId b = add(u"b"_s, {{u"Kind"_s, textValue(u"k")}, {u"More"_s, numberValue(1)}});
  add(u"a"_s, {{u"Kind"_s, textValue(u"K")}, {u"More"_s, numberValue(2)}});
  ViewIndex index(*database, view);
  index.refresh();
  formula::Value value;
  formula::Database::Lookup lookup;
  lookup.key = u"k"_s;
  lookup.column = 2;
  ASSERT_TRUE(viewLookup(index, lookup, regional, value));
  EXPECT_EQ(value.toTexts(), QStringList({u"b"_s, u"a"_s}));
  lookup.column = 0;
  lookup.item = u"MORE"_s;
  ASSERT_TRUE(viewLookup(index, lookup, regional, value));
  EXPECT_TRUE(value.isNumber());
  EXPECT_EQ(value.count(), 2);
  lookup.unids = true;
  ASSERT_TRUE(viewLookup(index, lookup, regional, value));
  EXPECT_EQ(value.text(0), unidOf(b).text());
  lookup.key = u"nobody"_s;
  EXPECT_FALSE(viewLookup(index, lookup, regional, value));
}

}  // namespace
}  // namespace lens::testbed

// Reading what a view's note says of its columns.
#include "embedded/format/view_records.h"

#include <random>

#include "embedded/format/lmbcs.h"
#include "embedded/support/view_fixture.h"

namespace lens::testbed {
namespace {

QByteArray formatData(const QVector<ViewColumn>& columns, bool hierarchy = true) {
  return viewFormatValue(columns, hierarchy).mid(2);
}

ViewColumn manySided() {
  ViewColumn column = category(u"Kind"_s);
  column.title = u"Größe"_s;
  column.formula = sourceFormula(u"@UpperCase(Kind)");
  column.descending = column.hidden = column.responsesOnly = column.separateValues = true;
  column.width = 96;
  return column;
}

TEST(ViewRecords, AreReadAsTheyWereWritten) {
  StoredViewFormat format;
  ASSERT_TRUE(readViewFormat(formatData({column(u"Subject"_s), manySided()}, false), format));
  EXPECT_FALSE(format.hierarchy);
  ASSERT_EQ(format.columns.size(), 2);
  EXPECT_EQ(format.columns[0].item, u"Subject"_s);
  EXPECT_FALSE(format.columns[0].sorted || format.columns[0].categorized || format.columns[0].hidden);
  const StoredColumn& column = format.columns[1];
  EXPECT_EQ(column.title, u"Größe"_s);
  EXPECT_EQ(column.formula, sourceFormula(u"@UpperCase(Kind)"));
  EXPECT_TRUE(column.sorted && column.categorized && column.descending && column.hidden &&
              column.responsesOnly && column.separateValues);
  EXPECT_EQ(column.width, 96);
}

TEST(ViewRecords, KeysNameTheirItems) {
  ViewColumn plain = descending(u"Date"_s);
  QVector<StoredKey> keys;
  ASSERT_TRUE(readCollation(collationValue({category(u"Kind"_s), column(u"x"_s), plain}).mid(2), keys));
  ASSERT_EQ(keys.size(), 2);
  EXPECT_EQ(keys[0].item, u"Kind"_s);
  EXPECT_TRUE(keys[0].category && keys[0].separateValues && !keys[0].descending);
  EXPECT_EQ(keys[1].item, u"Date"_s);
  EXPECT_TRUE(keys[1].descending && !keys[1].category && !keys[1].separateValues);
}

// As the platform writes it: accents marked, what follows the columns is about looks.
TEST(ViewRecords, OfThePlatformAreReadToo) {
  QByteArray format = QByteArray::fromHex(
      "01000100010008000000"
      "5643030005000400000000006400"
      "0100000a0001"
      "0000000000000000"
      "02000000");
  format += "StateLand";
  format += QByteArray::fromHex("2600010000010100");
  StoredViewFormat read;
  ASSERT_TRUE(readViewFormat(format, read));
  EXPECT_TRUE(read.hierarchy);
  ASSERT_EQ(read.columns.size(), 1);
  EXPECT_EQ(read.columns[0].title, u"Land"_s);
  EXPECT_TRUE(read.columns[0].categorized && read.columns[0].separateValues);
  QVector<StoredKey> keys;
  ASSERT_TRUE(readCollation(QByteArray::fromHex("1200010000448866070000050053746174"
                                                "65"),
                            keys));
  EXPECT_EQ(keys[0].item, u"State"_s);
  EXPECT_TRUE(keys[0].category);
}

TEST(ViewRecords, OfAnotherVersionAreNone) {
  StoredViewFormat format;
  QByteArray data = formatData({column(u"a"_s)});
  data[0] = 9;
  EXPECT_FALSE(readViewFormat(data, format));
  QVector<StoredKey> keys;
  EXPECT_FALSE(readCollation(QByteArray(12, '\0'), keys));
  EXPECT_FALSE(readCollation({}, keys));
}

TEST(ViewRecords, DamageGivesLessAndNeverACrash) {
  const QByteArray format = formatData({manySided(), sorted(u"Subject"_s), manySided()});
  const QByteArray collation = collationValue({manySided(), sorted(u"Subject"_s)}).mid(2);
  for (qsizetype size = 0; size <= format.size(); ++size) {
    StoredViewFormat read;
    readViewFormat(format.first(size), read);
    EXPECT_LE(read.columns.size(), 3);
    QVector<StoredKey> keys;
    readCollation(collation.first(qMin(size, collation.size())), keys);
    EXPECT_LE(keys.size(), 2);
  }
  std::mt19937 random(7);
  for (int turn = 0; turn < 4000; ++turn) {
    Note note = viewNote(u"v"_s, {.columns = {manySided(), sorted(u"Subject"_s)}});
    for (const char16_t* name : {u"$ViewFormat", u"$Collation"}) {
      QByteArray& value = note.find(name)->value;
      for (int flips = int(random() % 4); flips >= 0; --flips)
        value[2 + qsizetype(random() % quint32(value.size() - 2))] = char(random());
      if (random() % 4 == 0) value.truncate(2 + qsizetype(random() % quint32(value.size() - 2)));
    }
    const ViewDesign design = readViewDesign(note);
    EXPECT_LE(design.columns.size(), 2);
    for (const DesignKey& key : design.keys) EXPECT_LT(key.column, design.columns.size());
  }
}

TEST(ViewDesign, WithoutACollationTheColumnsOwnMarksCount) {
  Note note = viewNote(u"v"_s, {.columns = {column(u"a"_s), descending(u"b"_s)}});
  note.find(u"$Collation")->value = rawValue(itemtype::Collation, "x");
  const ViewDesign design = readViewDesign(note);
  ASSERT_EQ(design.keys.size(), 1);
  EXPECT_EQ(design.keys[0].column, 1);
  EXPECT_TRUE(design.keys[0].descending);
}

TEST(ViewDesign, ColumnsForResponsesOnlySortNothing) {
  ViewColumn responses = sorted(u"a"_s);
  responses.responsesOnly = true;
  const ViewDesign design = readViewDesign(viewNote(u"v"_s, {.columns = {responses, sorted(u"b"_s)}}));
  ASSERT_EQ(design.keys.size(), 1);
  EXPECT_EQ(design.keys[0].column, 1);
}

TEST(ViewDesign, TheDigestFollowsWhatTheIndexDependsOn) {
  const Design plain{.columns = {sorted(u"a"_s)}};
  Design other = plain;
  other.formula = u"SELECT Form = \"x\""_s;
  const QByteArray digest = readViewDesign(viewNote(u"v"_s, plain)).digest;
  EXPECT_EQ(readViewDesign(viewNote(u"another title"_s, plain)).digest, digest);
  EXPECT_NE(readViewDesign(viewNote(u"v"_s, other)).digest, digest);
  other = plain;
  other.hierarchy = true;
  EXPECT_NE(readViewDesign(viewNote(u"v"_s, other)).digest, digest);
}

}  // namespace
}  // namespace lens::testbed

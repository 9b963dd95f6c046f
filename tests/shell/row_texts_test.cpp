#include "shell/row_texts.h"

#include <gtest/gtest.h>

#include "support/printers.h"

namespace lens {
namespace {
using namespace Qt::StringLiterals;

TEST(FieldRow, IsTheNamePaddedToTheCommonWidthAndTheText) {
  EXPECT_EQ(fieldRow(u"Form"_s, 10, u"Memo"_s), "Form:     Memo");
  EXPECT_EQ(fieldRow(u"Subject"_s, 0, u"x: y"_s), "Subject: x: y");
}

TEST(FieldRow, GivesNameAndTrimmedTextBack) {
  EXPECT_EQ(fieldName(u"Subject: x: y"_s), "Subject");
  EXPECT_EQ(fieldText(u"$FORMULA:   SELECT @All\r\n& x  "_s), "SELECT @All\r\n& x");
  EXPECT_EQ(fieldName(u"no mark"_s), "");
  EXPECT_EQ(fieldText(u"no mark"_s), "");
}

TEST(CollectionRow, IsABareIdOrANameWithoutAliasesAndAnId) {
  EXPECT_EQ(collectionRow(u"00000902"_s).id, "00000902");
  EXPECT_EQ(collectionRow(u"00000902"_s).designName, "");
  const CollectionRow design = collectionRow(u"Person | per|p  # 0000011A"_s);
  EXPECT_EQ(design.designName, "Person");
  EXPECT_EQ(design.id, "0000011A");
  EXPECT_EQ(collectionRow(u"All   # 00000122"_s).designName, "All");
}

TEST(WholeNoteId, HasEightHexadecimalDigits) {
  for (const QString& whole : {u"00000902"_s, u"FFFF0010"_s, u"0000abcd"_s})
    EXPECT_TRUE(isWholeNoteId(whole));
  for (const QString& part : {QString(), u"8fa"_s, u"0000902"_s, u"000000902"_s, u"0000090G"_s, u" 0000902"_s,
                              u"0000902 "_s, u"-0000902"_s, u"0x000902"_s, u"0000090\u0662"_s})
    EXPECT_FALSE(isWholeNoteId(part)) << part.toStdString();
}

TEST(DesignTitle, IsTheRowUpToItsMarkerAndItsFirstAlias) {
  EXPECT_EQ(designTitle(u"Clean up  # 0000011A"_s), "Clean up");
  EXPECT_EQ(designTitle(u"Clean up|clean|c  # 0000011A"_s), "Clean up");
  EXPECT_EQ(designTitle(u"Clean up|clean"_s), "Clean up");
  EXPECT_EQ(designTitle(u"00000A12"_s), "00000A12");
  EXPECT_EQ(designTitle(u" # 0000011A"_s), " # 0000011A");
  EXPECT_EQ(designTitle(u"   # 0000011A"_s), "");
  EXPECT_EQ(designTitle(u"# of pumps # 0000011A"_s), "# of pumps");
}

}  // namespace
}  // namespace lens

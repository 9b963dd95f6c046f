#include "shell/exact_texts.h"

#include <gtest/gtest.h>

#include "shell/form1.h"
#include "support/printers.h"

namespace lens {
namespace {

// Letter for letter, blanks included.
TEST(ExactTexts, AreSpeltAsUsersKnowThem) {
  EXPECT_EQ(exact::kItemExists, "Item name allready exits!");
  EXPECT_EQ(exact::kUnknownType, "Not implemented for the field type !!");
  EXPECT_EQ(exact::kNoReplaceText, "Replace text is empty!!");
  EXPECT_EQ(exact::kNoSearchTexts, "Search or Replace fields are empty !!");
  EXPECT_EQ(exact::kDeleteTitle, "Error in DeleteFiels");
  EXPECT_EQ(exact::kReplaceAllTitle, "Error in SeachReplaceAll");
  EXPECT_EQ(exact::kNoRichText, "Field is not a rich text!! can't load.");
  EXPECT_EQ(exact::kCannotExecute, "Can't execute the file !!");
  EXPECT_EQ(exact::kNoDatabase, "Cann't open DB try again");
  EXPECT_EQ(exact::kNoDocument, "Cann't open document try again");
  EXPECT_EQ(exact::kHexDigitsOnly, "Only Charachter between 'A' - 'F'  allowed");
  EXPECT_EQ(exact::kOutOfMemory, "Error: Out of Memory/Resources. Couldn't Execute!");
  EXPECT_EQ(exact::kFileNotFound, "Error: File not found.  Couldn't Execute!");
  EXPECT_EQ(exact::kPathNotFound, "Error: Path not found. Couldn't Execute!");
  EXPECT_EQ(exact::kBadFormat, "Error:  Bad File Format. Couldn't Execute!");
}

TEST(ExactTexts, OfTheEditingButtonsAreSpeltSoToo) {
  Form1 form;
  const auto tip = [&](const QWidget* button) { return button->toolTip(); };
  EXPECT_EQ(tip(form.cmdOverwrite),
            "Overwrites the current field by the new 'Content' text. For RT field make Search and Replace.");
  EXPECT_EQ(tip(form.cmdSearch), "Searches the next field.");
  EXPECT_EQ(tip(form.cmdReplace),
            "Replaces the searched text in the Content box only. To replace the field click the "
            "'Overwrite doc'  button.");
  EXPECT_EQ(tip(form.cmdSearchReplaceAll),
            "Replaces all occurences of 'Search text' by 'Replace text' in all current document fields.");
  EXPECT_EQ(tip(form.cmdDelFieldInCol), "Deletes the specified field  in all collection documents.");
  EXPECT_EQ(tip(form.cmdAddFieldInColl), "Adds the new specified field  in all collection documents.");
  EXPECT_EQ(
      tip(form.cmdWriteDocsInColl),
      "Overwrites the current field by the new 'Content' text in all collection documents. For RT field "
      "make Search and Replace.");
  EXPECT_EQ(tip(form.cmdReplAllFieldsInColl),
            "Replaces all occurences of 'Search for' by 'Replace' in all collection documents fields.");
  EXPECT_EQ(tip(form.cmdRemColl), "Remove selected items from list");
}

}  // namespace
}  // namespace lens

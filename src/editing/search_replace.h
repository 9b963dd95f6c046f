// The frame "Search/replace text": finding the next item or list entry that holds a text, replacing in the
// content box, and replacing in all items of the document on display.
#pragma once

#include "notes/numbers.h"
#include "shell/desk.h"

namespace lens {

class SearchReplace {
 public:
  explicit SearchReplace(Desk& desk);

  void cmdSearch_Click();
  void txtSearch_KeyDown(int keyCode, int shift);
  void cmdReplace_Click();
  void cmdSearchReplaceAll_Click();

 private:
  enum class Found { Yes, No };
  Found searchCollection(Int16& row);
  Found searchItems(Int16& row);
  bool holdsSearchText(const QString& text) const;
  QString joinedValues(const QString& itemName) const;
  bool replaceInItem(const NotesItem& item);

  Desk& desk_;
  Int16 nextSearchIndex_;
};

}  // namespace lens

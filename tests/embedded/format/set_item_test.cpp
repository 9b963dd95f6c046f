#include "embedded/format/set_item.h"

#include <gtest/gtest.h>

namespace lens {
namespace {
using namespace Qt::StringLiterals;

TEST(SettingItems, FillsTheFirstOfTheNameOrAddsOne) {
  Note note;
  note.add(u"Kind"_s, itemflag::Names, textValue(u"a"));
  note.add(u"kind"_s, 0, textValue(u"b"));
  setItem(note, u"KIND"_s, textValue(u"c"));
  ASSERT_EQ(note.items.size(), 2);
  EXPECT_EQ(note.items[0].name, u"Kind"_s);
  EXPECT_EQ(note.items[0].flags, itemflag::Names);
  EXPECT_EQ(note.items[0].value, textValue(u"c"));
  EXPECT_EQ(note.items[1].value, textValue(u"b"));
  setItem(note, u"New"_s, numberValue(1));
  setItem(note, u"Plain"_s, numberValue(2), 0);
  ASSERT_EQ(note.items.size(), 4);
  EXPECT_EQ(note.items[2].flags, itemflag::Summary);
  EXPECT_EQ(note.items[3].flags, 0);
}

}  // namespace
}  // namespace lens

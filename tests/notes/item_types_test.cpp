#include "notes/item_types.h"

#include <gtest/gtest.h>

#include <QSet>

#include "support/printers.h"

namespace lens {
namespace {
using namespace Qt::StringLiterals;

TEST(ItemTypeTable, HasThirtyRowsWithKeysOfTheirOwnInAlphabeticalOrder) {
  const auto& table = itemTypeTable();
  ASSERT_EQ(table.size(), 30);
  QSet<int> codes;
  QString before;
  for (const ItemTypeRow& row : table) {
    codes.insert(row.code);
    const QString sentence = QString::fromLatin1(row.sentence);
    EXPECT_LT(before.toUpper(), sentence.toUpper());
    before = sentence;
  }
  EXPECT_EQ(codes.size(), 30);
}

TEST(ItemTypeTable, SaysItsCodeInBracketsSaveForTheErrorItem) {
  for (const ItemTypeRow& row : itemTypeTable()) {
    const QString number = row.code == itemcode::ErrorItem ? u"(256)"_s : u"(%1)"_s.arg(row.code);
    EXPECT_TRUE(QString::fromLatin1(row.sentence).contains(number)) << row.sentence;
  }
}

}  // namespace
}  // namespace lens

// The ways to an item's name all tell the same names apart.
#include "embedded/format/item_name.h"

#include <gtest/gtest.h>

#include <QSet>

#include "embedded/format/case_key.h"
#include "embedded/format/packed_items.h"
#include "embedded/format/profile_name.h"

namespace lens {
namespace {
using namespace Qt::StringLiterals;

// One answer of all that compare or look up, or -1 where they differ.
int answerOfAll(const QString& stored, const QString& asked) {
  const bool same = sameItemName(stored, asked);
  const QByteArray packed = packItems({{u"x"_s, 0, textValue(u"")}, {stored, 0, textValue(u"")}});
  const PackedItems items(packed);
  std::vector<qint32> places;
  WantedItems({ItemName(asked)}).find(items, 0, places);
  const QSet<ItemName> set{ItemName(stored)};
  Item item;
  const bool answers[] = {ItemName(stored) == ItemName::fromPacked(asked.toUtf8()),
                          set.contains(ItemName(asked)),
                          caseKey(stored) == caseKey(asked),
                          isPackedName(stored.toUtf8(), asked),
                          items.find(asked) == 1,
                          places[0] == 1,
                          findPackedItem(packed, asked, item),
                          profileName(stored, {}) == profileName(asked, {}),
                          profileName(u"p"_s, stored) == profileName(u"p"_s, asked)};
  for (const bool answer : answers)
    if (answer != same) return -1;
  return same;
}

TEST(ItemNames, AreTheSameForAllThatCompareThem) {
  const QStringList apart[] = {{u"Ma\u00DF"_s, u"MASS"_s}, {u"ma\u00DF"_s, u"mass"_s},
                               {u"\u0130d"_s, u"id"_s},    {u"\u0130d"_s, u"i\u0307d"_s},
                               {u"\u0131d"_s, u"Id"_s},    {u"\uFB01n"_s, u"fin"_s},
                               {u"\u01F0"_s, u"J\u030C"_s}};
  for (const QStringList& names : apart) {
    EXPECT_EQ(answerOfAll(names[0], names[1]), 0) << names[0].toStdString() << " " << names[1].toStdString();
    EXPECT_EQ(answerOfAll(names[1], names[0]), 0) << names[1].toStdString() << " " << names[0].toStdString();
  }
  const QStringList together[] = {{u"Ma\u00DF"_s, u"MA\u00DF"_s},
                                  {u"Ma\u00DF"_s, u"MA\u1E9E"_s},
                                  {u"Ma\u017F"_s, u"MAS"_s},
                                  {u"\u212Aelvin"_s, u"kELVIN"_s},
                                  {u"\u03C3\u03C2"_s, u"\u03A3\u03C3"_s},
                                  {u"Gr\u00F6\u00DFe"_s, u"GR\u00D6\u00DFE"_s},
                                  {u"\U00010400"_s, u"\U00010428"_s},
                                  {u"$Ref"_s, u"$REF"_s}};
  for (const QStringList& names : together) {
    EXPECT_EQ(answerOfAll(names[0], names[1]), 1) << names[0].toStdString() << " " << names[1].toStdString();
    EXPECT_EQ(answerOfAll(names[1], names[0]), 1) << names[1].toStdString() << " " << names[0].toStdString();
  }
}

TEST(ItemNames, AreTheSameForAllThatCompareThemWhateverTheLetter) {
  int same = 0, different = 0;
  for (char32_t c = 0x21; c < 0x10000; ++c) {
    if (QChar::isSurrogate(c)) continue;
    const QString letter = QString::fromUcs4(&c, 1), stored = u"a"_s + letter;
    for (const QString& other : {letter.toUpper(), letter.toLower(), letter.toCaseFolded(),
                                 QString(QChar(QChar::toTitleCase(c))), QString(QChar(char16_t(c ^ 1)))}) {
      if (other == letter) continue;
      const int answer = answerOfAll(stored, u"A"_s + other);
      ASSERT_GE(answer, 0) << stored.toStdString() << " " << other.toStdString();
      (answer ? same : different)++;
    }
  }
  EXPECT_GT(same, 2000);
  EXPECT_GT(different, 60'000);
}

TEST(ItemNames, KeepHowTheyAreWritten) {
  const ItemName name(u"Subject"_s);
  EXPECT_EQ(name.text(), u"Subject"_s);
  EXPECT_EQ(name, ItemName(u"sUBJECT"_s));
  EXPECT_EQ(name.hash(), ItemName(u"SUBJECT"_s).hash());
  EXPECT_EQ(ItemName(), ItemName(QString()));
  EXPECT_NE(name, ItemName(u"Subjects"_s));
}

}  // namespace
}  // namespace lens

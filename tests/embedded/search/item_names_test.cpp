// Every door to an item tells the same names apart: members, the object model's search, formulas and full
// text.
#include <gtest/gtest.h>

#include "embedded/format/packed_note.h"
#include "embedded/formula/formula.h"
#include "embedded/formula_context/evaluated_packed_note.h"
#include "embedded/model/support/test_workspace.h"
#include "embedded/search/full_text.h"

namespace lens {
namespace {
using namespace Qt::StringLiterals;
using testbed::TestWorkspace;

struct ItemDoors : ::testing::Test {
  // Whether each door finds "here" in an item of the stored name by the other name.
  QMap<QString, bool> answers(NoteId id, const QString& asked) {
    QMap<QString, bool> found;
    const Object document = t.document(id);
    found[u"GETITEMVALUE"_s] = document.call(u"GETITEMVALUE"_s, asked).isArray();
    found[u"HASITEM"_s] = document.call(u"HASITEM"_s, asked).boolean();
    Item item;
    found[u"one item"_s] = t.store->notes().readItem(id, asked, item);
    found[u"SEARCH"_s] = searched(asked + u" = \"here\""_s);
    found[u"SEARCH by @GetField"_s] = searched(u"@GetField(\"%1\") = \"here\""_s.arg(asked));
    found[u"a variable"_s] = searched(asked + u" := \"gone\"; "_s + stored + u" = \"gone\""_s);
    found[u"a variable by name"_s] =
        searched(u"@Set(\"%1\"; \"gone\"); "_s.arg(asked) + stored + u" = \"gone\""_s);
    found[u"full text"_s] = fullTextSearch(*t.store, u"FIELD %1 CONTAINS here"_s.arg(asked), 0).contains(id);
    return found;
  }
  bool searched(const QString& formula) {
    return t.mail().call(u"SEARCH"_s, formula, Object(), 0).object().get(u"COUNT"_s).number() > 0;
  }
  void expect(const QString& name, const QString& asked, bool same) {
    stored = name;
    const NoteId id = t.add({{name, textValue(u"here")}});
    createFullTextIndex(*t.store);
    const QMap<QString, bool> found = answers(id, asked);
    for (auto door = found.constBegin(); door != found.constEnd(); ++door)
      EXPECT_EQ(door.value(), same) << door.key().toStdString() << ": " << name.toStdString() << " by "
                                    << asked.toStdString();
    t.store->notes().remove(id, false);
  }
  void expectBothWays(const QString& a, const QString& b, bool same) {
    expect(a, b, same);
    expect(b, a, same);
  }
  TestWorkspace t;
  QString stored;
};

TEST_F(ItemDoors, KeepSharpSApartFromTwo) {
  expectBothWays(u"Ma\u00DF"_s, u"MASS"_s, false);
  expectBothWays(u"ma\u00DF"_s, u"mass"_s, false);
  expectBothWays(u"Ma\u00DF"_s, u"MA\u00DF"_s, true);
  expectBothWays(u"Ma\u00DF"_s, u"MA\u1E9E"_s, true);
}

TEST_F(ItemDoors, FoldEachLetterToOne) {
  expectBothWays(u"\u0130d"_s, u"id"_s, false);
  expectBothWays(u"\u0131d"_s, u"Id"_s, false);
  expectBothWays(u"Ma\u017Fk"_s, u"MASK"_s, true);
  expectBothWays(u"\u212Aelvin"_s, u"kelvin"_s, true);
  expectBothWays(u"\u03C3\u03C2"_s, u"\u03A3\u03A3"_s, true);
  expectBothWays(u"x\U00010400"_s, u"X\U00010428"_s, true);
}

// The whole first plane is in tests of the format; here every letter that has another case goes through
// formulas and full text.
TEST_F(ItemDoors, AgreeOnEveryLetter) {
  Note note;
  QMap<char16_t, QString> letters;  // one for each key
  for (char32_t c = 0x80; c < 0x10000; ++c) {
    const QChar letter{char16_t(c)};
    if (!letter.isLetter() || QString(letter).toUpper() == QString(letter).toLower()) continue;
    const QString name = u"x"_s + letter;
    if (note.has(name)) continue;
    note.add(name, itemflag::Summary, textValue(u"here%1"_s.arg(c)));
    letters.insert(char16_t(c), name);
  }
  ASSERT_GT(letters.size(), 1000);
  t.store->notes().save(note);
  createFullTextIndex(*t.store);
  const QByteArray packed = packItems(note.items);
  const PackedNote shown{note.header, PackedItems(packed)};
  for (auto letter = letters.constBegin(); letter != letters.constEnd(); ++letter) {
    const QString one(QChar(letter.key()));
    for (const QString& other : {one.toUpper(), one.toLower(), one.toCaseFolded()}) {
      const QString asked = u"X"_s + other, content = u"here%1"_s.arg(uint(letter.key()));
      const bool same = sameItemName(letter.value(), asked);
      const Item* item = note.find(asked);
      EXPECT_EQ(item && firstText(*item) == content, same) << asked.toStdString();
      EvaluatedPackedNote document({formula::Name(u"Subject"_s)});
      document.show(shown);
      formula::Value value;
      const bool found = document.item(formula::Name(asked), value);
      EXPECT_EQ(found && value.text().toString() == content, same) << asked.toStdString();
      const QString query = u"FIELD %1 CONTAINS %2"_s.arg(asked, content);
      EXPECT_EQ(!fullTextSearch(*t.store, query, 0).isEmpty(), same) << query.toStdString();
    }
  }
}

}  // namespace
}  // namespace lens

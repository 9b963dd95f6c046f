// The order of texts.
#include <gtest/gtest.h>

#include <QRandomGenerator>
#include <algorithm>
#include <numeric>

#include "embedded/formula/collation.h"
#include "embedded/formula/functions/sorting.h"

namespace lens::formula {
namespace {
using namespace Qt::StringLiterals;

int compare(const QString& a, const QString& b, const CollationRules& rules = {}) {
  return compareTexts(a, b, rules);
}

void expectOrdered(const QStringList& texts) {
  for (qsizetype i = 0; i < texts.size(); ++i)
    for (qsizetype j = 0; j < texts.size(); ++j)
      EXPECT_EQ(compare(texts[i], texts[j]), i < j   ? -1
                                             : i > j ? 1
                                                     : 0)
          << texts[i].toStdString() << " and " << texts[j].toStdString();
}

TEST(Collation, PutsApostropheDashDigitsLettersAndOthersInOrder) {
  expectOrdered({u"'"_s, u"-"_s, u"0"_s, u"1"_s, u"9"_s, u"a"_s, u"A"_s, u"b"_s, u"B"_s, u"z"_s, u"Z"_s,
                 u" "_s, u"!"_s, u"_"_s, u"~"_s});
}

TEST(Collation, PutsAccentsBehindTheirPlainLetter) {
  expectOrdered({u"e"_s, u"E"_s, u"è"_s, u"È"_s, u"é"_s, u"É"_s, u"f"_s});
  expectOrdered({u"o"_s, u"O"_s, u"ö"_s, u"ø"_s, u"p"_s, u"s"_s, u"S"_s, u"ß"_s, u"t"_s});
}

TEST(Collation, DecidesAtTheFirstLetterThatDiffers) {
  EXPECT_EQ(compare(u"new york"_s, u"New Boston"_s), -1);
  EXPECT_EQ(compare(u"New Boston"_s, u"New York"_s), -1);
  EXPECT_EQ(compare(u"ab"_s, u"abc"_s), -1);
  EXPECT_EQ(compare(u""_s, u"a"_s), -1);
  EXPECT_EQ(compare(u""_s, u""_s), 0);
}

TEST(Collation, CanPassOverCase) {
  CollationRules rules;
  rules.caseSensitive = false;
  EXPECT_EQ(compare(u"aBc"_s, u"AbC"_s, rules), 0);
  EXPECT_EQ(compare(u"éa"_s, u"ÉB"_s, rules), -1);
  EXPECT_EQ(compare(u"e"_s, u"É"_s, rules), -1);
  EXPECT_EQ(compare(u"ДОМ"_s, u"дом"_s, rules), 0);
}

TEST(Collation, CanPassOverAccents) {
  CollationRules rules;
  rules.accentSensitive = false;
  EXPECT_EQ(compare(u"résumé"_s, u"resume"_s, rules), 0);
  EXPECT_EQ(compare(u"Résumé"_s, u"resume"_s, rules), 1);
  // The same accent as a character of its own.
  EXPECT_EQ(compare(u"e\u0301a"_s, u"ea"_s, rules), 0);
  EXPECT_EQ(compare(u"a\u0301"_s, u"a"_s, rules), 0);
}

TEST(Collation, CanPassOverWidth) {
  CollationRules rules;
  EXPECT_EQ(compare(u"Ａ"_s, u"A"_s, rules), 1);
  EXPECT_EQ(compare(u"Ａ"_s, u"B"_s, rules), -1);
  EXPECT_EQ(compare(u"ｱ"_s, u"ア"_s, rules), 1);
  rules.pitchSensitive = false;
  EXPECT_EQ(compare(u"Ａ１"_s, u"A1"_s, rules), 0);
  EXPECT_EQ(compare(u"ｱ"_s, u"ア"_s, rules), 0);
}

TEST(Collation, KeepsSyllablesOfOneConsonantApart) {
  CollationRules rules;
  rules.accentSensitive = false;
  EXPECT_EQ(compare(u"가"_s, u"각"_s, rules), -1);
}

TEST(Collation, ComparesCharactersBeyondTheFirstPlane) {
  EXPECT_EQ(compare(u"😀"_s, u"😁"_s), -1);
  EXPECT_EQ(compare(u"x😀"_s, u"x😀"_s), 0);
  // Halves of a character alone are characters too.
  EXPECT_NE(compare(QString(QChar(0xD83D)), u"😀"_s), 0);
  EXPECT_NE(compare(QString(QChar(0xDE00)), QString(QChar(0xD83D))), 0);
}

QString randomLetters(QRandomGenerator& random) {
  static const QString letters = u"aAbBáÁàçé'- 09_~ßøǄǅдДｱア가각Ａ１\u0301"_s + u"😀😁"_s;
  QString text;
  for (int count = random.bounded(5); count > 0; --count) text += letters[random.bounded(letters.size())];
  return text;
}

TEST(Collation, IsAnOrderOnRandomTexts) {
  QRandomGenerator random(3);
  for (int round = 0; round < 8; ++round) {
    CollationRules rules;
    rules.caseSensitive = round & 1, rules.accentSensitive = round & 2, rules.pitchSensitive = round & 4;
    QStringList texts;
    for (int i = 0; i < 200; ++i) texts.append(randomLetters(random));
    std::sort(texts.begin(), texts.end(),
              [&](const QString& a, const QString& b) { return compare(a, b, rules) < 0; });
    // In a sorted row every text must stand right to every other, not only to its neighbours.
    for (qsizetype i = 0; i < texts.size(); ++i)
      for (qsizetype j = i; j < texts.size(); ++j) {
        ASSERT_LE(compare(texts[i], texts[j], rules), 0)
            << texts[i].toStdString() << " and " << texts[j].toStdString();
        ASSERT_EQ(compare(texts[i], texts[j], rules), -compare(texts[j], texts[i], rules));
        if (compare(texts[i], texts[j], rules) == 0) {
          ASSERT_EQ(collationPrefix(texts[i], rules), collationPrefix(texts[j], rules));
        } else {
          ASSERT_LE(collationPrefix(texts[i], rules), collationPrefix(texts[j], rules))
              << texts[i].toStdString() << " and " << texts[j].toStdString();
        }
      }
    // Texts that count as equal stand together.
    for (qsizetype i = 0; i + 2 < texts.size(); ++i)
      if (compare(texts[i], texts[i + 2], rules) == 0) {
        ASSERT_EQ(compare(texts[i], texts[i + 1], rules), 0);
      }
  }
}

TEST(Collation, FirstLettersTellMostTextsApart) {
  EXPECT_LT(collationPrefix(u"apple"), collationPrefix(u"apply"));
  EXPECT_LT(collationPrefix(u"apple"), collationPrefix(u"Apple"));
  EXPECT_LT(collationPrefix(u"app"), collationPrefix(u"apple"));
  EXPECT_EQ(collationPrefix(u"12345678a"), collationPrefix(u"12345678b"));
}

TEST(Sorting, KeepsEveryElementWhateverTheComparisonSays) {
  QRandomGenerator random(5);
  for (const int count : {0, 1, 2, 3, 7, 8, 9, 100, 1000}) {
    const auto places = placesInOrder(count, [&](qsizetype a, qsizetype b) {
      EXPECT_TRUE(a >= 0 && a < count && b >= 0 && b < count);
      return random.bounded(2) == 0;
    });
    std::vector<quint32> sortedPlaces = places, all(static_cast<std::size_t>(count));
    std::iota(all.begin(), all.end(), 0U);
    std::sort(sortedPlaces.begin(), sortedPlaces.end());
    EXPECT_EQ(sortedPlaces, all);
  }
}

TEST(Sorting, IsStableAndInOrder) {
  QRandomGenerator random(9);
  for (int round = 0; round < 50; ++round) {
    const int count = 1 + random.bounded(200);
    std::vector<int> keys(static_cast<std::size_t>(count));
    for (int& key : keys) key = random.bounded(10);
    const auto places = placesInOrder(
        count, [&](qsizetype a, qsizetype b) { return keys[std::size_t(a)] > keys[std::size_t(b)]; });
    for (std::size_t i = 1; i < places.size(); ++i) {
      ASSERT_LE(keys[places[i - 1]], keys[places[i]]);
      if (keys[places[i - 1]] == keys[places[i]]) {
        ASSERT_LT(places[i - 1], places[i]);
      }
    }
  }
}

TEST(Sorting, ALongListOfTextsComesOutInOrder) {
  QRandomGenerator random(13);
  QStringList texts;
  for (int i = 0; i < 5000; ++i) texts.append(randomLetters(random));
  const LocalZone utc{QTimeZone::utc()};
  SortOrder order;
  for (const bool descending : {false, true}) {
    order.descending = descending;
    const Value result = sorted(Value::texts(texts), order, utc);
    ASSERT_EQ(result.count(), texts.size());
    for (qsizetype i = 1; i < result.count(); ++i) {
      const int step = compareTexts(result.text(i - 1), result.text(i));
      ASSERT_TRUE(descending ? step >= 0 : step <= 0);
    }
  }
}

}  // namespace
}  // namespace lens::formula

#include "embedded/search/query_hits.h"

#include <gtest/gtest.h>

namespace lens {
namespace {

using namespace Qt::StringLiterals;

// The text with each hit in brackets.
std::string marked(const QString& query, QString text, const QString& item = u"Body"_s) {
  const QVector<TextPlace> hits = QueryHits(parseQuery(query)).in(text, item);
  for (qsizetype i = hits.size(); i-- > 0;) {
    text.insert(hits[i].at + hits[i].size, u']');
    text.insert(hits[i].at, u'[');
  }
  return text.toStdString();
}

TEST(QueryHits, MarkWordsAsTheIndexTakesThem) {
  EXPECT_EQ(marked(u"pump"_s, u"The PUMP, a pump-house, pumps"_s), "The [PUMP], a [pump]-house, pumps");
  EXPECT_EQ(marked(u"uber"_s, u"Über uns, u\u0308ber"_s), "[Über] uns, [u\u0308ber]");
  EXPECT_EQ(marked(u"strasse"_s, u"Die Straße"_s), "Die [Straße]");
  EXPECT_EQ(marked(u"pump"_s, u""_s), "");
}

TEST(QueryHits, MarkPhrasesAsAWhole) {
  EXPECT_EQ(marked(u"pump house"_s, u"pump, house; the pump house"_s), "[pump, house]; the [pump house]");
  EXPECT_EQ(marked(u"\"pump house\" OR pump"_s, u"pump house, pump"_s), "[pump house], [pump]");
}

TEST(QueryHits, FollowWildcards) {
  EXPECT_EQ(marked(u"pum*"_s, u"pump pumps dump"_s), "[pump] [pumps] dump");
  EXPECT_EQ(marked(u"h?use"_s, u"house hause horse"_s), "[house] [hause] horse");
}

TEST(QueryHits, LeaveOutWhatIsNotWantedAndOtherFields) {
  EXPECT_EQ(marked(u"pump AND NOT house"_s, u"pump house"_s), "[pump] house");
  EXPECT_EQ(marked(u"FIELD Subject CONTAINS pump"_s, u"pump"_s, u"Body"_s), "pump");
  EXPECT_EQ(marked(u"FIELD Subject CONTAINS pump"_s, u"pump"_s, u"SUBJECT"_s), "[pump]");
  EXPECT_EQ(marked(u"FIELD Amount > 10"_s, u"10 11"_s), "10 11");
}

TEST(QueryHits, MarkScriptsWithoutBlanksSignBySign) {
  EXPECT_EQ(marked(u"水"_s, u"地下水位"_s), "地下[水]位");
  EXPECT_EQ(marked(u"地下"_s, u"地下水"_s), "[地下]水");
}

TEST(QueryHits, BadTextIsNoHarm) {
  const QString broken = QString(QChar(0xD83D)) + u" pump "_s + QChar(0xDE00);
  EXPECT_EQ(QueryHits(parseQuery(u"pump")).in(broken, u"Body").size(), 1);
}

}  // namespace
}  // namespace lens

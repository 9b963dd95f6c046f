#include "embedded/help/function_topics.h"

#include <gtest/gtest.h>

#include "embedded/formula/function.h"
#include "embedded/model/support/test_workspace.h"

using namespace lens;
using namespace lens::testbed;
using namespace Qt::Literals::StringLiterals;

namespace {

struct FunctionTopics : ::testing::Test {
  FunctionTopics() { addFunctionTopics(*t.store); }
  Object select(const QString& formula) { return t.mail().call(u"SEARCH"_s, formula, Object(), 0).object(); }
  TestWorkspace t;
};

TEST_F(FunctionTopics, AreFoundAsPeopleLookForThem) {
  const Object topics =
      select(u"SELECT TopicType != \"F1only\" & @Begins(Subject;\"@\") & TopicType = \"About\""_s);
  EXPECT_EQ(topics.get(u"count"_s).number(), formula::allFunctions().size());
  EXPECT_GT(topics.get(u"count"_s).number(), 250);
}

TEST_F(FunctionTopics, AreNoTopicsOfOtherLanguages) {
  EXPECT_EQ(select(u"SELECT @Left(_Parent;14) = \"LSAZ_CHAPTER_7\""_s).get(u"count"_s).number(), 0);
  EXPECT_EQ(select(u"SELECT @Left(_Parent;10) = \"H_10_NOTES\""_s).get(u"count"_s).number(), 0);
}

TEST_F(FunctionTopics, TellHowAFunctionIsCalledAndWhatItDoes) {
  const Object topic = select(u"SELECT Subject = \"@Left\""_s).call(u"GETFIRSTDOCUMENT"_s).object();
  ASSERT_FALSE(topic.isNothing());
  const QString body = topic.call(u"GETFIRSTITEM"_s, u"Body"_s).object().get(u"Text"_s).text();
  const formula::Function* left = formula::findFunction(u"@left");
  EXPECT_TRUE(body.contains(u"@Left("_s + QString::fromUtf8(left->arguments) + u')')) << body.toStdString();
  EXPECT_TRUE(body.contains(QString::fromUtf8(left->help))) << body.toStdString();
}

TEST_F(FunctionTopics, SayWhatNeedsAClient) {
  const Object topic = select(u"SELECT Subject = \"@Prompt\""_s).call(u"GETFIRSTDOCUMENT"_s).object();
  ASSERT_FALSE(topic.isNothing());
  const QString body = topic.call(u"GETFIRSTITEM"_s, u"Body"_s).object().get(u"Text"_s).text();
  EXPECT_TRUE(body.contains(u"needs the Notes client"_s)) << body.toStdString();
}

}  // namespace

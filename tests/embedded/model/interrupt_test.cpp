// The user ends what formulas do: in a search, in a view, in an agent.
#include <gtest/gtest.h>

#include "embedded/model/support/test_workspace.h"
#include "embedded/search/selection.h"

using namespace lens;
using namespace lens::testbed;
using namespace Qt::Literals::StringLiterals;

namespace {

// A check that says yes when it is asked for the third time, and counts.
struct Interrupting : ::testing::Test {
  Interrupting() {
    for (int i = 0; i < 20; ++i) t.add({{u"Form"_s, textValue(u"Memo")}, {u"Subject"_s, textValue(u"memo")}});
    t.workspace->setInterruptCheck([this] { return ++asked == 3; });
  }

  template <class Work>
  RuntimeError failureOf(const Work& work) {
    try {
      work();
    } catch (const RuntimeError& error) {
      return error;
    }
    ADD_FAILURE() << "nothing was raised";
    return RuntimeError(0);
  }

  TestWorkspace t;
  int asked = 0;
};

TEST_F(Interrupting, EndsASearchWhoseFormulaDoesNot) {
  const RuntimeError error =
      failureOf([&] { t.mail().call(u"SEARCH"_s, u"SELECT @While(1; 1)"_s, Object(), 0); });
  EXPECT_EQ(error.number(), kFormulaError);
  EXPECT_TRUE(error.description().endsWith(u"The formula has exceeded the maximum execution time."))
      << error.description().toStdString();
  EXPECT_GE(asked, 3);
  EXPECT_LE(asked, 4);  // once more behind the formula
}

TEST_F(Interrupting, EndsASearchBetweenDocuments) {
  EXPECT_EQ(failureOf([&] { t.mail().call(u"SEARCH"_s, u"SELECT @All"_s, Object(), 0); }).number(),
            kFormulaError);
  EXPECT_EQ(asked, 3);
}

TEST_F(Interrupting, EndsTheSelectionOfACollectionOfNotes) {
  const Object notes = t.mail().call(u"CREATENOTECOLLECTION"_s, false).object();
  notes.set(u"SELECTIONFORMULA"_s, u"SELECT @While(1; 1)"_s);
  EXPECT_EQ(failureOf([&] { notes.call(u"BUILDCOLLECTION"_s); }).number(), kFormulaError);
  EXPECT_LE(asked, 4);
}

TEST_F(Interrupting, EndsAViewWhoseSelectionDoesNotAndLeavesItToBeMadeLater) {
  t.addView(u"Endless"_s, sourceFormulaValue(u"SELECT @While(1; 1)"_s));
  const Object view = t.mail().call(u"GETVIEW"_s, u"Endless"_s).object();
  const RuntimeError error = failureOf([&] { view.call(u"GETFIRSTDOCUMENT"_s); });
  EXPECT_EQ(error.number(), kFormulaError);
  EXPECT_TRUE(error.description().contains(u"the view \"Endless\""_s)) << error.description().toStdString();
  EXPECT_EQ(asked, 3);
}

TEST_F(Interrupting, EndsTheMakingOfAViewBetweenDocuments) {
  t.addView(u"All"_s, sourceFormulaValue(u"SELECT @All"_s));
  t.workspace->setInterruptCheck([this] { return ++asked == 1; });
  const Object view = t.mail().call(u"GETVIEW"_s, u"All"_s).object();
  EXPECT_EQ(failureOf([&] { view.get(u"ENTRYCOUNT"_s); }).number(), kFormulaError);
  EXPECT_EQ(asked, 1);
  EXPECT_EQ(view.get(u"ENTRYCOUNT"_s).number(), 20);
}

TEST_F(Interrupting, EndsAnAgentWhoseFormulaDoesNotAndLeavesTheDocumentsAlone) {
  t.addAgent(u"Clean"_s, u"FIELD Subject := \"changed\"; @While(@Subset(Subject; 1) != \"\"; 1)"_s);
  const Object agent = t.mail().call(u"GETAGENT"_s, u"Clean"_s).object();
  const RuntimeError error = failureOf([&] { agent.call(u"RUN"_s); });
  EXPECT_EQ(error.number(), agentfault::Failed);
  EXPECT_TRUE(error.description().endsWith(u"The formula has exceeded the maximum execution time."))
      << error.description().toStdString();
  EXPECT_EQ(asked, 3);
  t.workspace->setInterruptCheck({});
  EXPECT_EQ(
      t.mail().call(u"SEARCH"_s, u"Subject = \"changed\""_s, Object(), 0).object().get(u"count"_s).number(),
      0);
}

TEST_F(Interrupting, EndsAnAgentBetweenDocuments) {
  t.addAgent(u"Clean"_s, u"FIELD Subject := \"changed\"; SELECT @All"_s);
  const Object agent = t.mail().call(u"GETAGENT"_s, u"Clean"_s).object();
  EXPECT_EQ(failureOf([&] { agent.call(u"RUN"_s); }).number(), agentfault::Failed);
  EXPECT_EQ(asked, 3);
}

// The formula that looked up is what the user waits for; an error value would let its loop go on.
TEST_F(Interrupting, EndsAFormulaThatWaitsForAView) {
  t.addView(u"Endless"_s, sourceFormulaValue(u"SELECT @While(1; 1)"_s));
  t.addAgent(u"Clean"_s, u"@While(@IsError(@DbColumn(\"\"; \"\"; \"Endless\"; 1)); 1)"_s);
  const Object agent = t.mail().call(u"GETAGENT"_s, u"Clean"_s).object();
  EXPECT_EQ(failureOf([&] { agent.call(u"RUN"_s); }).number(), agentfault::Failed);
  EXPECT_EQ(asked, 3);
}

TEST_F(Interrupting, IsNeverAskedWithoutACheck) {
  t.workspace->setInterruptCheck({});
  EXPECT_FALSE(t.workspace->isInterrupted());
  EXPECT_EQ(t.mail().call(u"SEARCH"_s, u"SELECT @All"_s, Object(), 0).object().get(u"count"_s).number(), 20);
}

}  // namespace

// What a run does beside its value: items written, the selection, marks for deletion, entries of notes.ini,
// and where it must stop.
#include <gtest/gtest.h>

#include "embedded/format/case_key.h"
#include "embedded/formula/support/test_context.h"

namespace lens::formula {
namespace {
using namespace Qt::StringLiterals;

class Effects : public testing::Test {
 protected:
  using Writes = Evaluation::Writes;

  Outcome run(const QString& source, Writes writes = Writes::Apply, Limits limits = {}) {
    const Compiled compiled = compile(source, {&world.environment});
    EXPECT_TRUE(compiled) << source.toStdString();
    if (!compiled) return {};
    return Evaluation(compiled.formula, world.environment, limits)
        .run(&world.document, &world.database, writes);
  }
  std::string shown(const Value& value) { return printValue(value, world.environment.zone()).toStdString(); }
  std::string item(const QString& name) {
    Value value = Value::missing();
    world.document.item(Name(name), value);
    return shown(value);
  }
  // Names and values of the writes, in order.
  std::string written() {
    QString text;
    for (const MemoryDocument::Write& write : world.document.writes())
      text += write.name + u'=' + printValue(write.value, world.environment.zone()) + u';';
    return text.toStdString();
  }

  TestContext world;
};

// --- Items ---------------------------------------------------------------------------------------------

TEST_F(Effects, FieldsAreWrittenInOrderWithTheirNamesAsTyped) {
  EXPECT_TRUE(run(u"FIELD Total := Amount * 2; FIELD names := \"Eve\"; 1"_s).modified);
  EXPECT_EQ(written(), R"(Total=25;names="Eve";)");
  EXPECT_EQ(item(u"Names"_s), "\"Eve\"");
}

TEST_F(Effects, OnlyTheArmTakenWrites) {
  run(u"@If(Zero; FIELD A := 1; FIELD B := 2)"_s);
  EXPECT_EQ(written(), "B=2;");
}

TEST_F(Effects, EachRoundOfALoopWrites) {
  run(u"@For(i := 1; i <= 3; i := i + 1; FIELD Count := i); 1"_s);
  EXPECT_EQ(written(), "Count=1;Count=2;Count=3;");
}

TEST_F(Effects, ADeletedFieldIsRemoved) {
  EXPECT_TRUE(run(u"FIELD Subject := @DeleteField; 1"_s).modified);
  EXPECT_EQ(item(u"Subject"_s), "missing");
  EXPECT_FALSE(world.document.itemNames().contains(u"Subject"_s));
}

TEST_F(Effects, VariablesAndDefaultsWriteNothing) {
  EXPECT_FALSE(
      run(u"Subject := 1; @Set(\"Form\"; 2); DEFAULT Topic := 3; Subject + Form + Topic"_s).modified);
  EXPECT_EQ(written(), "");
  EXPECT_EQ(item(u"Topic"_s), "missing");
}

TEST_F(Effects, ARunThatPretendsSeesItsFieldsAndWritesNone) {
  const Outcome outcome =
      run(u"FIELD Subject := \"new\"; FIELD Amount := @DeleteField; "
          u"Subject : @GetField(\"subject\") : @Text(@IsAvailable(Amount))"_s,
          Writes::Pretend);
  EXPECT_EQ(shown(outcome.value), R"("new" : "new" : "0")");
  EXPECT_EQ(written(), "");
  EXPECT_EQ(item(u"Subject"_s), "\"Quarterly report\"");
}

TEST_F(Effects, WhatOneRunPretendedTheNextDoesNotSee) {
  const Compiled compiled = compile(u"x := @IsAvailable(Mark); FIELD Mark := 1; x"_s, {&world.environment});
  ASSERT_TRUE(compiled);
  Evaluation evaluation(compiled.formula, world.environment);
  for (int i = 0; i < 3; ++i)
    EXPECT_EQ(shown(evaluation.run(&world.document, nullptr, Writes::Pretend).value), "0");
  EXPECT_EQ(shown(evaluation.run(&world.document, nullptr).value), "0");
  EXPECT_EQ(shown(evaluation.run(&world.document, nullptr).value), "1");
}

TEST_F(Effects, ItemsWrittenBeforeAFailureStay) {
  EXPECT_EQ(shown(run(u"FIELD A := 1; 1/0"_s).value), "error 0538");
  EXPECT_EQ(written(), "A=1;");
}

TEST_F(Effects, NothingIsWrittenAfterAReturn) {
  run(u"FIELD A := 1; @Return(2); FIELD B := 3"_s);
  EXPECT_EQ(written(), "A=1;");
}

TEST_F(Effects, EnvironmentEntriesHaveADollarInFront) {
  run(u"ENVIRONMENT Color := \"red\"; 1"_s);
  EXPECT_EQ(world.environment.ini.value(u"$Color"_s), u"red"_s);
  EXPECT_EQ(shown(run(u"@Environment(\"Region\")"_s).value), "\"North\"");
}

TEST_F(Effects, FormulasRunWithoutDocumentAndDatabase) {
  const Compiled compiled = compile(u"x := 2; FIELD y := 3; x + @If(Subject = \"\"; 1; 0) + y"_s);
  ASSERT_TRUE(compiled);
  Evaluation evaluation(compiled.formula, world.environment);
  EXPECT_EQ(shown(evaluation.run(nullptr, nullptr).value), "6");
  const Compiled title = compile(u"@DbTitle"_s);
  EXPECT_EQ(shown(Evaluation(title.formula, world.environment).run(nullptr, nullptr).value), "error 0558");
}

// --- Selection and deletion ----------------------------------------------------------------------------

TEST_F(Effects, TheSelectionIsWhatSelectSays) {
  EXPECT_TRUE(run(u"SELECT Form = \"Memo\""_s).matches);
  EXPECT_FALSE(run(u"SELECT Form = \"Letter\""_s).matches);
  EXPECT_TRUE(run(u"SELECT Amount; 0"_s).matches);
  EXPECT_FALSE(run(u"SELECT Zero; 1"_s).matches);
  EXPECT_TRUE(run(u"SELECT 0 : 2"_s).matches);
}

TEST_F(Effects, WithoutSelectTheLastExpressionSelects) {
  EXPECT_TRUE(run(u"0; 5"_s).matches);
  EXPECT_FALSE(run(u"5; 0"_s).matches);
  EXPECT_FALSE(run(u"\"text\""_s).matches);
}

TEST_F(Effects, AnErrorSelectsNothing) {
  EXPECT_FALSE(run(u"SELECT 1/0"_s).matches);
  EXPECT_FALSE(run(u"SELECT Form + 1"_s).matches);
  EXPECT_FALSE(run(u"SELECT NoSuchItem = 1"_s).matches);
}

TEST_F(Effects, DeletionIsAMarkThatCanBeTakenBack) {
  EXPECT_TRUE(run(u"@DeleteDocument"_s).deletes);
  EXPECT_TRUE(run(u"@If(Amount > 10; @DeleteDocument; 0)"_s).deletes);
  EXPECT_FALSE(run(u"@If(Amount > 20; @DeleteDocument; 0)"_s).deletes);
}

TEST_F(Effects, AFormulaTellsWhichItemsItReads) {
  const Compiled compiled = compile(u"x := Subject; SELECT Form = \"Memo\" & x != Topic & FORM != \"\""_s);
  ASSERT_TRUE(compiled);
  QStringList names;
  for (const Name& name : compiled.formula->itemNames()) names.append(name.key());
  for (const QString& name : {u"Subject"_s, u"Form"_s, u"Topic"_s})
    EXPECT_EQ(names.count(caseKey(name)), 1) << name.toStdString();
  EXPECT_TRUE(compiled.formula->hasSelect());
  EXPECT_FALSE(compile(u"Form"_s).formula->hasSelect());
}

TEST_F(Effects, AFormulaTellsWhichResponsesItTakesIn) {
  using Responses = Formula::Responses;
  const auto responses = [](QStringView source) { return compile(source).formula->responses(); };
  EXPECT_EQ(responses(u"SELECT Form = \"Memo\""), Responses::None);
  EXPECT_EQ(responses(u"SELECT Form = \"Memo\" | @AllChildren"), Responses::Children);
  EXPECT_EQ(responses(u"SELECT Form = \"Memo\" | @AllDescendants"), Responses::Descendants);
}

// --- Limits --------------------------------------------------------------------------------------------

TEST_F(Effects, AnEndlessLoopEndsAtTheLimitOfSteps) {
  const Limits few{100'000, 1 << 20, 16};
  for (const QString& loop : {u"@While(1; 1)"_s, u"@DoWhile(x := 1; 1)"_s,
                              u"@For(i := 0; 1; i := i + 1; i)"_s, u"f := \"@While(1; 1)\"; @Eval(f)"_s})
    EXPECT_EQ(shown(run(loop + u"; 5"_s, Writes::Apply, few).value), "error 0562") << loop.toStdString();
}

TEST_F(Effects, NoFunctionSwallowsTheEndOfTheRun) {
  const Limits few{100'000, 1 << 20, 16};
  EXPECT_EQ(shown(run(u"@IfError(@While(1; 1); \"alt\"); 5"_s, Writes::Apply, few).value), "error 0562");
  EXPECT_EQ(shown(run(u"@While(1; @IsError(@While(1; 1))); 5"_s, Writes::Apply, few).value), "error 0562");
}

TEST_F(Effects, MemoryIsLimited) {
  const QString grow =
      u"t := \"0123456789\"; n := 0; l := \"a\"; @While(n < 12; t := t + t; l := l : l; n := n + 1); "
      u"@Elements(@Transform(l; \"x\"; t + x))"_s;
  EXPECT_EQ(shown(run(grow, Writes::Apply, {10'000'000, 1 << 20, 16}).value), "error 0543");
}

TEST_F(Effects, AFailedRunLeavesTheNextItsLimits) {
  const Compiled compiled = compile(u"@If(Loop; @While(1; 1); 0); \"done\""_s);
  ASSERT_TRUE(compiled);
  Evaluation evaluation(compiled.formula, world.environment, {100'000, 1 << 20, 16});
  MemoryDocument endless, brief;
  endless.put(u"Loop"_s, Value::truth(true));
  brief.put(u"Loop"_s, Value::truth(false));
  EXPECT_EQ(shown(evaluation.run(&endless, nullptr).value), "error 0562");
  EXPECT_EQ(shown(evaluation.run(&brief, nullptr).value), "\"done\"");
}

TEST_F(Effects, TheUserCanInterrupt) {
  class Impatient : public TestEnvironment {
   public:
    bool interrupted() override { return ++asked > 3; }
    int asked = 0;
  };
  Impatient impatient;
  const Compiled compiled = compile(u"@While(1; 1)"_s);
  EXPECT_EQ(shown(Evaluation(compiled.formula, impatient).run(nullptr, nullptr).value), "error 0562");
  EXPECT_EQ(impatient.asked, 4);
}

TEST_F(Effects, AResultLongerThanAnItemIsRefused) {
  // Each text is allowed; together they are more than a result may hold.
  const QString grow = u"t := \"0123456789\"; n := 0; @While(n < 12; t := t + t; n := n + 1); "_s;
  EXPECT_EQ(shown(run(grow + u"@Length(t : t)"_s).value), "40960 : 40960");
  EXPECT_EQ(shown(run(grow + u"t : t"_s).value), "error 0554");
}

}  // namespace
}  // namespace lens::formula

// What functions do to the world around a formula, and what they leave alone.

#include <gtest/gtest.h>

#include "embedded/formula/support/test_context.h"

namespace lens::formula {
namespace {
using namespace Qt::StringLiterals;

Outcome run(TestContext& world, const QString& source,
            Evaluation::Writes writes = Evaluation::Writes::Apply) {
  const Compiled compiled = compile(source, {&world.environment});
  EXPECT_TRUE(compiled) << source.toStdString();
  Evaluation evaluation(compiled.formula, world.environment);
  return evaluation.run(&world.document, &world.database, writes);
}

// A view with one column of ten thousand rows.
class LargeDatabase : public TestDatabase {
 public:
  Value column(const ViewPlace&, int column) const override {
    ListBuilder rows;
    for (int i = 0; i < 10000; ++i) {
      if (column == 1)
        rows.addText(QStringView(u"0123456789"));
      else
        rows.addNumber(i);
    }
    return rows.take();
  }
  bool lookup(const ViewPlace& place, const Lookup&, Value& value) const override {
    value = column(place, 1);
    return true;
  }
};

Value runOnLarge(const QString& source) {
  TestContext world;
  LargeDatabase database;
  const Compiled compiled = compile(source, {&world.environment});
  return Evaluation(compiled.formula, world.environment).run(&world.document, &database).value;
}

TEST(DbColumn, GivesWhatFitsIntoAResult) {
  const Value texts = runOnLarge(u"@DbColumn(\"\"; \"\"; \"All\"; 1)"_s);
  ASSERT_TRUE(texts.isText()) << texts.errorCode();
  EXPECT_EQ(texts.count(), (65535 - 6) / 12);
  const Value numbers = runOnLarge(u"@DbColumn(\"\"; \"\"; \"All\"; 2)"_s);
  ASSERT_TRUE(numbers.isNumber()) << numbers.errorCode();
  EXPECT_EQ(numbers.count(), (65535 - 6) / 8);
}

TEST(DbLookup, GivesWhatFitsIntoAResult) {
  const Value texts = runOnLarge(u"@DbLookup(\"\"; \"\"; \"All\"; \"k\"; 1)"_s);
  ASSERT_TRUE(texts.isText()) << texts.errorCode();
  EXPECT_EQ(texts.count(), (65535 - 6) / 12);
}

TEST(Deletion, IsReportedAndTakenBack) {
  TestContext world;
  EXPECT_TRUE(run(world, u"@DeleteDocument"_s).deletes);
  EXPECT_TRUE(run(world, u"@HardDeleteDocument"_s).deletes);
  EXPECT_FALSE(run(world, u"@DeleteDocument; @UndeleteDocument"_s).deletes);
  EXPECT_FALSE(run(world, u"@If(0; @DeleteDocument; 1)"_s).deletes);
}

TEST(Writes, FieldsAndSettingsAreWritten) {
  TestContext world;
  EXPECT_TRUE(run(world, u"@SetField(\"A\"; 1)"_s).modified);
  ASSERT_EQ(world.document.writes().size(), 1u);
  EXPECT_EQ(world.document.writes()[0].name, u"A"_s);
  run(world, u"@SetEnvironment(\"Zoom\"; \"3\")"_s);
  EXPECT_EQ(world.environment.ini.value(u"$Zoom"_s), u"3"_s);
}

TEST(Writes, ASearchChangesNothing) {
  TestContext world;
  const auto pretend = [&](const QString& source) { return run(world, source, Evaluation::Writes::Pretend); };
  EXPECT_EQ(pretend(u"@SetField(\"A\"; 1); @GetField(\"A\")"_s).value.number(), 1);
  EXPECT_TRUE(world.document.writes().empty());
  EXPECT_FALSE(pretend(u"@DeleteDocument"_s).deletes);
  pretend(u"@SetEnvironment(\"Zoom\"; \"3\")"_s);
  EXPECT_FALSE(world.environment.ini.contains(u"$Zoom"_s));
  pretend(u"@SetProfileField(\"Settings\"; \"Color\"; \"green\")"_s);
  EXPECT_EQ(run(world, u"@GetProfileField(\"Settings\"; \"Color\")"_s).value.text(), u"blue");
  const QString other = u"FEDCBA9876543210FEDCBA9876543210"_s;
  pretend(u"@SetDocField(\"%1\"; \"Subject\"; \"x\")"_s.arg(other));
  EXPECT_EQ(run(world, u"@GetDocField(\"%1\"; \"Subject\")"_s.arg(other)).value.text(), u"Other");
}

// Without a document or a database what asks for them is an error, and nothing else.
TEST(Context, MayBeMissing) {
  TestEnvironment environment;
  const auto codeOf = [&](const QString& source) {
    const Compiled compiled = compile(source, {&environment});
    const Value value = Evaluation(compiled.formula, environment).run(nullptr, nullptr).value;
    return value.isError() ? value.errorCode() : FaultCode(0);
  };
  for (const QString& source :
       {u"@NoteID"_s, u"@DocumentUniqueID"_s, u"@Attachments"_s, u"@DocFields"_s, u"@Author"_s,
        u"@AllChildren"_s, u"@DeleteDocument"_s, u"@IsNewDoc"_s, u"@DbName"_s, u"@DbTitle"_s, u"@UserRoles"_s,
        u"@ViewTitle"_s, u"@DbExists(\"a\")"_s, u"@DbColumn(\"\"; \"\"; \"All\"; 1)"_s,
        u"@GetProfileField(\"P\"; \"x\")"_s, u"@GetDocField(\"0123456789ABCDEF0123456789ABCDEF\"; \"x\")"_s})
    EXPECT_EQ(codeOf(source), fault::NotInContext) << source.toStdString();
  for (const QString& source : {u"@UserName"_s, u"@GetField(\"x\")"_s, u"@SetField(\"x\"; 1)"_s,
                                u"@Environment(\"Region\")"_s, u"@IsValid"_s})
    EXPECT_EQ(codeOf(source), 0) << source.toStdString();
}

}  // namespace
}  // namespace lens::formula

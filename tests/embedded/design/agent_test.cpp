#include "embedded/design/agent.h"

#include "embedded/dxl/import_fixture.h"
#include "embedded/format/source_formula.h"

namespace lens {
namespace {

const QString kPath = QStringLiteral("/data/t.nsf");

class AgentReading : public DxlImport {
 protected:
  Note agent(const QByteArray& content, const QByteArray& attributes = {}) {
    return design("<agent name='Clean' alias='cl'" + attributes + ">" + content + "</agent>",
                  noteclass::Filter);
  }
  const Note& formulaAgent() {
    if (formulaAgent_.items.isEmpty())
      formulaAgent_ = agent(
          "<trigger type='actionsmenu'/><documentset type='selected'/>"
          "<code event='action'><formula>FIELD A := 1; SELECT @All</formula></code>");
    return formulaAgent_;
  }

 private:
  Note formulaAgent_;
};

std::string whyNot(const Note& note) {
  try {
    readFormulaAgent(note, kPath);
  } catch (const RuntimeError& error) {
    EXPECT_EQ(error.number(), agentfault::CannotRun);
    EXPECT_TRUE(error.description().startsWith(kPath)) << error.description().toStdString();
    return error.description().toStdString();
  }
  return {};
}

bool says(const std::string& text, const char* part) {
  return text.find(part) != std::string::npos;
}

void replace(Note& note, QStringView name, const QByteArray& value) {
  note.find(name)->value = value;
}

TEST_F(AgentReading, GivesTitleSettingsAndFormula) {
  const Agent read = readFormulaAgent(formulaAgent(), kPath);
  EXPECT_EQ(read.title, QStringLiteral("Clean|cl"));
  EXPECT_EQ(read.formula, QStringLiteral("FIELD A := 1; SELECT @All"));
  EXPECT_EQ(read.settings.trigger, 4);
  EXPECT_EQ(read.target(), AgentTarget::Selected);
  EXPECT_FALSE(instantOf(read.lastRun).isValid());
}

TEST_F(AgentReading, ReadsTheScheduleThatWasWritten) {
  AgentSchedule weekly;
  weekly.trigger = 1;
  weekly.search = 1;
  weekly.intervalType = 3;
  weekly.interval = 1;
  weekly.time1 = 7920000;
  weekly.time2 = 4;
  weekly.flags = 0x12;
  AgentSchedule read;
  ASSERT_TRUE(readAssistInfo(QByteArrayView(assistInfoValue(weekly)).sliced(2), read));
  EXPECT_EQ(read.trigger, 1);
  EXPECT_EQ(read.intervalType, 3);
  EXPECT_EQ(read.time1, 7920000u);
  EXPECT_EQ(read.time2, 4u);
  EXPECT_EQ(read.flags, 0x12u);
}

TEST_F(AgentReading, SaysWhyOtherLanguagesDoNotRun) {
  const Note script =
      agent("<code event='initialize'><lotusscript>Sub Initialize\nEnd Sub</lotusscript></code>");
  EXPECT_TRUE(says(whyNot(script), "LotusScript")) << whyNot(script);
  EXPECT_TRUE(says(whyNot(script), "\"Clean|cl\""));
}

TEST_F(AgentReading, SaysWhatAnAgentWithoutAFormulaHasInstead) {
  Note java = formulaAgent();
  replace(java, u"$AssistAction", emptyActionValue());
  replace(java, u"$AssistType", numberValue(65427));
  EXPECT_TRUE(says(whyNot(java), "Java")) << whyNot(java);
  Note simple = formulaAgent();
  replace(simple, u"$AssistAction",
          rawValue(itemtype::Action, QByteArray("\x81\x02\x83\xFF\x06\x00\x00\x00", 8)));
  EXPECT_TRUE(says(whyNot(simple), "simple actions")) << whyNot(simple);
  Note none = formulaAgent();
  replace(none, u"$AssistAction", emptyActionValue());
  replace(none, u"$AssistType", numberValue(-1));
  EXPECT_TRUE(says(whyNot(none), "no formula")) << whyNot(none);
}

TEST_F(AgentReading, RefusesWhatWouldChangeOtherDocumentsThanMeant) {
  Note searching = formulaAgent();
  replace(searching, u"$AssistQuery",
          rawValue(itemtype::Query, QByteArray("\x81\x06\0\0\0\0\x89\xFF\x11\0\0\0\0\0", 14)));
  EXPECT_TRUE(says(whyNot(searching), "search conditions")) << whyNot(searching);
  Note copying = formulaAgent();
  QByteArray action = copying.find(u"$AssistAction")->value;
  action[8] = 2;
  replace(copying, u"$AssistAction", action);
  EXPECT_TRUE(says(whyNot(copying), "copies")) << whyNot(copying);
  Note compiled = formulaAgent();
  replace(compiled, u"$AssistAction", formulaActionValue(QByteArray("\x12\x00\x01\x02", 4)));
  EXPECT_TRUE(says(whyNot(compiled), "compiled form only")) << whyNot(compiled);
}

TEST_F(AgentReading, ReadsCompiledFormulasAndSaysWhyNot) {
  const auto withFormula = [&](const char* hex) {
    Note note = formulaAgent();
    replace(note, u"$AssistAction", formulaActionValue(QByteArray::fromHex(hex)));
    return note;
  };
  const Note compiled =
      withFormula("280000001a000500060053746174757301000400446f6e650a02030007000c000500093153325300");
  EXPECT_EQ(readFormulaAgent(compiled, kPath).formula, u"SELECT Status = \"Done\"");
  const Note nameless = withFormula("0a0000000800c1000300");
  EXPECT_TRUE(says(whyNot(nameless), "function C1")) << whyNot(nameless);
  const Note hidden = withFormula("160009000c005a5a5a5a5a5a5a5a0400040004000400");
  EXPECT_TRUE(says(whyNot(hidden), "Formula is hidden")) << whyNot(hidden);
}

TEST_F(AgentReading, DoesNotNeedAnyQuery) {
  Note note = formulaAgent();
  note.items.removeIf([](const Item& item) { return sameItemName(item.name, u"$AssistQuery"); });
  EXPECT_EQ(whyNot(note), "");
}

// Bytes that are cut anywhere run nothing.
TEST_F(AgentReading, OfDamagedItemsIsRefused) {
  const Note whole = formulaAgent();
  const QByteArray info = whole.find(u"$AssistInfo")->value, action = whole.find(u"$AssistAction")->value;
  constexpr qsizetype kFlagsEnd = 2 + 38;  // type word and the fields that are read
  for (qsizetype length = 2; length < info.size(); ++length) {
    Note note = whole;
    replace(note, u"$AssistInfo", info.first(length));
    ASSERT_EQ(whyNot(note).empty(), length >= kFlagsEnd) << length;
  }
  for (qsizetype length = 2; length < action.size(); ++length) {
    Note note = whole;
    replace(note, u"$AssistAction", action.first(length));
    ASSERT_NE(whyNot(note), "") << length;
  }
  for (qsizetype at = 2; at < action.size(); ++at) {
    for (const char byte : {'\0', '\x7F', '\x81', '\xFF'}) {
      Note note = whole;
      QByteArray bytes = action;
      bytes[at] = byte;
      replace(note, u"$AssistAction", bytes);
      whyNot(note);  // must only not crash: a changed letter of the formula is no damage
    }
  }
  for (const char16_t* name : {u"$AssistInfo", u"$AssistAction"}) {
    Note note = whole;
    replace(note, name, textValue(u"no record"));
    EXPECT_NE(whyNot(note), "");
    note.items.removeIf([&](const Item& item) { return sameItemName(item.name, name); });
    EXPECT_NE(whyNot(note), "");
  }
}

}  // namespace
}  // namespace lens

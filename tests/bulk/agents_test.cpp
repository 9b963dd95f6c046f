// The double click on an agent.
#include "bulk/operations_fixture.h"
#include "embedded/design/agent.h"
#include "embedded/format/source_formula.h"

namespace lens {
namespace {

class RunningAgents : public OperationsTest {
 protected:
  NoteId agent(Database& in, const QString& title, const QString& formula) {
    AgentSchedule settings;
    settings.trigger = 4;
    settings.search = 1;
    Note note;
    note.header.noteClass = noteclass::Filter;
    note.add(u"$TITLE"_s, itemflag::Summary, textValue(title));
    note.add(u"$Flags"_s, itemflag::Summary, textValue(u"f"_s));
    note.add(u"$AssistType"_s, itemflag::Summary, numberValue(65412));
    note.add(u"$AssistFlags"_s, itemflag::Summary, textValue(u"D"_s));
    note.add(u"$AssistInfo"_s, 0, assistInfoValue(settings));
    note.add(u"$AssistQuery"_s, 0, emptyQueryValue());
    note.add(u"$AssistAction"_s, 0, formulaActionValue(sourceFormula(formula)));
    in.notes().save(note);
    return note.header.id;
  }
  void choose(const QString& row) {
    window.lstAgentNames->clear();
    window.lstAgentNames->addItem(row);
    window.lstAgentNames->setSelected(0, true);
  }
  void doubleClick() { window.lstAgentNames->dblClick.fire(); }
  bool isNoteShown() { return !window.lblRunAgent->isHidden(); }
  static ShownBox question(const QString& name) {
    return {u"Are you sure to run the Agent: "_s + name + u" ?", box::OkCancel, u"Run agent"_s};
  }
  static ShownBox cannotOpen() { return {u"Can't open the Database!!"_s, box::Critical, u"Open Notes DB"_s}; }
};

TEST_F(RunningAgents, RunOnTheirDatabaseAfterAQuestion) {
  memo(u"old"_s);
  agent(*source, u"Clean"_s, u"FIELD Subject := \"new\"; SELECT @All"_s);
  chooseSource();
  choose(u"Clean"_s);
  EXPECT_FALSE(isNoteShown());
  host.whileBoxIsShown = [this](const ShownBox&) { EXPECT_TRUE(isNoteShown()); };
  doubleClick();
  EXPECT_EQ(host.boxes, Boxes({question(u"Clean"_s)}));
  EXPECT_EQ(subjects(*source), QStringList(u"new"_s));
  EXPECT_FALSE(isNoteShown());
  EXPECT_EQ(globals.gDbPath, "source.nsf");
}

TEST_F(RunningAgents, AreNotRunOnCancel) {
  memo(u"old"_s);
  agent(*source, u"Clean"_s, u"FIELD Subject := \"new\"; SELECT @All"_s);
  chooseSource();
  choose(u"Clean"_s);
  answerWith({answer::Cancel});
  doubleClick();
  EXPECT_EQ(subjects(*source), QStringList(u"old"_s));
  EXPECT_EQ(callsOf(u"RUN"_s), 0);
  EXPECT_FALSE(isNoteShown());
}

TEST_F(RunningAgents, AreFoundByTheNameBeforeTheAlias) {
  memo(u"old"_s);
  agent(*source, u"Clean|cl"_s, u"FIELD Subject := \"new\"; SELECT @All"_s);
  chooseSource();
  choose(u"Clean|cl"_s);
  doubleClick();
  EXPECT_EQ(host.boxes, Boxes({question(u"Clean"_s)}));
  EXPECT_EQ(subjects(*source), QStringList(u"new"_s));
}

TEST_F(RunningAgents, ARowThatIsNoAgentAsksNothingAndLeavesTheNoteOnShow) {
  chooseSource();
  for (const QString& row : {u"8FA"_s, u"gone"_s, u"|alias"_s}) {
    choose(row);
    doubleClick();
  }
  window.lstAgentNames->clear();
  doubleClick();
  EXPECT_EQ(host.boxes, Boxes());
  EXPECT_TRUE(isNoteShown());
}

TEST_F(RunningAgents, OfADatabaseThatIsGoneAreToldOnAServerAndReportedHere) {
  choose(u"Clean"_s);
  chooseSource(u"gone.nsf"_s, kHub);
  doubleClick();
  EXPECT_EQ(host.boxes, Boxes({cannotOpen()}));
  EXPECT_TRUE(isNoteShown());
  host.boxes.clear();
  chooseSource(u"gone.nsf"_s);
  doubleClick();
  ASSERT_EQ(host.boxes.size(), 1);
  EXPECT_TRUE(host.boxes[0].text.startsWith(u"Run-time error '"_s) &&
              host.boxes[0].text.contains(u"gone.nsf"_s))
      << host.boxes[0].text.toStdString();
}

TEST_F(RunningAgents, WithAnEmptyServerBoxOpenThePathHereByTheWayOfServers) {
  memo(u"old"_s);
  agent(*source, u"Clean"_s, u"FIELD Subject := \"new\"; SELECT @All"_s);
  choose(u"Clean"_s);
  chooseSource(u"source.nsf"_s, QString());
  doubleClick();
  EXPECT_EQ(subjects(*source), QStringList(u"new"_s));
  host.boxes.clear();
  chooseSource(u"gone.nsf"_s, QString());
  doubleClick();
  EXPECT_EQ(host.boxes, Boxes({cannotOpen()}));
}

TEST_F(RunningAgents, AFailingRunIsSilentOnAServerAndReportedHere) {
  for (Database* in : {source.get(), target.get()}) {
    Note note = memoNote(u"x"_s);
    in->notes().save(note);
    agent(*in, u"Fails"_s, u"FIELD Done := \"1\"; SELECT @TextToNumber(Subject) > 0"_s);
  }
  choose(u"Fails"_s);
  chooseSource(u"target.nsf"_s, kHub);
  doubleClick();
  EXPECT_EQ(host.boxes, Boxes({question(u"Fails"_s)}));
  host.boxes.clear();
  chooseSource();
  doubleClick();
  ASSERT_EQ(host.boxes.size(), 2);
  EXPECT_TRUE(host.boxes[1].text.startsWith(u"Run-time error '"_s));
  EXPECT_EQ(subjects(*source), QStringList(u"x"_s));
}

TEST_F(RunningAgents, OneThatLoopsIsEndedByEscAndChangesNothing) {
  memo(u"old"_s);
  agent(*source, u"Loops"_s, u"FIELD Subject := \"new\"; @While(1; 1)"_s);
  chooseSource();
  choose(u"Loops"_s);
  workspace->setInterruptCheck([this] { return host.escapePressed(); });
  host.whenEscapeIsAsked = [this] { return host.escapesAsked >= 3; };
  doubleClick();
  ASSERT_EQ(host.boxes.size(), 2);
  EXPECT_TRUE(host.boxes[1].text.contains(u"\"Loops\""_s)) << host.boxes[1].text.toStdString();
  EXPECT_EQ(subjects(*source), QStringList(u"old"_s));
}

// Every n-th call: on a server only the database that cannot be opened is told.
TEST_F(RunningAgents, EveryFailureIsReportedHereAndPassedOverOnAServer) {
  for (Database* in : {source.get(), target.get()}) agent(*in, u"Idle"_s, u"SELECT @False"_s);
  choose(u"Idle"_s);
  const auto boxesOf = [&](const QString& path, const QString& server) {
    chooseSource(path, server);
    QVector<Boxes> all;
    const auto run = [&](int n) {
      host.boxes.clear();
      return reachesFault(notes(), n, [&] { doubleClick(); });
    };
    withEveryFault(run, [&](int) { all += host.boxes; });
    EXPECT_EQ(host.boxes, Boxes({question(u"Idle"_s)}));
    return all;
  };
  EXPECT_EQ(boxesOf(u"source.nsf"_s, u"Local"_s),
            QVector<Boxes>({{report(70)}, {report(70)}, {question(u"Idle"_s), report(70)}}));
  EXPECT_EQ(boxesOf(u"target.nsf"_s, kHub), QVector<Boxes>({{cannotOpen()}, {}, {question(u"Idle"_s)}}));
}

}  // namespace
}  // namespace lens

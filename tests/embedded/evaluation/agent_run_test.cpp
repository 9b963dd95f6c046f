#include "embedded/evaluation/agent_run.h"

#include <gtest/gtest.h>
#include <sqlite3.h>

#include "embedded/dxl/dxl_importer.h"
#include "embedded/model/support/test_workspace.h"
#include "embedded/search/selection.h"

using namespace lens;
using namespace lens::testbed;
using namespace Qt::Literals::StringLiterals;

namespace {

struct AgentRuns : ::testing::Test {
  NoteId agent(quint16 search, const QString& formula, const QString& flags = u"f"_s) {
    return t.addAgent(u"Clean|cl"_s, formula, search, flags);
  }
  NoteId memo(const QString& subject, const QString& form = u"Memo"_s) {
    return t.add({{u"Form"_s, textValue(form)}, {u"Subject"_s, textValue(subject)}});
  }
  NoteId response(NoteId parent, const QString& subject) {
    Note above;
    EXPECT_TRUE(t.store->notes().read(parent, above));
    Note note = noteOf({{u"Form"_s, textValue(u"Response")}, {u"Subject"_s, textValue(subject)}});
    note.header.parent = above.header.unid;
    t.store->notes().save(note);
    return note.header.id;
  }
  AgentRun run(NoteId id, bool seesClient = true) {
    return runAgent({*t.workspace, place, t.store, seesClient}, id);
  }
  QString text(NoteId id, QStringView name) {
    Note note;
    return t.store->notes().read(id, note) ? note.text(name) : u"(gone)"_s;
  }
  quint32 sequence(NoteId id) {
    Note note;
    EXPECT_TRUE(t.store->notes().read(id, note));
    return note.header.sequence;
  }
  int failure(NoteId id, QString* description = nullptr) {
    try {
      run(id);
    } catch (const RuntimeError& error) {
      if (description) *description = error.description();
      return error.number();
    }
    return 0;
  }
  TestWorkspace t;
  DatabasePlace place{QString(), u"mail.nsf"_s};
};

}  // namespace

TEST_F(AgentRuns, OverAllDocumentsChangeThoseThatTheFormulaSelects) {
  const NoteId one = memo(u"one"_s), two = memo(u"two"_s, u"Task"_s), three = memo(u"three"_s);
  const NoteId profile = t.add({{u"$Name"_s, textValue(u"$profile_001p_")}, {u"Form"_s, textValue(u"Memo")}});
  const NoteId form =
      t.add({{u"$TITLE"_s, textValue(u"Memo")}, {u"Form"_s, textValue(u"Memo")}}, noteclass::Form);
  const AgentRun done = run(agent(1, u"FIELD Subject := @UpperCase(Subject); SELECT Form = \"Memo\""_s));
  EXPECT_EQ(done.processed, 2);
  EXPECT_EQ(done.changed, 2);
  EXPECT_EQ(text(one, u"Subject"), u"ONE"_s);
  EXPECT_EQ(text(two, u"Subject"), u"two"_s);
  EXPECT_EQ(text(three, u"Subject"), u"THREE"_s);
  EXPECT_EQ(sequence(one), 2u);
  for (const NoteId untouched : {two, profile, form}) EXPECT_EQ(sequence(untouched), 1u);
}

TEST_F(AgentRuns, SeeAllItemsAndNotOnlySummaries) {
  const NoteId id = t.add({{u"Long"_s, textValue(u"tail"), 0}});
  run(agent(1, u"FIELD Copy := Long; SELECT @All"_s));
  EXPECT_EQ(text(id, u"Copy"), u"tail"_s);
}

TEST_F(AgentRuns, WithoutASelectTakeEveryDocument) {
  const NoteId id = memo(u"x"_s);
  EXPECT_EQ(run(agent(1, u"FIELD A := \"y\"; \"\""_s)).changed, 1);
  EXPECT_EQ(text(id, u"A"), u"y"_s);
}

TEST_F(AgentRuns, ThatWriteNothingSaveNothing) {
  const NoteId id = memo(u"x"_s);
  const AgentRun done = run(agent(1, u"a := Subject; SELECT @All"_s));
  EXPECT_EQ(done.processed, 1);
  EXPECT_EQ(done.changed, 0);
  EXPECT_EQ(sequence(id), 1u);
}

TEST_F(AgentRuns, DeleteWhatTheFormulaDeletes) {
  const NoteId empty = memo(u" "_s), full = memo(u"x"_s), task = memo(u""_s, u"Task"_s);
  const AgentRun done = run(agent(1, u"@DeleteDocument; SELECT Form = \"Memo\" & @Trim(Subject) = \"\""_s));
  EXPECT_EQ(done.deleted, 1);
  EXPECT_EQ(t.store->notes().state(empty), NoteState::Stub);
  EXPECT_EQ(t.store->notes().state(full), NoteState::Live);
  EXPECT_EQ(t.store->notes().state(task), NoteState::Live);
}

TEST_F(AgentRuns, OverNewAndModifiedDocumentsGoOnFromTheLastRun) {
  const NoteId first = memo(u"a"_s);
  const NoteId changed = agent(3, u"FIELD Runs := Runs + \"x\"; SELECT @All"_s);
  const NoteId added = agent(2, u"FIELD News := News + \"n\"; SELECT @All"_s);
  EXPECT_EQ(run(changed).processed, 1);
  EXPECT_EQ(run(changed).processed, 0) << "what the agent wrote itself is nothing new";
  EXPECT_EQ(run(added).processed, 1);
  EXPECT_EQ(run(changed).processed, 1) << "another agent changed it";
  const NoteId second = memo(u"b"_s);
  Note note;
  ASSERT_TRUE(t.store->notes().read(first, note));
  t.store->notes().save(note);
  EXPECT_EQ(run(added).processed, 1);
  EXPECT_EQ(text(first, u"News"), u"n"_s);
  EXPECT_EQ(text(second, u"News"), u"n"_s);
  EXPECT_EQ(run(changed).processed, 2);
  EXPECT_EQ(text(first, u"Runs"), u"xxx"_s);
}

TEST_F(AgentRuns, OverSelectedDocumentsTakeTheMarksOfTheClient) {
  const NoteId one = memo(u"one"_s), two = memo(u"two"_s);
  const NoteId form = t.add({{u"$TITLE"_s, textValue(u"Memo")}}, noteclass::Form);
  const NoteId id = agent(4, u"FIELD Done := \"1\"; SELECT @All"_s);
  EXPECT_EQ(run(id).processed, 0) << "nothing is on top";
  t.workspace->client().showDatabase(place);
  t.workspace->client().select({two, form, NoteId(0x7FFFFFF0), two});
  EXPECT_EQ(run(id, false).processed, 0) << "a session without a client sees no marks";
  EXPECT_EQ(run(id).processed, 1) << "each document once; design notes and what is gone are none";
  EXPECT_EQ(sequence(two), 2u);
  EXPECT_EQ(text(one, u"Done"), QString());
  EXPECT_EQ(text(two, u"Done"), u"1"_s);
  EXPECT_EQ(sequence(form), 1u);
  t.workspace->client().showDatabase({QString(), u"other.nsf"_s});
  EXPECT_EQ(run(id).processed, 0);
}

TEST_F(AgentRuns, OverAViewTakeTheOneOnTopElseTheDefaultOne) {
  const NoteId memoId = memo(u"m"_s), taskId = memo(u"t"_s, u"Task"_s);
  const NoteId id = agent(5, u"FIELD Seen := Seen + \"x\"; SELECT @All"_s);
  QString why;
  EXPECT_EQ(failure(id, &why), agentfault::CannotRun);
  EXPECT_TRUE(why.contains(u"view"_s)) << why.toStdString();
  const NoteId tasks = t.addView(u"Tasks"_s, sourceFormulaValue(u"SELECT Form = \"Task\""));
  t.add({{u"$TITLE"_s, textValue(u"Memos")}, {u"$Formula"_s, sourceFormulaValue(u"SELECT Form = \"Memo\"")}},
        noteclass::View | noteclass::Default);
  EXPECT_EQ(run(id).processed, 1);
  EXPECT_EQ(text(memoId, u"Seen"), u"x"_s);
  t.workspace->client().showDatabase(place);
  t.workspace->client().showView(tasks);
  EXPECT_EQ(run(id).processed, 1);
  EXPECT_EQ(text(taskId, u"Seen"), u"x"_s);
  EXPECT_EQ(text(memoId, u"Seen"), u"x"_s);
}

TEST_F(AgentRuns, OnceComputeTheFormulaWithoutADocument) {
  const NoteId id = memo(u"a"_s);
  const NoteId once = agent(8, u"@SetProfileField(\"Settings\"; \"Ran\"; \"yes\")"_s);
  EXPECT_EQ(run(once).processed, 0);
  EXPECT_EQ(sequence(id), 1u);
  QStringList ran;
  t.store->notes().scan(noteclass::Document, [&](const Note& note) {
    if (isProfile(note)) ran.append(note.text(u"Ran"));
    return true;
  });
  EXPECT_EQ(ran, QStringList(u"yes"_s));
}

TEST_F(AgentRuns, WithoutKnownDocumentsAreRefused) {
  memo(u"a"_s);
  for (const quint16 search : {0, 6, 7, 99}) {
    QString why;
    EXPECT_EQ(failure(agent(search, u"@DeleteDocument; SELECT @All"_s), &why), agentfault::CannotRun)
        << search;
    EXPECT_TRUE(why.contains(t.store->path()) && why.contains(u"\"Clean|cl\""_s)) << why.toStdString();
  }
  EXPECT_EQ(t.store->notes().noteCount(noteclass::Document), 1);
}

TEST_F(AgentRuns, TakeInResponsesThatTheSelectionTakesIn) {
  const NoteId late = memo(u"plan"_s);
  const NoteId answer = response(late, u"re"_s), deeper = response(answer, u"re re"_s);
  const NoteId other = memo(u"else"_s), otherAnswer = response(other, u"re"_s);
  run(agent(1, u"FIELD A := \"1\"; SELECT Subject = \"plan\" | @AllDescendants"_s));
  for (const NoteId id : {late, answer, deeper}) EXPECT_EQ(text(id, u"A"), u"1"_s) << id.value();
  for (const NoteId id : {other, otherAnswer}) EXPECT_EQ(text(id, u"A"), QString()) << id.value();
  run(agent(1, u"FIELD B := \"1\"; SELECT Subject = \"plan\" | @AllChildren"_s));
  EXPECT_EQ(text(answer, u"B"), u"1"_s);
  EXPECT_EQ(text(deeper, u"B"), QString());
}

TEST_F(AgentRuns, ThatFailOverOneDocumentChangeNone) {
  const NoteId one = memo(u"1"_s), bad = memo(u"x"_s), last = memo(u"3"_s);
  const NoteId id = agent(1, u"FIELD Done := \"1\"; SELECT @TextToNumber(Subject) > 0"_s);
  QString why;
  EXPECT_EQ(failure(id, &why), agentfault::Failed);
  EXPECT_TRUE(why.contains(t.store->path())) << why.toStdString();
  EXPECT_TRUE(why.contains(t.hex(bad))) << why.toStdString();
  for (const NoteId untouched : {one, bad, last, id}) EXPECT_EQ(sequence(untouched), 1u);
  EXPECT_EQ(text(one, u"Done"), QString());
}

TEST_F(AgentRuns, WhoseSaveFailsChangeNone) {
  const NoteId one = memo(u"1"_s), two = memo(u"2"_s);
  const QByteArray sql =
      "CREATE TEMP TRIGGER full BEFORE UPDATE ON note WHEN OLD.id = " + QByteArray::number(two.value()) +
      " BEGIN SELECT RAISE(ABORT, 'full'); END";
  ASSERT_EQ(sqlite3_exec(t.store->handle(), sql.constData(), nullptr, nullptr, nullptr), SQLITE_OK);
  const NoteId id = agent(1, u"FIELD Done := \"1\"; SELECT @All"_s);
  EXPECT_EQ(failure(id), enginefault::NotSaved);
  EXPECT_EQ(text(one, u"Done"), QString());
  EXPECT_EQ(sequence(one), 1u);
}

TEST_F(AgentRuns, WithAMistakeInTheFormulaSayWhere) {
  QString why;
  EXPECT_EQ(failure(agent(1, u"FIELD A := ; SELECT @All"_s), &why), agentfault::CannotRun);
  EXPECT_TRUE(why.contains(u"Clean|cl"_s) && why.contains(u"line 1"_s)) << why.toStdString();
}

TEST_F(AgentRuns, PassOverDamagedDocuments) {
  const NoteId broken = memo(u"a"_s), good = memo(u"b"_s);
  const QByteArray sql = "UPDATE note SET items = X'00' WHERE id = " + QByteArray::number(broken.value());
  ASSERT_EQ(sqlite3_exec(t.store->handle(), sql.constData(), nullptr, nullptr, nullptr), SQLITE_OK);
  EXPECT_EQ(run(agent(1, u"FIELD A := \"1\"; SELECT @All"_s)).changed, 1);
  EXPECT_EQ(text(good, u"A"), u"1"_s);
}

TEST_F(AgentRuns, AreRecordedInTheAgentWithoutANewVersionOfIt) {
  memo(u"a"_s);
  memo(u"b"_s);
  const NoteId id = agent(1, u"FIELD A := \"1\"; SELECT Subject = \"a\""_s);
  run(id);
  Note note;
  ASSERT_TRUE(t.store->notes().read(id, note));
  EXPECT_EQ(note.header.sequence, 1u);
  ASSERT_TRUE(note.has(u"$AssistLastRun"));
  EXPECT_TRUE(instantOf(readTimeDate(note.find(u"$AssistLastRun")->data().data())).isValid());
  EXPECT_EQ(itemValues(*note.find(u"$AssistDocCount")).at(0).number(), 1);
  run(id);
  ASSERT_TRUE(t.store->notes().read(id, note));
  EXPECT_EQ(std::count_if(note.items.begin(), note.items.end(),
                          [](const Item& item) { return item.name == u"$AssistLastRun"; }),
            1);
}

TEST_F(AgentRuns, TellTheClientOnceThatDocumentsChanged) {
  memo(u"a"_s);
  memo(u"b"_s);
  int told = 0;
  t.workspace->setChangeListener([&](const DatabasePlace& where) { told += where == place ? 1 : 0; });
  run(agent(1, u"FIELD A := \"1\"; SELECT @All"_s));
  EXPECT_EQ(told, 1);
  t.workspace->setChangeListener({});
}

TEST_F(AgentRuns, OfTheDiscussionSampleDoWhatTheySay) {
  ImportReport report;
  DxlImporter(*t.store).importFile(QStringLiteral(LENS_SAMPLES_DIR "/discussion.dxl"), report);
  ASSERT_EQ(report.failed, QStringList());
  QHash<QString, int> processed;
  QStringList refused;
  for (const NoteSummary& summary : t.store->notes().list(noteclass::Filter)) {
    Note note;
    ASSERT_TRUE(t.store->notes().read(summary.id, note));
    if (!note.has(u"$AssistInfo")) continue;
    try {
      processed.insert(note.text(u"$TITLE"), run(summary.id).processed);
    } catch (const RuntimeError& error) {
      EXPECT_EQ(error.number(), agentfault::CannotRun) << error.description().toStdString();
      refused.append(note.text(u"$TITLE"));
    }
  }
  EXPECT_EQ(processed.value(u"Count words of topics"_s), 3);
  EXPECT_EQ(processed.value(u"Welcome new topics"_s), 3);
  EXPECT_EQ(processed.value(u"Stamp what changed"_s), 6);
  EXPECT_EQ(processed.value(u"File under Site"_s), 3);
  EXPECT_EQ(processed.value(u"Never"_s), 6) << "an agent that is off runs by hand";
  EXPECT_TRUE(processed.contains(u"Note the last clean-up"_s));
  EXPECT_EQ(refused, QStringList({u"Before mail arrives"_s, u"After mail arrives"_s, u"Every half hour"_s,
                                  u"Every night"_s, u"Every Wednesday"_s, u"Every month"_s,
                                  u"When documents are pasted"_s, u"When the server starts"_s,
                                  u"Flag unread topics"_s}));
}

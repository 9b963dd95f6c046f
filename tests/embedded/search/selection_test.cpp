#include <gtest/gtest.h>

#include "embedded/evaluation/workspace_environment.h"
#include "embedded/model/support/test_workspace.h"
#include "embedded/search/selection.h"

using namespace lens;
using namespace lens::testbed;
using namespace Qt::Literals::StringLiterals;

namespace {

struct Selection : ::testing::Test {
  NoteId addMemo(const QString& subject, const Unid& parent = {}) {
    Note note = noteOf({{u"Form"_s, textValue(u"Memo")}, {u"Subject"_s, textValue(subject)}});
    note.header.parent = parent;
    t.store->notes().save(note);
    last = note.header.unid;
    return note.header.id;
  }
  QVector<NoteId> select(const QString& formula, qsizetype most = 0, const QDateTime& since = {}) {
    WorkspaceEnvironment environment(*t.workspace);
    return selectDocuments(*t.store,
                           {compiledFormula(formula, environment), environment, nullptr, since, most});
  }
  QStringList found(const QString& formula) {
    const Object documents = t.mail().call(u"Search"_s, formula, Object(), 0).object();
    QStringList subjects;
    for (Object one = documents.call(u"GETFIRSTDOCUMENT"_s).object(); !one.isNothing();
         one = documents.call(u"GETNEXTDOCUMENT"_s, one).object())
      subjects.append(one.call(u"GETITEMVALUE"_s, u"Subject"_s).at(0).text());
    return subjects;
  }
  TestWorkspace t;
  Unid last;
};

TEST_F(Selection, GivesTheDocumentsThatMatchInOrderOfTheirId) {
  const NoteId one = addMemo(u"pump station"_s);
  addMemo(u"harbour"_s);
  const NoteId three = addMemo(u"the pump again"_s);
  EXPECT_EQ(select(u"SELECT @Contains(Subject; \"pump\")"_s), QVector<NoteId>({one, three}));
  EXPECT_EQ(select(u"@Contains(Subject; \"pump\")"_s), QVector<NoteId>({one, three})) << "without SELECT";
  EXPECT_EQ(select(u"SELECT Form = \"Task\""_s), QVector<NoteId>());
  EXPECT_EQ(select(u"SELECT @All"_s, 2).size(), 2);
}

TEST_F(Selection, LeavesOutProfilesAndDesign) {
  addMemo(u"one"_s);
  t.add({{u"$Name"_s, textValue(u"$profile_015calendarprofile_")}});
  t.add({{u"$TITLE"_s, textValue(u"Memo")}}, noteclass::Form);
  EXPECT_EQ(select(u"SELECT @All"_s).size(), 1);
}

TEST_F(Selection, SeesSummaryItemsOnly) {
  t.add({{u"Hidden"_s, textValue(u"x"), 0}, {u"Shown"_s, textValue(u"x")}});
  EXPECT_EQ(select(u"SELECT @IsAvailable(Hidden)"_s).size(), 0);
  EXPECT_EQ(select(u"SELECT @IsAvailable(Shown)"_s).size(), 1);
}

TEST_F(Selection, WritesNothing) {
  const NoteId id = addMemo(u"old"_s);
  EXPECT_EQ(select(u"FIELD Subject := \"new\"; SELECT Subject = \"new\""_s).size(), 1);
  Note note;
  ASSERT_TRUE(t.store->notes().read(id, note));
  EXPECT_EQ(note.text(u"Subject"), u"old"_s);
  EXPECT_EQ(note.header.sequence, 1u);
}

TEST_F(Selection, PassesOverDocumentsThatItFailsOn) {
  t.add({{u"Amount"_s, textValue(u"many")}});
  const NoteId good = t.add({{u"Amount"_s, numberValue(5)}});
  EXPECT_EQ(select(u"SELECT Amount > 3"_s), QVector<NoteId>({good}));
}

TEST_F(Selection, TakesInResponses) {
  const NoteId topic = addMemo(u"topic"_s);
  const Unid topicId = last;
  const NoteId answer = addMemo(u"answer"_s, topicId);
  const NoteId second = addMemo(u"answer to the answer"_s, last);
  addMemo(u"other"_s);
  const QString just = u"SELECT Subject = \"topic\""_s;
  EXPECT_EQ(select(just), QVector<NoteId>({topic}));
  EXPECT_EQ(select(just + u" | @AllChildren"_s), QVector<NoteId>({topic, answer}));
  EXPECT_EQ(select(just + u" | @AllDescendants"_s), QVector<NoteId>({topic, answer, second}));
}

TEST_F(Selection, TakesInResponsesThatStandBeforeTheirParent) {
  Note parent = noteOf({{u"Subject"_s, textValue(u"topic")}});
  parent.header.unid = Unid::create();
  const NoteId answer = addMemo(u"answer"_s, parent.header.unid);
  t.store->notes().save(parent);
  EXPECT_EQ(select(u"SELECT Subject = \"topic\" | @AllDescendants"_s),
            QVector<NoteId>({answer, parent.header.id}));
}

TEST_F(Selection, TakesInResponsesThatNameTheirParentInAnItem) {
  const NoteId topic = addMemo(u"topic"_s);
  const QByteArray reference = noteRefsValue({last});
  const NoteId answer = t.add({{u"Subject"_s, textValue(u"answer")}, {u"$REF"_s, reference}});
  t.add({{u"Subject"_s, textValue(u"no answer")}, {u"$REF"_s, textValue(last.text())}});
  EXPECT_EQ(select(u"SELECT Subject = \"topic\" | @AllChildren"_s), QVector<NoteId>({topic, answer}));
}

TEST_F(Selection, LooksAtDocumentsModifiedSinceThen) {
  addMemo(u"now"_s);
  const QDateTime now = QDateTime::currentDateTimeUtc();
  EXPECT_EQ(select(u"SELECT @All"_s, 0, now.addDays(-1)).size(), 1);
  EXPECT_EQ(select(u"SELECT @All"_s, 0, now.addDays(1)).size(), 0);
}

TEST_F(Selection, AFormulaThatCannotBeCompiledSaysWhereAndWhy) {
  try {
    select(u"SELECT Form = \"Memo\" &\n @Contaisn(x; \"y\")"_s);
    FAIL() << "nothing was raised";
  } catch (const RuntimeError& error) {
    EXPECT_EQ(error.number(), kFormulaError);
    EXPECT_EQ(error.description(), u"Unknown @Function (line 2, character 2): '@Contaisn'"_s);
  }
}

TEST_F(Selection, EndsWithAFormulaThatDoesNot) {
  for (int i = 0; i < 50; ++i) addMemo(u"memo"_s);
  WorkspaceEnvironment environment(*t.workspace);
  int asked = 0;
  t.workspace->setInterruptCheck([&] { return ++asked > 3; });
  const SelectionRequest endless{compiledFormula(u"SELECT @While(1; 1)", environment), environment};
  try {
    selectDocuments(*t.store, endless);
    FAIL() << "the search went on";
  } catch (const RuntimeError& error) {
    EXPECT_EQ(error.number(), kFormulaError);
    EXPECT_TRUE(error.description().contains(u"mail.nsf"_s)) << error.description().toStdString();
  }
  EXPECT_LE(asked, 5);
}

TEST_F(Selection, CanBeInterruptedBetweenDocuments) {
  for (int i = 0; i < 50; ++i) addMemo(u"memo"_s);
  WorkspaceEnvironment environment(*t.workspace);
  int asked = 0;
  t.workspace->setInterruptCheck([&] { return ++asked > 3; });
  EXPECT_THROW(selectDocuments(*t.store, {compiledFormula(u"SELECT @All", environment), environment}),
               RuntimeError);
  EXPECT_EQ(asked, 4);
}

TEST_F(Selection, IsAskedOfADatabaseInTheObjectModel) {
  addMemo(u"pump station"_s);
  addMemo(u"harbour"_s);
  EXPECT_EQ(found(u"SELECT @Begins(Subject; \"har\")"_s), QStringList(u"harbour"_s));
  EXPECT_EQ(found(u"@Trim(Subject) = \"none\""_s), QStringList());
  EXPECT_EQ(found(u"SELECT @DbTitle = \"Mail of Karin\""_s).size(), 2);
  EXPECT_THROW(found(u"SELECT ("_s), RuntimeError);
  const Object limited = t.mail().call(u"SEARCH"_s, u"@All"_s, Object(), 1).object();
  EXPECT_EQ(limited.get(u"count"_s).number(), 1);
}

}  // namespace

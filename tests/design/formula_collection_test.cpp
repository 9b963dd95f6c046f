// The text of the content box as a search formula over the current database.
#include "design/tools_fixture.h"

namespace lens {
namespace {

class FormulaCollection : public ToolsTest {
 protected:
  FormulaCollection() {
    for (const QString& town : {u"Ulm"_s, u"Bonn"_s, u"Ulm"_s}) ids += memo(u"Town"_s, textValue(town));
    Note profile = document(u"Prefs"_s);
    profile.add(u"$Name"_s, itemflag::Summary, textValue(u"$profile_005Prefs_"));
    save(profile);
    startOnDatabase();
    fill("idList", {u"old"_s});
  }
  void search(const QString& formula) {
    setText("txtFieldContent", formula);
    host.boxes.clear();
    host.pointers.clear();
    notes().log.clear();
    press("cmdCollbyFormula");
  }
  QVector<NoteId> ids;
};

TEST_F(FormulaCollection, ListsTheIdsOfTheDocumentsFound) {
  search(u"Town = \"Ulm\""_s);
  EXPECT_EQ(rows("idList"), QStringList({digits(ids[0]), digits(ids[2])}));
  EXPECT_EQ(text("lblCounter"), u"2"_s);
  EXPECT_EQ(host.pointers, QVector<int>({pointer::Hourglass, pointer::Default}));
  EXPECT_EQ(host.yields, 0);
  EXPECT_EQ(boxes(), QStringList());
}

TEST_F(FormulaCollection, TakesASelectionAsWell) {
  search(u"SELECT Form = \"Memo\""_s);
  EXPECT_EQ(rows("idList").size(), 3) << "neither profiles nor design notes";
}

TEST_F(FormulaCollection, WithoutAHitTheOldRowsStayAndAreCounted) {
  control<Label>("lblCounter").setText(u"17"_s);
  search(u"Town = \"Kiel\""_s);
  EXPECT_EQ(rows("idList"), QStringList(u"old"_s));
  EXPECT_EQ(text("lblCounter"), u"1"_s);
  EXPECT_EQ(host.pointers, QVector<int>({pointer::Default}));
}

TEST_F(FormulaCollection, WithoutATextOnlyThePointerIsReset) {
  state().gDb.release();
  control<Label>("lblCounter").setText(u"17"_s);
  search(QString());
  EXPECT_EQ(rows("idList"), QStringList(u"old"_s));
  EXPECT_EQ(text("lblCounter"), u"17"_s);
  EXPECT_EQ(host.pointers, QVector<int>({pointer::Default}));
  EXPECT_EQ(notes().log, QStringList());
}

TEST_F(FormulaCollection, ASearchThatGivesNothingCountsNothing) {
  notes().replies.insert(u"SEARCH"_s, Object());
  control<Label>("lblCounter").setText(u"17"_s);
  search(u"Town = \"Ulm\""_s);
  EXPECT_EQ(rows("idList"), QStringList(u"old"_s));
  EXPECT_EQ(text("lblCounter"), u"17"_s);
  EXPECT_EQ(host.pointers, QVector<int>({pointer::Default}));
}

TEST_F(FormulaCollection, AMistakeInTheFormulaEndsInTheReport) {
  search(u"Town = = \"Ulm\""_s);
  ASSERT_EQ(host.boxes.size(), 1);
  EXPECT_TRUE(host.boxes[0].text.startsWith(u"Run-time error '4105':\n\n"_s))
      << host.boxes[0].text.toStdString();
  EXPECT_EQ(host.boxes[0].style, box::Critical);
  EXPECT_EQ(rows("idList"), QStringList(u"old"_s));
  EXPECT_EQ(host.pointers, QVector<int>());
}

TEST_F(FormulaCollection, TakesFormulasOfAnyLength) {
  const QString formula = u"Town = \"Ulm\" & Town != \"%1\""_s;
  for (const int length : {32'767, 32'768}) {
    fill("idList", {u"old"_s});
    search(formula.arg(QString(length - formula.size() + 2, u'x')));
    EXPECT_EQ(text("txtFieldContent").size(), length);
    EXPECT_EQ(boxes(), QStringList());
    EXPECT_EQ(rows("idList"), QStringList({digits(ids[0]), digits(ids[2])}));
  }
}

TEST_F(FormulaCollection, ANulInTheFormulaIsAMistake) {
  search(u"Town = \"Ulm\" "_s + QChar(0) + u" & 1");
  ASSERT_EQ(host.boxes.size(), 1);
  EXPECT_TRUE(host.boxes[0].text.startsWith(u"Run-time error '4105':"_s));
  EXPECT_EQ(rows("idList"), QStringList(u"old"_s));
  EXPECT_EQ(host.pointers, QVector<int>());
}

TEST_F(FormulaCollection, FindsWhatTheCodePageLacks) {
  const NoteId far = memo(u"Town"_s, textValue(u"日本"));
  memo(u"Town"_s, textValue(u"??"));
  search(u"Town = \"日本\""_s);
  EXPECT_EQ(rows("idList"), QStringList(digits(far)));
}

TEST_F(FormulaCollection, WithoutADatabaseTheReportTellsIt) {
  state().gDb.release();
  search(u"1"_s);
  EXPECT_EQ(host.boxes, ShownBoxes({report(err::ObjectNotSet)}));
}

TEST_F(FormulaCollection, LeavesDocumentCollectionAndKindAsTheyWere) {
  const Object document = documentObject(ids[1]);
  state().gDoc = document;
  state().gNoteColl = document;
  state().gDocKind = u"PROFILE"_s;
  const Object database = state().gDb;
  search(u"1"_s);
  EXPECT_EQ(state().gDoc, document);
  EXPECT_EQ(state().gNoteColl, document);
  EXPECT_EQ(state().gDocKind, u"PROFILE"_s);
  EXPECT_EQ(state().gDb, database);
}

TEST_F(FormulaCollection, TheRowsCanBeViewed) {
  search(u"Town = \"Bonn\""_s);
  select("idList", 0);
  click("cmdidList");
  EXPECT_TRUE(rows("fldList").join(u'|').contains(u"Bonn"_s));
}

TEST_F(FormulaCollection, AFailureBehindTheHourglassLeavesItUntilSomethingResetsIt) {
  const int runs = pressWithEveryFault(
      "cmdCollbyFormula", Door::ObjectModel,
      [this] {
        fill("idList", {u"old"_s});
        setText("txtFieldContent", u"Town = \"Ulm\""_s);
      },
      [this](int n, const QString&) -> ShownBoxes {
        const bool searches = n <= 2;
        EXPECT_EQ(host.pointers, searches ? QVector<int>() : QVector<int>({pointer::Hourglass})) << n;
        EXPECT_EQ(rows("idList").contains(u"old"_s), searches) << n;
        return {report(70)};
      });
  EXPECT_EQ(runs, 2 + 1 + 2 * 2);
  host.setPointer(pointer::Hourglass);
  search(QString());
  EXPECT_EQ(host.pointerCode, pointer::Default);
}

}  // namespace
}  // namespace lens

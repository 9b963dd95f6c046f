#include <gtest/gtest.h>

#include "embedded/dxl/dxl_importer.h"
#include "embedded/model/support/test_workspace.h"
#include "embedded/views/design_notes.h"
#include "embedded/views/view_documents.h"

using namespace lens;
using namespace lens::testing;
using namespace Qt::Literals::StringLiterals;

namespace {

QStringList subjects(const Object& view) {
  QStringList found;
  for (Object document = view.call(u"GETFIRSTDOCUMENT"_s).object(); document;
       document = view.call(u"GetNextDocument"_s, document).object())
    found.append(document.call(u"GETITEMVALUE"_s, u"Subject"_s).at(0).text());
  return found;
}

}  // namespace

TEST(ViewSelection, IsWhatItsFormulaSays) {
  TestWorkspace t;
  const auto add = [&](const QString& form, const QString& status) {
    t.add(
        {{u"Form"_s, textValue(form)}, {u"Status"_s, textValue(status)}, {u"Subject"_s, textValue(status)}});
  };
  add(u"A"_s, u"x"_s);
  add(u"A"_s, u"y"_s);
  add(u"B"_s, u"z"_s);
  const auto shown = [&](const QString& formula) {
    static int number = 0;
    const QString name = u"View %1"_s.arg(++number);
    t.addView(name, sourceFormulaValue(formula));
    return subjects(t.mail().call(u"GETVIEW"_s, name).object());
  };
  EXPECT_EQ(shown(u"SELECT Form = \"A\" & Status = \"y\""_s), QStringList(u"y"_s));
  EXPECT_EQ(shown(u"SELECT Form != \"A\""_s), QStringList(u"z"_s));
  EXPECT_EQ(shown(u"SELECT Form = \"B\" : \"C\""_s), QStringList(u"z"_s));
  EXPECT_EQ(shown(u"SELECT @All"_s).size(), 3);
  EXPECT_EQ(shown(u"SELECT Form = \"A\" |"_s).size(), 3) << "a formula with a mistake hides nothing";
}

TEST(ViewTitles, MatchWholeNameOrAliasWithoutCaseAndOuterBlanks) {
  for (const QString& name : {u"Person|per"_s, u"person "_s, u" PER"_s, u"PERSON|PER"_s})
    EXPECT_TRUE(titleAnswersTo(u"Person|per", name)) << name.toStdString();
  for (const QString& name : {u""_s, u" "_s, u"pers"_s, u"Person|"_s})
    EXPECT_FALSE(titleAnswersTo(u"Person|per", name)) << name.toStdString();
}

TEST(ViewObject, IsFoundByNameAndMissingOnesAreNothing) {
  TestWorkspace t;
  t.addView(u"($Servers)|srv"_s);
  t.addView(u"By Date|date|d"_s);
  const Object mail = t.mail();
  EXPECT_EQ(mail.call(u"GetView"_s, u"DATE "_s).object().get(u"NAME"_s).text(), u"By Date"_s);
  EXPECT_EQ(mail.call(u"GETVIEW"_s, u"($servers)"_s).object().get(u"Name"_s).text(), u"($Servers)"_s);
  EXPECT_TRUE(mail.call(u"GETVIEW"_s, u"none"_s).object().isNothing());
  EXPECT_TRUE(mail.call(u"GETVIEW"_s, u""_s).object().isNothing());
}

TEST(ViewObject, WalksItsDocumentsInOrderOfTheirId) {
  TestWorkspace t;
  t.addView(u"Memos"_s, sourceFormulaValue(u"SELECT Form = \"Memo\""_s));
  t.addView(u"All"_s, sourceFormulaValue(u"SELECT @All"_s));
  t.addView(u"Put"_s, {}, u"F"_s);
  const auto add = [&](const QString& form, const QString& subject) {
    return t.add({{u"Form"_s, textValue(form)}, {u"Subject"_s, textValue(subject)}});
  };
  add(u"Memo"_s, u"one"_s);
  add(u"Task"_s, u"two"_s);
  const quint32 third = add(u"Memo"_s, u"three"_s);
  add(u"Memo"_s, u"four"_s);
  t.add({{u"$Name"_s, textValue(u"$profile_015calendarprofile_")}, {u"Subject"_s, textValue(u"profile")}});
  const Object memos = t.mail().call(u"GETVIEW"_s, u"Memos"_s).object();
  EXPECT_EQ(subjects(memos), QStringList({u"one"_s, u"three"_s, u"four"_s}));
  EXPECT_EQ(memos.get(u"EntryCount"_s).number(), 3);
  EXPECT_EQ(subjects(t.mail().call(u"GETVIEW"_s, u"All"_s).object()).size(), 4);
  EXPECT_TRUE(subjects(t.mail().call(u"GETVIEW"_s, u"Put"_s).object()).isEmpty());
  // A document that goes away in the walk does not end it.
  const Object first = memos.call(u"GETFIRSTDOCUMENT"_s).object();
  t.store->remove(third);
  const Object next = memos.call(u"GETNEXTDOCUMENT"_s, first).object();
  EXPECT_EQ(next.call(u"GETITEMVALUE"_s, u"Subject"_s).at(0).text(), u"four"_s);
}

TEST(ViewObject, GivesTheSelectionFormulaWhereItsTextIsKept) {
  TestWorkspace t;
  t.addView(u"Source"_s, sourceFormulaValue(u"SELECT Form = \"Größe\""_s));
  t.addView(u"Compiled"_s, rawValue(itemtype::Formula, QByteArray("\x12\x00\x01\x02", 4)));
  t.addView(u"None"_s);
  const Object mail = t.mail();
  EXPECT_EQ(mail.call(u"GETVIEW"_s, u"Source"_s).object().get(u"SelectionFormula"_s).text(),
            u"SELECT Form = \"Größe\""_s);
  EXPECT_EQ(mail.call(u"GETVIEW"_s, u"None"_s).object().get(u"SELECTIONFORMULA"_s).text(), u""_s);
  try {
    mail.call(u"GETVIEW"_s, u"Compiled"_s).object().get(u"SELECTIONFORMULA"_s);
    FAIL();
  } catch (const RuntimeError& error) {
    EXPECT_TRUE(error.description().contains(u"compiled"_s));
    EXPECT_TRUE(error.description().contains(u"Compiled\""_s));
  }
}

TEST(ViewObject, ViewsAreAnArrayAlsoWhenThereAreNone) {
  TestWorkspace t;
  EXPECT_EQ(t.mail().get(u"Views"_s).upperBound(), -1);
  t.addView(u"A"_s);
  t.addView(u"B"_s);
  const Value views = t.mail().get(u"VIEWS"_s);
  ASSERT_EQ(views.upperBound(), 1);
  EXPECT_EQ(views.at(1).object().get(u"Name"_s).text(), u"B"_s);
}

TEST(ViewObject, AnImportedViewKeepsItsFormulaAndItsAliases) {
  TestWorkspace t;
  QFile file(t.file(u"view.dxl"_s));
  ASSERT_TRUE(file.open(QIODevice::WriteOnly));
  file.write(
      "<?xml version='1.0'?><view xmlns='http://www.lotus.com/dxl' version='8.5' name='By Form' alias='bf'>"
      "<code event='selection'><formula>SELECT Form = \"Memo\"</formula></code>"
      "<column itemname='Form' width='10'/></view>");
  file.close();
  ImportReport report;
  DxlImporter(*t.store).importFile(file.fileName(), report);
  t.add({{u"Form"_s, textValue(u"Memo")}, {u"Subject"_s, textValue(u"in")}});
  t.add({{u"Form"_s, textValue(u"Task")}, {u"Subject"_s, textValue(u"out")}});
  const Object view = t.mail().call(u"GETVIEW"_s, u"bf "_s).object();
  ASSERT_TRUE(view);
  EXPECT_EQ(view.get(u"Name"_s).text(), u"By Form"_s);
  EXPECT_EQ(view.get(u"SELECTIONFORMULA"_s).text(), u"SELECT Form = \"Memo\""_s);
  EXPECT_EQ(subjects(view), QStringList(u"in"_s));
}

#include <gtest/gtest.h>
#include <sqlite3.h>

#include "embedded/design/design_notes.h"
#include "embedded/dxl/dxl_importer.h"
#include "embedded/dxl/view_elements.h"
#include "embedded/model/support/test_workspace.h"
#include "embedded/search/selection.h"
#include "embedded/views/view_design.h"
#include "embedded/views/view_documents.h"

using namespace lens;
using namespace lens::testbed;
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

TEST(ViewObject, WalksItsDocuments) {
  TestWorkspace t;
  t.addView(u"Memos"_s, sourceFormulaValue(u"SELECT Form = \"Memo\""_s));
  t.addView(u"All"_s, sourceFormulaValue(u"SELECT @All"_s));
  t.addView(u"Put"_s, {}, u"F"_s);
  const auto add = [&](const QString& form, const QString& subject) {
    return t.add({{u"Form"_s, textValue(form)}, {u"Subject"_s, textValue(subject)}});
  };
  add(u"Memo"_s, u"one"_s);
  add(u"Task"_s, u"two"_s);
  const NoteId third = add(u"Memo"_s, u"three"_s);
  add(u"Memo"_s, u"four"_s);
  t.add({{u"$Name"_s, textValue(u"$profile_015calendarprofile_")}, {u"Subject"_s, textValue(u"profile")}});
  const Object memos = t.mail().call(u"GETVIEW"_s, u"Memos"_s).object();
  EXPECT_EQ(subjects(memos), QStringList({u"one"_s, u"three"_s, u"four"_s}));
  EXPECT_EQ(memos.get(u"EntryCount"_s).number(), 3);
  EXPECT_EQ(subjects(t.mail().call(u"GETVIEW"_s, u"All"_s).object()).size(), 4);
  EXPECT_TRUE(subjects(t.mail().call(u"GETVIEW"_s, u"Put"_s).object()).isEmpty());
  // A document that goes away in the walk does not end it.
  const Object first = memos.call(u"GETFIRSTDOCUMENT"_s).object();
  t.store->notes().remove(third);
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
  EXPECT_EQ(mail.call(u"GETVIEW"_s, u"Compiled"_s).object().get(u"SELECTIONFORMULA"_s).text(),
            u"REM {The selection formula of this view is there in compiled form only.}"_s);
}

TEST(ViewObject, GivesTheSelectionFormulaOfCompiledViewsAsSource) {
  TestWorkspace t;
  const auto addCompiled = [&](const QString& name, const char* hex) {
    t.addView(name, rawValue(itemtype::Formula, QByteArray::fromHex(hex)));
  };
  addCompiled(u"Typed"_s, "280000001a000500060053746174757301000400446f6e650a02030007000c000500093153325300");
  addCompiled(u"Nameless"_s, "0a0000000800c1000300");
  addCompiled(u"Hidden"_s, "160009000c005a5a5a5a5a5a5a5a0400040004000400");
  const Object mail = t.mail();
  const auto selection = [&](const QString& name) {
    return mail.call(u"GETVIEW"_s, name).object().get(u"SELECTIONFORMULA"_s).text();
  };
  EXPECT_EQ(selection(u"Typed"_s), u"SELECT Status = \"Done\""_s);
  EXPECT_EQ(selection(u"Nameless"_s), u"SELECT @Function_0C1"_s);
  EXPECT_EQ(selection(u"Hidden"_s), u"REM {Formula is hidden}"_s);
}

// Whoever removes all documents of a view means those of the view, so a view that cannot tell has none.
TEST(ViewObject, WhoseSelectionNobodyCanReadGivesNoDocuments) {
  TestWorkspace t;
  const NoteId id = t.add({{u"Form"_s, textValue(u"Memo")}});
  t.addView(u"Compiled"_s, rawValue(itemtype::Formula, QByteArray("\x12\x00\x01\x02", 4)));
  t.addView(u"Mistake"_s, sourceFormulaValue(u"SELECT Form = "_s));
  for (const QString& name : {u"Compiled"_s, u"Mistake"_s}) {
    const Object view = t.mail().call(u"GETVIEW"_s, name).object();
    const int expected = name == u"Compiled"_s ? kNoFormulaSource : kFormulaError;
    EXPECT_EQ(raised([&] { view.get(u"AllEntries"_s).object().call(u"RemoveAll"_s, true); }), expected);
    EXPECT_EQ(raised([&] { view.get(u"ENTRYCOUNT"_s); }), expected);
    EXPECT_EQ(raised([&] { view.call(u"GETFIRSTDOCUMENT"_s); }), expected);
    try {
      view.get(u"ENTRYCOUNT"_s);
    } catch (const RuntimeError& error) {
      EXPECT_TRUE(error.description().contains(u"mail.nsf"_s) && error.description().contains(name))
          << error.description().toStdString();
    }
  }
  EXPECT_EQ(t.store->notes().state(id), NoteState::Live);
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

// --- Entries -------------------------------------------------------------------------------------------

namespace {

class ViewEntries : public ::testing::Test {
 protected:
  // By category, and below that by subject; the categories are lists.
  void makeView(bool categorized = true) {
    ViewColumn kind, subject;
    kind.item = u"Kind"_s;
    kind.categorized = categorized;
    subject.item = u"Subject"_s;
    subject.sorted = true;
    const QVector<ViewColumn> columns =
        categorized ? QVector<ViewColumn>{kind, subject} : QVector<ViewColumn>{kind};
    t.add({{u"$TITLE"_s, textValue(u"By Kind|kinds")},
           {u"$Formula"_s, sourceFormulaValue(u"SELECT Form = \"Memo\"")},
           {u"$ViewFormat"_s, viewFormatValue(columns)},
           {u"$Collation"_s, collationValue(columns)}},
          noteclass::View);
  }
  NoteId memo(const QString& subject, const QStringList& kinds) {
    return t.add({{u"Form"_s, textValue(u"Memo")},
                  {u"Subject"_s, textValue(subject)},
                  {u"Kind"_s, textListValue(kinds)}});
  }
  Object view() { return t.mail().call(u"GetView"_s, u"KINDS"_s).object(); }
  QString entries(const Object& collection) {
    QStringList texts;
    for (Object entry = collection.call(u"GETFIRSTENTRY"_s).object(); entry;
         entry = collection.call(u"getNextEntry"_s, entry).object()) {
      const Object document = entry.get(u"Document"_s).object();
      EXPECT_EQ(entry.get(u"IsDocument"_s).boolean(), bool(document));
      texts.append(document ? document.call(u"GETITEMVALUE"_s, u"Subject"_s).at(0).text() : u"-"_s);
    }
    return texts.join(u' ');
  }
  TestWorkspace t;
};

}  // namespace

TEST_F(ViewEntries, AreTheRowsOfTheViewWithItsCategories) {
  makeView();
  memo(u"b"_s, {u"X"_s, u"Y"_s});
  memo(u"a"_s, {u"X"_s});
  t.add({{u"Form"_s, textValue(u"Task")}});
  const Object all = view().get(u"AllEntries"_s).object();
  EXPECT_EQ(entries(all), u"- a b - b"_s);
  EXPECT_EQ(all.get(u"Count"_s).number(), 5);
  EXPECT_EQ(all.get(u"EntryCount"_s).number(), 5);
  EXPECT_EQ(view().get(u"EntryCount"_s).number(), 5);
  EXPECT_EQ(subjects(view()), QStringList({u"a"_s, u"b"_s})) << "documents in view order, each once";
}

TEST_F(ViewEntries, AreAsTheyWereAtTheCall) {
  makeView();
  const NoteId a = memo(u"a"_s, {u"X"_s});
  const Object before = view().get(u"ALLENTRIES"_s).object();
  const NoteId b = memo(u"b"_s, {u"X"_s});
  t.store->notes().remove(a);
  EXPECT_EQ(before.get(u"count"_s).number(), 2);
  const Object first = before.call(u"GetFirstEntry"_s).object();
  EXPECT_FALSE(first.get(u"ISDOCUMENT"_s).boolean());
  EXPECT_TRUE(first.get(u"DOCUMENT"_s).object().isNothing());
  const Object gone = before.call(u"GetNextEntry"_s, first).object();
  EXPECT_FALSE(gone.get(u"ISDOCUMENT"_s).boolean());
  EXPECT_TRUE(gone.get(u"DOCUMENT"_s).object().isNothing());
  EXPECT_TRUE(before.call(u"GetNextEntry"_s, gone).object().isNothing());
  EXPECT_EQ(entries(view().get(u"ALLENTRIES"_s).object()), u"- b"_s);
  (void)b;
}

// Whoever copies all documents and removes them then would lose it otherwise.
TEST_F(ViewEntries, OfADamagedDocumentAreNoCategoriesAndSayWhatIsWrong) {
  makeView();
  const NoteId a = memo(u"a"_s, {u"X"_s});
  const Object all = view().get(u"ALLENTRIES"_s).object();
  const QByteArray sql = "UPDATE note SET items = x'00112233' WHERE id = " + QByteArray::number(a.value());
  ASSERT_EQ(sqlite3_exec(t.store->handle(), sql.constData(), nullptr, nullptr, nullptr), SQLITE_OK);
  const Object entry = all.call(u"GETNEXTENTRY"_s, all.call(u"GETFIRSTENTRY"_s)).object();
  EXPECT_TRUE(entry.get(u"ISDOCUMENT"_s).boolean());
  EXPECT_EQ(raised([&] { entry.get(u"DOCUMENT"_s); }), enginefault::Damaged);
  try {
    entry.get(u"DOCUMENT"_s);
  } catch (const RuntimeError& error) {
    EXPECT_TRUE(error.description().contains(u"mail.nsf"_s)) << error.description().toStdString();
  }
  all.call(u"REMOVEALL"_s, true);
  EXPECT_EQ(t.store->notes().state(a), NoteState::Stub);
}

TEST_F(ViewEntries, OfADatabaseThatWasRemovedRaise) {
  makeView();
  memo(u"a"_s, {u"X"_s});
  const Object all = view().get(u"ALLENTRIES"_s).object();
  const Object first = all.call(u"GETFIRSTENTRY"_s).object();
  const Object entry = all.call(u"GETNEXTENTRY"_s, first).object();
  t.mail().call(u"REMOVE"_s);
  EXPECT_GT(raised([&] { entry.get(u"ISDOCUMENT"_s); }), 0);
  EXPECT_GT(raised([&] { entry.get(u"DOCUMENT"_s); }), 0);
  EXPECT_GT(raised([&] { all.call(u"REMOVEALL"_s, true); }), 0);
}

TEST_F(ViewEntries, GiveDocumentsReadAnew) {
  makeView();
  const NoteId a = memo(u"a"_s, {u"X"_s});
  const Object all = view().get(u"ALLENTRIES"_s).object();
  const Object entry = all.call(u"GETNEXTENTRY"_s, all.call(u"GETFIRSTENTRY"_s)).object();
  Note note;
  ASSERT_TRUE(t.store->notes().read(a, note));
  note.find(u"Subject")->value = textValue(u"new");
  t.store->notes().save(note);
  EXPECT_EQ(entry.get(u"Document"_s).object().call(u"GETITEMVALUE"_s, u"Subject"_s).at(0).text(), u"new"_s);
}

TEST_F(ViewEntries, OfAnEmptyViewAreNone) {
  makeView();
  const Object all = view().get(u"ALLENTRIES"_s).object();
  EXPECT_EQ(all.get(u"count"_s).number(), 0);
  EXPECT_TRUE(all.call(u"GETFIRSTENTRY"_s).object().isNothing());
  EXPECT_TRUE(view().call(u"GETFIRSTDOCUMENT"_s).object().isNothing());
  all.call(u"REMOVEALL"_s, true);
}

TEST_F(ViewEntries, AreRemovedAllAtOnceEachDocumentOnceWithStubs) {
  makeView();
  const NoteId a = memo(u"a"_s, {u"X"_s, u"Y"_s}), b = memo(u"b"_s, {u"Y"_s});
  const Object held = view();
  const Object all = held.get(u"ALLENTRIES"_s).object();
  const NoteId copy = memo(u"copy"_s, {u"X"_s});
  t.store->notes().remove(b, false);
  const qint64 change = t.store->versions().changeSequence();
  all.call(u"RemoveAll"_s, true);
  EXPECT_EQ(t.store->versions().changeSequence(), change + 1);
  EXPECT_EQ(all.get(u"Count"_s).number(), 0);
  EXPECT_EQ(t.store->notes().state(a), NoteState::Stub);
  EXPECT_EQ(t.store->notes().state(b), NoteState::Gone);
  EXPECT_EQ(t.store->notes().state(copy), NoteState::Live)
      << "it was not in the view when the entries were taken";
  EXPECT_EQ(held.get(u"ENTRYCOUNT"_s).number(), 2) << "the view stays";
  constexpr int kMissingArgument = 449;
  EXPECT_EQ(raised([&] { all.call(u"REMOVEALL"_s); }), kMissingArgument) << "as a collection of documents";
  const Object documents = t.mail().call(u"SEARCH"_s, u"@All"_s, Object(), 0).object();
  EXPECT_EQ(raised([&] { documents.call(u"RemoveAll"_s); }), kMissingArgument);
  EXPECT_EQ(t.store->notes().state(copy), NoteState::Live);
}

TEST_F(ViewEntries, AreRemovedAllOrNone) {
  makeView();
  const NoteId a = memo(u"a"_s, {u"X"_s}), b = memo(u"b"_s, {u"X"_s});
  const Object all = view().get(u"ALLENTRIES"_s).object();
  sqlite3_exec(t.store->handle(),
               qPrintable(u"CREATE TEMP TRIGGER refuse BEFORE UPDATE ON main.note WHEN old.id = %1"
                          " BEGIN SELECT raise(ABORT, 'disk'); END"_s.arg(b.value())),
               nullptr, nullptr, nullptr);
  EXPECT_EQ(raised([&] { all.call(u"REMOVEALL"_s, true); }), enginefault::NotSaved);
  EXPECT_EQ(t.store->notes().state(a), NoteState::Live);
  EXPECT_EQ(t.store->notes().state(b), NoteState::Live);
  EXPECT_EQ(all.get(u"count"_s).number(), 3);
}

// An index is kept in the file and read by all: were anything in it one user's, the next would see it.
TEST_F(ViewEntries, AreTheSameForEveryUser) {
  ViewColumn who;
  who.item = u"$1"_s;
  who.formula = sourceFormula(u"Kind + @UserName + @Environment(\"Zone\")"_s);
  who.categorized = who.sorted = true;
  t.add({{u"$TITLE"_s, textValue(u"By Kind|kinds")},
         {u"$Formula"_s, sourceFormulaValue(u"SELECT Form = \"Memo\" & @UserName = \"\"")},
         {u"$ViewFormat"_s, viewFormatValue({who})},
         {u"$Collation"_s, collationValue({who})}},
        noteclass::View);
  t.workspace->setIniValue(u"$Zone"_s, u"North"_s);
  memo(u"a"_s, {u"X"_s});
  EXPECT_EQ(entries(view().get(u"ALLENTRIES"_s).object()), u"- a"_s);
  t.workspace->setIniValue(u"UserName"_s, u"CN=Otto Braun/O=Acme"_s);
  t.workspace->setIniValue(u"$Zone"_s, u"South"_s);
  memo(u"b"_s, {u"X"_s});
  EXPECT_EQ(entries(view().get(u"ALLENTRIES"_s).object()), u"- a b"_s) << "one category for both";
}

TEST_F(ViewEntries, AreFoundByTheKeyOfTheFirstSortedColumn) {
  makeView();
  memo(u"b"_s, {u"Smith"_s});
  memo(u"a"_s, {u"Smithers"_s});
  const Object held = view();
  const auto found = [&](const QString& key, bool exact) {
    const Object entry = held.call(u"GetEntryByKey"_s, key, exact).object();
    if (!entry) return QString();
    EXPECT_TRUE(entry.get(u"IsDocument"_s).boolean());
    return entry.get(u"Document"_s).object().call(u"GETITEMVALUE"_s, u"Subject"_s).at(0).text();
  };
  EXPECT_EQ(found(u"SMITH"_s, true), u"b"_s);
  EXPECT_EQ(found(u"Smit"_s, true), QString());
  EXPECT_EQ(found(u"smithe"_s, false), u"a"_s);
  memo(u"c"_s, {u"Zoe"_s});
  EXPECT_EQ(found(u"zoe"_s, true), u"c"_s) << "the index is brought up to date first";
}

TEST_F(ViewEntries, AreNotFoundByKeyWithoutASortedColumn) {
  makeView(false);
  memo(u"b"_s, {u"Smith"_s});
  EXPECT_TRUE(view().call(u"GETENTRYBYKEY"_s, u"Smith"_s, true).object().isNothing());
}

TEST_F(ViewEntries, AWalkEndsAlthoughItChangesWhatItWalksOver) {
  makeView();
  for (int i = 0; i < 5; ++i) memo(u"m%1"_s.arg(i), {u"X"_s});
  const Object held = view();
  int seen = 0;
  for (Object document = held.call(u"GETFIRSTDOCUMENT"_s).object(); document;
       document = held.call(u"GETNEXTDOCUMENT"_s, document).object()) {
    ++seen;
    memo(u"n%1"_s.arg(seen), {u"X"_s});
  }
  EXPECT_EQ(seen, 5);
  const Object stranger = t.document(t.add({{u"Form"_s, textValue(u"Task")}}));
  EXPECT_NE(raised([&] { held.call(u"GETNEXTDOCUMENT"_s, stranger); }), 0);
  EXPECT_NE(raised([&] { held.get(u"ALLENTRIES"_s).object().call(u"GETNEXTENTRY"_s, stranger); }), 0);
}

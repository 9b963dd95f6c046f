// What documents show in rows.
#include "embedded/formula_context/evaluated_note.h"
#include "embedded/search/selection.h"
#include "embedded/support/view_fixture.h"
#include "embedded/views/view_lookup.h"

namespace lens::testbed {
namespace {

class RowsOfDocuments : public ViewTest {
 protected:
  ViewColumn apart(const QString& item, bool down = false) {
    ViewColumn made = column(item, true, down);
    made.separateValues = true;
    return made;
  }
};

TEST_F(RowsOfDocuments, ShowTheValueThatMadeThemWhateverElseSortsTheView) {
  const NoteId view =
      addView({.columns = {apart(u"A"_s), column(u"Subject"_s), apart(u"B"_s, true), column(u"A"_s)}});
  add(u"x"_s, {{u"A"_s, textListValue({u"2"_s, u"1"_s, u"2"_s})}, {u"B"_s, textListValue({u"p"_s, u"q"_s})}});
  add(u"y"_s, {{u"A"_s, textValue(u"1")}, {u"B"_s, textListValue({u"r"_s, u"p"_s})}});
  EXPECT_EQ(columnOf(view, 0).join(u' '), u"1 1 1 1 2 2"_s);
  EXPECT_EQ(columnOf(view, 1).join(u' '), u"y x x y x x"_s);
  EXPECT_EQ(columnOf(view, 2).join(u' '), u"r q p p q p"_s);
  EXPECT_EQ(columnOf(view, 3).join(u' '), u"1 2 1 2 2 1 2 1 2 1 2 2 1 2"_s)
      << "another column shows all values in each row";
}

TEST_F(RowsOfDocuments, AreLookedUpByTheirOwnValue) {
  const NoteId view = addView({.columns = {apart(u"A"_s), column(u"Subject"_s)}});
  const NoteId x = add(u"x"_s, {{u"A"_s, textListValue({u"ab"_s, u"c"_s, u"aa"_s})}});
  ViewIndex index(*database, view);
  index.refresh();
  formula::Value value;
  formula::Database::Lookup lookup;
  lookup.key = u"a"_s;
  lookup.partial = true;
  lookup.column = 1;
  ASSERT_TRUE(viewLookup(index, lookup, regional, value));
  EXPECT_EQ(value.toTexts(), QStringList({u"aa"_s, u"ab"_s}));
  lookup.column = 2;
  ASSERT_TRUE(viewLookup(index, lookup, regional, value));
  EXPECT_EQ(value.toTexts(), QStringList({u"x"_s, u"x"_s}));
  lookup.column = 0;
  lookup.item = u"Subject"_s;
  ASSERT_TRUE(viewLookup(index, lookup, regional, value));
  EXPECT_EQ(value.toTexts(), QStringList({u"x"_s, u"x"_s}));
  lookup.unids = true;
  ASSERT_TRUE(viewLookup(index, lookup, regional, value));
  EXPECT_EQ(value.toTexts(), QStringList({unidOf(x).text(), unidOf(x).text()}));
}

// Were the document read again for each of its rows, this would take minutes.
TEST_F(RowsOfDocuments, OfADocumentWithThousandsOfValuesAreReadOnce) {
  QStringList values;
  for (int i = 0; i < 5000; ++i) values.append(u"v%1"_s.arg(i, 5, 10, QChar(u'0')));
  const QStringList inOrder = values;
  std::reverse(values.begin(), values.end());
  const NoteId view = addView({.columns = {apart(u"A"_s)}});
  add(u"x"_s, {{u"A"_s, textListValue(values)}});
  const NoteId damaged = add(u"y"_s, {{u"A"_s, textListValue({u"a"_s, u"z"_s})}});
  EXPECT_EQ(columnOf(view, 0), QStringList(u"a"_s) + inOrder + QStringList(u"z"_s));
  ViewIndex index(*database, view);
  index.refresh();
  sqlite3_exec(database->handle(),
               qPrintable(u"UPDATE note SET items = x'00' WHERE id = %1"_s.arg(damaged.value())), nullptr,
               nullptr, nullptr);
  EXPECT_EQ(viewColumn(index, 0, regional).toTexts(), inOrder) << "what cannot be read has no values";
}

TEST_F(RowsOfDocuments, OfAFormulaWithoutAnEndNameTheDatabaseAndTheView) {
  struct Impatient : formula::MachineEnvironment {
    bool interrupted() override { return true; }
  } environment;
  const NoteId view = addView({.formula = u"SELECT @While(1; 1)"_s}, u"Endless"_s);
  const ViewIndex index(*database, view);
  DocumentRows rows(index.design(), environment);
  const Note note = viewNote(u"any"_s, {});
  EvaluatedNote document(note);
  try {
    rows.selects(document);
    FAIL() << "the formula came to an end";
  } catch (const RuntimeError& error) {
    EXPECT_EQ(error.number(), kFormulaError);
    EXPECT_TRUE(error.description().startsWith(path())) << error.description().toStdString();
    EXPECT_TRUE(error.description().contains(u"\"Endless\""_s));
  }
}

}  // namespace
}  // namespace lens::testbed

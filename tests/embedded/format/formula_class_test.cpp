// Views of design notes: "$FormulaClass" names the classes that a view shows.
#include "embedded/support/view_fixture.h"

namespace lens::testbed {
namespace {

class ViewsOfAClass : public ViewTest {
 protected:
  NoteId addNote(const QString& subject, quint16 noteClass) {
    Note note;
    note.header.noteClass = noteClass;
    note.add(u"Subject"_s, itemflag::Summary, textValue(subject));
    database->notes().save(note);
    return note.header.id;
  }
  NoteId viewOf(const QByteArray& formulaClass) {
    Note note =
        viewNote(u"View"_s, {.formula = u"SELECT Subject != \"\""_s, .columns = {sorted(u"Subject"_s)}});
    note.add(u"$FormulaClass"_s, itemflag::Summary, formulaClass);
    database->notes().save(note);
    return note.header.id;
  }
  QString shownFor(const QString& formulaClass) { return lines(viewOf(textValue(formulaClass))); }
};

TEST_F(ViewsOfAClass, ShowTheNotesOfThatClassOrOfSeveral) {
  add(u"document"_s);
  addNote(u"form"_s, noteclass::Form);
  addNote(u"default form"_s, noteclass::Form | noteclass::Default);
  addNote(u"agent"_s, noteclass::Filter | noteclass::Private);
  EXPECT_EQ(shownFor(u"1"_s), u"document"_s);
  EXPECT_EQ(shownFor(u"4"_s), u"default form form"_s);
  EXPECT_EQ(shownFor(u" 512 "_s), u"agent"_s);
  EXPECT_EQ(shownFor(u"516"_s), u"agent default form form"_s);
}

TEST_F(ViewsOfAClass, ShowDocumentsWhereItNamesNone) {
  add(u"document"_s);
  addNote(u"form"_s, noteclass::Form);
  for (const QString& none : {u""_s, u"0"_s, u"form"_s, u"-4"_s, u"70000"_s, u"32768"_s})
    EXPECT_EQ(shownFor(none), u"document"_s) << none.toStdString();
  EXPECT_EQ(lines(viewOf(numberValue(4))), u"document"_s);
}

TEST_F(ViewsOfAClass, FollowTheirNotesAndTheClassItself) {
  const NoteId view = viewOf(textValue(u"4"));
  EXPECT_EQ(lines(view), QString());
  const NoteId a = addNote(u"a"_s, noteclass::Form);
  add(u"document"_s);
  addNote(u"b"_s, noteclass::Form);
  EXPECT_EQ(lines(view), u"a b"_s);
  change(a, u"Subject"_s, textValue(u"c"));
  EXPECT_EQ(lines(view), u"b c"_s);
  database->notes().remove(a);
  EXPECT_EQ(lines(view), u"b"_s);
  change(view, u"$FormulaClass"_s, textValue(u"1"));
  EXPECT_EQ(lines(view), u"document"_s);
}

}  // namespace
}  // namespace lens::testbed

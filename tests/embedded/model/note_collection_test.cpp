#include <gtest/gtest.h>

#include <limits>

#include "embedded/model/support/test_workspace.h"
#include "embedded/search/selection.h"

using namespace lens;
using namespace lens::testbed;
using namespace Qt::Literals::StringLiterals;

namespace {

struct NoteCollections : ::testing::Test {
  Object collection(bool all = false) { return t.mail().call(u"CreateNoteCollection"_s, all).object(); }
  QStringList ids(const Object& notes) {
    QStringList found;
    const int count = int(notes.get(u"COUNT"_s).number());
    QString id = notes.call(u"GetFirstNoteID"_s).text();
    for (int i = 0; i < count; ++i) {
      found.append(id);
      id = notes.call(u"getnextnoteid"_s, id).text();
    }
    EXPECT_EQ(id, QString()) << "the walk ends with an empty text";
    return found;
  }
  QStringList of(const QString& property) {
    const Object notes = collection();
    notes.set(property, true);
    notes.call(u"BUILDCOLLECTION"_s);
    return ids(notes);
  }
  QString design(quint16 noteClass, const QString& title, const QString& flags) {
    return t.hex(t.add({{u"$TITLE"_s, textValue(title)}, {u"$Flags"_s, textValue(flags)}}, noteClass));
  }
  QString memo(const QString& subject) {
    return t.hex(t.add({{u"Form"_s, textValue(u"Memo")}, {u"Subject"_s, textValue(subject)}}));
  }
  TestWorkspace t;
};

}  // namespace

TEST_F(NoteCollections, HoldTheNotesOfTheKindThatIsSwitchedOn) {
  const QString form = design(noteclass::Form, u"Memo"_s, u""_s);
  const QString page = design(noteclass::Form, u"Welcome"_s, u"W"_s);
  const QString agent = design(noteclass::Filter, u"Clean"_s, u"f"_s);
  const QString icon = design(noteclass::Icon, u"Mail"_s, u"J7"_s);
  const QString document = memo(u"a"_s);
  const QString profile = t.hex(t.add({{u"$Name"_s, textValue(u"$profile_001p_")}}));
  EXPECT_EQ(of(u"SelectForms"_s), QStringList(form));
  EXPECT_EQ(of(u"selectpages"_s), QStringList(page));
  EXPECT_EQ(of(u"SELECTAGENTS"_s), QStringList(agent));
  EXPECT_EQ(of(u"SELECTICON"_s), QStringList(icon));
  EXPECT_EQ(of(u"SelectDocuments"_s), QStringList(document));
  EXPECT_EQ(of(u"SELECTPROFILES"_s), QStringList(profile));
  EXPECT_EQ(of(u"SELECTACL"_s), QStringList());
}

TEST_F(NoteCollections, KnowAllSwitchesAndEachMayBeReadAndWritten) {
  const QStringList switches =
      u"ACL Actions Agents DatabaseScript DataConnections Documents Folders Forms Framesets HelpAbout "
      u"HelpIndex "
      u"HelpUsing Icon ImageResources JavaResources MiscCodeElements MiscFormatElements MiscIndexElements "
      u"Navigators Outlines Pages Profiles ReplicationFormulas ScriptLibraries SharedFields "
      u"StyleSheetResources Subforms Views"_s.split(u' ');
  ASSERT_EQ(switches.size(), 28);
  const Object notes = collection();
  for (const QString& name : switches) {
    EXPECT_FALSE(notes.get(u"Select"_s + name).boolean()) << name.toStdString();
    notes.set(u"SELECT"_s + name.toUpper(), true);
    EXPECT_EQ(notes.get(u"select"_s + name.toLower()), Value(true)) << name.toStdString();
  }
  notes.call(u"SelectAllNotes"_s, false);
  for (const QString& name : switches) EXPECT_FALSE(notes.get(u"Select"_s + name).boolean());
  notes.call(u"SelectAllNotes"_s, true);
  for (const QString& name : switches) EXPECT_TRUE(notes.get(u"Select"_s + name).boolean());
  notes.set(u"SELECTVIEWS"_s, false);
  EXPECT_FALSE(notes.get(u"SELECTVIEWS"_s).boolean());
  EXPECT_TRUE(collection(true).get(u"SELECTVIEWS"_s).boolean());
  EXPECT_EQ(raised([&] { notes.set(u"SELECTNOTHING"_s, true); }), err::MemberNotSupported);
  EXPECT_EQ(raised([&] { notes.set(u"count"_s, 1); }), 450);
}

TEST_F(NoteCollections, AreEmptyUntilTheyAreBuiltAndWithoutAKind) {
  design(noteclass::View, u"All"_s, u""_s);
  const Object notes = collection();
  notes.set(u"SELECTVIEWS"_s, true);
  EXPECT_EQ(notes.get(u"count"_s).number(), 0);
  EXPECT_EQ(notes.get(u"GETFIRSTNOTEID"_s).text(), QString());
  notes.call(u"BuildCollection"_s);
  EXPECT_EQ(notes.get(u"count"_s).number(), 1);
  notes.call(u"SELECTALLNOTES"_s, false);
  EXPECT_EQ(notes.get(u"count"_s).number(), 1) << "what is built stays until the next time";
  notes.call(u"BUILDCOLLECTION"_s);
  EXPECT_EQ(notes.get(u"count"_s).number(), 0);
}

TEST_F(NoteCollections, EndWithAnEmptyTextAndSoDoesAnUnknownId) {
  const QString first = memo(u"a"_s), second = memo(u"b"_s);
  const Object notes = collection();
  notes.set(u"SELECTDOCUMENTS"_s, true);
  notes.call(u"BUILDCOLLECTION"_s);
  const auto next = [&](const QString& id) { return notes.call(u"GETNEXTNOTEID"_s, id).text(); };
  EXPECT_EQ(next(first), second);
  EXPECT_EQ(next(u"00000000"_s.left(8 - first.size()) + first.toLower()), second);
  for (const QString& end : {second, u""_s, u"1"_s, u"7FFFFFF0"_s, u"no ID"_s, u"123456789ABCDEF"_s})
    EXPECT_EQ(next(end), QString()) << end.toStdString();
}

TEST_F(NoteCollections, AreWalkedToTheEndWhenNotesGoAwayMeanwhile) {
  const QString first = memo(u"a"_s), second = memo(u"b"_s), third = memo(u"c"_s);
  const Object notes = collection();
  notes.set(u"SELECTDOCUMENTS"_s, true);
  notes.call(u"BUILDCOLLECTION"_s);
  t.store->notes().remove(NoteId(second.toUInt(nullptr, 16)), false);
  t.store->notes().remove(NoteId(third.toUInt(nullptr, 16)));
  EXPECT_EQ(ids(notes), QStringList({first, second, third}));
  EXPECT_TRUE(t.mail().call(u"GETDOCUMENTBYID"_s, second).object().isNothing());
}

TEST_F(NoteCollections, TakeTheValueTrueAsTheTextOfASelectionFormula) {
  memo(u"a"_s);
  const Object notes = collection();
  notes.set(u"SelectionFormula"_s, true);
  EXPECT_EQ(notes.get(u"SELECTIONFORMULA"_s), Value(u"True"_s));
  notes.call(u"BUILDCOLLECTION"_s);
  EXPECT_EQ(notes.get(u"count"_s).number(), 0);
  EXPECT_EQ(notes.get(u"GETFIRSTNOTEID"_s).text(), QString());
}

TEST_F(NoteCollections, HoldTheDocumentsThatAFormulaSelects) {
  const QString form = design(noteclass::Form, u"Memo"_s, u""_s);
  memo(u"a"_s);
  const QString second = memo(u"b"_s);
  const Object notes = collection();
  notes.set(u"SELECTIONFORMULA"_s, u"Subject = \"b\""_s);
  notes.call(u"BUILDCOLLECTION"_s);
  EXPECT_EQ(ids(notes), QStringList(second));
  notes.set(u"SELECTDOCUMENTS"_s, true);
  notes.set(u"SELECTFORMS"_s, true);
  notes.call(u"BUILDCOLLECTION"_s);
  EXPECT_EQ(ids(notes), QStringList({form, second}));
  notes.set(u"SELECTIONFORMULA"_s, u"Subject = "_s);
  EXPECT_EQ(raised([&] { notes.call(u"BUILDCOLLECTION"_s); }), kFormulaError);
  EXPECT_EQ(ids(notes), QStringList({form, second})) << "a failure leaves the list as it was";
  notes.set(u"SELECTIONFORMULA"_s, QString());
  notes.call(u"BUILDCOLLECTION"_s);
  EXPECT_EQ(notes.get(u"count"_s).number(), 3);
}

TEST_F(NoteCollections, MayBeLimitedToWhatIsRecent) {
  const QString fresh = memo(u"new"_s);
  Note old = noteOf({{u"Subject"_s, textValue(u"old")}});
  old.header.modified = timeDateOf(DateTime{QDate(2001, 2, 3), QTime(4, 5)});
  t.store->notes().saveAsGiven(old);
  const Object notes = collection();
  notes.set(u"SELECTDOCUMENTS"_s, true);
  const auto built = [&] {
    notes.call(u"BUILDCOLLECTION"_s);
    return ids(notes);
  };
  EXPECT_TRUE(notes.get(u"SinceTime"_s).isEmpty());
  notes.set(u"SinceTime"_s, Value(DateTime{QDate(2010, 1, 1), {}}));
  EXPECT_EQ(built(), QStringList(fresh));
  notes.set(u"SINCETIME"_s, true);
  EXPECT_EQ(built().size(), 2) << "as a number True is a day long ago";
  notes.set(u"SINCETIME"_s, Object());
  EXPECT_TRUE(notes.get(u"SINCETIME"_s).isEmpty());
  EXPECT_EQ(built().size(), 2);
  EXPECT_EQ(raised([&] { notes.set(u"SINCETIME"_s, u"yesterday"_s); }), err::TypeMismatch);
  for (const double days : {1e7, -1e300, std::numeric_limits<double>::quiet_NaN()}) try {
      notes.set(u"SINCETIME"_s, days);
      ADD_FAILURE() << "nothing was raised for " << days;
    } catch (const RuntimeError& error) {
      EXPECT_EQ(error.number(), err::Overflow);
      EXPECT_TRUE(error.description().startsWith(u"mail.nsf: "_s)) << error.description().toStdString();
    }
}

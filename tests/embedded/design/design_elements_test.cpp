#include "embedded/design/design_elements.h"

#include <gtest/gtest.h>
#include <sqlite3.h>

#include "embedded/design/profile_notes.h"
#include "embedded/dxl/dxl_importer.h"
#include "embedded/model/support/test_workspace.h"

using namespace lens;
using namespace lens::testbed;
using namespace Qt::Literals::StringLiterals;

namespace {

struct DesignElements : ::testing::Test {
  NoteId design(quint16 noteClass, const QString& title, const QString& flags = {}) {
    return t.add({{u"$TITLE"_s, textValue(title)}, {u"$Flags"_s, textValue(flags)}}, noteClass);
  }
  NoteId profile(const QString& name) { return t.add({{u"$Name"_s, textValue(name)}}); }
  void damage(NoteId id) {
    const QByteArray sql = "UPDATE note SET items = X'00112233' WHERE id = " + QByteArray::number(id.value());
    ASSERT_EQ(sqlite3_exec(t.store->handle(), sql.constData(), nullptr, nullptr, nullptr), SQLITE_OK);
  }
  QVector<NoteId> of(NoteKinds kinds) { return notesOfKinds(*t.store, kinds); }
  TestWorkspace t;
};

using Ids = QVector<NoteId>;

}  // namespace

TEST_F(DesignElements, AreListedByKindInOrderOfTheirId) {
  const NoteId subform = design(noteclass::Form, u"Address"_s, u"CU"_s);
  const NoteId form = design(noteclass::Form | noteclass::Default, u"Person"_s);
  const NoteId agent = design(noteclass::Filter, u"Clean"_s, u"f"_s);
  const NoteId other = design(noteclass::Form, u"Company"_s);
  EXPECT_EQ(of({NoteKind::Forms}), (Ids{form, other}));
  EXPECT_EQ(of({NoteKind::Forms, NoteKind::Subforms, NoteKind::Agents}), (Ids{subform, form, agent, other}));
  EXPECT_EQ(of({NoteKind::Views}), Ids());
  EXPECT_EQ(of({}), Ids());
}

TEST_F(DesignElements, ANoteWithoutFlagsIsPlain) {
  const NoteId form = t.add({{u"$TITLE"_s, textValue(u"Bare")}}, noteclass::Form);
  EXPECT_EQ(of({NoteKind::Forms}), Ids{form});
}

TEST_F(DesignElements, DocumentsAndProfilesAreParted) {
  const NoteId plain = t.add({{u"Form"_s, textValue(u"Memo")}});
  const NoteId named = t.add({{u"$Name"_s, textValue(u"($Inbox)")}});
  const NoteId settings = profile(u"$profile_008settings_"_s);
  EXPECT_EQ(of({NoteKind::Documents}), (Ids{plain, named}));
  EXPECT_EQ(of({NoteKind::Profiles}), Ids{settings});
  EXPECT_EQ(of(NoteKinds::all()), (Ids{plain, named, settings}));
}

TEST_F(DesignElements, ADamagedNoteDoesNotHideTheOthers) {
  const NoteId first = design(noteclass::Form, u"A"_s), broken = design(noteclass::Form, u"B"_s),
               last = design(noteclass::Form, u"C"_s);
  const NoteId lost = profile(u"$profile_001a_"_s), kept = profile(u"$profile_001b_"_s);
  damage(broken);
  damage(lost);
  EXPECT_EQ(of({NoteKind::Forms}), (Ids{first, last}));
  EXPECT_EQ(of({NoteKind::Profiles}), Ids{kept});
  ASSERT_EQ(profilesOf(*t.store).size(), 1);
  EXPECT_EQ(findDesignElement(*t.store, {NoteKind::Forms}, u"C"), last);
  EXPECT_EQ(findDesignElement(*t.store, {NoteKind::Forms}, u"B"), NoteId());
}

TEST_F(DesignElements, AreFoundByNameAmongTheirOwnKind) {
  const NoteId image = design(noteclass::Form, u"Person"_s, u"iQ"_s);
  const NoteId form = design(noteclass::Form, u"Person|per"_s);
  t.add({{u"$TITLE"_s, textValue(u"Person")}});
  const auto find = [&](NoteKinds kinds, const QString& name) {
    return findDesignElement(*t.store, kinds, name);
  };
  EXPECT_EQ(find({NoteKind::Forms}, u" person "_s), form);
  EXPECT_EQ(find({NoteKind::Forms}, u"PER"_s), form);
  EXPECT_EQ(find({NoteKind::Forms}, u"Person|per"_s), form);
  EXPECT_EQ(find({NoteKind::ImageResources}, u"Person"_s), image);
  EXPECT_EQ(find({NoteKind::Forms}, u"Pers"_s), NoteId());
  EXPECT_EQ(find({NoteKind::Forms}, u" "_s), NoteId());
  EXPECT_EQ(find({NoteKind::Documents}, u"Person"_s), NoteId()) << "a document is no design";
}

TEST_F(DesignElements, ProfilesAreCalledByTheNameOfTheGivenLength) {
  EXPECT_TRUE(isProfileCalled(u"$profile_015calendarprofile_", u"CalendarProfile"));
  EXPECT_TRUE(isProfileCalled(u"$profile_015calendarprofile_karin meier/acme", u"calendarprofile"));
  EXPECT_TRUE(isProfileCalled(u"$profile_004a_b__x_y", u"a_b_"));
  EXPECT_FALSE(isProfileCalled(u"$profile_015calendarprofile_", u"calendar"));
  EXPECT_FALSE(isProfileCalled(u"$profile_003a_b_x", u"a"));
  for (const QString& malformed : {u""_s, u"$profile_"_s, u"$profile_01"_s, u"$profile_999x_"_s,
                                   u"$profile_-01x_"_s, u"$profile_001x"_s, u"$profile_xyzabc_"_s})
    EXPECT_FALSE(isProfileCalled(malformed, u"x")) << malformed.toStdString();
  EXPECT_TRUE(isProfileCalled(u"$profile_000_", u""));
}

TEST_F(DesignElements, AreFewAmongManyDocuments) {
  {
    Database::Transaction all(*t.store);
    for (int i = 0; i < 20'000; ++i) {
      Note note = noteOf({{u"Form"_s, textValue(u"Memo")}, {u"Subject"_s, textValue(QString(200, u'x'))}});
      if (i % 5'000 == 0) note.add(u"$Name"_s, itemflag::Summary, textValue(u"$profile_001p_u%1"_s.arg(i)));
      t.store->notes().save(note);
    }
    all.commit();
  }
  const NoteId form = design(noteclass::Form, u"Memo"_s);
  EXPECT_EQ(of({NoteKind::Forms}), Ids{form});
  EXPECT_EQ(of({NoteKind::Profiles}).size(), 4);
  EXPECT_EQ(of({NoteKind::Documents}).size(), 19'996);
  EXPECT_EQ(of(NoteKinds::all()).size(), 20'001);
}

// Whoever looks at the samples finds something under every heading.
TEST_F(DesignElements, OfTheDiscussionSampleAreOfEveryKind) {
  ImportReport report;
  DxlImporter(*t.store).importFile(QStringLiteral(LENS_SAMPLES_DIR "/discussion.dxl"), report);
  ASSERT_EQ(report.failed, QStringList());
  for (const NoteKindRow& row : noteKindTable())
    EXPECT_FALSE(of({row.kind}).isEmpty()) << QString::fromUtf16(row.property).toStdString();
  EXPECT_EQ(of({NoteKind::Views}).size(), 2);
  EXPECT_EQ(of({NoteKind::Agents}).size(), 19);
}

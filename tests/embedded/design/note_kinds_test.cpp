#include "embedded/design/note_kinds.h"

#include <gtest/gtest.h>

#include <QHash>
#include <QRandomGenerator>
#include <QString>

#include "embedded/design/flag_pattern.h"

using namespace lens;
using namespace Qt::Literals::StringLiterals;

namespace {

struct Case {
  quint16 noteClass;
  const char16_t* flags;
  NoteKind kind;
};

// Flags as they stand in design notes.
const Case kCases[] = {
    {noteclass::Acl, u"", NoteKind::Acl},
    {noteclass::Form, u"34yQC", NoteKind::Actions},
    {noteclass::Filter, u"f3", NoteKind::Agents},
    {noteclass::Filter, u"fL3", NoteKind::Agents},
    {noteclass::Filter, u"3fJj", NoteKind::Agents},
    {noteclass::Filter, u"", NoteKind::Agents},
    {noteclass::Filter, u"t34Q", NoteKind::DatabaseScript},
    {noteclass::Filter, u"k", NoteKind::DataConnections},
    {noteclass::View, u"F", NoteKind::Folders},
    {noteclass::View, u"3FY", NoteKind::Folders},
    {noteclass::Form, u"", NoteKind::Forms},
    {noteclass::Form, u"w", NoteKind::Forms},
    {noteclass::Form, u"CD", NoteKind::Forms},
    {noteclass::Form, u"#34CQ", NoteKind::Framesets},
    {noteclass::About, u"", NoteKind::HelpAbout},
    {noteclass::HelpIndex, u"", NoteKind::HelpIndex},
    {noteclass::Using, u"", NoteKind::HelpUsing},
    {noteclass::Icon, u"J7!", NoteKind::Icon},
    {noteclass::Icon, u"Jz47qNZFKE", NoteKind::Icon},
    {noteclass::Form, u"34CiQ", NoteKind::ImageResources},
    {noteclass::Form, u"34Ci~Q", NoteKind::ImageResources},
    {noteclass::Form, u"@", NoteKind::JavaResources},
    {noteclass::Filter, u"X", NoteKind::MiscCode},
    {noteclass::Filter, u"{", NoteKind::MiscCode},
    {noteclass::Filter, u"O", NoteKind::MiscCode},
    {noteclass::Filter, u"Q", NoteKind::MiscCode},
    {noteclass::Form, u"345CgQ", NoteKind::MiscFormat},
    {noteclass::Form, u"gC~4K", NoteKind::MiscFormat},
    {noteclass::Form, u"gC~4;", NoteKind::MiscFormat},
    {noteclass::Form, u"34567Cg~[", NoteKind::MiscFormat},
    {noteclass::Form, u"g~`", NoteKind::MiscFormat},
    {noteclass::Form, u"|", NoteKind::MiscFormat},
    {noteclass::Form, u":", NoteKind::MiscFormat},
    {noteclass::Form, u"z", NoteKind::MiscFormat},
    {noteclass::Form, u"~", NoteKind::MiscFormat},
    {noteclass::View, u"^", NoteKind::MiscIndex},
    {noteclass::View, u"G3", NoteKind::Navigators},
    {noteclass::Filter, u"m", NoteKind::Outlines},
    {noteclass::Form, u"C34WQ", NoteKind::Pages},
    {noteclass::ReplicationFormula, u"", NoteKind::ReplicationFormulas},
    {noteclass::Filter, u"s34Q", NoteKind::ScriptLibraries},
    {noteclass::Filter, u"h534Q", NoteKind::ScriptLibraries},
    {noteclass::Filter, u".5834Q", NoteKind::ScriptLibraries},
    {noteclass::Filter, u"sj", NoteKind::ScriptLibraries},
    {noteclass::SharedField, u"", NoteKind::SharedFields},
    {noteclass::Form, u"34C=Q", NoteKind::StyleSheets},
    {noteclass::Form, u"=", NoteKind::StyleSheets},
    {noteclass::Form, u"CUAx3", NoteKind::Subforms},
    {noteclass::View, u"PY", NoteKind::Views},
    {noteclass::View, u"Yw", NoteKind::Views},
    {noteclass::View, u"", NoteKind::Views},
};

int countOf(NoteKinds kinds) {
  int count = 0;
  for (int kind = 0; kind < kNoteKinds; ++kind) count += kinds.has(NoteKind(kind)) ? 1 : 0;
  return count;
}

QString randomFlags(QRandomGenerator& random, const QString& letters) {
  QString flags;
  for (quint32 left = random.bounded(8u); left > 0; --left)
    flags += letters[qsizetype(random.bounded(quint32(letters.size())))];
  return flags;
}

const QString kAnyLetter =
    u"0123456789ABCDEFGHIJKLMNOPQRSTUVWXYZabcdefghijklmnopqrstuvwxyz!#$%&()*+-./:;<=>?@[]^_`{|}~"_s;

}  // namespace

TEST(NoteKinds, AreTheSwitchesOfANoteCollectionInOrderOfTheirNames) {
  QStringList names;
  for (int row = 0; row < kNoteKinds; ++row) {
    EXPECT_EQ(int(noteKindTable()[size_t(row)].kind), row);
    names.append(QString::fromUtf16(noteKindTable()[size_t(row)].property));
  }
  EXPECT_EQ(names.join(u' '),
            u"SELECTACL SELECTACTIONS SELECTAGENTS SELECTDATABASESCRIPT SELECTDATACONNECTIONS "
            u"SELECTDOCUMENTS SELECTFOLDERS SELECTFORMS SELECTFRAMESETS SELECTHELPABOUT SELECTHELPINDEX "
            u"SELECTHELPUSING SELECTICON SELECTIMAGERESOURCES SELECTJAVARESOURCES SELECTMISCCODEELEMENTS "
            u"SELECTMISCFORMATELEMENTS SELECTMISCINDEXELEMENTS SELECTNAVIGATORS SELECTOUTLINES SELECTPAGES "
            u"SELECTPROFILES SELECTREPLICATIONFORMULAS SELECTSCRIPTLIBRARIES SELECTSHAREDFIELDS "
            u"SELECTSTYLESHEETRESOURCES SELECTSUBFORMS SELECTVIEWS"_s);
}

TEST(NoteKinds, AreToldByClassAndFlags) {
  NoteKinds seen{NoteKind::Documents, NoteKind::Profiles};  // told by their name, not by flags
  for (const Case& c : kCases) {
    EXPECT_EQ(kindsOfDesign(c.noteClass, c.flags), NoteKinds{c.kind})
        << c.noteClass << " " << QString::fromUtf16(c.flags).toStdString();
    seen.set(c.kind);
  }
  EXPECT_EQ(seen, NoteKinds::all());
}

TEST(NoteKinds, MarksOfTheClassDoNotMatter) {
  EXPECT_EQ(kindsOfDesign(noteclass::Form | noteclass::Default, u""), NoteKinds{NoteKind::Forms});
  EXPECT_EQ(kindsOfDesign(noteclass::View | noteclass::Private | noteclass::Default, u"V"),
            NoteKinds{NoteKind::Views});
}

TEST(NoteKinds, AClassWithoutKindsHasNone) {
  EXPECT_TRUE(kindsOfDesign(noteclass::Design, u"F").isEmpty());
  EXPECT_TRUE(kindsOfDesign(0, u"").isEmpty());
}

TEST(NoteKinds, ANoteWithTheLettersOfTwoKindsIsOfBoth) {
  EXPECT_EQ(kindsOfDesign(noteclass::Form, u"yU"), (NoteKinds{NoteKind::Actions, NoteKind::Subforms}));
  EXPECT_EQ(kindsOfDesign(noteclass::View, u"FG"), (NoteKinds{NoteKind::Folders, NoteKind::Navigators}));
}

// Whatever its letters are, a note is somewhere; the remainder of a class takes what no other kind takes,
// and nothing else; forms, agents and views are nothing else besides.
TEST(NoteKinds, EveryNoteIsOfAKindAndOfOneOnlyUnlessItCarriesTheMarksOfSeveral) {
  QRandomGenerator random(7);
  const QHash<quint16, QString> marks{
      {noteclass::Form, u"y#i@W=U"_s}, {noteclass::View, u"FG"_s}, {noteclass::Filter, u"tkmsh."_s}};
  const NoteKinds alone{NoteKind::Forms,      NoteKind::Agents,    NoteKind::Views,
                        NoteKind::MiscFormat, NoteKind::MiscIndex, NoteKind::MiscCode};
  for (int round = 0; round < 20'000; ++round) {
    for (auto mark = marks.cbegin(); mark != marks.cend(); ++mark) {
      const QString flags = randomFlags(random, kAnyLetter);
      const NoteKinds kinds = kindsOfDesign(mark.key(), flags);
      const int count = countOf(kinds);
      ASSERT_GE(count, 1) << flags.toStdString();
      if (kinds.meets(alone)) {
        ASSERT_EQ(count, 1) << flags.toStdString();
      }
      int carried = 0;
      for (const QChar letter : mark.value()) carried += flags.contains(letter) ? 1 : 0;
      if (carried <= 1) {
        ASSERT_EQ(count, 1) << flags.toStdString();
      }
    }
  }
}

TEST(NoteKinds, OrderAndRepetitionOfTheLettersDoNotMatter) {
  QRandomGenerator random(11);
  for (int round = 0; round < 5'000; ++round) {
    const QString flags = randomFlags(random, kAnyLetter);
    QString other = flags + flags;
    std::reverse(other.begin(), other.end());
    for (const quint16 noteClass : {noteclass::Form, noteclass::View, noteclass::Filter})
      ASSERT_EQ(kindsOfDesign(noteClass, flags), kindsOfDesign(noteClass, other)) << flags.toStdString();
  }
}

TEST(NoteKinds, TheirClassesAreAMask) {
  EXPECT_EQ(classesOf({}), 0);
  EXPECT_EQ(classesOf({NoteKind::Forms, NoteKind::Pages}), noteclass::Form);
  EXPECT_EQ(classesOf({NoteKind::Profiles, NoteKind::Views}), noteclass::Document | noteclass::View);
  EXPECT_EQ(classesOf(NoteKinds::all()), 0x0FDF);
}

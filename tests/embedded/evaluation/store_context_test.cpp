// Databases and settings of a workspace as formulas see them.

#include <gtest/gtest.h>

#include "embedded/dxl/view_elements.h"
#include "embedded/evaluation/store_database.h"
#include "embedded/evaluation/workspace_environment.h"
#include "embedded/formula/formula.h"
#include "embedded/model/support/test_workspace.h"

namespace lens {
namespace {
using namespace Qt::StringLiterals;

class StoreContext : public ::testing::Test {
 protected:
  QString run(const QString& source) {
    const formula::Compiled compiled = formula::compile(source, {&environment});
    EXPECT_TRUE(compiled) << source.toStdString();
    formula::Evaluation evaluation(compiled.formula, environment);
    const formula::Value value = evaluation.run(nullptr, &database).value;
    if (value.isError()) return u"error %1"_s.arg(value.errorCode(), 4, 16, QChar(u'0'));
    QStringList texts;
    for (qsizetype i = 0; i < value.count(); ++i)
      texts.append(value.isNumber() ? QString::number(value.number(i)) : value.text(i).toString());
    return texts.join(u'|');
  }
  QString unidOf(NoteId id) {
    Note note;
    EXPECT_TRUE(t.store->notes().read(id, note));
    return note.header.unid.text();
  }

  testbed::TestWorkspace t;
  WorkspaceEnvironment environment{*t.workspace};
  StoreDatabase database{*t.workspace, {QString(), u"mail.nsf"_s}, t.store};
};

TEST_F(StoreContext, TheDatabaseTellsWhatItIs) {
  EXPECT_EQ(run(u"@DbName"_s), u"|mail.nsf"_s);
  EXPECT_EQ(run(u"@DbTitle"_s), u"Mail of Karin"_s);
  EXPECT_EQ(run(u"@ReplicaID"_s), u"C1257A00:00112233"_s);
}

TEST_F(StoreContext, DatabasesExistByPathAndByReplicaId) {
  EXPECT_EQ(run(u"@DbExists(\"MAIL.nsf\")"_s), u"1"_s);
  EXPECT_EQ(run(u"@DbExists(\"none.nsf\")"_s), u"0"_s);
  EXPECT_EQ(run(u"@DbExists(\"../mail.nsf\")"_s), u"0"_s);
  EXPECT_EQ(run(u"@DbExists(\"CN=Nobody/O=Acme\" : \"mail.nsf\")"_s), u"0"_s);
  EXPECT_EQ(run(u"@DbExists(\"C1257A00:00112233\")"_s), u"1"_s);
  EXPECT_EQ(run(u"@DbExists(\"C1257A00:00112234\")"_s), u"0"_s);
}

TEST_F(StoreContext, AnotherDocumentIsReadAndWritten) {
  const QString unid = unidOf(t.add({{u"Subject"_s, textValue(u"Hello")}}));
  EXPECT_EQ(run(u"@GetDocField(\"%1\"; \"subject\")"_s.arg(unid)), u"Hello"_s);
  EXPECT_EQ(run(u"@GetDocField(\"%1\"; \"Nowhere\")"_s.arg(unid)), QString());
  EXPECT_EQ(run(u"@SetDocField(\"%1\"; \"Subject\"; \"Bye\")"_s.arg(unid)), u"Bye"_s);
  EXPECT_EQ(run(u"@GetDocField(\"FFFFFFFFFFFFFFFFFFFFFFFFFFFFFFFF\"; \"Subject\")"_s), u"error 054c"_s);
}

TEST_F(StoreContext, ProfilesAreReadByNameAndKey) {
  t.add({{u"$Name"_s, textValue(u"$profile_008settings_")}, {u"Color"_s, textValue(u"blue")}});
  t.add({{u"$Name"_s, textValue(u"$profile_008settings_ada")}, {u"Color"_s, textValue(u"red")}});
  EXPECT_EQ(run(u"@GetProfileField(\"Settings\"; \"Color\")"_s), u"blue"_s);
  EXPECT_EQ(run(u"@GetProfileField(\"settings\"; \"color\"; \"Ada\")"_s), u"red"_s);
  EXPECT_EQ(run(u"@GetProfileField(\"Settings\"; \"Color\"; \"Bob\")"_s), QString());
}

TEST_F(StoreContext, ProfilesAreFoundAgainAfterAChange) {
  EXPECT_EQ(run(u"@GetProfileField(\"Settings\"; \"Color\")"_s), QString());
  t.add({{u"$Name"_s, textValue(u"$profile_008settings_")}, {u"Color"_s, textValue(u"blue")}});
  EXPECT_EQ(run(u"@GetProfileField(\"Settings\"; \"Color\")"_s), u"blue"_s);
}

TEST_F(StoreContext, ColumnsAndLookupsReadViews) {
  ViewColumn name, size;
  name.item = u"Name"_s;
  name.sorted = true;
  size.item = u"Size"_s;
  t.add({{u"$TITLE"_s, textValue(u"People|p")},
         {u"$ViewFormat"_s, viewFormatValue({name, size})},
         {u"$Collation"_s, collationValue({name, size})}},
        noteclass::View);
  t.add({{u"Name"_s, textValue(u"Bo")}, {u"Size"_s, numberValue(2)}, {u"Town"_s, textValue(u"Rom")}});
  const QString ada = unidOf(
      t.add({{u"Name"_s, textValue(u"Ada")}, {u"Size"_s, numberValue(1)}, {u"Town"_s, textValue(u"Ulm")}}));
  EXPECT_EQ(run(u"@DbColumn(\"\"; \"\"; \"people\"; 1)"_s), u"Ada|Bo"_s);
  EXPECT_EQ(run(u"@DbColumn(\"Notes\" : \"NoCache\"; \"mail.nsf\"; \"P\"; 2)"_s), u"1|2"_s);
  EXPECT_EQ(run(u"@DbColumn(\"\"; \"\"; \"P\"; 3)"_s), u"error 055f"_s);
  EXPECT_EQ(run(u"@DbColumn(\"\"; \"\"; \"none\"; 1)"_s), u"error 0538"_s);
  EXPECT_EQ(run(u"@DbColumn(\"\"; \"none.nsf\"; \"P\"; 1)"_s), u"error 0538"_s);
  EXPECT_EQ(run(u"@DbLookup(\"\"; \"\"; \"P\"; \"ADA\"; 2)"_s), u"1"_s);
  EXPECT_EQ(run(u"@DbLookup(\"\"; \"\"; \"P\"; \"bo\" : \"ada\"; \"Town\")"_s), u"Rom|Ulm"_s);
  EXPECT_EQ(run(u"@DbLookup(\"\"; \"\"; \"P\"; \"A\"; 1)"_s), u"error 054c"_s);
  EXPECT_EQ(run(u"@DbLookup(\"\"; \"\"; \"P\"; \"A\"; 1; [FailSilent])"_s), QString());
  EXPECT_EQ(run(u"@DbLookup(\"\"; \"\"; \"P\"; \"A\"; 1; [PartialMatch])"_s), u"Ada"_s);
  EXPECT_EQ(run(u"@DbLookup(\"\"; \"\"; \"P\"; \"Ada\"; 1; [ReturnDocumentUniqueID])"_s), ada);
  t.add({{u"Name"_s, textValue(u"Cy")}});
  EXPECT_EQ(run(u"@DbColumn(\"\"; \"\"; \"p\"; 1)"_s), u"Ada|Bo|Cy"_s);
}

TEST_F(StoreContext, ANavigatorDoesNotHideTheViewOfItsName) {
  ViewColumn name;
  name.item = u"Name"_s;
  name.sorted = true;
  const auto addView = [&](const QString& title, const QString& flags) {
    t.add({{u"$TITLE"_s, textValue(title)},
           {u"$Flags"_s, textValue(flags)},
           {u"$ViewFormat"_s, viewFormatValue({name})},
           {u"$Collation"_s, collationValue({name})}},
          noteclass::View);
  };
  t.add({{u"Name"_s, textValue(u"Ada")}});
  addView(u"People"_s, u"G"_s);
  EXPECT_EQ(run(u"@DbColumn(\"\"; \"\"; \"People\"; 1)"_s), u"error 0538"_s);
  EXPECT_TRUE(t.mail().call(u"GetView"_s, u"People"_s).object().isNothing());
  addView(u"people"_s, u"Y"_s);
  EXPECT_EQ(run(u"@DbColumn(\"\"; \"\"; \"People\"; 1)"_s), u"Ada"_s);
  EXPECT_EQ(run(u"@DbLookup(\"\"; \"\"; \"People\"; \"ada\"; 1)"_s), u"Ada"_s);
  EXPECT_EQ(t.mail().call(u"GetView"_s, u"People"_s).object().get(u"Name"_s).text(), u"people"_s);
}

TEST_F(StoreContext, SettingsComeFromNotesIni) {
  t.workspace->setIniValue(u"$Region"_s, u"North"_s);
  EXPECT_EQ(run(u"@Environment(\"Region\")"_s), u"North"_s);
  EXPECT_EQ(run(u"@Environment(\"UserName\")"_s), QString());
  EXPECT_EQ(run(u"@UserName"_s), u"CN=Karin Meier/O=Acme"_s);
  EXPECT_TRUE(run(u"@ConfigFile"_s).endsWith(u"notes.ini"));
}

TEST_F(StoreContext, AddressBooksThatExistAreListed) {
  EXPECT_EQ(run(u"@GetAddressBooks"_s), QString());
  t.workspace->createDatabase({}, u"names.nsf"_s, {});
  EXPECT_EQ(run(u"@GetAddressBooks"_s), u"names.nsf"_s);
}

// --- Writing needs a document at hand: without one nothing may be changed -------------------------------

TEST_F(StoreContext, ProfilesAreMadeWhenTheyAreMissing) {
  database.setProfileItem(u"Settings"_s, u"Ada"_s, u"Color"_s, formula::Value::text(u"red"));
  EXPECT_EQ(run(u"@GetProfileField(\"Settings\"; \"Color\"; \"ada\")"_s), u"red"_s);
  database.setProfileItem(u"settings"_s, u"ada"_s, u"Color"_s, formula::Value::text(u"green"));
  EXPECT_EQ(run(u"@GetProfileField(\"Settings\"; \"Color\"; \"Ada\")"_s), u"green"_s);
  EXPECT_EQ(t.store->notes().noteCount(noteclass::Document), 1);
}

TEST_F(StoreContext, WrittenDocumentsAreSavedAndTold) {
  const NoteId id = t.add({{u"Subject"_s, textValue(u"Hello")}});
  QString told;
  t.workspace->setChangeListener([&](const DatabasePlace& place) { told = place.path; });
  database.setDocumentItem(Unid::fromText(unidOf(id)), u"Subject"_s, formula::Value::text(u"Bye"));
  Note note;
  ASSERT_TRUE(t.store->notes().read(id, note));
  EXPECT_EQ(note.text(u"Subject"), u"Bye"_s);
  EXPECT_EQ(told, u"mail.nsf"_s);
}

TEST_F(StoreContext, EntriesThatWouldBreakTheFileAreRefused) {
  environment.setIniValue(u"$Zoom"_s, u"3"_s);
  EXPECT_EQ(t.workspace->iniValue(u"$Zoom"), u"3"_s);
  for (const QString& name : {u""_s, u"$a=b"_s, u"$a\nUserName"_s, u"[Other]"_s})
    EXPECT_THROW(environment.setIniValue(name, u"x"_s), formula::Fault) << name.toStdString();
  environment.setIniValue(u"$Two"_s, u"a\nUserName=CN=Mallory"_s);
  EXPECT_EQ(t.workspace->userName(), u"CN=Karin Meier/O=Acme"_s);
}

TEST_F(StoreContext, TheUserMayInterrupt) {
  t.workspace->setInterruptCheck([] { return true; });
  EXPECT_EQ(run(u"@While(1; 1)"_s), u"error 0562"_s);
}

}  // namespace
}  // namespace lens

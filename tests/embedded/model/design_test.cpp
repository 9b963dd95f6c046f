// Forms, agents, profiles and views as programs ask a database for them.
#include <gtest/gtest.h>

#include "embedded/design/agent.h"
#include "embedded/dxl/dxl_importer.h"
#include "embedded/model/model_context.h"
#include "embedded/model/support/test_workspace.h"

using namespace lens;
using namespace lens::testbed;
using namespace Qt::Literals::StringLiterals;

namespace {

struct DesignModel : ::testing::Test {
  void import(const QByteArray& dxl) {
    QFile file(t.file(u"in.dxl"_s));
    ASSERT_TRUE(file.open(QIODevice::WriteOnly));
    file.write(dxl);
    file.close();
    ImportReport report;
    DxlImporter(*t.store).importFile(file.fileName(), report);
    ASSERT_EQ(report.failed, QStringList());
  }
  QStringList names(const Value& values) {
    QStringList found;
    for (const Value& value : values.values()) found.append(value.object().get(u"NAME"_s).text());
    return found;
  }
  TestWorkspace t;
};

const QByteArray kForm =
    "<form name='Person' alias='per'><body><richtext><pardef id='1'/><par def='1'>"
    "<field name='LastName' type='text' kind='editable'/><field name='Owner' type='authors' kind='computed'/>"
    "</par></richtext></body></form>";
const QByteArray kAgent =
    "<agent name='Mark' alias='mk'><trigger type='actionsmenu'/><documentset type='selected'/>"
    "<code event='action'><formula>FIELD Read := \"1\"; SELECT @All</formula></code></agent>";

}  // namespace

TEST_F(DesignModel, AFormTellsItsFieldsAndTheirTypes) {
  import(kForm);
  const Object form = t.mail().call(u"GetForm"_s, u" PERSON|PER "_s).object();
  ASSERT_FALSE(form.isNothing());
  const Value fields = form.get(u"Fields"_s);
  ASSERT_EQ(fields.upperBound(), 1);
  EXPECT_EQ(fields.at(0).text(), u"LastName"_s);
  EXPECT_EQ(form.call(u"GetFieldType"_s, u"lastname"_s).number(), 1280);
  EXPECT_EQ(form.call(u"GETFIELDTYPE"_s, u"Owner"_s).number(), 1076);
  EXPECT_EQ(form.call(u"GETFIELDTYPE"_s, u"none"_s).number(), 0);
}

TEST_F(DesignModel, AFormIsFoundByNameAndByAliasAndOthersAreNothing) {
  import(kForm);
  t.addView(u"People"_s);
  t.add({{u"$TITLE"_s, textValue(u"Logo")}, {u"$Flags"_s, textValue(u"iQ")}}, noteclass::Form);
  const Object mail = t.mail();
  for (const QString& name : {u"Person"_s, u"per"_s, u" person "_s})
    EXPECT_FALSE(mail.call(u"GETFORM"_s, name).object().isNothing()) << name.toStdString();
  for (const QString& name : {u"People"_s, u"Logo"_s, u""_s, u"Pers"_s})
    EXPECT_TRUE(mail.call(u"GETFORM"_s, name).object().isNothing()) << name.toStdString();
}

TEST_F(DesignModel, AFormWithoutFieldsHasAnArrayWithoutPlaces) {
  import("<form name='Empty'/>");
  const Value fields = t.mail().call(u"GETFORM"_s, u"Empty"_s).object().get(u"FIELDS"_s);
  EXPECT_TRUE(fields.isArray());
  EXPECT_EQ(fields.upperBound(), -1);
}

TEST_F(DesignModel, ASubformIsFoundUnlessAFormHasItsName) {
  import(
      "<subform name='Head'><body><richtext><pardef id='1'/><par def='1'><field name='A' type='text' "
      "kind='editable'/></par></richtext></body></subform>");
  EXPECT_EQ(t.mail().call(u"GETFORM"_s, u"Head"_s).object().get(u"FIELDS"_s).upperBound(), 0);
  import("<form name='Head'/>");
  EXPECT_EQ(t.mail().call(u"GETFORM"_s, u"Head"_s).object().get(u"FIELDS"_s).upperBound(), -1);
}

TEST_F(DesignModel, AgentsAreEmptyWithoutAnyAndKeepTheirAliases) {
  EXPECT_TRUE(t.mail().get(u"AGENTS"_s).isEmpty());
  import("<scriptlibrary name='Mark'/>");
  EXPECT_TRUE(t.mail().get(u"Agents"_s).isEmpty()) << "a library is no agent";
  EXPECT_TRUE(t.mail().call(u"GETAGENT"_s, u"Mark"_s).object().isNothing());
  import(kAgent);
  EXPECT_EQ(names(t.mail().get(u"AGENTS"_s)), QStringList(u"Mark|mk"_s));
  for (const QString& name : {u"mark"_s, u"MK"_s, u" Mark|mk"_s})
    EXPECT_EQ(t.mail().call(u"GetAgent"_s, name).object().get(u"Name"_s).text(), u"Mark|mk"_s);
  EXPECT_TRUE(t.mail().call(u"GETAGENT"_s, u"00000A1E"_s).object().isNothing());
  EXPECT_TRUE(t.mail().call(u"GETAGENT"_s, u""_s).object().isNothing());
}

TEST_F(DesignModel, AnAgentRunsOnWhatIsMarkedInTheClient) {
  import(kAgent);
  const NoteId one = t.add({{u"Form"_s, textValue(u"Memo")}}), two = t.add({{u"Form"_s, textValue(u"Memo")}});
  t.workspace->client().showDatabase({QString(), u"mail.nsf"_s});
  t.workspace->client().select({two});
  EXPECT_TRUE(t.mail().call(u"GETAGENT"_s, u"Mark"_s).object().call(u"Run"_s).isEmpty());
  EXPECT_TRUE(t.document(two).call(u"HASITEM"_s, u"Read"_s).boolean());
  EXPECT_FALSE(t.document(one).call(u"HASITEM"_s, u"Read"_s).boolean());
}

TEST_F(DesignModel, AnAgentOfABackEndSessionSeesNoMarks) {
  import(kAgent);
  const NoteId one = t.add({{u"Form"_s, textValue(u"Memo")}});
  t.workspace->client().showDatabase({QString(), u"mail.nsf"_s});
  t.workspace->client().select({one});
  const Object session = t.gateway.create(u"Lotus.NotesSession"_s);
  session.call(u"Initialize"_s);
  session.call(u"GETDATABASE"_s, QString(), u"mail.nsf"_s)
      .object()
      .call(u"GETAGENT"_s, u"Mark"_s)
      .object()
      .call(u"RUN"_s);
  EXPECT_FALSE(t.document(one).call(u"HASITEM"_s, u"Read"_s).boolean());
}

TEST_F(DesignModel, AnAgentThatCannotRunSaysWhy) {
  import(
      "<agent name='Talk'><trigger type='actionsmenu'/><documentset type='all'/><code event='initialize'>"
      "<lotusscript>Sub Initialize\nEnd Sub</lotusscript></code></agent>");
  const Object agent = t.mail().call(u"GETAGENT"_s, u"Talk"_s).object();
  try {
    agent.call(u"RUN"_s);
    FAIL();
  } catch (const RuntimeError& error) {
    EXPECT_EQ(error.number(), agentfault::CannotRun);
    EXPECT_TRUE(error.description().contains(u"LotusScript"_s));
    EXPECT_TRUE(error.description().contains(u"mail.nsf"_s));
  }
}

TEST_F(DesignModel, AnAgentThatWasDeletedMeanwhileSaysSo) {
  import(kAgent);
  const Object agent = t.mail().call(u"GETAGENT"_s, u"Mark"_s).object();
  t.store->notes().remove(t.store->notes().list(noteclass::Filter).first().id);
  EXPECT_EQ(raised([&] { agent.call(u"RUN"_s); }), agentfault::CannotRun);
}

TEST_F(DesignModel, ProfilesAreFoundAllOrByTheirName) {
  const auto profile = [&](const QString& name) { return t.add({{u"$Name"_s, textValue(name)}}); };
  t.add({{u"Form"_s, textValue(u"Memo")}});
  const NoteId user = profile(u"$profile_008settings_karin meier"_s);
  t.add({{u"$Name"_s, textValue(u"($Inbox)")}});
  const NoteId shared = profile(u"$profile_008settings_"_s), other = profile(u"$profile_005other_"_s);
  const Object mail = t.mail();
  const auto ids = [](const Object& profiles) {
    QStringList found;
    for (int i = 1; i <= profiles.get(u"Count"_s).number(); ++i)
      found.append(profiles.call(u"GetNthDocument"_s, i).object().get(u"NoteID"_s).text());
    return found;
  };
  EXPECT_EQ(ids(mail.get(u"GetProfileDocCollection"_s).object()),
            QStringList({t.hex(user), t.hex(shared), t.hex(other)}));
  EXPECT_EQ(ids(mail.call(u"GETPROFILEDOCCOLLECTION"_s, u"Settings"_s).object()),
            QStringList({t.hex(user), t.hex(shared)}));
  EXPECT_EQ(ids(mail.call(u"GETPROFILEDOCCOLLECTION"_s, QString()).object()).size(), 3);
  EXPECT_TRUE(ids(mail.call(u"GETPROFILEDOCCOLLECTION"_s, u"none"_s).object()).isEmpty());
}

TEST_F(DesignModel, NavigatorsAndSharedColumnsAreNoViews) {
  t.addView(u"Map"_s, {}, u"G3"_s);
  t.addView(u"Column"_s, {}, u"^"_s);
  EXPECT_EQ(t.mail().get(u"VIEWS"_s).upperBound(), -1);
  t.addView(u"Map"_s);
  t.addView(u"Put"_s, {}, u"F"_s);
  EXPECT_EQ(names(t.mail().get(u"Views"_s)), QStringList({u"Map"_s, u"Put"_s}));
  EXPECT_FALSE(t.mail().call(u"GETVIEW"_s, u"map"_s).object().isNothing());
  EXPECT_TRUE(t.mail().call(u"GETVIEW"_s, u"Column"_s).object().isNothing());
}

TEST_F(DesignModel, OfADatabaseThatIsNotOpenIsRefused) {
  const Object directory = t.session().call(u"GETDBDIRECTORY"_s, QString()).object();
  const Object missing = directory.call(u"OpenDatabaseByReplicaID"_s, u"0"_s).object();
  for (const QString& member :
       {u"AGENTS"_s, u"VIEWS"_s, u"GETPROFILEDOCCOLLECTION"_s, u"CREATENOTECOLLECTION"_s})
    EXPECT_EQ(raised([&] { missing.get(member); }), modelfault::DatabaseClosed) << member.toStdString();
}

TEST_F(DesignModel, TheIconNoteTellsTheFlagsOfTheDatabase) {
  import(
      "<note class='icon'><item name='$TITLE'><text>Mail</text></item>"
      "<item name='$Flags'><text>J7QU</text></item></note>");
  const Object icon = t.mail().call(u"GETDOCUMENTBYID"_s, u"FFFF0010"_s).object();
  EXPECT_EQ(icon.call(u"GETITEMVALUE"_s, u"$flags"_s).at(0).text(), u"J7QU"_s);
}

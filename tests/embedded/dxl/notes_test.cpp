#include "embedded/dxl/import_fixture.h"
#include "embedded/dxl/note_elements.h"
#include "embedded/format/single_notes.h"

namespace lens {
namespace {

const QByteArray kInfo =
    "<noteinfo noteid='36a' unid='7D42701190277D6985257AA6005008C2' sequence='27'>"
    "<created><datetime dst='true'>20121029T103411,22-04</datetime></created>"
    "<modified><datetime>20121114T090404,36-05</datetime></modified>"
    "<revised><datetime>20121114T090404,34-05</datetime></revised>"
    "<lastaccessed><datetime>20121115</datetime></lastaccessed>"
    "<addedtofile><datetime dst='true'>20121029T103411,23-04</datetime></addedtofile></noteinfo>";

TEST_F(DxlImport, NoteInfoGivesUnidSequenceAndTimes) {
  const Note note = document(kInfo);
  EXPECT_EQ(note.header.unid.text().toStdString(), "7D42701190277D6985257AA6005008C2");
  EXPECT_EQ(note.header.sequence, 27u);
  EXPECT_EQ(instantOf(note.header.created), QDateTime(QDate(2012, 10, 29), QTime(14, 34, 11, 220), Qt::UTC));
  EXPECT_EQ(instantOf(note.header.modified).time(), QTime(14, 4, 4, 360));
  EXPECT_EQ(instantOf(note.header.sequenceTime).time(), QTime(14, 4, 4, 340));
  EXPECT_EQ(instantOf(note.header.added).time(), QTime(14, 34, 11, 230));
  EXPECT_EQ(localOf(note.header.accessed).date, QDate(2012, 11, 15));
  EXPECT_NE(note.header.id, NoteId(0x36Au));
}

TEST_F(DxlImport, NoteWithoutInfoGetsIdentityOfItsOwn) {
  run("<database><document/><document/></database>");
  const QVector<NoteSummary> list = database_->notes().list(noteclass::Document);
  ASSERT_EQ(list.size(), 2);
  EXPECT_FALSE(list[0].unid.isNull());
  EXPECT_FALSE(list[0].unid == list[1].unid);
}

TEST_F(DxlImport, NoteOfTheSameUnidIsReplacedAndKeepsItsId) {
  const Note before = document(kInfo + "<item name='A'><text>1</text></item>");
  const Note after = document(kInfo + "<item name='B'><text>2</text></item>");
  EXPECT_EQ(after.header.id, before.header.id);
  EXPECT_EQ(namesText(after), "B");
  EXPECT_EQ(last_.notes, 1);
  EXPECT_EQ(last_.replaced, 1);
}

TEST_F(DxlImport, RawNoteHasClassAndMarks) {
  const Note note = design("<note class='form' default='true' private='true'/>", noteclass::Form);
  EXPECT_EQ(note.header.noteClass, noteclass::Form | noteclass::Default | noteclass::Private);
}

TEST_F(DxlImport, EveryClassNameIsKnown) {
  const std::pair<const char*, quint16> classes[] = {{"document", 0x1},
                                                     {"helpaboutdocument", 0x2},
                                                     {"form", 0x4},
                                                     {"view", 0x8},
                                                     {"icon", 0x10},
                                                     {"acl", 0x40},
                                                     {"helpindex", 0x80},
                                                     {"helpusingdocument", 0x100},
                                                     {"filter", 0x200},
                                                     {"sharedfield", 0x400},
                                                     {"replicationformula", 0x800}};
  for (const auto& [name, value] : classes)
    EXPECT_EQ(design(QByteArray("<note class='") + name + "'/>", value).header.noteClass, value) << name;
}

// Whatever UNIDs they have; a "using" document is none of them.
TEST_F(DxlImport, ASecondNoteOfAClassThatADatabaseHoldsOnceReplacesTheFirst) {
  const std::pair<const char*, quint16> classes[] = {{"helpaboutdocument", 0x2},
                                                     {"icon", 0x10},
                                                     {"designcollection", 0x20},
                                                     {"acl", 0x40},
                                                     {"helpindex", 0x80},
                                                     {"helpusingdocument", 0x100},
                                                     {"form", 0x4}};
  for (const auto& [name, value] : classes) {
    const auto note = [&](const char* unid) {
      return QByteArray("<note class='") + name + "'><noteinfo unid='" + unid + "'/></note>";
    };
    run(note("0123456789ABCDEF0123456789ABCDE1"));
    const int before = notes();
    const ImportReport second = run(note("0123456789ABCDEF0123456789ABCDE2"));
    const bool single = isSingleInstance(value);
    EXPECT_EQ(single, (value & 0x00F2) != 0) << name;
    EXPECT_EQ(notes(), single ? before : before + 1) << name;
    EXPECT_EQ(second.replaced, single ? 1 : 0) << name;
    EXPECT_EQ(database_->notes().list(value).size(), single ? 1 : 2) << name;
    for (const NoteSummary& left : database_->notes().list(0x7FFF)) database_->notes().remove(left.id, false);
  }
}

TEST_F(DxlImport, DocumentAttributesStandForItems) {
  const Note note =
      document("<item name='A'><text>x</text></item>",
               "form='Reply' parent='7D42701190277D6985257AA6005008C2' response='true' conflict='true'");
  EXPECT_EQ(namesText(note), "Form A $REF $Conflict");
  EXPECT_EQ(valuesText(note, u"Form"), "Reply");
  EXPECT_EQ(valuesText(note, u"$REF"), "7D42701190277D6985257AA6005008C2");
  EXPECT_EQ(note.header.parent.text().toStdString(), "7D42701190277D6985257AA6005008C2");
}

TEST_F(DxlImport, StatedItemsWinOverAttributes) {
  EXPECT_EQ(namesText(document("<item name='FORM'><text>x</text></item>", "form='y'")), "FORM");
}

TEST_F(DxlImport, RawReferenceSetsTheParent) {
  const Note note =
      document("<item name='$REF'><rawitemdata type='4'>AQBpfSeQEXBCfcIIUACmeiWF</rawitemdata></item>");
  EXPECT_EQ(note.header.parent.text().toStdString(), "7D42701190277D6985257AA6005008C2");
}

TEST_F(DxlImport, PrologBecomesItemsAtTheEnd) {
  const Note note = document(
      "<updatedby><name>CN=A/O=Acme</name><name>CN=B/O=Acme</name></updatedby>"
      "<revisions><datetime>20240101T100000,00+00</datetime><datetime>20240102T100000,00+00</datetime></"
      "revisions>"
      "<wassignedby><name>CN=A/O=Acme</name></wassignedby><item name='X'><text>1</text></item>");
  EXPECT_EQ(namesText(note), "X $UpdatedBy $Revisions");
  EXPECT_EQ(valuesText(note, u"$UpdatedBy"), "CN=A/O=Acme|CN=B/O=Acme");
  EXPECT_EQ(note.find(u"$Revisions")->type(), itemtype::TimeRange);
  EXPECT_TRUE(last_.ignored.join(u' ').contains(u"wassignedby: information only"));
}

TEST_F(DxlImport, ProfileDocumentGetsItsName) {
  const Note note = onlyNote(
      run("<profiledocument name='CalendarProfile' username='CN=Karin Meier/O=Acme'/>"), noteclass::Document);
  EXPECT_EQ(valuesText(note, u"$Name"), "$profile_015calendarprofile_cn=karin meier/o=acme");
}

TEST_F(DxlImport, UnknownElementOfANoteIsKept) {
  const Note note = document("<mystery x='1'><y>z</y></mystery>");
  EXPECT_EQ(note.text(u"$DXL_mystery").toStdString(), "<mystery x=\"1\"><y>z</y></mystery>");
}

TEST_F(DxlImport, DatabaseAttributesGoToItsProperties) {
  run("<database xmlns='http://www.lotus.com/dxl' title='Sales' templatename='AcmeSales' "
      "fromtemplate='StdBase' "
      "categories='Work' replicaid='C2257B2600344548'><databaseinfo dbid='C2257B2600344548'/></database>");
  const DatabaseInfo info = database_->info();
  EXPECT_EQ(info.title.toStdString(), "Sales");
  EXPECT_EQ(info.templateName.toStdString(), "AcmeSales");
  EXPECT_EQ(info.inheritsFrom.toStdString(), "StdBase");
  EXPECT_EQ(info.categories.toStdString(), "Work");
  EXPECT_EQ(info.replicaId.toStdString(), "C2257B2600344548");
  EXPECT_FALSE(info.publicAddressBook);
  Note icon;
  ASSERT_TRUE(database_->notes().read(database_->notes().specialNote(noteclass::Icon), icon));
  EXPECT_EQ(valuesText(icon, u"$TITLE"), "Sales\nWork\n#1AcmeSales\n#2StdBase");
  EXPECT_TRUE(icon.has(u"$Flags"));
}

TEST_F(DxlImport, DatabasePropertiesCanBeLeftAlone) {
  ImportReport report;
  DxlImporter importer(*database_);
  importer.applyDatabaseProperties(false);
  importer.importFile(write("<database title='Sales' replicaid='C2257B2600344548'/>"), report);
  EXPECT_EQ(database_->info().title.toStdString(), "");
}

TEST_F(DxlImport, IconNoteOfTheFileIsTheOnlyOne) {
  const QByteArray file =
      "<database title='S'><launchsettings><noteslaunch/></launchsettings><note class='icon'>"
      "<item name='$TITLE'><text>Own<break/></text></item></note></database>";
  run(file);
  run(file);
  ASSERT_EQ(database_->notes().noteCount(noteclass::Icon), 1);
  Note icon;
  ASSERT_TRUE(database_->notes().read(database_->notes().specialNote(noteclass::Icon), icon));
  EXPECT_EQ(valuesText(icon, u"$TITLE"), "Own\n");
  EXPECT_EQ(namesText(icon), "$TITLE $DXL_launchsettings");
}

// A folder of exports has the settings in one file and the icon note in another.
TEST_F(DxlImport, SettingsOfTheDatabaseAndItsIconNoteAreMergedInAnyOrder) {
  const QByteArray settings =
      "<database title='S'><fulltextsettings update='daily'/><launchsettings><noteslaunch/></launchsettings>"
      "<note class='icon'><noteinfo unid='00000000000000010000000000000002'/>"
      "<item name='$TITLE'><text>Inner</text></item></note></database>";
  for (const char* unid : {"00000000000000010000000000000002", "00000000000000030000000000000004"}) {
    const QByteArray alone = "<note class='icon'><noteinfo unid='" + QByteArray(unid) +
                             "'/><item name='$TITLE'><text>Alone</text></item></note>";
    for (const bool settingsFirst : {true, false}) {
      database_ =
          Database::create(folder_.filePath(QStringLiteral("m%1%2.nsf").arg(unid).arg(settingsFirst)), {});
      run(settingsFirst ? settings : alone);
      run(settingsFirst ? alone : settings);
      ASSERT_EQ(database_->notes().noteCount(noteclass::Icon), 1);
      Note icon;
      ASSERT_TRUE(database_->notes().read(database_->notes().specialNote(noteclass::Icon), icon));
      EXPECT_EQ(namesText(icon), "$TITLE $DXL_fulltextsettings $DXL_launchsettings");
      EXPECT_EQ(valuesText(icon, u"$TITLE"), settingsFirst ? "Alone" : "Inner");
    }
  }
}

TEST_F(DxlImport, SettingsOfAnIconNoteReplaceThoseThatStand) {
  run("<database><launchsettings><noteslaunch/></launchsettings></database>");
  run("<database><launchsettings><weblaunch/></launchsettings></database>");
  Note icon;
  ASSERT_TRUE(database_->notes().read(database_->notes().specialNote(noteclass::Icon), icon));
  EXPECT_EQ(icon.text(u"$DXL_launchsettings").toStdString(),
            "<launchsettings><weblaunch></weblaunch></launchsettings>");
}

TEST_F(DxlImport, AccessControlListIsOneNoteOfTexts) {
  const QByteArray file =
      "<database><acl maxinternetaccess='editor'><role>[Chief]</role><aclentry name='-Default-' "
      "default='true' "
      "level='noaccess'/><aclentry name='CN=Karin Meier/O=Acme' type='person' "
      "level='manager'><role>[Chief]</role>"
      "</aclentry><logentry>CN=A added B</logentry></acl></database>";
  run(file);
  run(file);
  const Note acl = onlyNote(run(file), noteclass::Acl);
  EXPECT_EQ(valuesText(acl, u"$ACLEntries"),
            "-Default-; default=true; level=noaccess|CN=Karin Meier/O=Acme; type=person; level=manager; "
            "roles=[Chief]");
  EXPECT_EQ(valuesText(acl, u"$ACLRoles"), "[Chief]");
  EXPECT_EQ(valuesText(acl, u"$ACLLog"), "CN=A added B");
  EXPECT_EQ(valuesText(acl, u"$ACLAttributes"), "maxinternetaccess=editor");
}

TEST_F(DxlImport, AddressBookIsRecognisedByItsTemplate) {
  run("<database title='B' fromtemplate='StdR4PublicAddressBook'/>");
  EXPECT_TRUE(database_->info().publicAddressBook);
}

}  // namespace
}  // namespace lens

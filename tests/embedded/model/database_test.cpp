#include <gtest/gtest.h>
#include <sqlite3.h>

#include "embedded/model/support/test_workspace.h"

using namespace lens;
using namespace lens::testbed;
using namespace Qt::Literals::StringLiterals;

TEST(DatabaseObject, TellsItsPlaceAndProperties) {
  TestWorkspace t;
  t.workspace->addServer(u"CN=Hub1/O=Acme"_s);
  t.workspace->createDatabase(u"Hub1/Acme"_s, u"apps/crm.nsf"_s, {});
  const Object mail = t.mail();
  EXPECT_EQ(mail.get(u"SERVER"_s).text(), u""_s);
  EXPECT_EQ(mail.get(u"FilePath"_s).text(), u"mail.nsf"_s);
  EXPECT_EQ(mail.get(u"title"_s).text(), u"Mail of Karin"_s);
  EXPECT_EQ(mail.get(u"ReplicaID"_s).text(), u"C1257A0000112233"_s);
  EXPECT_EQ(mail.get(u"TemplateName"_s).text(), u"StdMail"_s);
  EXPECT_TRUE(mail.get(u"IsOpen"_s).boolean());
  EXPECT_FALSE(mail.get(u"IsPublicAddressBook"_s).boolean());
  EXPECT_GT(mail.get(u"SIZE"_s).number(), 1000);
  const Object crm = t.session().call(u"GETDATABASE"_s, u"Hub1/Acme"_s, u"apps\\crm"_s).object();
  EXPECT_EQ(crm.get(u"server"_s).text(), u"CN=Hub1/O=Acme"_s);
  EXPECT_EQ(crm.get(u"FILEPATH"_s).text(), u"apps"_s + QDir::separator() + u"crm.nsf"_s);
  EXPECT_EQ(crm.get(u"FileName"_s).text(), u"crm.nsf"_s);
}

TEST(DatabaseObject, ClosingEndsOnlyThatObject) {
  TestWorkspace t;
  const NoteId id = t.add({{u"A"_s, textValue(u"x")}});
  const Object mail = t.mail();
  const Object document = mail.call(u"GETDOCUMENTBYID"_s, t.hex(id)).object();
  mail.call(u"CLOSE"_s);
  EXPECT_FALSE(mail.get(u"ISOPEN"_s).boolean());
  EXPECT_GT(raised([&] { mail.call(u"GETDOCUMENTBYID"_s, t.hex(id)); }), 0);
  EXPECT_EQ(document.call(u"GETITEMVALUE"_s, u"A"_s).at(0).text(), u"x"_s);
  EXPECT_TRUE(document.get(u"ParentDatabase"_s).object().get(u"ISOPEN"_s).boolean());
}

TEST(DatabaseObject, DocumentsOutliveGatewayAndDatabaseObject) {
  Object document;
  {
    TestWorkspace t;
    document = t.document(t.add({{u"A"_s, textValue(u"x")}}));
  }
  EXPECT_EQ(document.call(u"GETITEMVALUE"_s, u"A"_s).at(0).text(), u"x"_s);
  EXPECT_EQ(document.get(u"PARENTDATABASE"_s).object().get(u"FILEPATH"_s).text(), u"mail.nsf"_s);
}

TEST(DocumentById, TakesOneToEightDigitsInAnyCase) {
  TestWorkspace t;
  const NoteId id = t.add({{u"A"_s, textValue(u"x")}});
  const QString padded = QString::number(id.value(), 16).rightJustified(8, u'0');
  for (const QString& text : {t.hex(id), padded, padded.toUpper()})
    EXPECT_EQ(t.mail().call(u"GetDocumentByID"_s, text).object().get(u"NoteID"_s).text(), t.hex(id));
}

TEST(DocumentById, EmptyTextAndGoneNotesGiveNothing) {
  TestWorkspace t;
  const NoteId stub = t.add({{u"A"_s, textValue(u"x")}});
  const NoteId gone = t.add({{u"A"_s, textValue(u"x")}});
  const NoteId last = t.add({{u"A"_s, textValue(u"x")}});
  t.store->notes().remove(stub);
  t.store->notes().remove(gone, false);
  const Object mail = t.mail();
  for (const QString& text : {u""_s, t.hex(stub), t.hex(gone), t.hex(NoteId(last.value() - 1))})
    EXPECT_TRUE(mail.call(u"GETDOCUMENTBYID"_s, text).object().isNothing()) << text.toStdString();
}

TEST(DocumentById, ZeroNeverIssuedAndNoNumberRaise) {
  TestWorkspace t;
  const NoteId last = t.add({{u"A"_s, textValue(u"x")}});
  const Object mail = t.mail();
  for (const QString& text : {u"0"_s, u"00000000"_s, t.hex(NoteId(last.value() + 4)), u"7FFFFFFC"_s,
                              u"80000001"_s, u"xyz"_s, u"0x12"_s, u" 1"_s, u"123456789"_s})
    EXPECT_GT(raised([&] { mail.call(u"GETDOCUMENTBYID"_s, text); }), 0) << text.toStdString();
}

TEST(DocumentById, DamagedNoteGivesNothing) {
  TestWorkspace t;
  const NoteId id = t.add({{u"A"_s, textValue(u"x")}});
  t.add({{u"A"_s, textValue(u"y")}});
  const QByteArray sql = "UPDATE note SET items = x'00112233' WHERE id = " + QByteArray::number(id.value());
  ASSERT_EQ(sqlite3_exec(t.store->handle(), sql.constData(), nullptr, nullptr, nullptr), SQLITE_OK);
  EXPECT_TRUE(t.document(id).isNothing());
}

TEST(DocumentById, SpecialNumbersLeadToSpecialNotes) {
  TestWorkspace t;
  EXPECT_GT(raised([&] { t.mail().call(u"GETDOCUMENTBYID"_s, u"FFFF0010"_s); }), 0);
  const NoteId icon = t.add({{u"$TITLE"_s, textValue(u"Mail")}}, noteclass::Icon);
  t.add({{u"$TITLE"_s, textValue(u"Memo")}}, noteclass::Form);
  const NoteId form = t.add({{u"$TITLE"_s, textValue(u"Task")}}, noteclass::Form | noteclass::Default);
  EXPECT_EQ(t.mail().call(u"GETDOCUMENTBYID"_s, u"FFFF0010"_s).object().get(u"NoteID"_s).text(), t.hex(icon));
  EXPECT_EQ(t.mail().call(u"GETDOCUMENTBYID"_s, u"ffff0004"_s).object().get(u"NoteID"_s).text(), t.hex(form));
}

TEST(DocumentByUnid, FindsByIdentityAndRaisesOtherwise) {
  TestWorkspace t;
  const NoteId id = t.add({{u"A"_s, textValue(u"x")}});
  const QString unid = t.document(id).get(u"UniversalID"_s).text();
  EXPECT_EQ(unid.size(), 32);
  const Object mail = t.mail();
  EXPECT_EQ(mail.call(u"GetDocumentByUNID"_s, unid.toLower()).object().get(u"NoteID"_s).text(), t.hex(id));
  t.store->notes().remove(id);
  for (const QString& text : {unid, QString(32, u'0'), u""_s, u"12"_s, QString(32, u'g')})
    EXPECT_GT(raised([&] { mail.call(u"GETDOCUMENTBYUNID"_s, text); }), 0) << text.toStdString();
}

TEST(DatabaseObject, ReadsTheStoredStateAnew) {
  TestWorkspace t;
  const NoteId id = t.add({{u"A"_s, textValue(u"old")}});
  const Object before = t.document(id);
  Note note;
  ASSERT_TRUE(t.store->notes().read(id, note));
  note.find(u"A")->value = textValue(u"new");
  t.store->notes().save(note);
  EXPECT_EQ(before.call(u"GETITEMVALUE"_s, u"A"_s).at(0).text(), u"old"_s);
  EXPECT_EQ(t.document(id).call(u"GETITEMVALUE"_s, u"A"_s).at(0).text(), u"new"_s);
}

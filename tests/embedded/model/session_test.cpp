#include <gtest/gtest.h>

#include "embedded/model/support/test_workspace.h"

using namespace lens;
using namespace lens::testbed;
using namespace Qt::Literals::StringLiterals;

TEST(Gateway, MakesTheThreeClassesInAnyCase) {
  TestWorkspace t;
  for (const QString& id : {u"Notes.NotesSession"_s, u"lotus.notessession"_s, u"NOTES.NOTESUIWORKSPACE"_s})
    EXPECT_TRUE(t.gateway.create(id)) << id.toStdString();
  EXPECT_EQ(raised([&] { t.gateway.create(u"Notes.Other"_s); }), err::CannotCreateObject);
}

TEST(Session, MembersMatchWithoutCase) {
  TestWorkspace t;
  const Object session = t.session();
  EXPECT_EQ(session.get(u"NotesVersion"_s).text().first(9), u"Release 9"_s);
  EXPECT_EQ(session.get(u"userName"_s).text(), u"CN=Karin Meier/O=Acme"_s);
  EXPECT_TRUE(session.get(u"currentDatabase"_s).object().isNothing());
}

TEST(Session, UnknownMemberAndWrongArgumentCountRaise) {
  TestWorkspace t;
  const Object session = t.session();
  EXPECT_EQ(raised([&] { session.get(u"NoSuchMember"_s); }), err::MemberNotSupported);
  EXPECT_EQ(raised([&] { session.set(u"NoSuchMember"_s, true); }), err::MemberNotSupported);
  EXPECT_EQ(raised([&] { session.call(u"GETDATABASE"_s, u"x"_s); }), 449);
  EXPECT_EQ(raised([&] { session.get(u"GETDATABASE"_s); }), 449);
  EXPECT_EQ(raised([&] { session.call(u"USERNAME"_s, u"x"_s); }), 450);
  EXPECT_EQ(raised([&] { session.set(u"USERNAME"_s, u"x"_s); }), 450);
}

TEST(Session, BackEndKindNeedsInitialize) {
  TestWorkspace t;
  const Object session = t.gateway.create(u"Lotus.NotesSession"_s);
  const int number = raised([&] { session.get(u"USERNAME"_s); });
  EXPECT_GT(number, 0);
  EXPECT_NE(number, 4000);
  session.call(u"initialize"_s);
  EXPECT_EQ(session.get(u"USERNAME"_s).text(), u"CN=Karin Meier/O=Acme"_s);
}

TEST(Session, ClientKindHasNoInitialize) {
  TestWorkspace t;
  EXPECT_EQ(raised([&] { t.session().call(u"Initialize"_s); }), err::MemberNotSupported);
}

TEST(Session, BackEndKindSeesNoCurrentDatabase) {
  TestWorkspace t;
  t.workspace->client().showDatabase(DatabasePlace{{}, u"mail.nsf"_s});
  const Object session = t.gateway.create(u"Lotus.NotesSession"_s);
  session.call(u"Initialize"_s);
  EXPECT_TRUE(session.get(u"CURRENTDATABASE"_s).object().isNothing());
  EXPECT_FALSE(t.session().get(u"CURRENTDATABASE"_s).object().isNothing());
}

TEST(Session, EnvironmentEntriesOfTheSystemHaveNoDollar) {
  TestWorkspace t;
  t.workspace->setIniValue(u"$Mine"_s, u"a"_s);
  t.workspace->setIniValue(u"Mine"_s, u"b"_s);
  const Object session = t.session();
  EXPECT_EQ(session.call(u"GetEnvironmentString"_s, u"directory"_s, true).text(),
            t.workspace->dataDirectory());
  EXPECT_EQ(session.call(u"GETENVIRONMENTSTRING"_s, u"NotesProgram"_s, true).text(), t.directory());
  EXPECT_EQ(session.call(u"GETENVIRONMENTSTRING"_s, u"Mine"_s, true).text(), u"b"_s);
  EXPECT_EQ(session.call(u"GETENVIRONMENTSTRING"_s, u"Mine"_s).text(), u"a"_s);
}

TEST(Session, AddressBooksAreEmptyOrAnArray) {
  TestWorkspace t;
  EXPECT_TRUE(t.session().get(u"AddressBooks"_s).isEmpty());
  const QString hub = u"CN=Hub1/O=Acme"_s;
  t.workspace->addServer(hub);
  DatabaseInfo info;
  info.publicAddressBook = true;
  t.workspace->createDatabase({}, u"names.nsf"_s, info);
  t.workspace->createDatabase(hub, u"names.nsf"_s, info);
  const Value books = t.session().get(u"ADDRESSBOOKS"_s);
  ASSERT_EQ(books.upperBound(), 1);
  const Object own = books.at(0).object(), everybodys = books.at(1).object();
  EXPECT_FALSE(own.get(u"IsPublicAddressBook"_s).boolean());
  EXPECT_TRUE(everybodys.get(u"ISPUBLICADDRESSBOOK"_s).boolean());
  EXPECT_EQ(own.get(u"FILEPATH"_s).text(), u"names.nsf"_s);
  EXPECT_EQ(everybodys.get(u"server"_s).text(), hub);
  EXPECT_FALSE(everybodys.get(u"ISOPEN"_s).boolean());
}

TEST(Session, ADatabaseOnAServerThatIsAnAddressBookSaysSoThoughNoSettingNamesIt) {
  TestWorkspace t;
  const QString hub = u"CN=Hub1/O=Acme"_s;
  t.workspace->addServer(hub);
  t.workspace->setIniValue(u"Names"_s, u"names.nsf"_s);
  DatabaseInfo book;
  book.publicAddressBook = true;
  t.workspace->createDatabase({}, u"people.nsf"_s, book);
  t.workspace->createDatabase(hub, u"people.nsf"_s, book);
  t.workspace->createDatabase(hub, u"plain.nsf"_s, {});
  const auto isBook = [&](const QString& server, const QString& path) {
    const Object opened = t.session().call(u"GETDATABASE"_s, server, path).object();
    return opened.get(u"IsPublicAddressBook"_s).boolean();
  };
  EXPECT_TRUE(isBook(hub, u"people.nsf"_s));
  EXPECT_FALSE(isBook(hub, u"plain.nsf"_s));
  EXPECT_FALSE(isBook({}, u"people.nsf"_s)) << "on this machine it is its user's own";
  const Object directory = t.session().call(u"GETDBDIRECTORY"_s, hub).object();
  const Object listed = directory.call(u"GetFirstDatabase"_s, 1247).object();
  EXPECT_FALSE(listed.get(u"ISOPEN"_s).boolean());
  EXPECT_EQ(listed.get(u"FILEPATH"_s).text(), u"people.nsf"_s);
  EXPECT_TRUE(listed.get(u"isPublicAddressBook"_s).boolean());
}

TEST(Session, AnAddressBookIsKnownWithoutItsFile) {
  TestWorkspace t;
  t.workspace->addServer(u"CN=Hub1/O=Acme"_s);
  t.workspace->setIniValue(u"Names"_s, u"Hub1/Acme!!names.nsf,Gone/Acme!!names.nsf"_s);
  const Value books = t.session().get(u"ADDRESSBOOKS"_s);
  ASSERT_EQ(books.upperBound(), 1);
  for (const Value& book : books.values()) {
    EXPECT_TRUE(book.object().get(u"ISPUBLICADDRESSBOOK"_s).boolean());
    EXPECT_FALSE(book.object().get(u"ISOPEN"_s).boolean());
    EXPECT_EQ(book.object().get(u"Title"_s).text(), u""_s);
    EXPECT_GT(raised([&] {
                t.session().call(u"GETDATABASE"_s, book.object().get(u"SERVER"_s).text(),
                                 book.object().get(u"FILEPATH"_s).text());
              }),
              0);
  }
}

TEST(Session, ADatabaseThatCannotBeOpenedRaises) {
  TestWorkspace t;
  const Object session = t.session();
  QFile junk(t.workspace->dataDirectory() + u"/junk.nsf"_s);
  ASSERT_TRUE(junk.open(QIODevice::WriteOnly));
  junk.write("junk");
  junk.close();
  const auto fault = [&](const QString& server, const QString& file) {
    return raised([&] { session.call(u"GetDatabase"_s, server, file); });
  };
  EXPECT_EQ(fault({}, {}), workspacefault::BadPath);
  EXPECT_EQ(fault({}, u"none.nsf"_s), workspacefault::NoSuchFile);
  EXPECT_EQ(fault({}, u"junk.nsf"_s), enginefault::NotADatabase);
  EXPECT_EQ(fault(u"Hub9/Acme"_s, u"mail.nsf"_s), workspacefault::UnknownServer);
}

TEST(Session, TheServerOfADatabaseIsCanonicalHoweverItWasNamed) {
  TestWorkspace t;
  t.workspace->addServer(u"CN=Hub1/OU=Ops/O=Acme/C=DE"_s);
  t.workspace->createDatabase(u"Hub1/Ops/Acme/DE"_s, u"crm.nsf"_s, {});
  for (const QString& name : {u"hub1/OPS/acme/de"_s, u"CN=Hub1/OU=Ops/O=Acme/C=DE"_s})
    EXPECT_EQ(t.session().call(u"GETDATABASE"_s, name, u"crm"_s).object().get(u"SERVER"_s).text(),
              u"CN=Hub1/OU=Ops/O=Acme/C=DE"_s);
}

TEST(Session, ConvertMimeIsReadAndWritten) {
  TestWorkspace t;
  const Object session = t.session();
  EXPECT_TRUE(session.get(u"ConvertMime"_s).boolean());
  session.set(u"CONVERTMIME"_s, false);
  EXPECT_FALSE(t.session().get(u"CONVERTMIME"_s).boolean());
}

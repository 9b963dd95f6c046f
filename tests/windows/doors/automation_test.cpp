// The object model over the platform's automation, against the stand-in for the client.
#include <gtest/gtest.h>

#include <QDir>

#include "double_control.h"
#include "notes/automation/windows/automation_gateway.h"
#include "notes/literals.h"

namespace lens {
namespace {

// Whatever a test does: in its end no object of the client is left.
class Automation : public testing::Test {
 protected:
  void TearDown() override {
    tellDouble(QString());
    EXPECT_EQ(livingObjects(), 0);
  }
  Object session() {
    const Object made = gateway.create(u"Notes.NotesSession"_s);
    return made;
  }
  Object mail() {
    return session()
        .call(u"GETDATABASE"_s, QString(), QDir::toNativeSeparators(u"mail/kmeier.nsf"_s))
        .object();
  }
  Object openDocument() {
    const Object workspace = gateway.create(u"Notes.NotesUIWorkSpace"_s);
    return workspace.get(u"CURRENTDOCUMENT"_s).object().get(u"DOCUMENT"_s).object();
  }
  template <class Call>
  static RuntimeError raisedBy(Call&& call) {
    try {
      call();
    } catch (const RuntimeError& error) {
      return error;
    }
    return {0, QString()};
  }
  AutomationGateway gateway;
};

TEST_F(Automation, MakesTheThreeClassesOfTheClient) {
  for (const QString& name : {u"Notes.NotesSession"_s, u"Lotus.NotesSession"_s, u"Notes.NotesUIWorkSpace"_s})
    EXPECT_TRUE(gateway.create(name)) << name.toStdString();
}

TEST_F(Automation, RaisesForAClassThatNobodyRegistered) {
  EXPECT_EQ(raisedBy([&] { gateway.create(u"Notes.NoSuchClass"_s); }).number(), err::CannotCreateObject);
}

TEST_F(Automation, MatchesNamesWithoutCapitals) {
  const Object document = openDocument();
  EXPECT_EQ(document.get(u"NoteID"_s), document.get(u"NOTEID"_s));
  EXPECT_FALSE(document.get(u"noteid"_s).text().isEmpty());
}

TEST_F(Automation, GivesTextsNumbersAndObjects) {
  const Object database = mail();
  EXPECT_EQ(database.get(u"Title"_s), Value(u"Mail Karin Meier"_s));
  EXPECT_EQ(database.get(u"Size"_s).kind(), Value::Kind::Number);
  EXPECT_EQ(database.get(u"ISOPEN"_s), Value(true));
  EXPECT_TRUE(database.call(u"GETVIEW"_s, u"no such view"_s).object().isNothing());
}

TEST_F(Automation, GivesArraysFromZero) {
  const Object document = openDocument();
  const Value subject = document.call(u"GETITEMVALUE"_s, u"Subject"_s);
  ASSERT_TRUE(subject.isArray());
  EXPECT_EQ(subject.upperBound(), 0);
  EXPECT_EQ(subject.at(0).text(), u"Contract 2024-117, second draft"_s);
  const Value items = document.get(u"ITEMS"_s);
  EXPECT_GT(items.upperBound(), 5);
  EXPECT_EQ(items.at(0).object().get(u"Name"_s).text(), u"Form"_s);
  EXPECT_EQ(document.call(u"GETITEMVALUE"_s, u"NoSuchItem"_s).typeName(), u"Empty"_s);
}

// What is put in comes out again; nothing is saved.
TEST_F(Automation, CarriesEveryKindOfValueBothWays) {
  const Object document = openDocument();
  const DateTime moment{QDate(2024, 2, 29), QTime(13, 14, 15)};
  const DateTime day{QDate(1998, 7, 6), QTime()};
  const DateTime time{QDate(), QTime(8, 30)};
  const QVector<Value> values = {u"Gr\u00F6\u00DFe \u2192 \u4E2D"_s,
                                 QString(),
                                 7,
                                 -40000,
                                 0.125,
                                 1e300,
                                 moment,
                                 day,
                                 time,
                                 Value::array({u"a"_s, QString(), u"b"_s}),
                                 Value::array({1, 2.5, 70000})};
  for (const Value& value : values) {
    document.call(u"REPLACEITEMVALUE"_s, u"Probe"_s, value);
    const Value back = document.call(u"GETITEMVALUE"_s, u"Probe"_s);
    EXPECT_EQ(back, value.isArray() ? value : Value::array({value})) << value.typeName().toStdString();
  }
}

TEST_F(Automation, SetsProperties) {
  const Object item = openDocument().call(u"GETFIRSTITEM"_s, u"Subject"_s).object();
  for (const bool flag : {true, false}) {
    item.set(u"ISPROTECTED"_s, flag);
    EXPECT_EQ(item.get(u"ISPROTECTED"_s), Value(flag));
  }
}

// Files that are open can neither be renamed nor deleted on this system.
TEST_F(Automation, MakesAndRemovesADatabase) {
  const QString path = QDir::toNativeSeparators(u"mail/replica.nsf"_s);
  const Object replica = mail().call(u"CREATEREPLICA"_s, QString(), path).object();
  ASSERT_TRUE(replica);
  EXPECT_EQ(replica.get(u"ISOPEN"_s), Value(true));
  const Object found = replica.call(u"SEARCH"_s, u"@All"_s, Object(), 0).object();
  EXPECT_GT(found.get(u"count"_s).number(), 5);
  replica.call(u"REMOVE"_s);
  EXPECT_NE(raisedBy([&] { replica.get(u"Title"_s); }).number(), 0);
  EXPECT_NE(raisedBy([&] { session().call(u"GETDATABASE"_s, QString(), path); }).number(), 0);
}

TEST_F(Automation, HandsObjectsBackToTheirServer) {
  const Object found = mail().call(u"SEARCH"_s, u"@All"_s, Object(), 0).object();
  const Object first = found.call(u"GETFIRSTDOCUMENT"_s).object();
  ASSERT_TRUE(first);
  const Object second = found.call(u"GETNEXTDOCUMENT"_s, first).object();
  ASSERT_TRUE(second);
  EXPECT_NE(second.get(u"NoteID"_s), first.get(u"NoteID"_s));
}

TEST_F(Automation, TakesNothingForAnObject) {
  const Object found = mail().call(u"SEARCH"_s, u"@All"_s, Object(), 0).object();
  EXPECT_GT(found.get(u"count"_s).number(), 5);
}

TEST_F(Automation, RaisesWhatTheModelRaises) {
  const Object database = mail();
  EXPECT_EQ(raisedBy([&] { database.get(u"NoSuchMember"_s); }).number(), err::MemberNotSupported);
  EXPECT_EQ(raisedBy([&] { database.call(u"GETVIEW"_s); }).number(), 449);
  EXPECT_EQ(raisedBy([&] { database.call(u"GETVIEW"_s, u"a"_s, u"b"_s, u"c"_s); }).number(), 450);
  const RuntimeError unknown = raisedBy([&] { database.call(u"GETDOCUMENTBYID"_s, u"0FFFFFF0"_s); });
  EXPECT_GT(unknown.number(), 0);
  EXPECT_FALSE(unknown.description().isEmpty());
}

TEST_F(Automation, GivesTheServersNumberAndText) {
  const Object database = mail();
  tellDouble(u"Title:raises:1"_s);
  EXPECT_EQ(database.get(u"Title"_s).text(), u"Mail Karin Meier"_s);
  const RuntimeError error = raisedBy([&] { database.get(u"Title"_s); });
  EXPECT_EQ(error.number(), 4711);
  EXPECT_EQ(error.description(), u"told to fail"_s);
}

TEST_F(Automation, OutlivesItsServer) {
  const Object found = mail().call(u"SEARCH"_s, u"@All"_s, Object(), 0).object();
  Object document = found.call(u"GETFIRSTDOCUMENT"_s).object();
  tellDouble(u"GETNEXTDOCUMENT:dies:1"_s);
  document = found.call(u"GETNEXTDOCUMENT"_s, document).object();
  for (int i = 0; i < 3; ++i)
    EXPECT_EQ(raisedBy([&] { found.call(u"GETNEXTDOCUMENT"_s, document); }).number(), 462);
  EXPECT_EQ(raisedBy([&] { document.get(u"NoteID"_s); }).number(), 462);
}

TEST_F(Automation, RaisesForAResultOfAnotherKind) {
  const Object database = mail();
  tellDouble(u"GETVIEW:wrong:0"_s);
  EXPECT_EQ(raisedBy([&] { database.call(u"GETVIEW"_s, u"($Inbox)"_s).object(); }).number(), 424);
}

TEST_F(Automation, ReleasesWhatALoopLeavesBehind) {
  const Object document = openDocument();
  for (int round = 0; round < 100; ++round) {
    const Value items = document.get(u"ITEMS"_s);
    for (int i = 0; i <= items.upperBound(); ++i) items.at(i).object().get(u"Type"_s);
    raisedBy([&] { document.call(u"GETITEMVALUE"_s, items); });
  }
  EXPECT_LT(livingObjects(), 10);
}

}  // namespace
}  // namespace lens

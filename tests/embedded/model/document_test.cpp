#include <gtest/gtest.h>

#include "embedded/model/support/test_workspace.h"

using namespace lens;
using namespace lens::testbed;
using namespace Qt::Literals::StringLiterals;

namespace {

const DateTime kMoment{QDate(2024, 11, 21), QTime(14, 5, 9)};

struct Items : ::testing::Test {
  Items() {
    const QVector<TimeDate> times{timeDateOf(kMoment), timeDateOfDate(QDate(2024, 1, 2))};
    id = t.add({{u"Form"_s, textValue(u"Memo")},
                {u"Größe"_s, textListValue({u"a"_s, u"ü"_s})},
                {u"Numbers"_s, numberListValue({1.5, -2})},
                {u"Times"_s, timeListValue(times)},
                {u"Twice"_s, textValue(u"first")},
                {u"Twice"_s, textValue(u"second"), itemflag::Protected},
                {u"Body"_s, richValue(u"Tab\there"_s), 0},
                {u"$Formula"_s, sourceFormulaValue(u"SELECT @All"_s), itemflag::Sign | itemflag::Seal},
                {u"Icon"_s, rawValue(itemtype::Icon, QByteArray(8, 'x')), 0},
                {u"$REF"_s, noteRefsValue({Unid::fromText(u"0123456789ABCDEF0123456789ABCDEF")})},
                {u"None"_s, textListValue({})},
                {u"To"_s, textValue(u"CN=A/O=B"), itemflag::Names}});
    document = t.document(id);
  }
  Object item(const QString& name) const { return document.call(u"GetFirstItem"_s, name).object(); }
  Value value(const QString& name) const { return document.call(u"GetItemValue"_s, name); }
  TestWorkspace t;
  NoteId id;
  Object document;
};

}  // namespace

TEST_F(Items, NoteIdIsUpperCaseWithoutZeros) {
  EXPECT_EQ(document.get(u"noteid"_s).text(), id.hexText());
  EXPECT_EQ(document.get(u"UNIVERSALID"_s).text().size(), 32);
}

TEST_F(Items, NamesMatchWithoutCase) {
  EXPECT_TRUE(document.call(u"HasItem"_s, u"fORM"_s).boolean());
  EXPECT_EQ(value(u"größe"_s).at(1).text(), u"ü"_s);
  EXPECT_EQ(item(u"FORM"_s).get(u"Name"_s).text(), u"Form"_s);
}

TEST_F(Items, MissingAndEmptyNamesGiveNothing) {
  for (const QString& name : {u"Missing"_s, u""_s}) {
    EXPECT_FALSE(document.call(u"HASITEM"_s, name).boolean());
    EXPECT_TRUE(item(name).isNothing());
    EXPECT_EQ(value(name).typeName(), u"Empty"_s);
    EXPECT_EQ(raised([&] { item(name).get(u"Type"_s); }), err::ObjectNotSet);
  }
  EXPECT_EQ(raised([&] { value(u"Missing"_s).at(0); }), err::TypeMismatch);
}

TEST_F(Items, ValuesAreArraysByType) {
  EXPECT_EQ(value(u"Form"_s), Value::array({Value(u"Memo")}));
  EXPECT_EQ(value(u"Numbers"_s), Value::array({Value(1.5), Value(-2)}));
  EXPECT_EQ(value(u"Times"_s).at(0).dateTime(), kMoment);
  EXPECT_EQ(value(u"Times"_s).at(1).dateTime(), (DateTime{QDate(2024, 1, 2), QTime()}));
  EXPECT_EQ(value(u"$REF"_s).at(0).text(), u"0123456789ABCDEF0123456789ABCDEF"_s);
  EXPECT_EQ(value(u"Body"_s).upperBound(), 0);
  EXPECT_EQ(value(u"Body"_s).at(0).text(), u"Tab\there"_s);
  for (const QString& name : {u"None"_s, u"Icon"_s, u"$Formula"_s}) EXPECT_TRUE(value(name).isEmpty());
  EXPECT_EQ(item(u"Numbers"_s).get(u"VALUES"_s), value(u"Numbers"_s));
}

TEST_F(Items, TextJoinsAllValuesByTheRegion) {
  EXPECT_EQ(item(u"Größe"_s).get(u"TEXT"_s).text(), u"a;ü"_s);
  EXPECT_EQ(item(u"Numbers"_s).get(u"text"_s).text(), u"1.5;-2"_s);
  EXPECT_EQ(item(u"Times"_s).get(u"Text"_s).text(), u"21.11.2024 14:05:09;02.01.2024"_s);
  EXPECT_EQ(item(u"Body"_s).get(u"Text"_s).text(), u"Tab\there"_s);
  EXPECT_EQ(item(u"Icon"_s).get(u"Text"_s).text(), u""_s);
  EXPECT_EQ(item(u"None"_s).get(u"Text"_s).text(), u""_s);
}

TEST_F(Items, AFormulaKeptAsSourceIsItsText) {
  EXPECT_EQ(item(u"$formula"_s).get(u"Text"_s).text(), u"SELECT @All"_s);
}

TEST_F(Items, TypesAreThoseOfTheModel) {
  EXPECT_EQ(item(u"Form"_s).get(u"type"_s).number(), 1280);
  EXPECT_EQ(item(u"Größe"_s).get(u"Type"_s).number(), 1280);
  EXPECT_EQ(item(u"To"_s).get(u"Type"_s).number(), 1074);
  EXPECT_EQ(item(u"Body"_s).get(u"Type"_s).number(), 1);
  EXPECT_EQ(item(u"$Formula"_s).get(u"Type"_s).number(), 1536);
}

TEST_F(Items, FlagsAreReadOneByOne) {
  EXPECT_TRUE(item(u"Form"_s).get(u"IsSummary"_s).boolean());
  EXPECT_FALSE(item(u"Form"_s).get(u"IsProtected"_s).boolean());
  EXPECT_TRUE(item(u"$Formula"_s).get(u"IsSigned"_s).boolean());
  EXPECT_TRUE(item(u"$Formula"_s).get(u"IsEncrypted"_s).boolean());
  EXPECT_FALSE(item(u"$Formula"_s).get(u"ISSUMMARY"_s).boolean());
}

TEST_F(Items, TwoItemsOfOneNameAreTwoObjects) {
  const Value items = document.get(u"Items"_s);
  ASSERT_EQ(items.upperBound(), 11);
  const Object first = items.at(4).object(), second = items.at(5).object();
  EXPECT_EQ(first.get(u"Text"_s).text(), u"first"_s);
  EXPECT_EQ(second.get(u"Text"_s).text(), u"second"_s);
  EXPECT_TRUE(second.get(u"ISPROTECTED"_s).boolean());
  EXPECT_EQ(item(u"Twice"_s).get(u"Text"_s).text(), u"first"_s);
  EXPECT_EQ(value(u"twice"_s), Value::array({Value(u"first")}));
}

TEST_F(Items, ItemsOutliveTheirDocumentObject) {
  const Object body = item(u"Body"_s);
  document.release();
  EXPECT_EQ(body.get(u"Name"_s).text(), u"Body"_s);
}

TEST_F(Items, RichTextHasItsOwnMembersBesideThoseOfItems) {
  EXPECT_EQ(item(u"Body"_s).call(u"GetFormattedText"_s, false, 0).text(), u"Tab\there"_s);
  EXPECT_FALSE(item(u"Body"_s).call(u"GETFORMATTEDTEXT"_s, true, 1000).text().contains(u'\t'));
  EXPECT_EQ(raised([&] { item(u"Form"_s).call(u"GETFORMATTEDTEXT"_s, true, 1000); }),
            err::MemberNotSupported);
  EXPECT_EQ(raised([&] { item(u"Body"_s).call(u"getformatredtext"_s, false, 0); }), err::MemberNotSupported);
}

TEST(Attachments, AreFoundByNameAndExtracted) {
  TestWorkspace t;
  const QByteArray bytes = QByteArray(200'000, 'z') + "end";
  const Object document = t.document(t.addFile(u"Größe 1.bin"_s, bytes));
  EXPECT_TRUE(document.get(u"HasEmbedded"_s).boolean());
  const Object item = document.get(u"ITEMS"_s).at(0).object();
  EXPECT_EQ(item.get(u"Type"_s).number(), 1084);
  EXPECT_EQ(item.get(u"Values"_s).at(0).text(), u"Größe 1.bin"_s);
  EXPECT_EQ(item.get(u"Text"_s).text(), u"Größe 1.bin"_s);
  const Object file = document.call(u"GetAttachment"_s, u"größe 1.BIN"_s).object();
  EXPECT_EQ(file.get(u"NAME"_s).text(), u"Größe 1.bin"_s);
  EXPECT_EQ(file.get(u"type"_s).number(), 1454);
  EXPECT_EQ(file.get(u"FileSize"_s).number(), 200'003);
  file.call(u"ExtractFile"_s, t.file(u"out.bin"_s));
  QFile out(t.file(u"out.bin"_s));
  ASSERT_TRUE(out.open(QIODevice::ReadOnly));
  EXPECT_EQ(out.readAll(), bytes);
}

TEST(Attachments, MissingOnesAreNothingAndBadTargetsRaise) {
  TestWorkspace t;
  const Object document = t.document(t.addFile(u"a.txt"_s, "x"));
  EXPECT_TRUE(document.call(u"GETATTACHMENT"_s, u"b.txt"_s).object().isNothing());
  const Object file = document.call(u"GETATTACHMENT"_s, u"a.txt"_s).object();
  EXPECT_GT(raised([&] { file.call(u"EXTRACTFILE"_s, u""_s); }), 0);
  EXPECT_GT(raised([&] { file.call(u"EXTRACTFILE"_s, t.file(u"no/such/dir/a.txt"_s)); }), 0);
  const Object plain = t.document(t.add({{u"A"_s, textValue(u"x")}}));
  EXPECT_FALSE(plain.get(u"HASEMBEDDED"_s).boolean());
}

TEST(Mime, IsReadWhileItIsNotConverted) {
  TestWorkspace t;
  const Object session = t.session();
  const NoteId id = t.addMime("Content-Type: text/plain; charset=UTF-8\r\n\r\nGr\xc3\xbc\xc3\x9f\r\n");
  const Object document = t.document(id);
  EXPECT_EQ(document.call(u"GETFIRSTITEM"_s, u"Body"_s).object().get(u"Type"_s).number(), 25);
  EXPECT_TRUE(document.call(u"GETITEMVALUE"_s, u"Body"_s).isEmpty());
  EXPECT_TRUE(document.call(u"GETMIMEENTITY"_s).object().isNothing());
  session.set(u"CONVERTMIME"_s, false);
  const Object entity = document.call(u"GetMimeEntity"_s).object();
  EXPECT_EQ(entity.get(u"contentType"_s).text(), u"text"_s);
  EXPECT_EQ(entity.get(u"ContentAsText"_s).text().trimmed(), u"Grüß"_s);
  EXPECT_TRUE(entity.call(u"GETFIRSTCHILDENTITY"_s).object().isNothing());
  EXPECT_TRUE(entity.call(u"GETNEXTSIBLING"_s).object().isNothing());
  session.set(u"CONVERTMIME"_s, true);
  EXPECT_TRUE(document.call(u"GETMIMEENTITY"_s).object().isNothing());
}

TEST(Mime, PartsOfAMultipartFollowEachOther) {
  TestWorkspace t;
  t.session().set(u"CONVERTMIME"_s, false);
  const NoteId id = t.addMime(
      "Content-Type: multipart/mixed; boundary=\"b\"\r\n\r\n"
      "--b\r\nContent-Type: text/plain\r\n\r\none\r\n"
      "--b\r\nContent-Type: text/html\r\n\r\n<b>two</b>\r\n--b--\r\n");
  const Object entity = t.document(id).call(u"GETMIMEENTITY"_s).object();
  EXPECT_EQ(entity.get(u"CONTENTTYPE"_s).text(), u"multipart"_s);
  QStringList texts;
  for (Object part = entity.call(u"GetFirstChildEntity"_s).object(); part;
       part = part.call(u"GetNextSibling"_s).object())
    texts.append(part.get(u"CONTENTASTEXT"_s).text().trimmed());
  EXPECT_EQ(texts, QStringList({u"one"_s, u"<b>two</b>"_s}));
}

TEST(Mime, ADocumentWithoutMimeHasNoEntity) {
  TestWorkspace t;
  t.session().set(u"CONVERTMIME"_s, false);
  const Object document = t.document(t.add({{u"A"_s, textValue(u"x")}}));
  EXPECT_TRUE(document.call(u"GETMIMEENTITY"_s).object().isNothing());
}

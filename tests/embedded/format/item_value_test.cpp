#include "embedded/format/item_value.h"

#include <QRandomGenerator>

#include "embedded/support/store_test.h"

namespace lens {
namespace {

Item item(const QByteArray& value, quint16 flags = 0, const QString& name = QStringLiteral("Field")) {
  return {name, flags, value};
}

QStringList texts(const Value& values) {
  QStringList result;
  if (values.isArray())
    for (const Value& value : values.values()) result.append(value.text());
  return result;
}

TEST(ItemValue, TextListOfOneHasItsKnownBytes) {
  const QByteArray value = textListValue({QStringLiteral("State")});
  EXPECT_EQ(value, QByteArray::fromHex("0105 0100 0500 5374617465"));
  EXPECT_EQ(value.size() - 6, 5);
}

TEST(ItemValue, ListsHaveTheirKnownBytes) {
  EXPECT_EQ(textListValue({QStringLiteral("a"), QStringLiteral("b")}),
            QByteArray::fromHex("0105 0200 0100 0100 6162"));
  EXPECT_EQ(numberListValue({5}), QByteArray::fromHex("0103 0100 0000 0000000000001440"));
}

TEST(ItemValue, NoteReferencePrintsItsUnid) {
  const Item reference =
      item(QByteArray::fromHex("0400 0100 66627 4EDCEAB97BB96FF1900DB7B25C1"), 0, QStringLiteral("$REF"));
  EXPECT_EQ(texts(itemValues(reference)), QStringList{QStringLiteral("BB97ABCEED746266C1257BDB0019FF96")});
  EXPECT_EQ(noteRefsValue({Unid::fromText(u"bb97abceed746266C1257BDB0019FF96")}), reference.value);
}

TEST(ItemValue, ReferenceThatIsNoUnidIsRefused) {
  EXPECT_EQ(errorNumber([] { Unid::fromText(u"BB97"); }), err::InvalidCall);
}

TEST(ItemValue, TextComesBack) {
  const Value values = itemValues(item(textValue(u"Größe Ω")));
  EXPECT_EQ(texts(values), QStringList{QStringLiteral(u"Größe Ω")});
}

TEST(ItemValue, NulInsideTextIsALineBreak) {
  EXPECT_EQ(texts(itemValues(item(rawValue(itemtype::Text, QByteArray("a\0b", 3))))),
            QStringList{QStringLiteral("a\nb")});
}

TEST(ItemValue, EmptyTextIsOneEmptyValue) {
  EXPECT_EQ(texts(itemValues(item(textValue(u"")))), QStringList{QString()});
}

TEST(ItemValue, EmptyListIsEmpty) {
  EXPECT_TRUE(itemValues(item(textListValue({}))).isEmpty());
  EXPECT_TRUE(itemValues(item(numberListValue({}))).isEmpty());
  EXPECT_TRUE(itemValues(item(timeListValue({}))).isEmpty());
}

TEST(ItemValue, ListKeepsEmptyEntries) {
  const QStringList list{QString(), QStringLiteral("b"), QString()};
  EXPECT_EQ(texts(itemValues(item(textListValue(list)))), list);
}

TEST(ItemValue, NumbersComeBack) {
  EXPECT_EQ(itemValues(item(numberValue(-1.5))).at(0).number(), -1.5);
  const Value list = itemValues(item(numberListValue({1, 2.5})));
  EXPECT_EQ(list.upperBound(), 1);
  EXPECT_EQ(list.at(1).number(), 2.5);
}

TEST(ItemValue, TimePairGivesItsTwoTimes) {
  const TimeDate day = timeDateOfDate(QDate(2020, 2, 29)), next = timeDateOfDate(QDate(2020, 3, 1));
  const Value values = itemValues(item(timeListValue({day}, {{day, next}})));
  ASSERT_EQ(values.upperBound(), 2);
  EXPECT_EQ(values.at(0).dateTime().date, QDate(2020, 2, 29));
  EXPECT_EQ(values.at(2).dateTime().date, QDate(2020, 3, 1));
  EXPECT_EQ(itemValues(item(timeValue(day))).at(0).dateTime().date, QDate(2020, 2, 29));
}

TEST(ItemValue, FileObjectComesBack) {
  FileObject file;
  file.objectId = 7;
  file.name = QStringLiteral(u"Übersicht.pdf");
  file.size = 123456;
  file.created = timeDateOfDate(QDate(2020, 1, 2));
  file.hostType = 0x0200;
  file.flags = 3;
  const QByteArray value = fileObjectValue(file);
  FileObject read;
  ASSERT_TRUE(readFileObject(QByteArrayView(value).sliced(2), read));
  EXPECT_EQ(read.objectId, 7u);
  EXPECT_EQ(read.name, file.name);
  EXPECT_EQ(read.size, 123456u);
  EXPECT_EQ(read.created.innards[1], file.created.innards[1]);
  EXPECT_EQ(read.hostType, 0x0200);
  EXPECT_EQ(read.flags, 3);
  EXPECT_EQ(texts(itemValues(item(value, 0, QStringLiteral("$file")))), QStringList{file.name});
  EXPECT_TRUE(itemValues(item(value, 0, QStringLiteral("Other"))).isEmpty());
}

TEST(ItemValue, CutFileObjectIsRefusedAtEveryLength) {
  FileObject file;
  file.name = QStringLiteral("a.txt");
  const QByteArray value = fileObjectValue(file).sliced(2);
  FileObject read;
  read.name = QStringLiteral("before");
  for (qsizetype size = 0; size < value.size(); ++size)
    EXPECT_FALSE(readFileObject(QByteArrayView(value).first(size), read)) << size;
  EXPECT_EQ(read.name, QStringLiteral("before"));
}

TEST(ItemValue, TypesOfTheObjectModel) {
  const auto type = [](quint16 stored, quint16 flags = 0) {
    return objectModelType(item(rawValue(stored, {}), flags));
  };
  EXPECT_EQ(type(itemtype::Text), 1280);
  EXPECT_EQ(type(itemtype::TextList, itemflag::Names), 1074);
  EXPECT_EQ(type(itemtype::Text, itemflag::Names | itemflag::Readers), 1075);
  EXPECT_EQ(type(itemtype::Text, itemflag::Names | itemflag::Authors), 1076);
  EXPECT_EQ(type(itemtype::Rfc822Text), 1282);
  EXPECT_EQ(type(itemtype::Number), 768);
  EXPECT_EQ(type(itemtype::NumberRange), 768);
  EXPECT_EQ(type(itemtype::Time), 1024);
  EXPECT_EQ(type(itemtype::TimeRange), 1024);
  EXPECT_EQ(type(itemtype::Error), 256);
  EXPECT_EQ(type(itemtype::Formula), 1536);
  EXPECT_EQ(type(itemtype::UserId), 1792);
  EXPECT_EQ(type(itemtype::MimePart), 25);
  EXPECT_EQ(type(itemtype::RichText, itemflag::Names), 1);
}

TEST(ItemValue, ObjectsAreFilesOleOrOther) {
  FileObject file;
  EXPECT_EQ(objectModelType(item(fileObjectValue(file), 0, QStringLiteral("$FILE"))), 1084);
  EXPECT_EQ(objectModelType(item(fileObjectValue(file))), 1085);
  file.hostType = 0x0100;
  EXPECT_EQ(objectModelType(item(fileObjectValue(file))), 1090);
  EXPECT_EQ(objectModelType(item(QByteArray::fromHex("0300 0800"))), 1085);
}

TEST(ItemValue, OtherTypesHaveNoValues) {
  for (quint16 type : {itemtype::Unknown, itemtype::RichText, itemtype::UserData, itemtype::MimePart,
                       itemtype::Formula, itemtype::Error})
    EXPECT_TRUE(itemValues(item(rawValue(type, "abcdefgh"))).isEmpty()) << type;
}

TEST(ItemValue, CutListGivesWhatCanBeRead) {
  const QByteArray whole = textListValue({QStringLiteral("one"), QStringLiteral("two")});
  EXPECT_EQ(texts(itemValues(item(whole.chopped(1)))),
            (QStringList{QStringLiteral("one"), QStringLiteral("tw")}));
  EXPECT_EQ(texts(itemValues(item(whole.chopped(3)))), QStringList{QStringLiteral("one")});
  const Value numbers = itemValues(item(numberListValue({1, 2}).chopped(1)));
  EXPECT_EQ(numbers.upperBound(), 0);
}

TEST(ItemValue, AnyBytesOfAnyTypeAreSurvived) {
  QRandomGenerator random(1);
  for (int round = 0; round < 20000; ++round) {
    static constexpr quint16 kTypes[] = {0x0003, 0x0004, 0x0300, 0x0301, 0x0400,
                                         0x0401, 0x0500, 0x0501, 0x0502};
    QByteArray data(random.bounded(40), Qt::Uninitialized);
    for (char& byte : data) byte = char(random.bounded(4) ? random.bounded(256) : 0xFF);
    const Item hostile = item(rawValue(kTypes[random.bounded(9)], data), 0, QStringLiteral("$FILE"));
    itemValues(hostile);
    objectModelType(hostile);
  }
}

TEST(ItemValue, EntryThatHasNoFormIsRefused) {
  EXPECT_EQ(errorNumber([] { textListValue({QString(65536, QChar(u'x'))}); }), err::Overflow);
  EXPECT_EQ(errorNumber([] { textListValue({QString(65535, QChar(u'x'))}); }), 0);
  EXPECT_EQ(errorNumber([] { numberListValue(QVector<double>(65536)); }), err::Overflow);
}

TEST(ItemValue, NamesMatchWithoutRegardToCase) {
  EXPECT_TRUE(sameItemName(u"form", u"FORM"));
  EXPECT_TRUE(sameItemName(u"größe", u"GRÖßE"));
  EXPECT_FALSE(sameItemName(u"form", u"forms"));
}

TEST(ByteReader, ReadsBehindTheEndGiveZerosAndSaySo) {
  ByteReader reader(QByteArrayView("\x01\x02\x03", 3));
  EXPECT_EQ(reader.u16(), 0x0201);
  EXPECT_FALSE(reader.failed());
  EXPECT_EQ(reader.u32(), 0u);
  EXPECT_TRUE(reader.failed());
  EXPECT_EQ(reader.left(), 0);
  EXPECT_TRUE(reader.take(-1).isEmpty());
}

TEST(Unid, OnlyThirtyTwoHexadecimalDigitsAreOne) {
  Unid unid;
  EXPECT_TRUE(Unid::parse(u"0123456789abcdefFEDCBA9876543210", unid));
  EXPECT_EQ(unid.text(), QStringLiteral("0123456789ABCDEFFEDCBA9876543210"));
  EXPECT_EQ(Unid::fromBytes(unid.bytes()), unid);
  EXPECT_FALSE(Unid::parse(u"0123456789abcdefFEDCBA987654321", unid));
  EXPECT_FALSE(Unid::parse(u"0123456789abcdefFEDCBA98765432100", unid));
  EXPECT_FALSE(Unid::parse(u"0123456789abcdefFEDCBA987654321G", unid));
  EXPECT_EQ(unid.text(), QStringLiteral("0123456789ABCDEFFEDCBA9876543210"));
}

TEST(Unid, NewOnesDifferAndTellTheirTime) {
  const Unid one = Unid::create(), two = Unid::create();
  EXPECT_FALSE(one == two);
  EXPECT_TRUE(instantOf(readTimeDate(one.bytes().constData() + 8)).isValid());
}

TEST(Note, FirstItemOfANameIsFound) {
  Note note;
  note.add(QStringLiteral("Body"), 0, textValue(u"first"));
  note.add(QStringLiteral("BODY"), 0, textValue(u"second"));
  note.add(QStringLiteral("Count"), 0, numberValue(3));
  note.add(QStringLiteral("List"), 0, textListValue({QStringLiteral("x"), QStringLiteral("y")}));
  EXPECT_EQ(note.text(u"bODY"), QStringLiteral("first"));
  EXPECT_EQ(note.text(u"List"), QStringLiteral("x"));
  EXPECT_EQ(note.text(u"Count"), QString());
  EXPECT_EQ(note.text(u"Absent"), QString());
  note.find(u"body")->value = textValue(u"changed");
  EXPECT_EQ(note.text(u"Body"), QStringLiteral("changed"));
}

}  // namespace
}  // namespace lens

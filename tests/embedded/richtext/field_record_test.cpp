// The record of a form's field tells its parts, whatever its place in the order of the tabulator key.
#include "embedded/richtext/field_record.h"

#include <gtest/gtest.h>

#include "embedded/format/byte_reader.h"
#include "embedded/richtext/rich_records.h"

namespace lens {
namespace {

QByteArray fieldBytes(quint16 tabOrder) {
  QByteArray data;
  appendU16(data, 0x0012);
  appendU16(data, 0x0501);
  data += QByteArray(10, '\x77') + QByteArray("\x01\x02\x03\x0A", 4);
  for (const quint16 size :
       {quint16(3), quint16(2), tabOrder, quint16(1), quint16(4), quint16(5), quint16(6)})
    appendU16(data, size);
  return richrecord::wordRecord(StoredField::kKind, data + "dddtt" + "v" + "Name" + "about" + "a|b|c|");
}

TEST(FieldRecords, TellTheirParts) {
  for (const quint16 order : {0, 1, 3, 7, 0xFFFF}) {
    const QByteArray record = fieldBytes(order);
    StoredField field;
    ASSERT_TRUE(readStoredField(record, field)) << order;
    EXPECT_EQ(field.flags, 0x0012);
    EXPECT_EQ(field.type, 0x0501);
    EXPECT_EQ(field.tabOrder, order);
    EXPECT_EQ(field.font, (RichFont{1, 2, 3, 10}));
    EXPECT_EQ(field.defaultValue, "ddd");
    EXPECT_EQ(field.inputTranslation, "tt");
    EXPECT_EQ(field.inputValidation, "v");
    EXPECT_EQ(field.name, "Name");
    EXPECT_EQ(field.description, "about");
    EXPECT_EQ(field.keywords, "a|b|c|");
  }
}

TEST(FieldRecords, TellTheFormulaBehindAnEmptyListOfKeywords) {
  const auto keywordsOf = [](const QByteArray& keywords) {
    QByteArray data(32, '\0');
    data[30] = char(keywords.size());
    const QByteArray record = richrecord::wordRecord(StoredField::kKind, data + keywords);
    StoredField field;
    EXPECT_TRUE(readStoredField(record, field));
    EXPECT_EQ(field.keywords, keywords);
    return field.keywordsFormula.toByteArray();
  };
  EXPECT_EQ(keywordsOf(QByteArray("\0\0formula", 9)), "formula");
  EXPECT_EQ(keywordsOf(QByteArray("\1\0\3\0abc", 7)), "");
  EXPECT_EQ(keywordsOf(QByteArray("\0\0", 2)), "");
  EXPECT_EQ(keywordsOf(QByteArray("\0", 1)), "");
  EXPECT_EQ(keywordsOf({}), "");
}

TEST(FieldRecords, AreNotReadWhenTheyAreCut) {
  const QByteArray record = fieldBytes(2);
  StoredField field;
  for (qsizetype size = 0; size < record.size(); ++size)
    EXPECT_FALSE(readStoredField(record.first(size), field)) << size;
  QByteArray other = record;
  other[0] = '\x89';
  EXPECT_FALSE(readStoredField(other, field));
}

}  // namespace
}  // namespace lens

#include "embedded/richtext/field_record.h"

#include "embedded/format/byte_reader.h"

namespace lens {

bool readStoredField(QByteArrayView record, StoredField& field) {
  ByteReader reader(record);
  const quint8 kind = reader.u8();
  reader.skip(3);
  field.flags = reader.u16();
  field.type = reader.u16();
  reader.skip(10);
  for (quint8* const part : {&field.font.face, &field.font.attributes, &field.font.color, &field.font.points})
    *part = reader.u8();
  const quint16 defaultValue = reader.u16(), translation = reader.u16();
  field.tabOrder = reader.u16();
  const quint16 validation = reader.u16(), name = reader.u16(), description = reader.u16(),
                keywords = reader.u16();
  field.defaultValue = reader.take(defaultValue);
  field.inputTranslation = reader.take(translation);
  field.inputValidation = reader.take(validation);
  field.name = reader.take(name);
  field.description = reader.take(description);
  field.keywords = reader.take(keywords);
  ByteReader list(field.keywords);
  field.keywordsFormula = list.u16() == 0 ? list.take(list.left()) : QByteArrayView();
  return kind == StoredField::kKind && !reader.failed();
}

QByteArray withFieldFormulas(QByteArrayView record, const std::array<QByteArray, 3>& formulas) {
  constexpr qsizetype kSizes = 22, kSizesEnd = 36, kMostBytes = 0xFFFF;
  StoredField field;
  if (!readStoredField(record, field)) return record.toByteArray();
  const qsizetype before =
      field.defaultValue.size() + field.inputTranslation.size() + field.inputValidation.size();
  const QByteArrayView behind = record.sliced(kSizesEnd + before);
  qsizetype size = kSizesEnd + behind.size();
  for (const QByteArray& formula : formulas) size += formula.size();
  if (size > kMostBytes) return record.toByteArray();
  QByteArray bytes = record.first(2).toByteArray();
  appendU16(bytes, quint16(size));
  bytes += record.sliced(bytes.size(), kSizes - bytes.size());
  for (const qsizetype word :
       {formulas[0].size(), formulas[1].size(), qsizetype(field.tabOrder), formulas[2].size()})
    appendU16(bytes, quint16(word));
  bytes += record.sliced(bytes.size(), kSizesEnd - bytes.size());
  for (const QByteArray& formula : formulas) bytes += formula;
  return bytes.append(behind);
}

}  // namespace lens

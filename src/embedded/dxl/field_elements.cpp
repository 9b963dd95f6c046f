#include "embedded/dxl/field_elements.h"

#include "embedded/dxl/item_elements.h"
#include "embedded/dxl/rich_text_records.h"
#include "embedded/format/source_formula.h"
#include "notes/literals.h"

namespace lens {

namespace {

namespace fieldflag {
constexpr quint16 Authors = 0x0001, Editable = 0x0002, Names = 0x0004, StoreDefault = 0x0008,
                  Readers = 0x0010, Computed = 0x0100, Keywords = 0x0200, Protected = 0x0400, Sign = 0x1000,
                  Seal = 0x2000;
}

quint16 valueType(QStringView type) {
  if (type == u"number") return itemtype::Number;
  if (type == u"datetime") return itemtype::Time;
  if (type == u"richtext" || type == u"richtextlite") return itemtype::RichText;
  return itemtype::Text;
}

quint16 flagsOf(const DxlReader& in) {
  const QString type = in.attribute(u"type"), kind = in.attribute(u"kind");
  quint16 flags = 0;
  if (kind.startsWith(u"computed"))
    flags |= fieldflag::Computed;
  else
    flags |= fieldflag::Editable;
  if (kind == u"computedwhencomposed") flags |= fieldflag::StoreDefault;
  if (type == u"authors") flags |= fieldflag::Authors;
  if (type == u"readers") flags |= fieldflag::Readers;
  if (type == u"names") flags |= fieldflag::Names;
  if (type == u"keyword") flags |= fieldflag::Keywords;
  for (const FieldFlagWord& known : kFieldFlagWords) {
    if (in.flag(known.attribute)) flags |= known.flag;
  }
  return flags;
}

// Takes the formula of a "code" element of the field; other languages and a second formula are not read.
void readFieldCode(ReadContext& context, FieldRecord& record) {
  const QString event = context.in.attribute(u"event");
  QByteArray* place = event == u"defaultvalue"       ? &record.defaultValue
                      : event == u"inputtranslation" ? &record.inputTranslation
                      : event == u"inputvalidation"  ? &record.inputValidation
                                                     : nullptr;
  while (context.in.nextChild()) {
    if (place && place->isEmpty() && context.in.is(u"formula"))
      *place = readFormula(context, u"the formula of a field"_s).mid(2);
    else
      context.in.passOver();
  }
}

// What the record has no other value for.
bool isStoredType(QStringView type) {
  for (const QStringView known :
       {u"text", u"number", u"datetime", u"richtext", u"names", u"authors", u"readers", u"keyword"}) {
    if (type == known) return true;
  }
  return false;
}

bool isStoredKind(QStringView kind) {
  return kind.isEmpty() || kind == u"editable" || kind == u"computed" || kind == u"computedwhencomposed";
}

}  // namespace

QByteArray readFormField(ReadContext& context, Note& note, const RichFont& font, QVector<FormField>& fields) {
  DxlReader& in = context.in;
  const bool records = !in.recording();
  if (records) in.startRecording();
  FieldRecord record;
  record.name = in.attribute(u"name");
  record.description = in.attribute(u"description");
  if (record.name.isEmpty()) in.fail(u"a field has no name"_s);
  record.type = valueType(in.attribute(u"type"));
  record.flags = flagsOf(in);
  if (!isStoredType(in.attributeView(u"type"))) in.markUnread(u"type");
  if (!isStoredKind(in.attributeView(u"kind"))) in.markUnread(u"kind");
  while (in.nextChild()) {
    if (in.is(u"code"))
      readFieldCode(context, record);
    else
      in.passOver();
  }
  const QByteArray bytes = fieldRecord(record, font);
  if (bytes.isEmpty()) in.markRecordIncomplete();
  keepUnlessRead(context, note, u"field"_s, records);
  fields.push_back({record.name, record.type});
  return bytes;
}

const std::array<FieldFlagWord, 3> kFieldFlagWords = {
    {{u"protected", fieldflag::Protected}, {u"sign", fieldflag::Sign}, {u"seal", fieldflag::Seal}}};

QString fieldTypeWord(const FieldRecord& field) {
  if (field.flags & fieldflag::Authors) return u"authors"_s;
  if (field.flags & fieldflag::Readers) return u"readers"_s;
  if (field.flags & fieldflag::Names) return u"names"_s;
  if (field.flags & fieldflag::Keywords) return u"keyword"_s;
  if (field.type == itemtype::Number) return u"number"_s;
  if (field.type == itemtype::Time) return u"datetime"_s;
  return field.type == itemtype::RichText ? u"richtext"_s : u"text"_s;
}

QString fieldKindWord(const FieldRecord& field) {
  if (!(field.flags & fieldflag::Computed)) return u"editable"_s;
  return field.flags & fieldflag::StoreDefault ? u"computedwhencomposed"_s : u"computed"_s;
}

void addFieldItems(Note& note, const QVector<FormField>& fields) {
  QStringList names;
  for (const FormField& field : fields) {
    names.push_back(field.name);
    // Times and numbers have a zero value where other fields have none.
    if (field.type == itemtype::Number)
      note.add(field.name, 0, numberValue(0));
    else if (field.type == itemtype::Time)
      note.add(field.name, 0, timeValue(TimeDate{}));
    else
      note.add(field.name, itemflag::Placeholder, rawValue(itemtype::Unknown, {}));
  }
  if (!note.has(u"$Fields")) note.add(u"$Fields"_s, itemflag::Summary, textListValue(names));
}

}  // namespace lens

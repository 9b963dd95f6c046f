#include "embedded/dxl/rich_text_records.h"

#include <algorithm>
#include <array>

#include "embedded/format/item_value.h"
#include "embedded/format/lmbcs.h"
#include "embedded/format/note.h"
#include "embedded/format/unid.h"
#include "embedded/richtext/field_record.h"

namespace lens {

namespace {

constexpr qsizetype kLongest = 0xFFFF;

struct NamedByte {
  const char16_t* name;
  quint8 value;
};
constexpr std::array<NamedByte, 11> kFaces = {{{u"serif", 0},
                                               {u"roman", 0},
                                               {u"Times", 0},
                                               {u"Times New Roman", 0},
                                               {u"sans-serif", 1},
                                               {u"Helvetica", 1},
                                               {u"Helv", 1},
                                               {u"multilingual", 2},
                                               {u"user-interface", 3},
                                               {u"monospace", 4},
                                               {u"Courier", 4}}};
// Those of several bits first, so that they are named as a whole.
constexpr std::array<NamedByte, 9> kStyles = {{{u"emboss", 0x90},
                                               {u"extrude", 0xA0},
                                               {u"bold", 0x01},
                                               {u"italic", 0x02},
                                               {u"underline", 0x04},
                                               {u"strikethrough", 0x08},
                                               {u"superscript", 0x10},
                                               {u"subscript", 0x20},
                                               {u"shadow", 0x80}}};
constexpr std::array<NamedByte, 19> kColors = {{{u"black", 0},
                                                {u"white", 1},
                                                {u"red", 2},
                                                {u"lime", 3},
                                                {u"blue", 4},
                                                {u"fuchsia", 5},
                                                {u"magenta", 5},
                                                {u"yellow", 6},
                                                {u"aqua", 7},
                                                {u"cyan", 7},
                                                {u"maroon", 8},
                                                {u"green", 9},
                                                {u"navy", 10},
                                                {u"purple", 11},
                                                {u"olive", 12},
                                                {u"teal", 13},
                                                {u"gray", 14},
                                                {u"grey", 14},
                                                {u"silver", 15}}};

template <size_t Count>
QString firstName(const std::array<NamedByte, Count>& names, quint8 value) {
  for (const NamedByte& known : names) {
    if (known.value == value) return QString::fromUtf16(known.name);
  }
  return {};
}

// A record with a 16-bit length; empty when the data is too long for it.
QByteArray record(quint8 kind, const QByteArray& data) {
  if (data.size() + 4 > kLongest) return {};
  QByteArray bytes;
  bytes.append(char(kind));
  bytes.append(char(0xFF));
  appendU16(bytes, quint16(data.size() + 4));
  return bytes + data;
}

bool appendReplicaId(QByteArray& bytes, const QString& id) {
  quint64 number = 0;
  if (!id.isEmpty() && !parseHexId(id, number)) return false;
  appendU32(bytes, quint32(number));
  appendU32(bytes, quint32(number >> 32));
  return true;
}

bool appendUnid(QByteArray& bytes, const QString& text) {
  Unid unid;
  if (!text.isEmpty() && !Unid::parse(text, unid)) return false;
  bytes.append(unid.bytes());
  return true;
}

}  // namespace

QByteArray paragraphDefinition(quint16 id, quint16 align) {
  constexpr quint16 kInch = 1440;
  constexpr int kTabs = 20;
  QByteArray data;
  for (const quint16 word :
       {id, align, quint16(0), quint16(0), quint16(0), kInch, quint16(0), kInch, quint16(0)})
    appendU16(data, word);
  for (int i = 0; i < kTabs; ++i) appendU16(data, 0);
  appendU16(data, 0);
  appendU32(data, 0);
  appendU16(data, 0);
  return record(130, data);
}

QByteArray paragraphReference(quint16 id) {
  QByteArray bytes("\x83\x04", 2);
  appendU16(bytes, id);
  return bytes;
}

QByteArray linkRecord(const QString& replicaId, const QString& view, const QString& document,
                      const QString& description, const QString& server) {
  QByteArray data;
  if (!appendReplicaId(data, replicaId) || !appendUnid(data, view) || !appendUnid(data, document)) return {};
  data += toLmbcs(description) + '\0' + toLmbcs(server) + '\0';
  return record(146, data);
}

QByteArray urlHotspot(const QString& address) {
  constexpr quint16 kLink = 11;
  constexpr quint32 kDataIsUrl = 0x1000;
  const QByteArray url = toLmbcs(address) + '\0';
  if (url.size() > kLongest) return {};
  QByteArray data;
  appendU16(data, kLink);
  appendU32(data, kDataIsUrl);
  appendU16(data, quint16(url.size()));
  return record(169, data + url);
}

QByteArray hotspotEnd() {
  return QByteArray("\xAA\x02", 2);
}

QByteArray anchorRecord(const QString& name) {
  const QByteArray text = toLmbcs(name);
  if (text.size() > kLongest - 16) return {};
  QByteArray data;
  appendU16(data, quint16(text.size()));
  appendU32(data, 0);
  return record(203, data + text);
}

QByteArray fieldRecord(const FieldRecord& field, const RichFont& font) {
  const QByteArray name = toLmbcs(field.name), description = toLmbcs(field.description);
  const std::array<QByteArray, 3> formulas = {field.defaultValue, field.inputTranslation,
                                              field.inputValidation};
  qsizetype total = name.size() + description.size() + field.keywords.size();
  for (const QByteArray& formula : formulas) total += formula.size();
  if (total + 40 > kLongest) return {};
  QByteArray data;
  appendU16(data, field.flags);
  appendU16(data, field.type);
  appendU16(data, 0x0230);
  appendU32(data, 0);
  appendU32(data, 0);
  for (const quint8 part : {font.face, font.attributes, font.color, font.points}) data.append(char(part));
  for (const qsizetype length : {formulas[0].size(), formulas[1].size(), qsizetype(0), formulas[2].size(),
                                 name.size(), description.size(), field.keywords.size()})
    appendU16(data, quint16(length));
  return record(StoredField::kKind,
                data + formulas[0] + formulas[1] + formulas[2] + name + description + field.keywords);
}

bool readFieldRecord(QByteArrayView bytes, FieldRecord& field, RichFont& font) {
  StoredField stored;
  if (!readStoredField(bytes, stored)) return false;
  field.flags = stored.flags;
  field.type = stored.type;
  font = stored.font;
  field.defaultValue = stored.defaultValue.toByteArray();
  field.inputTranslation = stored.inputTranslation.toByteArray();
  field.inputValidation = stored.inputValidation.toByteArray();
  field.name = fromLmbcs(stored.name);
  field.description = fromLmbcs(stored.description);
  field.keywords = stored.keywords.toByteArray();
  return true;
}

bool fontFace(QStringView name, quint8& face) {
  face = 1;
  if (name.isEmpty()) return true;
  for (const NamedByte& known : kFaces) {
    if (name.compare(QStringView(known.name), Qt::CaseInsensitive) != 0) continue;
    face = known.value;
    return true;
  }
  return false;
}

bool fontStyle(QStringView words, quint8& style) {
  style = 0;
  if (words.isEmpty()) return true;
  bool all = true;
  for (const QStringView word : words.split(u' ', Qt::SkipEmptyParts)) {
    const auto known = std::find_if(kStyles.begin(), kStyles.end(),
                                    [word](const NamedByte& name) { return word == QStringView(name.name); });
    if (known != kStyles.end())
      style |= known->value;
    else
      all = false;
  }
  return all;
}

bool fontColor(QStringView name, quint8& color) {
  color = 0;
  if (name.isEmpty()) return true;
  for (const NamedByte& known : kColors) {
    if (name != QStringView(known.name)) continue;
    color = known.value;
    return true;
  }
  return false;
}

QString fontFaceName(quint8 face) {
  return firstName(kFaces, face);
}

QString fontStyleWords(quint8 attributes) {
  QStringList words;
  quint8 left = attributes;
  for (const NamedByte& known : kStyles) {
    if ((left & known.value) != known.value) continue;
    words.push_back(QString::fromUtf16(known.name));
    left &= quint8(~known.value);
  }
  return words.join(u' ');
}

QString fontColorName(quint8 color) {
  return firstName(kColors, color);
}

}  // namespace lens

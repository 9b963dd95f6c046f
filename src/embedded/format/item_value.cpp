#include "embedded/format/item_value.h"

#include <limits>

#include "embedded/format/attachment_name.h"
#include "embedded/format/lmbcs.h"
#include "embedded/format/unid.h"
#include "notes/literals.h"

namespace lens {
namespace {

constexpr qsizetype kMaxWord = std::numeric_limits<quint16>::max();
constexpr quint16 kFileObject = 0;
constexpr quint16 kOleHost = 0x0100;

QByteArray typed(quint16 type, qsizetype dataSize) {
  QByteArray value;
  value.reserve(dataSize + 2);
  appendU16(value, type);
  return value;
}

// Lists count their entries and their texts in 16 bits; what is longer has no form.
void requireWord(qsizetype size, const QString& what) {
  if (size > kMaxWord)
    throw RuntimeError(err::Overflow, u"%1: %2, the limit is %3"_s.arg(what).arg(size).arg(kMaxWord));
}

// A NUL inside stored text is a line break.
QString storedText(QByteArrayView bytes) {
  QString text = fromLmbcs(bytes);
  if (text.contains(QChar(u'\0'))) text.replace(QChar(u'\0'), QChar(u'\n'));
  return text;
}

QVector<Value> listTexts(QByteArrayView data) {
  ByteReader lengths(data);
  const qsizetype count = lengths.u16();
  if (!lengths.has(count * 2)) return {};
  ByteReader texts(data);
  texts.skip(2 + count * 2);
  QVector<Value> values;
  values.reserve(count);
  for (qsizetype i = 0; i < count && !texts.failed(); ++i) {
    const quint16 length = lengths.u16();
    if (length > 0 && texts.left() == 0) break;
    values.push_back(storedText(texts.take(length)));
  }
  return values;
}

// Single entries, then pairs; read(reader) gives the value of one entry.
template <class Read>
QVector<Value> rangeValues(QByteArrayView data, Read read) {
  ByteReader reader(data);
  const qsizetype singles = reader.u16(), pairs = reader.u16();
  const qsizetype count = qMin(singles + 2 * pairs, reader.left() / 8);
  QVector<Value> values;
  values.reserve(count);
  for (qsizetype i = 0; i < count; ++i) values.push_back(read(reader));
  return values;
}

QVector<Value> noteRefs(QByteArrayView data) {
  ByteReader reader(data);
  const qsizetype count = qMin<qsizetype>(reader.u16(), reader.left() / 16);
  QVector<Value> values;
  values.reserve(count);
  for (qsizetype i = 0; i < count; ++i) values.push_back(Unid::fromBytes(reader.take(16)).text());
  return values;
}

Value readNumber(ByteReader& reader) {
  return reader.f64();
}
Value readTime(ByteReader& reader) {
  return localOf(reader.time());
}

QVector<Value> valuesOf(const Item& item) {
  const QByteArrayView data = item.data();
  ByteReader reader(data);
  FileObject file;
  switch (item.type()) {
    case itemtype::Text:
    case itemtype::Rfc822Text:
      return {Value(storedText(data))};
    case itemtype::TextList:
      return listTexts(data);
    case itemtype::Number:
      return reader.has(8) ? QVector<Value>{readNumber(reader)} : QVector<Value>();
    case itemtype::Time:
      return reader.has(8) ? QVector<Value>{readTime(reader)} : QVector<Value>();
    case itemtype::NumberRange:
      return rangeValues(data, readNumber);
    case itemtype::TimeRange:
      return rangeValues(data, readTime);
    case itemtype::NoteRefs:
      return noteRefs(data);
    case itemtype::Object:
      if (sameItemName(item.name, u"$FILE") && readFileObject(data, file)) return {Value(file.name)};
      return {};
    default:
      return {};
  }
}

bool isOleObject(QByteArrayView data) {
  ByteReader reader(data);
  const quint16 kind = reader.u16();
  reader.skip(6);
  return kind == kFileObject && reader.u16() == kOleHost && !reader.failed();
}

}  // namespace

QByteArray rawValue(quint16 type, QByteArrayView data) {
  QByteArray value = typed(type, data.size());
  value.append(data.data(), data.size());
  return value;
}

QByteArray textValue(QStringView text) {
  return rawValue(itemtype::Text, toLmbcs(text));
}

QByteArray textListValue(const QStringList& texts) {
  requireWord(texts.size(), u"Too many entries in a text list"_s);
  QVector<QByteArray> stored;
  stored.reserve(texts.size());
  qsizetype size = 2 + 2 * texts.size();
  for (const QString& text : texts) {
    stored.push_back(toLmbcs(text));
    requireWord(stored.back().size(), u"Too many bytes in an entry of a text list"_s);
    size += stored.back().size();
  }
  QByteArray value = typed(itemtype::TextList, size);
  appendU16(value, quint16(stored.size()));
  for (const QByteArray& text : stored) appendU16(value, quint16(text.size()));
  for (const QByteArray& text : stored) value.append(text);
  return value;
}

QByteArray numberValue(double number) {
  QByteArray value = typed(itemtype::Number, 8);
  appendF64(value, number);
  return value;
}

QByteArray numberListValue(const QVector<double>& numbers) {
  requireWord(numbers.size(), u"Too many entries in a number list"_s);
  QByteArray value = typed(itemtype::NumberRange, 4 + 8 * numbers.size());
  appendU16(value, quint16(numbers.size()));
  appendU16(value, 0);
  for (double number : numbers) appendF64(value, number);
  return value;
}

QByteArray timeValue(const TimeDate& time) {
  QByteArray value = typed(itemtype::Time, 8);
  appendTimeDate(value, time);
  return value;
}

QByteArray timeListValue(const QVector<TimeDate>& times, const QVector<TimePair>& pairs) {
  requireWord(times.size(), u"Too many entries in a time list"_s);
  requireWord(pairs.size(), u"Too many pairs in a time list"_s);
  QByteArray value = typed(itemtype::TimeRange, 4 + 8 * times.size() + 16 * pairs.size());
  appendU16(value, quint16(times.size()));
  appendU16(value, quint16(pairs.size()));
  for (const TimeDate& time : times) appendTimeDate(value, time);
  for (const TimePair& pair : pairs) {
    appendTimeDate(value, pair.from);
    appendTimeDate(value, pair.to);
  }
  return value;
}

QByteArray noteRefsValue(const QStringList& unids) {
  requireWord(unids.size(), u"Too many note references"_s);
  QByteArray value = typed(itemtype::NoteRefs, 2 + 16 * unids.size());
  appendU16(value, quint16(unids.size()));
  for (const QString& text : unids) {
    Unid unid;
    if (!Unid::parse(text, unid))
      throw RuntimeError(err::InvalidCall, u"\"%1\" is no UNID"_s.arg(text.left(64)));
    value.append(unid.bytes());
  }
  return value;
}

int objectModelType(const Item& item) {
  const quint16 type = item.type();
  switch (type) {
    case itemtype::Object:
      if (sameItemName(item.name, u"$FILE")) return 1084;
      return isOleObject(item.data()) ? 1090 : 1085;
    case itemtype::NumberRange:
      return itemtype::Number;
    case itemtype::TimeRange:
      return itemtype::Time;
    case itemtype::Text:
    case itemtype::TextList:
      if (item.flags & itemflag::Authors) return 1076;
      if (item.flags & itemflag::Readers) return 1075;
      if (item.flags & itemflag::Names) return 1074;
      return itemtype::Text;
    default:
      return type;
  }
}

Value itemValues(const Item& item) {
  if (item.value.size() < 2) return Value();
  QVector<Value> values = valuesOf(item);
  return values.isEmpty() ? Value() : Value::array(std::move(values));
}

QString firstText(const Item& item) {
  if (item.value.size() < 2 || item.type() >> 8 != itemtype::Text >> 8) return QString();
  const Value values = itemValues(item);
  return values.isArray() && values.upperBound() >= 0 ? values.at(0).text() : QString();
}

QByteArray fileObjectValue(const FileObject& file) {
  const QByteArray name = toLmbcs(file.name);
  requireWord(name.size(), u"Too many bytes in the name of a file"_s);
  QByteArray value = typed(itemtype::Object, 36 + name.size());
  appendU16(value, kFileObject);
  appendU32(value, file.objectId);
  appendU16(value, quint16(name.size()));
  for (quint16 word : {file.hostType, file.compression, file.attributes, file.flags}) appendU16(value, word);
  appendU32(value, file.size);
  appendTimeDate(value, file.created);
  appendTimeDate(value, file.modified);
  return value.append(name);
}

bool readFileObject(QByteArrayView data, FileObject& file) {
  ByteReader reader(data);
  if (reader.u16() != kFileObject) return false;
  FileObject read;
  read.objectId = reader.u32();
  const quint16 nameLength = reader.u16();
  read.hostType = reader.u16();
  read.compression = reader.u16();
  read.attributes = reader.u16();
  read.flags = reader.u16();
  read.size = reader.u32();
  read.created = reader.time();
  read.modified = reader.time();
  const QByteArrayView name = reader.take(nameLength);
  if (reader.failed()) return false;
  // Whoever wrote the value, its name leads to no other directory.
  read.name = attachmentName(fromLmbcs(name));
  file = read;
  return true;
}

quint32 objectIdOf(QByteArrayView data) {
  ByteReader reader(data);
  reader.skip(2);  // the kind of object
  const quint32 id = reader.u32();
  return reader.failed() ? 0 : id;
}

}  // namespace lens

#include "embedded/format/item_value.h"

#include <limits>

#include "embedded/format/lmbcs.h"
#include "embedded/format/stored_lists.h"
#include "notes/literals.h"

namespace lens {
namespace {

QByteArray typed(quint16 type, qsizetype dataSize) {
  QByteArray value;
  value.reserve(dataSize + 2);
  appendU16(value, type);
  return value;
}

QVector<Value> listTexts(QByteArrayView data) {
  const StoredTexts texts(data);
  QVector<Value> values;
  values.reserve(texts.count());
  texts.forEach([&](QByteArrayView text, bool) { values.push_back(textFromStored(text)); });
  return values;
}

// Single entries, then the ends of pairs.
QVector<Value> numbersOf(const StoredRange& range) {
  QVector<Value> values;
  values.reserve(range.entries());
  for (qsizetype i = 0; i < range.entries(); ++i) values.push_back(range.number(i));
  return values;
}

QVector<Value> timesOf(const StoredRange& range) {
  QVector<Value> values;
  values.reserve(range.entries());
  for (qsizetype i = 0; i < range.entries(); ++i) values.push_back(localOf(range.time(i)));
  return values;
}

QVector<Value> noteRefs(const StoredReferences& references) {
  QVector<Value> values;
  values.reserve(references.count());
  for (qsizetype i = 0; i < references.count(); ++i) values.push_back(references.unid(i).text());
  return values;
}

QVector<Value> valuesOf(const Item& item) {
  const QByteArrayView data = item.data();
  ByteReader reader(data);
  FileObject file;
  switch (item.type()) {
    case itemtype::Text:
    case itemtype::Rfc822Text:
      return {Value(textFromStored(data))};
    case itemtype::TextList:
      return listTexts(data);
    case itemtype::Number:
      return reader.has(8) ? QVector<Value>{reader.f64()} : QVector<Value>();
    case itemtype::Time:
      return reader.has(8) ? QVector<Value>{localOf(reader.time())} : QVector<Value>();
    case itemtype::NumberRange:
      return numbersOf(StoredRange(data));
    case itemtype::TimeRange:
      return timesOf(StoredRange(data));
    case itemtype::NoteRefs:
      return noteRefs(StoredReferences(data));
    case itemtype::Object:
      if (sameItemName(item.name, u"$FILE") && readFileObject(data, file)) return {Value(file.name)};
      return {};
    default:
      return {};
  }
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
  requireWordCount(texts.size(), u"Too many entries in a text list");
  QVector<QByteArray> stored;
  stored.reserve(texts.size());
  qsizetype size = 2 + 2 * texts.size();
  for (const QString& text : texts) {
    stored.push_back(toLmbcs(text));
    requireWordCount(stored.back().size(), u"Too many bytes in an entry of a text list");
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
  requireWordCount(numbers.size(), u"Too many entries in a number list");
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
  requireWordCount(times.size(), u"Too many entries in a time list");
  requireWordCount(pairs.size(), u"Too many pairs in a time list");
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

QByteArray noteRefsValue(const QVector<Unid>& unids) {
  requireWordCount(unids.size(), u"Too many note references");
  QByteArray value = typed(itemtype::NoteRefs, 2 + 16 * unids.size());
  appendU16(value, quint16(unids.size()));
  for (const Unid& unid : unids) value.append(unid.bytes());
  return value;
}

int objectModelType(const Item& item) {
  const quint16 type = item.type();
  switch (type) {
    case itemtype::Object:
      if (sameItemName(item.name, u"$FILE")) return reportedtype::Attachment;
      return isOleObject(item.data()) ? reportedtype::EmbeddedObject : reportedtype::OtherObject;
    case itemtype::NumberRange:
      return itemtype::Number;
    case itemtype::TimeRange:
      return itemtype::Time;
    case itemtype::Text:
    case itemtype::TextList:
      if (item.flags & itemflag::Authors) return reportedtype::Authors;
      if (item.flags & itemflag::Readers) return reportedtype::Readers;
      if (item.flags & itemflag::Names) return reportedtype::Names;
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
  if (item.value.size() < 2 || !itemtype::isText(item.type())) return QString();
  const Value values = itemValues(item);
  return values.isArray() && values.upperBound() >= 0 ? values.at(0).text() : QString();
}

}  // namespace lens

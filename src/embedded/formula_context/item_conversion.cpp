#include "embedded/formula_context/item_conversion.h"

#include <algorithm>

#include "embedded/format/lmbcs.h"
#include "embedded/format/note.h"

namespace lens {
namespace {

using formula::Fault;
using formula::ListBuilder;
using formula::Type;
namespace fault = formula::fault;

// A NUL inside stored text is a line break, which formulas see as LF.
formula::Text readText(QByteArrayView bytes) {
  if (isPlainLmbcs(bytes) && bytes.size() <= formula::kMaxBytes) {
    char16_t* units;
    formula::Text text = formula::Text::ofSize(bytes.size(), units);
    std::copy(bytes.begin(), bytes.end(), units);
    return text;
  }
  QString text = fromLmbcs(bytes);
  if (text.contains(QChar(u'\0'))) text.replace(QChar(u'\0'), QChar(u'\n'));
  return formula::Text(text);
}

QString writtenText(QStringView text) {
  QString stored = text.toString();
  if (stored.contains(u'\n')) stored.replace(QChar(u'\n'), QChar(u'\0'));
  return stored;
}

formula::Value readTextList(QByteArrayView data) {
  ByteReader lengths(data);
  const qsizetype count = lengths.u16();
  if (!lengths.has(count * 2)) return formula::Value::text(u"");
  ListBuilder list(Type::Text, count);
  ByteReader texts(data);
  texts.skip(2 + count * 2);
  for (qsizetype i = 0; i < count; ++i) {
    const quint16 length = lengths.u16();
    if (!texts.has(length)) break;
    list.addText(readText(texts.take(length)));
  }
  return list.take();
}

formula::Value readNumbers(QByteArrayView data) {
  ByteReader reader(data);
  const qsizetype singles = reader.u16(), pairs = reader.u16();
  const qsizetype count = qMin(singles + 2 * pairs, reader.left() / 8);
  ListBuilder list(Type::Number, count);
  for (qsizetype i = 0; i < count; ++i) list.addNumber(reader.f64());
  return list.take();
}

formula::Value readTimes(QByteArrayView data) {
  ByteReader reader(data);
  const qsizetype singles = reader.u16(), pairs = reader.u16();
  ListBuilder list(pairs > 0 ? Type::TimeRange : Type::Time, qMin(singles + pairs, reader.left() / 8));
  for (qsizetype i = 0; i < singles && reader.has(8); ++i) {
    const TimeDate time = reader.time();
    if (pairs > 0)
      list.addRange({time, time});
    else
      list.addTime(time);
  }
  for (qsizetype i = 0; i < pairs && reader.has(16); ++i) {
    const TimeDate from = reader.time();
    list.addRange({from, reader.time()});
  }
  return list.take();
}

formula::Value readReferences(QByteArrayView data) {
  ByteReader reader(data);
  const qsizetype count = qMin<qsizetype>(reader.u16(), reader.left() / 16);
  ListBuilder list(Type::Text, count);
  for (qsizetype i = 0; i < count; ++i) list.addText(Unid::fromBytes(reader.take(16)).text());
  return list.take();
}

formula::Value readError(QByteArrayView data) {
  const quint16 code = ByteReader(data).u16();
  return formula::Value::error(code == 0 ? fault::CannotCompute : code);
}

bool read(QByteArrayView stored, formula::Value& value) {
  ByteReader reader(stored);
  const quint16 type = reader.u16();
  const QByteArrayView data = stored.sliced(reader.position());
  switch (type) {
    case itemtype::Text:
    case itemtype::Rfc822Text:
      return value = formula::Value::text(readText(data)), true;
    case itemtype::TextList:
      return value = readTextList(data), true;
    case itemtype::Number:
      return reader.has(8) && (value = formula::Value::number(reader.f64()), true);
    case itemtype::NumberRange:
      return value = readNumbers(data), true;
    case itemtype::Time:
      return reader.has(8) && (value = formula::Value::time(reader.time()), true);
    case itemtype::TimeRange:
      return value = readTimes(data), true;
    case itemtype::NoteRefs:
      return value = readReferences(data), true;
    case itemtype::Error:
      return value = readError(data), true;
    default:
      return false;
  }
}

// --- Writing -------------------------------------------------------------------------------------------

QStringList textsOf(const formula::Value& value) {
  QStringList texts;
  texts.reserve(value.count());
  for (qsizetype i = 0; i < value.count(); ++i) texts.append(writtenText(value.text(i)));
  return texts;
}

QByteArray numberList(const formula::Value& value) {
  QVector<double> numbers;
  numbers.reserve(value.count());
  for (qsizetype i = 0; i < value.count(); ++i) numbers.push_back(value.number(i));
  return numberListValue(numbers);
}

QByteArray timeList(const formula::Value& value) {
  QVector<TimeDate> times;
  times.reserve(value.count());
  for (qsizetype i = 0; i < value.count(); ++i) times.push_back(value.time(i));
  return timeListValue(times);
}

bool isOneMoment(const TimePair& range) {
  return formula::packTime(range.from) == formula::packTime(range.to);
}

// The layout has single times before the pairs. Ranges of one moment at the list's start go there, as
// they were read; further back they stay pairs, which keeps the order.
QByteArray rangeList(const formula::Value& value) {
  const qsizetype count = value.count();
  qsizetype singles = 0;
  while (singles < count && isOneMoment(value.range(singles))) ++singles;
  if (singles == count) singles = 0;
  QVector<TimeDate> times;
  QVector<TimePair> pairs;
  times.reserve(singles);
  pairs.reserve(count - singles);
  for (qsizetype i = 0; i < singles; ++i) times.push_back(value.range(i).from);
  for (qsizetype i = singles; i < count; ++i) pairs.push_back(value.range(i));
  return timeListValue(times, pairs);
}

QByteArray errorItem(formula::FaultCode code) {
  QByteArray bytes;
  appendU16(bytes, code);
  return rawValue(itemtype::Error, bytes);
}

}  // namespace

bool formulaValue(const Item& item, formula::Value& value) {
  return formulaValue(QByteArrayView(item.value), value);
}

bool formulaValue(QByteArrayView stored, formula::Value& value) {
  try {
    if (stored.size() >= 2 && read(stored, value)) return true;
  } catch (const Fault& failure) {
    if (failure.fatal) throw;
    value = formula::Value::error(failure.code);
    return true;
  }
  value = formula::Value::text(u"");
  return false;
}

QByteArray storedValue(const formula::Value& value) {
  switch (value.type()) {
    case Type::Number:
      return numberList(value);
    case Type::Time:
      return timeList(value);
    case Type::TimeRange:
      return rangeList(value);
    case Type::Text:
    case Type::Keyword:
      return textListValue(textsOf(value));
    case Type::Error:
      return errorItem(value.errorCode());
    default:
      return textListValue({QString()});
  }
}

QByteArray fieldValue(const formula::Value& value) {
  if (value.count() == 1 && value.isNumber()) return numberValue(value.number());
  if (value.count() == 1 && value.isTime()) return timeValue(value.time());
  if (value.count() == 1 && value.isText()) return textValue(writtenText(value.text()));
  if (value.count() == 0 && !value.isError()) return textValue(u"");
  return storedValue(value);
}

}  // namespace lens

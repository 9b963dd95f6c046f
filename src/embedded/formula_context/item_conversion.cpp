#include "embedded/formula_context/item_conversion.h"

#include <algorithm>

#include "embedded/format/lmbcs.h"
#include "embedded/format/note.h"
#include "embedded/format/stored_lists.h"

namespace lens {
namespace {

using formula::Fault;
using formula::ListBuilder;
using formula::Type;
namespace fault = formula::fault;

// Plain text is copied as it is.
formula::Text readText(QByteArrayView bytes) {
  if (isPlainLmbcs(bytes) && bytes.size() <= formula::kMaxBytes) {
    char16_t* units;
    formula::Text text = formula::Text::ofSize(bytes.size(), units);
    std::copy(bytes.begin(), bytes.end(), units);
    return text;
  }
  return formula::Text(textFromStored(bytes));
}

formula::Value readTextList(QByteArrayView data) {
  const StoredTexts texts(data);
  if (!texts.hasLengths()) return formula::Value::text(u"");
  ListBuilder list(Type::Text, texts.count());
  texts.forEach([&](QByteArrayView text, bool whole) {
    if (whole) list.addText(readText(text));
  });
  return list.take();
}

formula::Value readNumbers(QByteArrayView data) {
  const StoredRange range(data);
  const qsizetype count = range.entries();
  ListBuilder list(Type::Number, count);
  for (qsizetype i = 0; i < count; ++i) list.addNumber(range.number(i));
  return list.take();
}

// A list with pairs is one of ranges throughout.
formula::Value readTimes(QByteArrayView data) {
  const StoredRange range(data);
  const bool ranges = range.claimedPairs() > 0;
  const qsizetype singles = range.singles(), pairs = range.pairs();
  ListBuilder list(ranges ? Type::TimeRange : Type::Time, singles + pairs);
  for (qsizetype i = 0; i < singles; ++i) {
    const TimeDate time = range.time(i);
    if (ranges)
      list.addRange({time, time});
    else
      list.addTime(time);
  }
  for (qsizetype i = 0; i < pairs; ++i) list.addRange({range.from(i), range.to(i)});
  return list.take();
}

formula::Value readReferences(QByteArrayView data) {
  const StoredReferences references(data);
  ListBuilder list(Type::Text, references.count());
  for (qsizetype i = 0; i < references.count(); ++i) list.addText(references.unid(i).text());
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
  for (qsizetype i = 0; i < value.count(); ++i) texts.append(withStoredBreaks(value.text(i).toString()));
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
  return sameTimeDate(range.from, range.to);
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
  if (value.count() == 1 && value.isText()) return textValue(withStoredBreaks(value.text().toString()));
  if (value.count() == 0 && !value.isError()) return textValue(u"");
  return storedValue(value);
}

}  // namespace lens

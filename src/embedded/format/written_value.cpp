#include "embedded/format/written_value.h"

#include "embedded/format/item_value.h"
#include "embedded/format/lmbcs.h"
#include "notes/literals.h"

namespace lens {
namespace {

[[noreturn]] void refuse(int number, const QString& reason) {
  throw RuntimeError(number, reason);
}

// A line end is one NUL in stored text; a lone carriage return stays what it is.
QString storedLines(QString text) {
  text.replace(u"\r\n"_s, u"\n"_s);
  return withStoredBreaks(std::move(text));
}

// A moment without date and time is what a cleared time gives; it goes back as such.
TimeDate storedTime(const DateTime& moment) {
  const TimeDate time = timeDateOf(moment);
  if (isClearedTime(time) && (moment.date.isValid() || moment.time.isValid()))
    refuse(err::Overflow,
           u"the date %1 lies outside what an item can hold"_s.arg(moment.date.toString(Qt::ISODate)));
  return time;
}

QByteArray oneValue(const Value& value) {
  switch (value.kind()) {
    case Value::Kind::Text:
      return textValue(storedLines(value.text()));
    case Value::Kind::Number:
      return numberValue(value.number());
    case Value::Kind::DateTime:
      return timeValue(storedTime(value.dateTime()));
    default:
      refuse(err::TypeMismatch, u"a value of the kind %1 cannot be written"_s.arg(value.typeName()));
  }
}

template <class Stored, class Read>
QVector<Stored> storedList(const QVector<Value>& values, const Read& read) {
  QVector<Stored> stored;
  stored.reserve(values.size());
  for (const Value& value : values) stored.push_back(read(value));
  return stored;
}

QByteArray listValue(const QVector<Value>& values) {
  const auto text = [](const Value& value) { return storedLines(value.text()); };
  const auto number = [](const Value& value) { return value.number(); };
  const auto time = [](const Value& value) { return storedTime(value.dateTime()); };
  switch (values.first().kind()) {
    case Value::Kind::Text:
      return textListValue(storedList<QString>(values, text));
    case Value::Kind::Number:
      return numberListValue(storedList<double>(values, number));
    default:
      return timeListValue(storedList<TimeDate>(values, time));
  }
}

void requireOneKind(const QVector<Value>& values) {
  for (qsizetype place = 0; place < values.size(); ++place) {
    const Value::Kind kind = values[place].kind();
    const bool writable =
        kind == Value::Kind::Text || kind == Value::Kind::Number || kind == Value::Kind::DateTime;
    if (!writable)
      refuse(err::TypeMismatch,
             u"place %1 of the list holds %2"_s.arg(place + 1).arg(values[place].typeName()));
    if (kind != values.first().kind())
      refuse(err::TypeMismatch,
             u"the list mixes %1 and %2"_s.arg(values.first().typeName(), values[place].typeName()));
  }
}

}  // namespace

QByteArray writtenValue(const Value& value) {
  if (!value.isArray()) return oneValue(value);
  const QVector<Value>& values = value.values();
  if (values.isEmpty()) refuse(err::InvalidCall, u"the list has no values"_s);
  requireOneKind(values);
  return values.size() == 1 ? oneValue(values.first()) : listValue(values);
}

}  // namespace lens

#include "records/json_output.h"

#include <QDateTime>
#include <QLocale>
#include <algorithm>
#include <cmath>

#include "notes/literals.h"

namespace lens {

QString isoText(const DateTime& moment) {
  const QString timeFormat = moment.time.msec() > 0 ? u"HH:mm:ss.zzz"_s : u"HH:mm:ss"_s;
  if (!moment.date.isValid()) return moment.time.isValid() ? moment.time.toString(timeFormat) : QString();
  const QString date = moment.date.toString(Qt::ISODate);
  if (!moment.time.isValid()) return date;
  const int minutes = QDateTime(moment.date, moment.time).offsetFromUtc() / 60;
  const QString zone =
      (minutes < 0 ? u"-"_s : u"+"_s) + QTime(0, 0).addSecs(std::abs(minutes) * 60).toString(u"HH:mm"_s);
  return date + u'T' + moment.time.toString(timeFormat) + zone;
}

void appendJsonUtf8(QByteArray& json, QByteArrayView utf8) {
  static constexpr char kDigits[] = "0123456789abcdef";
  const bool isPlain = std::none_of(utf8.begin(), utf8.end(), [](char c) {
    return c == '"' || c == '\\' || quint8(c) < 0x20 || c == 0x7F;
  });
  json.append('"');
  if (isPlain) {
    json.append(utf8.data(), utf8.size()).append('"');
    return;
  }
  for (const char c : utf8) {
    if (c == '"' || c == '\\') {
      json.append('\\').append(c);
    } else if (c == '\n') {
      json.append("\\n");
    } else if (quint8(c) < 0x20 || c == 0x7F) {
      json.append("\\u00").append(kDigits[quint8(c) >> 4]).append(kDigits[quint8(c) & 0xF]);
    } else {
      json.append(c);
    }
  }
  json.append('"');
}

void appendJsonString(QByteArray& json, QStringView text) {
  appendJsonUtf8(json, text.toUtf8());
}

void JsonLine::comma() {
  const char last = bytes_.back();
  if (last != '{' && last != '[') bytes_.append(',');
}

void JsonLine::name(const char* key) {
  comma();
  bytes_.append('"').append(key).append("\":");
}

void JsonLine::append(const Value& value) {
  switch (value.kind()) {
    case Value::Kind::Number:
      bytes_ += std::isfinite(value.number())
                    ? QByteArray::number(value.number(), 'g', QLocale::FloatingPointShortest)
                    : QByteArray("null");
      return;
    case Value::Kind::Boolean:
      bytes_ += value.boolean() ? "true" : "false";
      return;
    case Value::Kind::DateTime:
      return appendJsonString(bytes_, isoText(value.dateTime()));
    case Value::Kind::Text:
      return appendJsonString(bytes_, value.text());
    default:
      bytes_ += "null";
  }
}

JsonLine& JsonLine::text(const char* key, QStringView value) {
  name(key);
  appendJsonString(bytes_, value);
  return *this;
}

JsonLine& JsonLine::number(const char* key, qint64 value) {
  name(key);
  bytes_ += QByteArray::number(value);
  return *this;
}

JsonLine& JsonLine::flag(const char* key, bool value) {
  name(key);
  bytes_ += value ? "true" : "false";
  return *this;
}

JsonLine& JsonLine::value(const char* key, const Value& value) {
  name(key);
  append(value);
  return *this;
}

JsonLine& JsonLine::texts(const char* key, const QStringList& values) {
  beginArray(key);
  for (const QString& value : values) element(value);
  return end();
}

JsonLine& JsonLine::beginArray(const char* key) {
  name(key);
  bytes_.append('[');
  open_.append(']');
  return *this;
}

JsonLine& JsonLine::beginObject() {
  comma();
  bytes_.append('{');
  open_.append('}');
  return *this;
}

JsonLine& JsonLine::element(const Value& value) {
  comma();
  append(value);
  return *this;
}

JsonLine& JsonLine::end() {
  bytes_.append(open_.back());
  open_.chop(1);
  return *this;
}

QByteArray JsonLine::finish() {
  while (!open_.isEmpty()) end();
  return std::move(bytes_);
}

}  // namespace lens

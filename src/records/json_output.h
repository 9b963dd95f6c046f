// JSON for programs: one object a line, keys in the order in which they are written, UTF-8 without spaces.
#pragma once

#include <QByteArray>
#include <QStringView>

#include "notes/bridge.h"

namespace lens {

// A date and time as ISO 8601: "2026-11-22T10:50:55.120+01:00" in local time with its distance from GMT (the
// fraction only where there is one), "2026-11-22" for a whole day, "10:50:55" for a time of any day, "" for
// neither.
QString isoText(const DateTime& moment);

// A quoted string.
void appendJsonString(QByteArray& json, QStringView text);
// The same from UTF-8.
void appendJsonUtf8(QByteArray& json, QByteArrayView utf8);

// One object, which may hold arrays and objects: each begin() has its end().
class JsonLine {
 public:
  JsonLine() { bytes_ = "{"; }

  JsonLine& text(const char* key, QStringView value);
  JsonLine& number(const char* key, qint64 value);
  JsonLine& flag(const char* key, bool value);
  // Texts and numbers as they are, dates as isoText() gives them; a number that is none is null.
  JsonLine& value(const char* key, const Value& value);
  JsonLine& texts(const char* key, const QStringList& values);

  JsonLine& beginArray(const char* key);
  // An element of the array that is open.
  JsonLine& beginObject();
  JsonLine& element(const Value& value);
  JsonLine& end();

  // Closes what is open.
  QByteArray finish();

 private:
  void name(const char* key);
  void comma();
  void append(const Value& value);

  QByteArray bytes_;
  QByteArray open_ = "}";  // what closes the brackets that are open, the innermost last
};

}  // namespace lens

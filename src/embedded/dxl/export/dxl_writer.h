// Writes DXL as a stream: elements, attributes, text and base64, and a fault when the target refuses.
#pragma once

#include <QIODevice>
#include <QXmlStreamWriter>

#include "embedded/dxl/exact_marks.h"
#include "embedded/format/timedate.h"
#include "notes/literals.h"

namespace lens {

class DxlWriter {
 public:
  explicit DxlWriter(QIODevice& target) : target_(target), xml_(&target) {}

  void startDocument() { xml_.writeStartDocument(); }
  void endDocument();
  // The first element of a file takes along the namespaces.
  void beginRoot(const QString& element);
  // The namespace of our own marks alone.
  void declareMarks();
  void begin(const QString& element) { xml_.writeStartElement(element); }
  void end() { xml_.writeEndElement(); }
  // U+FFFD stands for characters that XML cannot hold: who must not lose them looks at what comes back, or
  // takes exactAttribute().
  void attribute(const QString& name, const QString& value) { xml_.writeAttribute(name, xmlText(value)); }
  void flag(const QString& name, bool value);
  // An attribute of our own namespace.
  void mark(QStringView name, const QString& value);
  // A text from a user: characters that XML cannot hold stand in a mark beside it.
  void exactAttribute(const QString& name, const QString& value);

  // Text whose line feeds are "break" elements, and text in which they stand as they are. Characters that XML
  // cannot hold are "nonxmlchar" elements.
  void lines(QStringView text) { characters(text, true); }
  void literal(QStringView text) { characters(text, false); }
  void base64(QByteArrayView bytes);
  // Base64 text as it stands.
  void encoded(const QByteArray& text) { xml_.writeCharacters(QString::fromLatin1(text)); }
  // A "datetime" element, empty for a cleared time, and one inside another element.
  void datetime(const TimeDate& time);
  void time(const QString& element, const TimeDate& time);
  // XML of whole elements as it stands.
  void verbatim(const QString& xml);
  // A line end between two elements.
  void layout() { xml_.writeCharacters(u"\n"_s); }

  // Raises when the target did not take everything so far.
  void check() const;

 private:
  void characters(QStringView text, bool breaks);
  void nonXmlChar(QChar c);

  QIODevice& target_;
  QXmlStreamWriter xml_;
  bool verbatimFailed_ = false;
};

// Bytes that come in pieces of any length, as base64 in lines.
class Base64Lines {
 public:
  explicit Base64Lines(DxlWriter& out) : out_(out) {}
  void feed(QByteArrayView bytes);
  void finish();

 private:
  void write(QByteArrayView bytes);

  DxlWriter& out_;
  QByteArray rest_;
  bool empty_ = true;
};

}  // namespace lens

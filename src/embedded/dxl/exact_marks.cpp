#include "embedded/dxl/exact_marks.h"

#include <QUrl>

#include "embedded/dxl/dxl_reader.h"
#include "notes/literals.h"

namespace lens {

bool readMark(const DxlReader& in, QStringView mark, QString& value) {
  const QXmlStreamAttributes attributes = in.attributes();
  for (qsizetype i = 0; i < attributes.size(); ++i) {
    const QXmlStreamAttribute& attribute = attributes[i];
    if (attribute.name() != mark || attribute.namespaceUri() != exactmark::kNamespace) continue;
    in.markRead(i);
    value = attribute.value().toString();
    return true;
  }
  return false;
}

QString exactAttribute(const DxlReader& in, QStringView name) {
  QString encoded;
  const QString plain = in.attribute(name);
  if (readMark(in, exactMarkOf(name), encoded)) return QUrl::fromPercentEncoding(encoded.toLatin1());
  return plain;
}

bool hasExactAttribute(const DxlReader& in, QStringView name) {
  return in.hasAttribute(name) || in.hasAttribute(exactMarkOf(name));
}

QString exactMarkOf(QStringView attribute) {
  return u"exact%1"_s.arg(attribute);
}

QString percentEncoded(const QString& text) {
  return QString::fromLatin1(QUrl::toPercentEncoding(text));
}

qsizetype xmlUnits(QStringView text, qsizetype at) {
  const QChar c = text[at];
  if (c.isHighSurrogate()) return at + 1 < text.size() && text[at + 1].isLowSurrogate() ? 2 : 0;
  if (c.isLowSurrogate() || c.unicode() >= 0xFFFE) return 0;
  return c >= u' ' || c == u'\t' || c == u'\n' || c == u'\r' ? 1 : 0;
}

bool isXmlText(QStringView text) {
  for (qsizetype at = 0; at < text.size();) {
    const qsizetype units = xmlUnits(text, at);
    if (units == 0) return false;
    at += units;
  }
  return true;
}

QString xmlText(QString text) {
  for (qsizetype at = 0; at < text.size();) {
    const qsizetype units = xmlUnits(text, at);
    if (units == 0) text[at] = QChar::ReplacementCharacter;
    at += qMax<qsizetype>(units, 1);
  }
  return text;
}

}  // namespace lens

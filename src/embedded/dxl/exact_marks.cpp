#include "embedded/dxl/exact_marks.h"

#include <QUrl>

#include "embedded/dxl/dxl_reader.h"
#include "notes/literals.h"

namespace lens {

namespace {

constexpr QStringView kExact = u"exact";

// Most elements have no attribute of our namespace; nothing is made for them.
template <typename Wanted>
bool findMark(const DxlReader& in, QString& value, Wanted wanted) {
  const QXmlStreamAttributes& attributes = in.attributes();
  for (qsizetype i = 0; i < attributes.size(); ++i) {
    const QXmlStreamAttribute& attribute = attributes[i];
    if (attribute.namespaceUri() != exactmark::kNamespace || !wanted(attribute.name())) continue;
    in.markRead(i);
    value = attribute.value().toString();
    return true;
  }
  return false;
}

}  // namespace

bool readMark(const DxlReader& in, QStringView mark, QString& value) {
  return findMark(in, value, [&](QStringView name) { return name == mark; });
}

QString exactAttribute(const DxlReader& in, QStringView name) {
  QString encoded;
  const QString plain = in.attribute(name);
  const bool marked = findMark(in, encoded, [&](QStringView mark) {
    return mark.startsWith(kExact) && mark.sliced(kExact.size()) == name;
  });
  return marked ? QUrl::fromPercentEncoding(encoded.toLatin1()) : plain;
}

bool hasExactAttribute(const DxlReader& in, QStringView name) {
  return in.hasAttribute(name) || in.hasAttribute(exactMarkOf(name));
}

QString exactMarkOf(QStringView attribute) {
  return kExact.toString().append(attribute);
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

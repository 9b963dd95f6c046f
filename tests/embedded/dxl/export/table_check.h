// Whether DXL has only elements, attributes and values that the table of them allows, each where it may
// stand. Attributes of our own namespace are left out.
#pragma once

#include <QXmlStreamReader>

#include "embedded/dxl/export/element_table.h"

namespace lens {

inline QString attributeFault(const TableElement& element, const QXmlStreamAttributes& attributes) {
  for (const QXmlStreamAttribute& given : attributes) {
    if (given.namespaceUri() == u"urn:tessaly-lens:dxl") continue;
    const TableAttribute* const known = element.attribute(given.qualifiedName());
    if (!known) return QStringLiteral("%1 has no attribute %2").arg(element.name, given.qualifiedName());
    if (known->closed && !known->values.contains(given.value()))
      return QStringLiteral("%1 of %2 cannot be \"%3\"").arg(known->name, element.name, given.value());
  }
  for (const TableAttribute& known : element.attributes) {
    if (known.required && !attributes.hasAttribute(known.name))
      return QStringLiteral("%1 lacks its attribute %2").arg(element.name, known.name);
  }
  return {};
}

// "" when there is no fault.
inline QString tableFault(const QByteArray& dxl) {
  static const ElementTable table = readElementTable();
  QXmlStreamReader xml(dxl);
  QStringList open;
  while (!xml.atEnd()) {
    const QXmlStreamReader::TokenType token = xml.readNext();
    if (token == QXmlStreamReader::EndElement) open.removeLast();
    const QString parent = open.isEmpty() ? QString() : open.last();
    if (token == QXmlStreamReader::Characters && !xml.text().trimmed().isEmpty() &&
        !table[parent].attribute(u"#text"))
      return QStringLiteral("%1 holds no text").arg(parent);
    if (token != QXmlStreamReader::StartElement) continue;
    const QString name = xml.name().toString();
    if (!table.contains(name)) return QStringLiteral("there is no element %1").arg(name);
    if (!parent.isEmpty() && !table[name].parents.contains(parent))
      return QStringLiteral("%1 cannot stand in %2").arg(name, parent);
    const QString fault = attributeFault(table[name], xml.attributes());
    if (!fault.isEmpty()) return fault;
    open.push_back(name);
  }
  return xml.hasError() ? xml.errorString() : QString();
}

}  // namespace lens

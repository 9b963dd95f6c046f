// The table of DXL's elements and attributes (dxl_elements.txt), which tells its form itself.
#pragma once

#include <QFile>
#include <QMap>
#include <QStringList>

namespace lens {

struct TableAttribute {
  QString name;
  QStringList values;
  QString otherwise;  // the value of a missing attribute, "" without one
  QString becomes;
  bool required = false;
  bool closed = false;  // no other values
};

struct TableElement {
  QString name;
  QStringList path;  // names of the elements around it, the root first
  QMap<QString, QString> needed;
  QByteArray inner;
  QMap<QString, QString> parents;  // and what becomes of it there
  QVector<TableAttribute> attributes;

  QByteArray startTag(const QMap<QString, QString>& attributes) const {
    QByteArray tag = "<" + name.toUtf8();
    for (auto it = attributes.cbegin(); it != attributes.cend(); ++it)
      tag += " " + it.key().toUtf8() + "=\"" + it.value().toUtf8() + "\"";
    return tag + ">";
  }
  QByteArray endTag() const { return "</" + name.toUtf8() + ">"; }
  const TableAttribute* attribute(QStringView wanted) const {
    for (const TableAttribute& one : attributes) {
      if (one.name == wanted) return &one;
    }
    return nullptr;
  }
};

using ElementTable = QMap<QString, TableElement>;

inline TableAttribute tableAttribute(const QString& becomes, const QString& word) {
  TableAttribute attribute;
  attribute.becomes = becomes;
  const qsizetype equals = word.indexOf(u'=');
  attribute.name = word.first(equals);
  attribute.required = attribute.name.endsWith(u'!');
  if (attribute.required) attribute.name.chop(1);
  QString values = word.sliced(equals + 1);
  attribute.closed = values.startsWith(u'(');
  if (attribute.closed) values = values.sliced(1).chopped(1);
  attribute.values = values.split(u'|');
  for (QString& value : attribute.values) {
    if (!value.endsWith(u'*')) continue;
    value.chop(1);
    attribute.otherwise = value;
  }
  return attribute;
}

inline void readTableLine(TableElement& element, const QString& line) {
  const QString key = line.section(u' ', 0, 0), rest = line.section(u' ', 1);
  const QStringList words = rest.split(u' ', Qt::SkipEmptyParts);
  if (key == u"path") {
    element.path = rest.split(u'/', Qt::SkipEmptyParts);
  } else if (key == u"inner") {
    element.inner = rest.toUtf8();
  } else if (key == u"required") {
    for (const QString& word : words) element.needed[word.section(u'=', 0, 0)] = word.section(u'=', 1);
  } else if (key == u"in") {
    for (const QString& parent : words.sliced(1)) element.parents[parent] = words[0];
  } else {
    for (const QString& word : words) element.attributes.push_back(tableAttribute(key, word));
  }
}

inline ElementTable readElementTable() {
  ElementTable table;
  QFile file(QStringLiteral(LENS_DXL_TABLE));
  if (!file.open(QIODevice::ReadOnly)) return table;
  TableElement* element = nullptr;
  while (!file.atEnd()) {
    QString line = QString::fromUtf8(file.readLine()).trimmed();
    if (line.startsWith(u'#') || line.isEmpty()) continue;
    if (line.contains(u' ') || line == u"path") {
      readTableLine(*element, line);
    } else {
      element = &table[line];
      element->name = line;
    }
  }
  return table;
}

}  // namespace lens

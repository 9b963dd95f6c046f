// What an element of the design says of its note: attributes, and children in the order of the schema.
#pragma once

#include <QStringList>
#include <functional>

#include "embedded/dxl/design_reader.h"
#include "embedded/dxl/export/dxl_writer.h"

namespace lens {

class DesignContent {
 public:
  DesignContent(const DesignKind& kind, const Note& note);

  const DesignKind& kind() const { return kind_; }
  QString element() const { return QStringView(kind_.element).toString(); }
  bool is(QStringView element) const { return element == QStringView(kind_.element); }
  const Note& note() const { return note_; }

  // An attribute that is there already stays.
  void attribute(const QString& name, const QString& value);
  // Adds a child behind those that stand before it and others of its name; false when it has no place there.
  bool add(const QString& element, const QString& xml);
  // The same for what the writer writes.
  template <class Write>
  bool write(const QString& element, Write write) {
    return add(element, fragment(write));
  }
  bool has(QStringView element) const;
  // Whether all children are there that the schema demands.
  bool isComplete() const;

  // The whole element with these items as its last children.
  void begin(DxlWriter& out) const;
  QString children() const { return children_.join(QString()); }

  template <class Write>
  static QString fragment(Write write);

 private:
  qsizetype placeOf(QStringView element) const;
  static QString written(const std::function<void(DxlWriter&)>& write);

  const DesignKind& kind_;
  const Note& note_;
  QStringList names_;  // of the children, in their order
  QStringList children_;
  QVector<std::pair<QString, QString>> attributes_;
};

template <class Write>
QString DesignContent::fragment(Write write) {
  return written(write);
}

}  // namespace lens

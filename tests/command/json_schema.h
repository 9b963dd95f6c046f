// As much of JSON Schema (2020-12) as docs/command.schema.json uses: $ref below $defs, type, properties,
// required, additionalProperties, items, enum, pattern, oneOf. Any other word in the schema is a fault, so
// that nothing in it is passed over.
#pragma once

#include <QJsonArray>
#include <QJsonObject>
#include <QRegularExpression>
#include <QStringList>
#include <cmath>

namespace lens {

class JsonSchema {
 public:
  explicit JsonSchema(const QJsonObject& root) : root_(root) {}

  // What is wrong with the value as that definition says; empty when it fits.
  QStringList faults(const QString& definition, const QJsonValue& value) const {
    QStringList found;
    check(root_[QStringLiteral("$defs")].toObject()[definition].toObject(), value, definition, found);
    return found;
  }
  QStringList definitions() const { return root_[QStringLiteral("$defs")].toObject().keys(); }

 private:
  static bool isOfType(const QJsonValue& value, const QString& type) {
    if (type == u"integer") return value.isDouble() && std::floor(value.toDouble()) == value.toDouble();
    return (type == u"object" && value.isObject()) || (type == u"array" && value.isArray()) ||
           (type == u"string" && value.isString()) || (type == u"number" && value.isDouble()) ||
           (type == u"boolean" && value.isBool()) || (type == u"null" && value.isNull());
  }

  void check(const QJsonObject& schema, const QJsonValue& value, const QString& where,
             QStringList& found) const {
    if (schema.isEmpty()) found += where + QStringLiteral(": no schema");
    for (auto word = schema.begin(); word != schema.end(); ++word)
      checkWord(word.key(), schema, value, where, found);
  }

  void checkWord(const QString& word, const QJsonObject& schema, const QJsonValue& value,
                 const QString& where, QStringList& found) const {
    const QJsonValue rule = schema[word];
    const auto fault = [&](const QString& what) { found += where + QStringLiteral(": ") + what; };
    if (word == u"description" || word == u"title") return;
    if (word == u"$ref") {
      const QString name = rule.toString().section(u'/', -1);
      check(root_[QStringLiteral("$defs")].toObject()[name].toObject(), value, where, found);
    } else if (word == u"type") {
      const QJsonArray types = rule.isArray() ? rule.toArray() : QJsonArray{rule};
      bool fits = false;
      for (const QJsonValue& type : types) fits = fits || isOfType(value, type.toString());
      if (!fits) fault(QStringLiteral("another type"));
    } else if (word == u"required") {
      for (const QJsonValue& name : rule.toArray())
        if (!value.toObject().contains(name.toString())) fault(QStringLiteral("lacks ") + name.toString());
    } else if (word == u"properties") {
      const QJsonObject object = value.toObject();
      for (auto property = object.begin(); property != object.end(); ++property)
        if (rule.toObject().contains(property.key()))
          check(rule.toObject()[property.key()].toObject(), property.value(), where + u'.' + property.key(),
                found);
    } else if (word == u"additionalProperties") {
      const QJsonObject known = schema[QStringLiteral("properties")].toObject();
      for (const QString& name : value.toObject().keys())
        if (!known.contains(name)) fault(QStringLiteral("has ") + name);
    } else if (word == u"items") {
      for (const QJsonValue& element : value.toArray())
        check(rule.toObject(), element, where + QStringLiteral("[]"), found);
    } else if (word == u"enum") {
      if (!rule.toArray().contains(value)) fault(QStringLiteral("another word"));
    } else if (word == u"pattern") {
      if (value.isString() && !QRegularExpression(rule.toString()).match(value.toString()).hasMatch())
        fault(QStringLiteral("does not match"));
    } else if (word == u"oneOf") {
      int fits = 0;
      for (const QJsonValue& one : rule.toArray()) {
        QStringList inside;
        check(one.toObject(), value, where, inside);
        fits += inside.isEmpty();
      }
      if (fits != 1) fault(QStringLiteral("fits %1 of the forms").arg(fits));
    } else {
      fault(QStringLiteral("unknown word ") + word);
    }
  }

  QJsonObject root_;
};

}  // namespace lens

#include "embedded/dxl/item_elements.h"

#include "embedded/dxl/compiled_values.h"
#include "embedded/dxl/datetime_element.h"
#include "embedded/dxl/exact_marks.h"
#include "embedded/dxl/file_elements.h"
#include "embedded/dxl/item_flag_names.h"
#include "embedded/dxl/raw_values.h"
#include "embedded/dxl/rich_text_elements.h"
#include "embedded/format/source_formula.h"
#include "embedded/formula/compiled/stored_formula.h"
#include "embedded/mime/mime_entity.h"
#include "notes/literals.h"

namespace lens {

namespace {

QString naming(const QString& item) {
  return u"item \""_s + item + u'"';
}

// What the start tag of an item says of it.
struct ItemTag {
  QString name;
  quint16 flags = 0;
  bool summaryStated = false;
};

ItemTag readTag(const DxlReader& in) {
  ItemTag tag{exactAttribute(in, u"name"), itemFlags(in), in.hasAttribute(u"summary")};
  if (tag.name.isEmpty() && !in.hasAttribute(exactMarkOf(u"name"))) in.fail(u"an item has no name"_s);
  QString exact;
  if (!readMark(in, exactmark::kFlags, exact)) return tag;
  bool good = false;
  tag.flags = exact.toUShort(&good, 16);
  if (!good) in.fail(u"\"%1\" is no set of item flags"_s.arg(exact.left(64)));
  tag.summaryStated = true;
  return tag;
}

double readNumber(ImportContext& context, const QString& item) {
  const QString text = context.in.readText().trimmed();
  bool good = false;
  const double number = text.toDouble(&good);
  if (!good) context.in.fail(u"%1: \"%2\" is no number"_s.arg(naming(item), text.left(64)));
  return number;
}

QByteArray readNumberList(ImportContext& context, const QString& item) {
  QVector<double> singles, pairs;
  while (context.in.nextChild()) {
    if (context.in.is(u"number")) {
      singles.push_back(readNumber(context, item));
    } else if (context.in.is(u"numberpair")) {
      while (context.in.nextChild()) pairs.push_back(readNumber(context, item));
      if (pairs.size() % 2 != 0) context.in.fail(u"%1: a pair lacks a number"_s.arg(naming(item)));
    } else {
      context.in.fail(u"%1: no number list holds \"%2\""_s.arg(naming(item), context.in.name()));
    }
  }
  if (pairs.isEmpty()) return numberListValue(singles);
  QByteArray value;
  appendU16(value, itemtype::NumberRange);
  appendU16(value, quint16(singles.size()));
  appendU16(value, quint16(pairs.size() / 2));
  for (const double number : singles) appendF64(value, number);
  for (const double number : pairs) appendF64(value, number);
  return value;
}

QByteArray readTimeList(ImportContext& context, const QString& item) {
  QVector<TimeDate> singles;
  QVector<TimePair> pairs;
  while (context.in.nextChild()) {
    if (context.in.is(u"datetime")) {
      singles.push_back(readDatetime(context, naming(item)));
    } else if (context.in.is(u"datetimepair")) {
      QVector<TimeDate> ends;
      while (context.in.nextChild()) ends.push_back(readDatetime(context, naming(item)));
      if (ends.size() != 2) context.in.fail(u"%1: a pair needs two times"_s.arg(naming(item)));
      pairs.push_back({ends[0], ends[1]});
    } else {
      context.in.fail(u"%1: no time list holds \"%2\""_s.arg(naming(item), context.in.name()));
    }
  }
  return timeListValue(singles, pairs);
}

// The value that an export found where it wrote one with compiled formulas; empty without a mark.
QByteArray storedBefore(const DxlReader& in) {
  QString stored;
  return readMark(in, exactmark::kStored, stored) ? QByteArray::fromBase64(stored.toLatin1()) : QByteArray();
}

// Who changed what is compiled means that.
QByteArray storedOrCompiled(const QByteArray& stored, const QByteArray& compiled) {
  return !stored.isEmpty() && isCompiledFrom(compiled, stored) ? stored : compiled;
}

QByteArray readRaw(ImportContext& context, const QString& item) {
  const QString typeText = context.in.attribute(u"type");
  bool good = false;
  const uint type = typeText.toUInt(&good, 16);
  if (!good || type > 0xFFFF) context.in.fail(u"%1: \"%2\" is no item type"_s.arg(naming(item), typeText));
  QString mark;
  const bool asStored = readMark(context.in, exactmark::kAsStored, mark);
  const QByteArray before = storedBefore(context.in);
  const QByteArray data = context.in.readBase64(naming(item));
  if (asStored) return rawValue(quint16(type), data);
  const QString fault = rawValueFault(quint16(type), data);
  if (!fault.isEmpty())
    context.in.fail(u"%1: %2 does not fit the %3 bytes that are there"_s.arg(naming(item), fault,
                                                                             QString::number(data.size())));
  QByteArray value;
  if (type == itemtype::Object) {
    if (storeInlineObject(context.target, data, value)) return value;
    context.findings.keptRaw(u"item \"%1\" of type 3"_s.arg(item));
  }
  return storedOrCompiled(before, rawValue(quint16(type), data));
}

// Values that need no more than their element; empty when the element is another.
QByteArray readSimpleValue(ImportContext& context, const QString& name) {
  DxlReader& in = context.in;
  if (in.is(u"text")) return storedTextValue(in.readText());
  if (in.is(u"rawitemdata") || in.is(u"itemdata")) return readRaw(context, name);
  if (in.is(u"number")) return numberValue(readNumber(context, name));
  if (in.is(u"datetime")) return timeValue(readDatetime(context, naming(name)));
  if (in.is(u"textlist")) return storedTextListValue(readTexts(context));
  if (in.is(u"numberlist")) return readNumberList(context, name);
  if (in.is(u"datetimelist")) return readTimeList(context, name);
  if (in.is(u"formula")) return readFormula(context, naming(name));
  return {};
}

void readValue(ImportContext& context, Note& note, const ItemTag& tag) {
  if (context.in.is(u"object")) {
    readObjectElement(context, note, tag.name, tag.flags);
    return;
  }
  if (context.in.is(u"mime")) {
    readMime(context, note, tag.name);
    return;
  }
  if (context.in.is(u"richtext")) {
    note.add(tag.name, tag.flags, rawValue(itemtype::RichText, readRichText(context, note)));
    return;
  }
  const QByteArray value = readSimpleValue(context, tag.name);
  if (value.isEmpty()) {
    keepElement(context, note);
    return;
  }
  const quint16 type = quint16(quint8(value[0]) | quint8(value[1]) << 8);
  const bool summary = !tag.summaryStated && isSummaryByDefault(type);
  note.add(tag.name, tag.flags | (summary ? itemflag::Summary : 0), value);
}

// Who changed the text of an export means the text.
bool isExportedSource(QByteArrayView compiled, const QString& source) {
  const formula::CompiledReading reading = formula::readStored(compiled);
  return reading.canRun() && reading.source == source;
}

}  // namespace

void readItem(ImportContext& context, Note& note) {
  const ItemTag tag = readTag(context.in);
  bool empty = true;
  while (context.in.nextChild()) {
    readValue(context, note, tag);
    empty = false;
  }
  if (empty) note.add(tag.name, tag.flags, rawValue(itemtype::Unknown, {}));
}

QStringList readTexts(ReadContext& context) {
  QStringList texts;
  while (context.in.nextChild()) texts.push_back(context.in.readText());
  return texts;
}

QByteArray readFormula(ReadContext& context, const QString& what) {
  if (context.in.flag(u"compiled")) {
    const QByteArray before = storedBefore(context.in);
    return storedOrCompiled(before, rawValue(itemtype::Formula, context.in.readBase64(what)));
  }
  QString compiled;
  const bool marked = readMark(context.in, exactmark::kCompiled, compiled);
  const QString source = context.in.readText();
  const QByteArray bytes = QByteArray::fromBase64(compiled.toLatin1());
  if (marked && isExportedSource(bytes, source)) return rawValue(itemtype::Formula, bytes);
  context.findings.keptRaw(u"formula as source text"_s);
  return sourceFormulaValue(source);
}

void readMime(ImportContext& context, Note& note, const QString& itemName) {
  QString text = context.in.readText();
  qsizetype start = 0;
  while (start < text.size() && (text[start] == u'\n' || text[start] == u' ' || text[start] == u'\t'))
    ++start;
  text = text.mid(start);
  text.replace(u'\n', u"\r\n"_s);
  const QVector<QByteArray> parts = mimePartValues(text.toUtf8());
  for (const QByteArray& part : parts) note.add(itemName, 0, part);
}

}  // namespace lens

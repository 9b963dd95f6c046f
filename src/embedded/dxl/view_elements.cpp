#include "embedded/dxl/view_elements.h"

#include "embedded/dxl/item_elements.h"
#include "embedded/format/lmbcs.h"
#include "embedded/format/view_records.h"
#include "notes/literals.h"

namespace lens {

namespace {

void readColumnHeader(DxlReader& in, ViewColumn& column) {
  column.title = in.attribute(u"title");
  in.close();
}

void readColumnCode(ReadContext& context, ViewColumn& column) {
  const bool value = context.in.attribute(u"event") == u"value";
  while (context.in.nextChild()) {
    if (value && column.formula.isEmpty() && context.in.is(u"formula"))
      column.formula = readFormula(context, u"the formula of a column"_s).mid(2);
    else
      context.in.passOver();
  }
}

}  // namespace

ViewReader::ViewReader(const DesignKind& kind, ReadContext& context, Note& note)
    : DesignReader(kind, context, note) {
  uses({u"showinmenu", u"defaultdesign", u"selectionnoteclass", u"noviewformat", u"showresponsehierarchy"});
  if (!flag(u"showinmenu", true)) addFlags(u"Y");
  if (flag(u"defaultdesign")) addFlags(u"d");
  const QString type = attribute(u"type");
  if (type == u"standard" || type == u"calendar") uses({u"type"});
  if (type == u"calendar") addFlags(u"c");
}

bool ViewReader::readChild() {
  if (in_.is(u"column")) {
    readColumn();
    return true;
  }
  return in_.is(u"code") && readCode();
}

// The selection and the form formula; other events are kept as they are.
bool ViewReader::readCode() {
  const QString event = in_.attribute(u"event");
  if (event != u"selection" && event != u"form") return false;
  readEventFormula(event == u"form" ? u"$FormFormula"_s : u"$Formula"_s, u"the selection formula"_s);
  return true;
}

void ViewReader::readColumn() {
  const bool records = !in_.recording();
  if (records) in_.startRecording();
  ViewColumn column;
  column.item = in_.attribute(u"itemname");
  const QString sort = in_.attribute(u"sort");
  column.sorted = sort == u"ascending" || sort == u"descending";
  column.descending = sort == u"descending";
  column.categorized = in_.flag(u"categorized");
  column.hidden = in_.flag(u"hidden");
  column.responsesOnly = in_.flag(u"responsesonly");
  column.separateValues = in_.flag(u"separatemultiplevalues");
  const double width = in_.attribute(u"width").toDouble();
  column.width = width > 0 && width < 8000 ? int(width * 8) : column.width * 8;
  while (in_.nextChild()) {
    if (in_.is(u"columnheader"))
      readColumnHeader(in_, column);
    else if (in_.is(u"code"))
      readColumnCode(context_, column);
    else
      in_.passOver();
  }
  keepUnlessRead(context_, note_, u"column"_s, records);
  columns_.push_back(column);
}

void ViewReader::finish() {
  const QString noteClass = attribute(u"selectionnoteclass");
  addText(u"$FormulaClass"_s, noteClass.isEmpty() ? u"1"_s : noteClass);
  addText(u"$Index"_s, QString());
  if (!flag(u"noviewformat")) {
    add(u"$ViewFormat"_s, itemflag::Summary, viewFormatValue(columns_, flag(u"showresponsehierarchy", true)));
    add(u"$Collation"_s, itemflag::Summary, collationValue(columns_));
  }
  DesignReader::finish();
}

QByteArray viewFormatValue(const QVector<ViewColumn>& columns, bool hierarchy) {
  using namespace viewrecord;
  constexpr quint32 kPlainFont = 0x0A000001;
  constexpr quint16 kTextColumn = 2;
  QByteArray value, texts;
  appendU16(value, itemtype::ViewFormat);
  appendU16(value, kFormatVersion);  // and the style of a table
  appendU16(value, quint16(columns.size()));
  appendU16(value, 0);
  appendU16(value, hierarchy ? 0 : kFlatView);
  appendU16(value, 0);
  for (const ViewColumn& column : columns) {
    const QByteArray item = toLmbcs(column.item), title = toLmbcs(column.title);
    const QByteArray formula = column.formula.size() <= 0xFFFF ? column.formula : QByteArray();
    quint16 flags = column.sorted ? kSorted : 0;
    if (column.categorized) flags |= kCategorized;
    if (column.descending) flags |= kDescending;
    if (column.hidden) flags |= kHidden;
    if (column.responsesOnly) flags |= kResponsesOnly;
    for (const qsizetype word : {qsizetype(kColumnMark), qsizetype(flags), item.size(), title.size(),
                                 formula.size(), qsizetype(0), qsizetype(column.width)})
      appendU16(value, quint16(word));
    appendU32(value, kPlainFont);
    appendU16(value, column.separateValues ? kSeparateValues : 0);
    appendU32(value, 0);
    appendU32(value, 0);
    appendU16(value, kTextColumn);
    appendU16(value, 0);
    texts += item + title + formula;
  }
  return value + texts;
}

QByteArray collationValue(const QVector<ViewColumn>& columns) {
  using namespace viewrecord;
  QByteArray keys, names;
  quint16 count = 0;
  for (const ViewColumn& column : columns) {
    if (!column.sorted && !column.categorized) continue;
    const QByteArray name = toLmbcs(column.item);
    quint8 flags = column.descending ? kKeyDescending : 0;
    if (column.categorized || column.separateValues) flags |= kKeySeparateValues;
    keys.append(char(flags)).append(char(kKeyMark));
    keys.append(char(column.categorized ? kKeyCategory : 0));
    appendU16(keys, quint16(names.size()));
    appendU16(keys, quint16(name.size()));
    names += name;
    ++count;
  }
  QByteArray value;
  appendU16(value, itemtype::Collation);
  appendU16(value, quint16(6 + keys.size() + names.size()));
  appendU16(value, count);
  value.append('\0').append(char(kCollationMark));
  return value + keys + names;
}

}  // namespace lens

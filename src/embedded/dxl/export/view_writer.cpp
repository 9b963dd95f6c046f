#include "embedded/dxl/exact_marks.h"
#include "embedded/dxl/export/design_children.h"
#include "embedded/dxl/export/formula_writer.h"
#include "embedded/dxl/export/read_back.h"
#include "embedded/format/source_formula.h"
#include "embedded/format/view_records.h"
#include "notes/literals.h"

namespace lens {

namespace {

bool storedFormat(const Note& note, StoredViewFormat& format) {
  const Item* const item = note.find(u"$ViewFormat");
  return item && item->value.size() >= 2 && item->type() == itemtype::ViewFormat &&
         readViewFormat(item->data(), format);
}

// What an import would store of the column.
bool readKeptColumn(const QString& xml, StoredColumn& column) {
  Note note;
  StoredViewFormat format;
  const bool isRead = readAside((u"<view>"_s + xml + u"</view>"_s).toUtf8(), [&](ReadContext& context) {
    context.in.next();
    readDesignElement(*findDesignKind(u"view"), context, note, [] { return false; });
    return true;
  });
  if (!isRead || !storedFormat(note, format) || format.columns.size() != 1) return false;
  column = format.columns.first();
  return true;
}

bool isSameColumn(const StoredColumn& a, const StoredColumn& b) {
  return a.item == b.item && a.title == b.title && a.formula == b.formula && a.sorted == b.sorted &&
         a.descending == b.descending && a.categorized == b.categorized && a.hidden == b.hidden &&
         a.responsesOnly == b.responsesOnly && a.separateValues == b.separateValues && a.width == b.width;
}

void writeColumn(DxlWriter& out, const StoredColumn& column) {
  out.begin(u"column"_s);
  if (column.sorted) out.attribute(u"sort"_s, column.descending ? u"descending"_s : u"ascending"_s);
  if (column.categorized) out.flag(u"categorized"_s, true);
  if (column.hidden) out.flag(u"hidden"_s, true);
  if (column.responsesOnly) out.flag(u"responsesonly"_s, true);
  if (column.separateValues) out.flag(u"separatemultiplevalues"_s, true);
  out.attribute(u"itemname"_s, column.item);
  out.attribute(u"width"_s, QString::number(column.width / 8.0));
  if (!column.title.isEmpty()) {
    out.begin(u"columnheader"_s);
    out.attribute(u"title"_s, column.title);
    out.end();
  }
  if (!column.formula.isEmpty()) writeFormulaCode(out, u"value"_s, column.formula);
  out.end();
}

}  // namespace

void addViewContent(DesignContent& content, const QStringList& keptColumns) {
  const QString flags = content.note().text(u"$Flags");
  content.attribute(u"showinmenu"_s, flags.contains(u'Y') ? u"false"_s : u"true"_s);
  if (flags.contains(u'd')) content.attribute(u"defaultdesign"_s, u"true"_s);
  if (content.is(u"view") && flags.contains(u'c')) content.attribute(u"type"_s, u"calendar"_s);
  const QString selected = content.note().text(u"$FormulaClass");
  if (!selected.isEmpty() && selected != u"1") content.attribute(u"selectionnoteclass"_s, selected);
  StoredViewFormat format;
  if (!storedFormat(content.note(), format)) {
    content.attribute(u"noviewformat"_s, u"true"_s);
    return;
  }
  content.attribute(u"showresponsehierarchy"_s, format.hierarchy ? u"true"_s : u"false"_s);
  qsizetype kept = 0;
  StoredColumn next;
  bool known = kept < keptColumns.size() && readKeptColumn(keptColumns[kept], next);
  for (const StoredColumn& column : std::as_const(format.columns)) {
    if (known && isSameColumn(column, next)) {
      content.add(u"column"_s, keptColumns[kept++]);
      known = kept < keptColumns.size() && readKeptColumn(keptColumns[kept], next);
    } else {
      content.write(u"column"_s, [&](DxlWriter& out) { writeColumn(out, column); });
    }
  }
}

bool hasSourceInViewFormat(const Note& note) {
  StoredViewFormat format;
  QString source;
  if (!storedFormat(note, format)) return false;
  return std::any_of(format.columns.cbegin(), format.columns.cend(),
                     [&](const StoredColumn& column) { return readSourceFormula(column.formula, source); });
}

}  // namespace lens

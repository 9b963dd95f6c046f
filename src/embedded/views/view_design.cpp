#include "embedded/views/view_design.h"

#include <QCryptographicHash>
#include <QLocale>
#include <QTimeZone>
#include <algorithm>

#include "embedded/format/view_records.h"
#include "embedded/formula/compiled/stored_formula.h"
#include "notes/literals.h"

namespace lens {
namespace {

// Goes into every digest: an index that an older program laid out otherwise is made anew.
constexpr char kLayout[] = "2";
constexpr qsizetype kMostKeys = 64;  // more than anybody sorts by; it bounds the length of a sort key

DesignColumn designColumn(const StoredColumn& stored) {
  DesignColumn column{
      stored.item,          stored.title,          {},          false, stored.hidden, stored.categorized,
      stored.responsesOnly, stored.separateValues, stored.width};
  if (stored.formula.isEmpty()) return column;
  const formula::CompiledReading reading = formula::readStored(stored.formula);
  column.compiledOnly = !reading.canRun();
  if (reading.canRun()) column.formula = reading.source;
  return column;
}

// The columns' own marks, in their order.
QVector<DesignKey> keysOfColumns(const QVector<StoredColumn>& columns) {
  QVector<DesignKey> keys;
  for (int i = 0; i < columns.size(); ++i)
    if (columns[i].sorted)
      keys.push_back({i, columns[i].descending, columns[i].categorized, columns[i].separateValues});
  return keys;
}

// Keys name their columns by item. A name that no column has sorts nothing.
QVector<DesignKey> keysOfCollation(const QVector<StoredKey>& stored, const QVector<StoredColumn>& columns) {
  QVector<DesignKey> keys;
  QVector<bool> taken(columns.size(), false);
  for (const StoredKey& key : stored) {
    int column = 0;
    while (column < columns.size() && (taken[column] || !sameItemName(columns[column].item, key.item)))
      ++column;
    if (column == columns.size()) continue;
    taken[column] = true;
    keys.push_back({column, key.descending, key.category || columns[column].categorized,
                    key.separateValues || columns[column].separateValues});
  }
  return keys;
}

QVector<DesignKey> keysOf(const Note& view, const QVector<StoredColumn>& columns) {
  const Item* const collation = view.find(u"$Collation");
  QVector<StoredKey> stored;
  const bool told = collation && collation->value.size() >= 2 && collation->type() == itemtype::Collation &&
                    readCollation(collation->data(), stored);
  QVector<DesignKey> keys = told ? keysOfCollation(stored, columns) : keysOfColumns(columns);
  for (DesignKey& key : keys) key.separateValues = key.separateValues || key.category;
  // What is said of responses only puts no document in its place.
  keys.removeIf([&](const DesignKey& key) { return columns[key.column].responsesOnly; });
  if (keys.size() > kMostKeys) keys.resize(kMostKeys);
  return keys;
}

// Texts and dates in sort keys depend on the machine's zone and region too.
QByteArray digestOf(const Note& view) {
  QCryptographicHash hash(QCryptographicHash::Sha1);
  const auto add = [&](QByteArrayView bytes) {
    QByteArray length;
    appendU32(length, quint32(bytes.size()));
    hash.addData(length);
    hash.addData(bytes);
  };
  add(kLayout);
  add(QLocale::system().name().toUtf8());
  add(QTimeZone::systemTimeZoneId());
  add(isFolder(view) ? "folder" : "view");
  for (const char16_t* name : {u"$Formula", u"$FormulaClass", u"$ViewFormat", u"$Collation"}) {
    const Item* const item = view.find(name);
    add(item ? QByteArrayView(item->value) : QByteArrayView());
  }
  return hash.result();
}

// Views may be made of design notes too; what names no class shows documents.
quint16 classOf(const Note& view) {
  bool good = false;
  const quint16 mask = view.text(u"$FormulaClass").trimmed().toUShort(&good);
  return good && noteclass::base(mask) != 0 ? noteclass::base(mask) : noteclass::Document;
}

void readSelectionInto(ViewDesign& design, const Note& view) {
  const formula::CompiledReading reading = readSelection(view);
  design.hasSelection = reading.canRun();
  if (design.hasSelection) design.selection = reading.source;
  design.hiddenSelection = !design.folder && !design.hasSelection && view.has(u"$Formula");
  if (design.hiddenSelection)
    design.whyHidden = reading.problem.isEmpty() ? u"it is no formula"_s : reading.problem;
}

}  // namespace

ViewDesign readViewDesign(const Note& view) {
  ViewDesign design;
  design.noteId = view.header.id;
  design.unid = view.header.unid;
  design.title = view.text(u"$TITLE");
  design.folder = isFolder(view);
  design.noteClass = classOf(view);
  readSelectionInto(design, view);
  design.digest = digestOf(view);
  const Item* const item = view.find(u"$ViewFormat");
  StoredViewFormat format;
  if (!item || item->value.size() < 2 || item->type() != itemtype::ViewFormat ||
      !readViewFormat(item->data(), format))
    return design;
  design.hierarchy = format.hierarchy;
  for (const StoredColumn& column : std::as_const(format.columns))
    design.columns.push_back(designColumn(column));
  design.keys = keysOf(view, format.columns);
  return design;
}

void raiseHiddenSelection(const QString& databasePath, const ViewDesign& design) {
  throw RuntimeError(kNoFormulaSource,
                     u"%1: the selection formula of the view \"%2\" is there in compiled form only: %3"_s.arg(
                         databasePath, design.title, design.whyHidden));
}

formula::CompiledReading readSelection(const Note& view) {
  const Item* const item = view.find(u"$Formula");
  if (!item || item->value.size() < 2) return {};
  if (item->type() == itemtype::Formula)
    return formula::readStored(item->data(), formula::ShownSelect::Always);
  QString source;
  return formula::formulaSource(*item, source) ? formula::sourceReading(source) : formula::CompiledReading();
}

bool isFolder(const Note& view) {
  return view.text(u"$Flags").contains(u'F');
}

}  // namespace lens

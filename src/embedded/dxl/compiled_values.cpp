#include "embedded/dxl/compiled_values.h"

#include <algorithm>

#include "embedded/format/agent_records.h"
#include "embedded/format/lmbcs.h"
#include "embedded/format/source_formula.h"
#include "embedded/format/view_records.h"
#include "embedded/formula/compiled/compiled_writer.h"
#include "embedded/formula/compiled/stored_formula.h"
#include "embedded/richtext/field_record.h"
#include "embedded/richtext/rich_records.h"

namespace lens {
namespace {

const formula::Environment& machine() {
  static const thread_local formula::MachineEnvironment environment;
  return environment;
}

// The compiled form of source; anything else, and source without one, as it is.
QByteArray compiled(QByteArrayView stored) {
  QString source;
  if (!readSourceFormula(stored, source)) return stored.toByteArray();
  const QByteArray bytes = formula::writeCompiled(source, machine()).bytes;
  return bytes.isEmpty() ? stored.toByteArray() : bytes;
}

QByteArray compiledColumn(const StoredColumn& column) {
  QString source;
  if (!readSourceFormula(column.formula, source)) return column.formula;
  const QByteArray bytes = formula::writeCompiledColumn(source, column.item, machine()).bytes;
  return bytes.isEmpty() ? column.formula : bytes;
}

QByteArray compiledViewFormat(QByteArrayView data) {
  StoredViewFormat format;
  if (!readViewFormat(data, format)) return {};
  QVector<QByteArray> formulas;
  for (const StoredColumn& column : std::as_const(format.columns)) formulas.push_back(compiledColumn(column));
  return withColumnFormulas(data, formulas);
}

QByteArray compiledSelection(const Note& view, QByteArrayView data) {
  QString source;
  const Item* const item = view.find(u"$ViewFormat");
  StoredViewFormat format;
  if (!readSourceFormula(data, source) || !item || item->value.size() < 2 ||
      item->type() != itemtype::ViewFormat || !readViewFormat(item->data(), format))
    return {};
  QVector<formula::WrittenColumn> columns;
  for (const StoredColumn& column : std::as_const(format.columns)) {
    const QByteArray program = compiledColumn(column);
    // Without a compiled form it has no place in the formula of the view.
    QString kept;
    if (!readSourceFormula(program, kept)) columns.push_back({column.item, program});
  }
  return formula::writeCompiledSelection(source, columns, machine()).bytes;
}

QByteArray compiledField(QByteArrayView record) {
  StoredField field;
  if (!readStoredField(record, field)) return record.toByteArray();
  return withFieldFormulas(record, {compiled(field.defaultValue), compiled(field.inputTranslation),
                                    compiled(field.inputValidation)});
}

QByteArray compiledRecord(quint16 type, QByteArrayView record) {
  FormulaAction action;
  if (type == itemtype::RichText) return compiledField(record);
  if (!readFormulaAction(record, action)) return record.toByteArray();
  return withActionFormula(record, compiled(action.formula));
}

// Fields of forms, and formulas of agents.
QByteArray compiledRecords(quint16 type, QByteArrayView data) {
  QByteArray all;
  while (!data.isEmpty()) {
    const qsizetype length = richrecord::wholeLength(data);
    if (length == 0) break;
    const QByteArrayView before = data.first(length),
                         whole = data.first(std::min(data.size(), length + length % 2));
    const QByteArray record = compiledRecord(type, before);
    if (record == before) {
      all += whole;
    } else {
      all += record;
      if (record.size() % 2 != 0) all += '\0';
    }
    data = data.sliced(whole.size());
  }
  return all + data.toByteArray();
}

// What an item holds by itself.
QByteArray compiledData(quint16 type, QByteArrayView data) {
  switch (type) {
    case itemtype::ViewFormat:
      return compiledViewFormat(data);
    case itemtype::RichText:
    case itemtype::Action:
      return compiledRecords(type, data);
    default:
      return {};
  }
}

quint16 typeOf(const QByteArray& value) {
  return Item{{}, 0, value}.type();
}

// Their source with SELECT in front, whether it was typed or not.
QString selectionOf(QByteArrayView data) {
  return formula::readStored(data, formula::ShownSelect::Always).source;
}

}  // namespace

QByteArray compiledValue(const Note& note, const Item& item) {
  const quint16 base = noteclass::base(note.header.noteClass);
  if (base == noteclass::Document || item.value.size() < 2) return {};
  const bool isSelection =
      base == noteclass::View && item.type() == itemtype::Formula && sameItemName(item.name, u"$Formula");
  const QByteArray data =
      isSelection ? compiledSelection(note, item.data()) : compiledData(item.type(), item.data());
  if (data.isEmpty() || data == item.data()) return {};
  const QByteArray value = rawValue(item.type(), data);
  return isCompiledFrom(value, item.value) ? value : QByteArray();
}

bool isCompiledFrom(const QByteArray& value, const QByteArray& stored) {
  if (value.size() < 2 || stored.size() < 2 || typeOf(value) != typeOf(stored)) return false;
  const QByteArrayView data = QByteArrayView(value).sliced(2), before = QByteArrayView(stored).sliced(2);
  if (typeOf(value) != itemtype::Formula) return compiledData(typeOf(value), before) == data;
  const QByteArray alone = compiled(before);
  return alone != before && selectionOf(alone) == selectionOf(data);
}

}  // namespace lens

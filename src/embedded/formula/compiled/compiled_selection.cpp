// The formula of a view: programs of its columns, the names of their items, a divider, and the selection.
#include <utility>

#include "embedded/format/byte_reader.h"
#include "embedded/format/lmbcs.h"
#include "embedded/formula/compiled/codes.h"
#include "embedded/formula/compiled/compiled_writer.h"
#include "embedded/formula/compiled/segments.h"

namespace lens::formula {
namespace {

// Whether a column's code is one number, text or time.
bool isConstant(QByteArrayView column) {
  ByteReader reader(column);
  const qsizetype name = reader.u16();
  reader.skip(name + name % 2);
  const quint16 kind = reader.u16();
  if (kind == code::Text) {
    const qsizetype size = reader.u16();
    reader.skip(size + size % 2);
  } else if (kind == code::Number || kind == code::Time) {
    reader.skip(8);
  } else {
    return false;
  }
  return reader.u16() == code::End && !reader.failed();
}

// What a column's formula leaves in the formula of its view: no layouts, and nothing of one that computes a
// constant or a place in the view.
QByteArray columnProgram(const std::vector<Segment>& formula, bool& usesFar) {
  QByteArray program;
  bool stored = false;
  for (const auto& [type, data] : formula) {
    if (type == segment::FarFunctions) usesFar = true;
    if (type == segment::Layout || type == segment::FarFunctions) continue;
    if (type == segment::Column) stored = !isConstant(data);
    appendSegment(program, type, data);
  }
  return stored ? program : QByteArray();
}

QByteArray columnProgram(QByteArrayView formula, bool& usesFar) {
  try {
    return columnProgram(readSegments(formula), usesFar);
  } catch (const Unreadable&) {
    return {};
  }
}

// The names of the items in which a view finds its columns' values.
QByteArray columnTable(const QStringList& items) {
  QByteArray lengths, names;
  for (const QString& item : items) {
    const QByteArray name = toLmbcs(item);
    appendU16(lengths, quint16(name.size()));
    names += name;
  }
  QByteArray table;
  appendU16(table, quint16(2 + 2 + lengths.size() + names.size()));
  appendU16(table, quint16(items.size()));
  return table + lengths + names;
}

}  // namespace

Written writeCompiledSelection(QStringView source, const QVector<WrittenColumn>& columns,
                               const Environment& environment) {
  Written result = writeCompiled(source, environment);
  if (result.bytes.isEmpty()) return result;
  const QByteArray alone = std::exchange(result.bytes, {});
  QByteArray segments;
  QStringList items;
  bool usesFar = false;
  for (const WrittenColumn& column : columns) {
    const QByteArray program = columnProgram(column.formula, usesFar);
    if (!column.formula.isEmpty() && program.isEmpty()) continue;
    segments += program;
    items += column.item;
  }
  items << QStringLiteral("$Conflict") << QStringLiteral("$REF");
  const QByteArray table = columnTable(items);
  if (table.size() + segment::kHead > segment::kMostBytes) return result;
  appendSegment(segments, segment::Columns, table);
  appendSegment(segments, segment::Divider, {});
  for (const auto& [type, data] : readSegments(alone)) {
    if (type == segment::FarFunctions)
      usesFar = true;
    else
      appendSegment(segments, type, data);
  }
  result.bytes = framed(segments, usesFar);
  return result;
}

}  // namespace lens::formula

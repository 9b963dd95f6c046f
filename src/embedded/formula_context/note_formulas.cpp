#include "embedded/formula_context/note_formulas.h"

#include "embedded/format/lmbcs.h"
#include "embedded/format/view_records.h"
#include "embedded/formula/compiled/stored_formula.h"
#include "embedded/richtext/rich_records.h"
#include "notes/literals.h"

namespace lens {
namespace {

using formula::CompiledReading;
using formula::ShownSelect;

constexpr quint8 kFieldRecordKind = 138, kAgentRecordKind = 132;

// Records with a formula at a fixed place, counted from the record's first byte; 0: the formula ends it.
struct FormulaPlace {
  quint8 kind;
  quint8 offset;
  QStringView what;
};
constexpr FormulaPlace kFormulaPlaces[] = {
    {187, 14, u"hide-when"}, {169, 12, u"hotspot"}, {173, 12, u"button"},  {94, 28, u"action"},
    {176, 24, u"formula"},   {120, 34, u"formula"}, {113, 34, u"formula"}, {246, 34, u"formula"},
    {237, 32, u"formula"},   {126, 12, u"formula"}, {254, 80, u"formula"}, {249, 32, u"formula"},
    {186, 72, u"formula"},   {242, 12, u"formula"}, {190, 0, u"action"},
};

class Formulas {
 public:
  explicit Formulas(const Note& note) : note_(note) {}
  QVector<NoteFormula> take() {
    for (const Item& item : note_.items)
      if (item.value.size() >= 2) readItem(item);
    return std::move(found_);
  }

 private:
  void readItem(const Item& item);
  void readColumns(const Item& item);
  void readRecords(const Item& item);
  void readField(const Item& item, QByteArrayView record);
  void readAgent(const Item& item, QByteArrayView record);
  void readPlace(const Item& item, QByteArrayView record);
  void add(const Item& item, const QString& place, QByteArrayView formula,
           ShownSelect select = ShownSelect::AsTyped) {
    if (!formula.isEmpty()) found_.push_back({item.name, place, formula::readStored(formula, select)});
  }

  const Note& note_;
  QVector<NoteFormula> found_;
};

void Formulas::readItem(const Item& item) {
  switch (item.type()) {
    case itemtype::Formula:
      return add(item, {}, item.data());
    case itemtype::ViewFormat:
      return readColumns(item);
    case itemtype::RichText:
    case itemtype::Action:
    case itemtype::Query:
      return readRecords(item);
    default:
      return;
  }
}

void Formulas::readColumns(const Item& item) {
  StoredViewFormat format;
  if (!readViewFormat(item.data(), format)) return;
  for (const StoredColumn& column : std::as_const(format.columns))
    add(item, u"column %1"_s.arg(column.item), column.formula);
}

void Formulas::readRecords(const Item& item) {
  QByteArrayView data = item.data();
  while (!data.isEmpty()) {
    const qsizetype length = richrecord::wholeLength(data);
    if (length == 0) return;
    const QByteArrayView record = data.first(length);
    if (quint8(record[0]) == kFieldRecordKind)
      readField(item, record);
    else if (quint8(record[0]) == kAgentRecordKind)
      readAgent(item, record);
    else
      readPlace(item, record);
    data = data.sliced(qMin(data.size(), length + length % 2));
  }
}

// Flags, type and looks, seven lengths, then what they measure: three formulas among them, and the name.
void Formulas::readField(const Item& item, QByteArrayView record) {
  ByteReader reader(record);
  reader.skip(22);
  const quint16 defaultValue = reader.u16(), translation = reader.u16(), order = reader.u16(),
                validation = reader.u16(), nameLength = reader.u16();
  reader.skip(4);
  const QByteArrayView formulas[] = {reader.take(defaultValue), reader.take(translation)};
  reader.skip(order);
  const QByteArrayView check = reader.take(validation);
  const QString name = fromLmbcs(reader.take(nameLength));
  if (reader.failed()) return;
  add(item, u"field %1, default value"_s.arg(name), formulas[0]);
  add(item, u"field %1, input translation"_s.arg(name), formulas[1]);
  add(item, u"field %1, input validation"_s.arg(name), check);
}

void Formulas::readAgent(const Item& item, QByteArrayView record) {
  ByteReader reader(record);
  reader.skip(8);
  const QByteArrayView formula = reader.take(reader.u16());
  if (!reader.failed()) add(item, u"agent"_s, formula, ShownSelect::Always);
}

// What does not fit its place exactly is none: such records have other contents too.
void Formulas::readPlace(const Item& item, QByteArrayView record) {
  for (const FormulaPlace& place : kFormulaPlaces) {
    if (quint8(record[0]) != place.kind) continue;
    qsizetype from = place.offset, to = place.offset;
    if (place.offset == 0) from = 4, to = record.size() - 2;
    for (qsizetype at = from; at <= to && at < record.size(); ++at) {
      const qsizetype size = formula::compiledSize(record.sliced(at));
      // A byte may fill up the record.
      if (size == 0 || (place.offset == 0 && record.size() - at - size > 1)) continue;
      const CompiledReading reading = formula::readStored(record.sliced(at, size));
      if (reading.state == CompiledReading::State::Unreadable) continue;
      found_.push_back({item.name, place.what.toString(), reading});
      return;
    }
  }
}

}  // namespace

QVector<NoteFormula> formulasOf(const Note& note) {
  return Formulas(note).take();
}

}  // namespace lens

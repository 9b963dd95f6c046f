#include "embedded/formula_context/note_formulas.h"

#include <QSet>

#include "embedded/format/agent_records.h"
#include "embedded/format/kept_items.h"
#include "embedded/format/lmbcs.h"
#include "embedded/format/view_records.h"
#include "embedded/formula/compiled/stored_formula.h"
#include "embedded/formula_context/kept_formulas.h"
#include "embedded/richtext/field_record.h"
#include "embedded/richtext/rich_records.h"
#include "notes/literals.h"

namespace lens {
namespace {

using formula::CompiledReading;
using formula::ShownSelect;

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

// Entries of an outline are searched for their formulas; no item of an outline is longer.
constexpr qsizetype kMostSearched = 0x10000;
// The smallest formula: size, one segment, one word of code and its end.
constexpr qsizetype kLeastFormula = 10;

class Formulas {
 public:
  explicit Formulas(const Note& note) : note_(note) {}
  QVector<NoteFormula> take();

 private:
  void readItem(const Item& item);
  void readColumns(const Item& item);
  void readRecords(const Item& item);
  void readField(QByteArrayView record);
  void readAgent(QByteArrayView record);
  void readPlace(QByteArrayView record);
  void search(QByteArrayView bytes);
  void readKept(const Item& item);
  void add(const QString& place, const CompiledReading& reading) {
    found_.push_back({note_.items[itemPlace_].name, place, reading, itemPlace_});
  }
  void add(const QString& place, QByteArrayView formula, ShownSelect select = ShownSelect::AsTyped) {
    if (!formula.isEmpty()) add(place, formula::readStored(formula, select));
  }

  const Note& note_;
  qsizetype itemPlace_ = 0;
  QVector<NoteFormula> found_;
  QSet<QString> stored_;  // sources of those that do not stand in kept elements
};

bool isKept(const Item& item) {
  return item.name.startsWith(kKeptPrefix) && item.type() == itemtype::Text;
}

QVector<NoteFormula> Formulas::take() {
  const auto forEach = [&](auto read) {
    for (itemPlace_ = 0; itemPlace_ < note_.items.size(); ++itemPlace_) {
      const Item& item = note_.items[itemPlace_];
      if (item.value.size() >= 2) read(item);
    }
  };
  forEach([&](const Item& item) { readItem(item); });
  for (const NoteFormula& found : std::as_const(found_)) stored_.insert(found.reading.source);
  forEach([&](const Item& item) {
    if (isKept(item)) readKept(item);
  });
  return std::move(found_);
}

void Formulas::readItem(const Item& item) {
  switch (item.type()) {
    case itemtype::Formula:
      return add({}, item.data());
    case itemtype::ViewFormat:
      return readColumns(item);
    case itemtype::RichText:
    case itemtype::Action:
    case itemtype::Query:
    case itemtype::ViewMapLayout:
      return readRecords(item);
    case itemtype::OutlineFormat:
      return search(item.data());
    default:
      return;
  }
}

void Formulas::readColumns(const Item& item) {
  StoredViewFormat format;
  if (!readViewFormat(item.data(), format)) return;
  for (const StoredColumn& column : std::as_const(format.columns))
    add(u"column %1"_s.arg(column.item), column.formula);
}

void Formulas::readRecords(const Item& item) {
  QByteArrayView data = item.data();
  while (!data.isEmpty()) {
    const qsizetype length = richrecord::wholeLength(data);
    if (length == 0) return;
    const QByteArrayView record = data.first(length);
    if (quint8(record[0]) == StoredField::kKind)
      readField(record);
    else if (item.type() == itemtype::Action && isFormulaAction(record))
      readAgent(record);
    else
      readPlace(record);
    data = data.sliced(qMin(data.size(), length + length % 2));
  }
}

void Formulas::readField(QByteArrayView record) {
  StoredField field;
  if (!readStoredField(record, field)) return;
  const QString name = fromLmbcs(field.name);
  add(u"field %1, default value"_s.arg(name), field.defaultValue);
  add(u"field %1, input translation"_s.arg(name), field.inputTranslation);
  add(u"field %1, input validation"_s.arg(name), field.inputValidation);
  const qsizetype size = formula::compiledSize(field.keywordsFormula);
  add(u"field %1, keywords"_s.arg(name), field.keywordsFormula.first(size));
}

void Formulas::readAgent(QByteArrayView record) {
  FormulaAction action;
  if (readFormulaAction(record, action)) add(u"agent"_s, action.formula, ShownSelect::Always);
}

// What does not fit its place exactly is none: such records have other contents too.
void Formulas::readPlace(QByteArrayView record) {
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
      return add(place.what.toString(), reading);
    }
  }
}

// Nothing tells where they lie, but bytes that are read as a formula to the last one are hardly anything
// else.
void Formulas::search(QByteArrayView bytes) {
  if (bytes.size() > kMostSearched) return;
  for (qsizetype at = 0; at + kLeastFormula <= bytes.size(); ++at) {
    const qsizetype size = formula::compiledSize(bytes.sliced(at));
    if (size < kLeastFormula) continue;
    const CompiledReading reading = formula::readStored(bytes.sliced(at, size));
    if (reading.state == CompiledReading::State::Unreadable) continue;
    add(u"entry"_s, reading);
    at += size - 1;
  }
}

// What the import also read into items stands there already, with its bytes.
void Formulas::readKept(const Item& item) {
  for (const KeptFormula& kept : formulasOfElement(textFromStored(item.data())))
    if (!kept.readElsewhere || !stored_.contains(kept.reading.source)) add(kept.place, kept.reading);
}

}  // namespace

QVector<NoteFormula> formulasOf(const Note& note) {
  return Formulas(note).take();
}

}  // namespace lens

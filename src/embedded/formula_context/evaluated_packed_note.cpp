#include "embedded/formula_context/evaluated_packed_note.h"

#include "embedded/formula_context/item_conversion.h"

namespace lens {
namespace {

// As QString counts them: a character beyond the first plane is two.
qsizetype charactersOf(QByteArrayView utf8) {
  qsizetype count = 0;
  for (const char byte : utf8) count += (quint8(byte) & 0xC0) != 0x80 ? (quint8(byte) >= 0xF0 ? 2 : 1) : 0;
  return count;
}

}  // namespace

EvaluatedPackedNote::EvaluatedPackedNote(std::vector<formula::Name> names, const Database* database)
    : wanted_(std::move(names)), database_(database) {}

void EvaluatedPackedNote::show(const PackedNote& note) {
  packed_ = &note;
  places_.clear();
  whole_.reset();
}

qsizetype EvaluatedPackedNote::placeOf(const formula::Name& name) const {
  const std::vector<formula::Name>& names = wanted_.names();
  for (std::size_t n = 0; n < names.size(); ++n) {
    if (names[n] != name) continue;
    if (places_.empty()) wanted_.find(packed_->items, itemflag::Summary, places_);
    return places_[n];
  }
  return packed_->items.find(name.text(), itemflag::Summary);
}

bool EvaluatedPackedNote::item(const formula::Name& name, formula::Value& value) const {
  const qsizetype place = packed_ ? placeOf(name) : -1;
  if (place < 0) return false;
  const QByteArrayView stored = packed_->items[place].value;
  if (ByteReader(stored).u16() == itemtype::Unavailable) return false;
  formulaValue(stored, value);
  return true;
}

formula::DocumentProperties EvaluatedPackedNote::properties() const {
  if (!packed_) return whole().properties();
  NoteSize size;
  for (qsizetype place = 0; place < packed_->items.count(); ++place) {
    const PackedItems::Entry item = packed_->items[place];
    size.add(charactersOf(item.name), item.value, isPackedName(item.name, u"$FILE"));
  }
  return propertiesOf(packed_->header, parentOf(*packed_), size.bytes());
}

bool EvaluatedPackedNote::respondsToSelected(bool everyLevel) const {
  return packed_ && answersSelected(parentOf(*packed_), selected_, database_, everyLevel);
}

const EvaluatedNote& EvaluatedPackedNote::whole() const {
  if (whole_) return *whole_;
  note_ = packed_ ? packed_->unpack() : Note();
  whole_.emplace(note_, database_, EvaluatedNote::Items::Summary);
  return *whole_;
}

}  // namespace lens

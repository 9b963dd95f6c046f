// A packed note as the document of a formula: what searches and views show to their formulas, note after
// note. Only the items that are asked for are read.
#pragma once

#include <optional>
#include <vector>

#include "embedded/format/packed_note.h"
#include "embedded/formula_context/evaluated_note.h"

namespace lens {

// Says the same as a EvaluatedNote of summary items. Reads only; writing is refused.
class EvaluatedPackedNote : public formula::Document {
 public:
  // The names that the formulas may ask for (Formula::itemNames()) are found fast, all others too. The
  // database may be null and tells the parents of parents.
  explicit EvaluatedPackedNote(std::vector<formula::Name> names, const Database* database = nullptr);

  // From now on the document is this note, as long as that is there.
  void show(const PackedNote& note);
  void setSelected(EvaluatedNote::Selected selected) { selected_ = std::move(selected); }

  bool item(const formula::Name& name, formula::Value& value) const override;
  QStringList itemNames() const override { return whole().itemNames(); }
  QStringList authorItems() const override { return whole().authorItems(); }
  formula::DocumentProperties properties() const override;
  QVector<formula::Attachment> attachments() const override { return whole().attachments(); }
  QString richText(const formula::Name& name) const override { return whole().richText(name); }
  bool respondsToSelected(bool everyLevel) const override;

 private:
  qsizetype placeOf(const formula::Name& name) const;
  // What is seldom asked is answered by the unpacked note.
  const EvaluatedNote& whole() const;

  WantedItems wanted_;
  const Database* database_;
  EvaluatedNote::Selected selected_;
  const PackedNote* packed_ = nullptr;
  mutable std::vector<qint32> places_;  // of the names in this note; empty until one is asked for
  mutable Note note_;
  mutable std::optional<EvaluatedNote> whole_;
};

}  // namespace lens

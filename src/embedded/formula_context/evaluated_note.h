// A note of the store as the document that a formula works on.
#pragma once

#include <functional>

#include "embedded/format/packed_note.h"
#include "embedded/formula/evaluation_context.h"
#include "embedded/store/database.h"

namespace lens {

class EvaluatedNote : public formula::Document {
 public:
  // A search sees summary items only.
  enum class Items { All, Summary };

  // Reads; writing is refused. The note must outlive this; so must the database, which may be null and
  // tells the parents of parents.
  explicit EvaluatedNote(const Note& note, const Database* database = nullptr, Items items = Items::All)
      : note_(note), database_(database), items_(items) {}
  // Reads and writes the note in memory; saving it is the caller's.
  EvaluatedNote(Note* note, const Database* database) : note_(*note), writable_(note), database_(database) {}

  // In a selection: whether the note of that UNID was selected. Without it none was.
  using Selected = std::function<bool(const Unid&)>;
  void setSelected(Selected selected) { selected_ = std::move(selected); }

  bool item(const formula::Name& name, formula::Value& value) const override;
  QStringList itemNames() const override;
  QStringList authorItems() const override;
  // A new item is a summary item. Of several items with the name the first stays.
  void setItem(const QString& name, const formula::Value& value) override;
  void removeItem(const QString& name) override;
  formula::DocumentProperties properties() const override;
  QVector<formula::Attachment> attachments() const override;
  QString richText(const formula::Name& name) const override;
  bool respondsToSelected(bool everyLevel) const override;

 private:
  bool visible(const Item& item) const {
    return items_ == Items::All || (item.flags & itemflag::Summary) != 0;
  }
  const Item* find(QStringView name) const;
  // Each once, as it stands first.
  template <class Wanted>
  QStringList namesOf(const Wanted& wanted) const;
  Note& writable() const;

  const Note& note_;
  Note* writable_ = nullptr;
  const Database* database_;
  Items items_ = Items::All;
  Selected selected_;
};

// The document that a note answers: as its header says, or else its item $REF. Null for a main document.
Unid parentOf(const Note& note);
Unid parentOf(const PackedNote& note);

// What the two kinds of documents say alike. The size is that of all items.
formula::DocumentProperties propertiesOf(const NoteHeader& header, const Unid& parent, qint64 size);
// Header, items with their names, and attached files.
class NoteSize {
 public:
  // The length of the name in characters.
  void add(qsizetype nameLength, QByteArrayView value, bool isFile);
  qint64 bytes() const { return bytes_; }

 private:
  qint64 bytes_ = 100;
};
// Whether the note of that parent was selected, or, with every level, one further up; the database, which may
// be null, tells the parents of parents.
bool answersSelected(Unid parent, const EvaluatedNote::Selected& selected, const Database* database,
                     bool everyLevel);

}  // namespace lens

// An item of an open document, by its number: what the item's own object shares with those that walk over
// its text and search in it.
#pragma once

#include "embedded/model/open_note.h"

namespace lens {

class RichText;

class OpenItem {
 public:
  OpenItem(std::shared_ptr<OpenNote> note, quint32 number) : note_(std::move(note)), number_(number) {}

  const std::shared_ptr<OpenNote>& note() const { return note_; }
  const QString& databasePath() const { return note_->database->place.path; }
  // Raises once the item or its document was removed.
  Item& item() const;
  // What the item holds now; raises once it holds a plain value too. Changes stay in memory until the
  // document is saved.
  RichText richText() const;
  void setRichText(const RichText& text) const;
  // The attached files that stand in it, in their order; raises as richText() does.
  QVector<FileObject> shownFiles() const;

 private:
  const Item& richItem() const;

  std::shared_ptr<OpenNote> note_;
  quint32 number_;
};

}  // namespace lens

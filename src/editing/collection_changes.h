// The changes that a run makes to each document of the collection, a class for each.
//
// The paths of one document (field_addition.h, field_overwriting.h, search_replace.h) do other things on
// purpose: they write the flags, refuse what is there already, say what they do not support. Here nobody
// watches: flags are never set, an existing item is replaced, what is not supported is silent and the
// document is saved all the same. Lines, dates, numbers and places are read by the same rules.
#pragma once

#include "shell/desk.h"
#include "shell/error_modes.h"

namespace lens {

// One change for a whole run: with the trap off, a failing statement leaves in it what the document before
// had.
class CollectionChange {
 public:
  enum class Run { GoesOn, Ends };

  explicit CollectionChange(Desk& desk) : desk_(desk) {}
  virtual ~CollectionChange() = default;
  Q_DISABLE_COPY(CollectionChange)

  // Changes the current document and saves it. The steps are those of the run.
  virtual Run change(Statements& step) = 0;

 protected:
  Desk& desk_;
};

// What the changes of one named item share.
class CollectionItemChange : public CollectionChange {
 public:
  CollectionItemChange(Desk& desk, const QString& name) : CollectionChange(desk), name_(name) {}

 protected:
  void removeItem(Statements& step);
  void fetchItem(Statements& step);
  void replaceValue(Statements& step, const Value& value);
  void writeDates(Statements& step, const QString& content);
  void save(Statements& step);

  const QString name_;
  NotesItem item_;
  int type_ = 0;
};

class CollectionDeletion : public CollectionItemChange {
 public:
  using CollectionItemChange::CollectionItemChange;
  Run change(Statements& step) override;
};

// A new item of the type that the text tells, with the content box as its value. An item that is there goes
// first, and the document is saved without it.
class CollectionAddition : public CollectionItemChange {
 public:
  CollectionAddition(Desk& desk, const QString& name, const QString& typeText)
      : CollectionItemChange(desk, name), typeText_(typeText) {}
  Run change(Statements& step) override;

 private:
  void addValue(Statements& step);
  void addLines(Statements& step, const QString& content);

  const QString typeText_;
};

// The item's value, by its own type; in rich text the texts of the window are replaced. A document without
// the item is left alone.
class CollectionOverwriting : public CollectionItemChange {
 public:
  CollectionOverwriting(Desk& desk, const QString& name, const QString& content)
      : CollectionItemChange(desk, name), content_(content) {}
  Run change(Statements& step) override;

 private:
  void overwriteValue(Statements& step);
  void overwriteText(Statements& step);
  void overwriteNumbers(Statements& step);
  void replaceInText(Statements& step);

  const QString content_;
  Value values_;
};

// All items of the document, with the texts of the window, which are read anew for each document and item. A
// document without a hit is not saved. Without both texts the run ends in a box.
class CollectionReplacement : public CollectionChange {
 public:
  using CollectionChange::CollectionChange;
  Run change(Statements& step) override;

 private:
  bool replaceInItem(Statements& step, const NotesItem& item);
};

}  // namespace lens

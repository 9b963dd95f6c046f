#include "editing/collection_changes.h"

#include "editing/place_replacement.h"
#include "editing/rich_text_replacement.h"
#include "editing/type_number.h"
#include "editing/value_lines.h"
#include "notes/literals.h"
#include "notes/numbers.h"
#include "shell/exact_texts.h"

namespace lens {

void CollectionItemChange::removeItem(Statements& step) {
  step([&] { desk_.state.gDoc.removeItem(name_); });
}

void CollectionItemChange::fetchItem(Statements& step) {
  step([&] { item_ = desk_.state.gDoc.firstItem(name_); });
}

void CollectionItemChange::replaceValue(Statements& step, const Value& value) {
  step([&] { desk_.state.gDoc.replaceItemValue(name_, value); });
}

void CollectionItemChange::writeDates(Statements& step, const QString& content) {
  replaceValue(step, Value::array(dateLines(step, content, desk_.host.regional())));
}

void CollectionItemChange::save(Statements& step) {
  step([&] { desk_.state.gDoc.save(true, false); });
}

CollectionChange::Run CollectionDeletion::change(Statements& step) {
  removeItem(step);
  save(step);
  return Run::GoesOn;
}

CollectionChange::Run CollectionAddition::change(Statements& step) {
  if (step.holds([&] { return desk_.state.gDoc.hasItem(name_); })) {
    removeItem(step);
    save(step);
  }
  step([&] { type_ = typeNumber(typeText_); });
  addValue(step);
  save(step);
  return Run::GoesOn;
}

void CollectionAddition::addValue(Statements& step) {
  const QString content = desk_.form.txtFieldContent->text();
  switch (type_) {
    case itemcode::RichText:
      step([&] { item_ = desk_.state.gDoc.createRichTextItem(name_); });
      step([&] { NotesRichTextItem(item_).appendText(content); });
      break;
    case itemcode::Number:
      step([&] { desk_.state.gDoc.replaceItemValue(name_, toInt32(content)); });
      break;
    case itemcode::Date:
      writeDates(step, content);
      break;
    case itemcode::Readers:
      addLines(step, content);
      fetchItem(step);
      step([&] { item_.setReaders(true); });
      break;
    case itemcode::Names:
    case itemcode::Authors:
    case itemcode::Text:
      addLines(step, content);
      break;
  }
}

void CollectionAddition::addLines(Statements& step, const QString& content) {
  QStringList lines;
  step([&] { lines = textLines(content); });
  replaceValue(step, valueList(lines));
}

CollectionChange::Run CollectionOverwriting::change(Statements& step) {
  fetchItem(step);
  if (item_.isNothing()) return Run::GoesOn;
  step([&] { type_ = item_.typeCode(); });
  overwriteValue(step);
  save(step);
  return Run::GoesOn;
}

void CollectionOverwriting::overwriteValue(Statements& step) {
  switch (type_) {
    case itemcode::Text:
    case itemcode::Names:
    case itemcode::Readers:
    case itemcode::Authors:
      overwriteText(step);
      break;
    case itemcode::Date:
      writeDates(step, content_);
      break;
    case itemcode::RichText:
      replaceInText(step);
      break;
    case itemcode::Number:
      overwriteNumbers(step);
      break;
  }
}

// A line that cannot be cut has no value, and a list with such a place is refused.
void CollectionOverwriting::overwriteText(Statements& step) {
  QStringList lines;
  if (!step([&] { lines = overwriteLines(content_); })) return;
  replaceValue(step, lines.isEmpty() ? Value(content_) : valueList(lines));
}

void CollectionOverwriting::overwriteNumbers(Statements& step) {
  step([&] { values_ = desk_.state.gDoc.itemValue(name_); });
  QVector<Value> places;
  if (step([&] { places = values_.values(); })) {
    numberLines(step, content_, places);
    values_ = Value::array(places);
  }
  replaceValue(step, values_);
}

void CollectionOverwriting::replaceInText(Statements& step) {
  const QString search = desk_.form.txtSearch->text(), replace = desk_.form.txtReplace->text();
  if (search.isEmpty() && replace.isEmpty()) return;
  replaceInRichText(step, NotesRichTextItem(item_), search, replace);
}

CollectionChange::Run CollectionReplacement::change(Statements& step) {
  if (desk_.form.txtSearch->text().isEmpty() || desk_.form.txtReplace->text().isEmpty()) {
    desk_.host.messageBox(exact::kNoSearchTexts, box::Information, u"Replace all fields"_s);
    return Run::Ends;
  }
  bool changed = false;
  const Value items = desk_.state.gDoc.items();
  for (const Value& item : items.values()) changed = replaceInItem(step, NotesItem(item.object())) || changed;
  if (changed) {
    desk_.state.gDoc.save(true, false, true);
    desk_.state.gDoc.release();
  }
  return Run::GoesOn;
}

// True when the item was changed. Rich text is searched without regard to case, anything else exactly.
bool CollectionReplacement::replaceInItem(Statements& step, const NotesItem& item) {
  const int type = item.typeCode();
  const Replacement replacement{desk_.form.txtSearch->text(), desk_.form.txtReplace->text()};
  if (type == itemcode::RichText)
    return replaceInRichText(step, NotesRichTextItem(item), replacement.search, replacement.replace);
  const Value stored = item.values();
  if (!stored.isArray()) return false;
  QVector<Value> values = stored.values();
  if (!replaceInValues(values, Places::AllButLast, type, replacement, desk_.host.regional())) return false;
  const QString name = item.name();
  step([&] { desk_.state.gDoc.replaceItemValue(name, Value::array(values)); });
  return true;
}

}  // namespace lens

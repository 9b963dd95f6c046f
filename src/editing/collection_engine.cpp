#include "editing/collection_engine.h"

#include "editing/place_replacement.h"
#include "editing/rich_text_replacement.h"
#include "editing/type_number.h"
#include "editing/value_lines.h"
#include "notes/literals.h"
#include "notes/numbers.h"
#include "shell/exact_texts.h"
#include "shell/row_texts.h"

namespace lens {

CollectionEngine::CollectionEngine(Desk& desk) : desk_(desk) {
  desk_.form.cmdDelFieldInCol->click = [this] { cmdDelFieldInCol_Click(); };
  desk_.form.cmdAddFieldInColl->click = [this] { cmdAddFieldInColl_Click(); };
  desk_.form.cmdWriteDocsInColl->click = [this] { cmdWriteDocsInColl_Click(); };
  desk_.form.cmdReplAllFieldsInColl->click = [this] { cmdReplAllFieldsInColl_Click(); };
  desk_.form.cmdRemColl->click = [this] { cmdRemColl_Click(); };
}

void CollectionEngine::cmdDelFieldInCol_Click() {
  const QString name = desk_.form.txtFieldName->text();
  if (name.isEmpty()) return;
  procCollection(Delete, name, QString());
  desk_.form.cmdidList->raiseClick();
}

void CollectionEngine::cmdAddFieldInColl_Click() {
  const QString name = desk_.form.txtFieldName->text();
  if (name.isEmpty()) return;
  procCollection(Add, name, typeText(desk_.form.cmbFieldType->text()));
  desk_.form.cmdidList->raiseClick();
}

void CollectionEngine::cmdWriteDocsInColl_Click() {
  const QString name = desk_.form.txtFieldName->text();
  if (name.isEmpty()) return;
  procCollection(Overwrite, name, desk_.form.txtFieldContent->text());
  desk_.form.cmdidList->raiseClick();
}

void CollectionEngine::cmdReplAllFieldsInColl_Click() {
  procCollection(ReplaceAll, desk_.form.txtSearch->text(), desk_.form.txtReplace->text());
  desk_.form.cmdidList->raiseClick();
}

void CollectionEngine::procCollection(int mode, const QString& fieldName, const QString& fieldValue) {
  trapped(desk_.host, {u"procCollection"_s, u"Modul Globals"_s}, [&] {
    desk_.host.setPointer(pointer::Hourglass);
    const Int16 last = desk_.form.idList->listCount() - 1;
    Work work;
    for (Int16 index; index <= last; index += 1) {
      if (index >= desk_.form.idList->listCount()) break;
      const QString noteId = listedNoteId(desk_.form.idList->list(index));
      work.step([&] { desk_.state.gDoc = desk_.state.gDb.documentById(noteId); });
      if (desk_.state.gDoc.isNothing()) continue;
      if (changeDocument(work, mode, fieldName, fieldValue) == Run::Ends) break;
    }
  });
  endOfRun();
}

CollectionEngine::Run CollectionEngine::changeDocument(Work& work, int mode, const QString& name,
                                                       const QString& value) {
  switch (mode) {
    case Delete:
      deleteItem(work, name);
      break;
    case Add:
      addItem(work, name, value);
      break;
    case Overwrite:
      overwriteItem(work, name, value);
      break;
    case ReplaceAll:
      return replaceInDocument(work);
  }
  return Run::GoesOn;
}

// Without a trap, also after a failure: an empty list has no entry to mark, and that goes to the caller.
void CollectionEngine::endOfRun() {
  desk_.host.setPointer(pointer::Default);
  desk_.state.gDoc.release();
  desk_.routines.playDoneSound();
  desk_.form.idList->setSelected(0, true);
  desk_.form.txtFieldContent->setText(QString());
}

void CollectionEngine::saveDocument(Work& work) {
  work.step([&] { desk_.state.gDoc.save(true, false); });
}

void CollectionEngine::fetchItem(Work& work, const QString& name) {
  work.step([&] { work.item = desk_.state.gDoc.firstItem(name); });
}

void CollectionEngine::replaceValue(Work& work, const QString& name, const Value& value) {
  work.step([&] { desk_.state.gDoc.replaceItemValue(name, value); });
}

void CollectionEngine::writeDates(Work& work, const QString& name, const QString& content) {
  replaceValue(work, name, Value::array(dateLines(work.step, content, desk_.host.regional())));
}

void CollectionEngine::deleteItem(Work& work, const QString& name) {
  work.step([&] { desk_.state.gDoc.removeItem(name); });
  saveDocument(work);
}

// An item that is there goes first, and the document is saved without it.
void CollectionEngine::addItem(Work& work, const QString& name, const QString& typeText) {
  if (work.step.holds([&] { return desk_.state.gDoc.hasItem(name); })) deleteItem(work, name);
  work.step([&] { work.type = typeNumber(typeText); });
  addValue(work, name);
  saveDocument(work);
}

void CollectionEngine::addValue(Work& work, const QString& name) {
  const QString content = desk_.form.txtFieldContent->text();
  switch (work.type) {
    case itemcode::RichText:
      work.step([&] { work.item = desk_.state.gDoc.createRichTextItem(name); });
      work.step([&] { NotesRichTextItem(work.item).appendText(content); });
      break;
    case itemcode::Number:
      work.step([&] { desk_.state.gDoc.replaceItemValue(name, toInt32(content)); });
      break;
    case itemcode::Date:
      writeDates(work, name, content);
      break;
    case itemcode::Readers:
      addLines(work, name, content);
      fetchItem(work, name);
      work.step([&] { work.item.setReaders(true); });
      break;
    case itemcode::Names:
    case itemcode::Authors:
    case itemcode::Text:
      addLines(work, name, content);
      break;
  }
}

void CollectionEngine::addLines(Work& work, const QString& name, const QString& content) {
  QStringList lines;
  work.step([&] { lines = textLines(content); });
  replaceValue(work, name, valueList(lines));
}

// A document without the item is left alone.
void CollectionEngine::overwriteItem(Work& work, const QString& name, const QString& content) {
  fetchItem(work, name);
  if (work.item.isNothing()) return;
  work.step([&] { work.type = work.item.typeCode(); });
  overwriteValue(work, name, content);
  saveDocument(work);
}

void CollectionEngine::overwriteValue(Work& work, const QString& name, const QString& content) {
  switch (work.type) {
    case itemcode::Text:
    case itemcode::Names:
    case itemcode::Readers:
    case itemcode::Authors: {
      // A line that cannot be cut has no value, and a list with such a place is refused.
      QStringList lines;
      if (!work.step([&] { lines = overwriteLines(content); })) break;
      replaceValue(work, name, lines.isEmpty() ? Value(content) : valueList(lines));
      break;
    }
    case itemcode::Date:
      writeDates(work, name, content);
      break;
    case itemcode::RichText: {
      const QString search = desk_.form.txtSearch->text(), replace = desk_.form.txtReplace->text();
      if (!search.isEmpty() || !replace.isEmpty())
        replaceInRichText(work.step, NotesRichTextItem(work.item), search, replace);
      break;
    }
    case itemcode::Number: {
      work.step([&] { work.values = desk_.state.gDoc.itemValue(name); });
      work.step([&] { work.values = valueList(numberLines(content, work.values.upperBound() + 1)); });
      replaceValue(work, name, work.values);
      break;
    }
  }
}

// A document without a hit is not saved. The texts are read anew for each document and item.
CollectionEngine::Run CollectionEngine::replaceInDocument(Work& work) {
  if (desk_.form.txtSearch->text().isEmpty() || desk_.form.txtReplace->text().isEmpty()) {
    desk_.host.messageBox(exact::kNoSearchTexts, box::Information, u"Replace all fields"_s);
    return Run::Ends;
  }
  bool changed = false;
  const Value items = desk_.state.gDoc.items();
  for (const Value& item : items.values()) changed = replaceInItem(work, NotesItem(item.object())) || changed;
  if (changed) {
    desk_.state.gDoc.save(true, false, true);
    desk_.state.gDoc.release();
  }
  return Run::GoesOn;
}

// True when the item was changed. Rich text is searched without regard to case, anything else exactly.
bool CollectionEngine::replaceInItem(Work& work, const NotesItem& item) {
  const int type = item.typeCode();
  const Replacement replacement{desk_.form.txtSearch->text(), desk_.form.txtReplace->text()};
  if (type == itemcode::RichText)
    return replaceInRichText(work.step, NotesRichTextItem(item), replacement.search, replacement.replace);
  const Value stored = item.values();
  if (!stored.isArray()) return false;
  QVector<Value> values = stored.values();
  if (!replaceInValues(values, Places::AllButLast, type, replacement, desk_.host.regional())) return false;
  replaceValue(work, item.name(), Value::array(values));
  return true;
}

void CollectionEngine::cmdRemColl_Click() {
  if (desk_.form.idList->listIndex() < 0) return;
  for (int row = 0; row < desk_.form.idList->listCount();) {
    if (desk_.form.idList->selected(row)) {
      desk_.form.idList->removeItem(row);
      desk_.form.lblCounter->setText(QString::number(desk_.form.idList->listCount()));
    } else {
      ++row;
    }
  }
  desk_.form.idList->refresh();
}

}  // namespace lens

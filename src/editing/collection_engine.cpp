#include "editing/collection_engine.h"

#include "editing/type_number.h"
#include "notes/literals.h"
#include "notes/numbers.h"
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
  trapped(desk_.host, {u"procCollection"_s, u"Modul Globals"_s},
          [&] { changeDocuments(changeOf(mode, fieldName, fieldValue).get()); });
  endOfRun();
}

std::unique_ptr<CollectionChange> CollectionEngine::changeOf(int mode, const QString& name,
                                                             const QString& value) {
  switch (mode) {
    case Delete:
      return std::make_unique<CollectionDeletion>(desk_, name);
    case Add:
      return std::make_unique<CollectionAddition>(desk_, name, value);
    case Overwrite:
      return std::make_unique<CollectionOverwriting>(desk_, name, value);
    case ReplaceAll:
      return std::make_unique<CollectionReplacement>(desk_);
  }
  return nullptr;
}

void CollectionEngine::changeDocuments(CollectionChange* change) {
  desk_.host.setPointer(pointer::Hourglass);
  const ListBox& list = *desk_.form.idList;
  const Int16 last = list.listCount() - 1;
  Statements step;
  for (Int16 index; index <= last; index += 1) {
    if (index >= list.listCount()) break;
    step([&] { desk_.state.gDoc = documentOf(list.list(index)); });
    if (desk_.state.gDoc.isNothing() || !change) continue;
    if (change->change(step) == CollectionChange::Run::Ends) break;
  }
}

// What stands behind a mark may be the end of a name: it is refused as the client refuses an ID.
NotesDocument CollectionEngine::documentOf(const QString& row) {
  const QString noteId = listedNoteId(row);
  if (noteId != row && !isWholeNoteId(noteId)) throw RuntimeError(err::TypeMismatch);
  return desk_.state.gDb.documentById(noteId);
}

// Without a trap, also after a failure: an empty list has no entry to mark, and that goes to the caller.
void CollectionEngine::endOfRun() {
  desk_.host.setPointer(pointer::Default);
  desk_.state.gDoc.release();
  desk_.routines.playDoneSound();
  desk_.form.idList->setSelected(0, true);
  desk_.form.txtFieldContent->setText(QString());
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

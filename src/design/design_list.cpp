#include "design/design_list.h"

#include "controls/keys.h"
#include "design/note_listing.h"
#include "notes/literals.h"
#include "notes/numbers.h"
#include "shell/error_modes.h"
#include "shell/exact_texts.h"
#include "shell/row_texts.h"
#include "shell/text_routines.h"

namespace lens {

DesignList::DesignList(Desk& desk) : desk_(desk) {
  for (const DesignClass& row : designClasses()) desk_.form.lstDesigns->addItem(row.property);
  desk_.form.lstDesigns->dblClick = [this] { lstDesigns_DblClick(); };
  desk_.form.lstDesigns->keyDown = [this](int code, int) { lstDesigns_KeyDown(code); };
  desk_.form.lstDesigns->keyPress = [this](int& key) { lstDesigns_KeyPress(key); };
}

// A failure leaves the hourglass and the rows so far.
void DesignList::lstDesigns_DblClick() {
  trapped(desk_.host, {u"lstDesigns_DblClick"_s}, [this] {
    desk_.host.setPointer(pointer::Hourglass);
    desk_.state.gSession = NotesSession::ofClient(desk_.notes);
    desk_.state.gDb = desk_.state.gSession.currentDatabase();
    if (desk_.state.gDb.isNothing()) {
      desk_.host.messageBox(exact::kNoDatabase);
      desk_.host.setPointer(pointer::Default);
      return;
    }
    listClass();
    desk_.host.setPointer(pointer::Default);
    desk_.state.gDocKind = u"DESIGN"_s;
  });
}

void DesignList::listClass() {
  desk_.state.gDesignStop = false;
  desk_.form.idList->clear();
  desk_.form.fldList->clear();
  desk_.form.setWindowTitle(u"Documents in: "_s + captionPlace(desk_.routines, desk_.state.gDb));
  desk_.state.gNoteColl = desk_.state.gDb.createNoteCollection(false);
  desk_.state.gNoteColl.selectAllNotes(false);
  switchChosenClassOn(designClasses(), desk_.form, desk_.state, desk_.routines);
  desk_.state.gNoteColl.buildCollection();
  listNotes();
  desk_.state.gDesignStop = false;
  desk_.form.idList->refresh();
  // Once more: whatever refreshing takes in must not stop the next listing.
  desk_.state.gDesignStop = false;
  desk_.form.lblCounter->setText(QString::number(Int16(desk_.form.idList->listCount())));
}

// Database, collection and document are those of the globals in each turn, whoever has set them since.
void DesignList::listNotes() {
  QString id = desk_.state.gNoteColl.firstNoteId();
  const qint64 count = roundToInt32(desk_.state.gNoteColl.count());
  for (qint64 i = 1; i <= count; ++i) {
    desk_.state.gDoc = desk_.state.gDb.documentById(id);
    addRow();
    id = desk_.state.gNoteColl.nextNoteId(id);
    desk_.host.yield();
    if (desk_.state.gDesignStop) return;
  }
}

// Names may carry aliases; whoever reads the row cuts them.
void DesignList::addRow() {
  const QString id = desk_.state.gDoc.noteId();
  if (id.isEmpty()) return;
  const auto has = [this](const QString& item) { return desk_.state.gDoc.hasItem(item); };
  if (has(kNameItem))
    desk_.form.idList->addItem(
        namedNoteRow(firstValueText(desk_.state.gDoc, kNameItem, desk_.host.regional()), id));
  else if (has(kTitleItem))
    desk_.form.idList->addItem(
        namedNoteRow(firstValueText(desk_.state.gDoc, kTitleItem, desk_.host.regional()), id));
  else
    desk_.form.idList->addItem(eightDigits(id));
}

void DesignList::lstDesigns_KeyDown(int code) {
  if (code == key::Escape) desk_.state.gDesignStop = true;
}

void DesignList::lstDesigns_KeyPress(int key) {
  if (key == key::Escape) desk_.state.gDesignStop = true;
}

}  // namespace lens

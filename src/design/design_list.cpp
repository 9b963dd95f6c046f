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

DesignList::DesignList(Form1& form, Globals& state, Gateway& notes, Host& host, Routines& routines)
    : form_(form), state_(state), notes_(notes), host_(host), routines_(routines) {
  for (const DesignClass& row : designClasses()) form_.lstDesigns->addItem(row.property);
  form_.lstDesigns->dblClick = [this] { lstDesigns_DblClick(); };
  form_.lstDesigns->keyDown = [this](int code, int) { lstDesigns_KeyDown(code); };
  form_.lstDesigns->keyPress = [this](int& key) { lstDesigns_KeyPress(key); };
}

// A failure leaves the hourglass and the rows so far.
void DesignList::lstDesigns_DblClick() {
  trapped(host_, {u"lstDesigns_DblClick"_s}, [this] {
    host_.setPointer(pointer::Hourglass);
    state_.gSession = NotesSession::ofClient(notes_);
    state_.gDb = state_.gSession.currentDatabase();
    if (state_.gDb.isNothing()) {
      host_.messageBox(exact::kNoDatabase);
      host_.setPointer(pointer::Default);
      return;
    }
    listClass();
    host_.setPointer(pointer::Default);
    state_.gDocKind = u"DESIGN"_s;
  });
}

void DesignList::listClass() {
  state_.gDesignStop = false;
  form_.idList->clear();
  form_.fldList->clear();
  form_.setWindowTitle(u"Documents in: "_s + captionPlace(routines_, state_.gDb));
  state_.gNoteColl = state_.gDb.createNoteCollection(false);
  state_.gNoteColl.selectAllNotes(false);
  switchChosenClassOn(designClasses(), form_, state_, routines_);
  state_.gNoteColl.buildCollection();
  listNotes();
  state_.gDesignStop = false;
  form_.idList->refresh();
  // Once more: whatever refreshing takes in must not stop the next listing.
  state_.gDesignStop = false;
  form_.lblCounter->setText(QString::number(Int16(form_.idList->listCount())));
}

// Database, collection and document are those of the globals in each turn, whoever has set them since.
void DesignList::listNotes() {
  QString id = state_.gNoteColl.firstNoteId();
  const qint64 count = roundToInt32(state_.gNoteColl.count());
  for (qint64 i = 1; i <= count; ++i) {
    state_.gDoc = state_.gDb.documentById(id);
    addRow();
    id = state_.gNoteColl.nextNoteId(id);
    host_.yield();
    if (state_.gDesignStop) return;
  }
}

// Names may carry aliases; whoever reads the row cuts them.
void DesignList::addRow() {
  const QString id = state_.gDoc.noteId();
  if (id.isEmpty()) return;
  const auto has = [this](const QString& item) { return state_.gDoc.hasItem(item); };
  if (has(kNameItem))
    form_.idList->addItem(namedNoteRow(firstValueText(state_.gDoc, kNameItem, host_.regional()), id));
  else if (has(kTitleItem))
    form_.idList->addItem(namedNoteRow(firstValueText(state_.gDoc, kTitleItem, host_.regional()), id));
  else
    form_.idList->addItem(eightDigits(id));
}

void DesignList::lstDesigns_KeyDown(int code) {
  if (code == key::Escape) state_.gDesignStop = true;
}

void DesignList::lstDesigns_KeyPress(int key) {
  if (key == key::Escape) state_.gDesignStop = true;
}

}  // namespace lens

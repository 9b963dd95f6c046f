#include "design/design_docs.h"

#include <cmath>

#include "design/note_listing.h"
#include "notes/literals.h"
#include "notes/numbers.h"
#include "shell/client_facts.h"
#include "shell/error_modes.h"
#include "shell/exact_texts.h"
#include "shell/text_routines.h"

namespace lens {
namespace {

const QString kProfileName = u"$profile_"_s;

// A counter of 32 bits that says so when it is full.
qint32 oneMore(qint32 counter) {
  return roundToInt32(double(counter) + 1);
}

}  // namespace

DesignDocs::DesignDocs(Form1& form, Globals& state, Host& host, Routines& routines)
    : form_(form), state_(state), host_(host), routines_(routines) {}

void DesignDocs::cmdDesignDocs_Click() {
  trapped(host_, {u"cmdDesignDocs_Click"_s}, [this] {
    state_.gDb = state_.gSession.currentDatabase();
    if (state_.gDb.isNothing()) {
      host_.messageBox(exact::kNoDatabase);
      return;
    }
    form_.idList->clear();
    form_.fldList->clear();
    form_.setWindowTitle(u"Documents in: "_s + captionPlace(routines_, state_.gDb));
    if (hasNoteCollections(state_.gSession))
      listCollection();
    else
      scanNoteIds();
  });
}

// The ID comes first in these rows, so they carry none for those who look behind a mark.
QString DesignDocs::olderRow(const QString& noteId, const QString& name) const {
  return eightDigits(noteId) + u' ' + name;
}

// Empty where the item has no value: these listings go on, while others end there.
QString DesignDocs::nameOf(const NotesDocument& document) const {
  const Value names = document.itemValue(kNameItem);
  return names.isEmpty() ? QString() : textOf(names.at(0), host_.regional());
}

void DesignDocs::listCollection() {
  state_.gNoteColl = state_.gDb.createNoteCollection(false);
  switchChosenClassOn(designDocsClasses(), form_, state_, routines_);
  state_.gNoteColl.buildCollection();
  QString id = state_.gNoteColl.firstNoteId();
  const qint64 count = roundToInt32(state_.gNoteColl.count());
  for (qint64 i = 1; i <= count; ++i) {
    state_.gDoc = state_.gDb.documentById(id);
    const QString noteId = state_.gDoc.noteId();
    if (!noteId.isEmpty()) {
      form_.idList->addItem(olderRow(noteId, nameOf(state_.gDoc)));
    }
    id = state_.gNoteColl.nextNoteId(id);
  }
  form_.idList->refresh();
}

// Every number is tried, not only those that the client issues. The boxes show how far it came, and the
// next scan begins there.
void DesignDocs::scanNoteIds() {
  form_.cmdStop->setVisible(true);
  form_.lfdIDNum->setVisible(true);
  form_.txtLfdNr->setVisible(true);
  form_.Label4->setVisible(true);
  state_.gIdScanRunning = true;
  const double shown = std::abs(numberPrefix(form_.txtLfdNr->text()));
  qint32 counter = shown > 0 ? roundToInt32(shown) : 1;
  while (state_.gIdScanRunning) {
    tryNoteId(counter);
    state_.gDoc.release();
    host_.yield();
    counter = oneMore(counter);
  }
}

// The ID is one ahead of the counter that is shown.
void DesignDocs::tryNoteId(qint32 counter) {
  const QString id = eightDigits(QString::number(oneMore(counter), 16).toUpper());
  form_.lfdIDNum->setText(id);
  form_.txtLfdNr->setText(QString::number(counter));
  form_.lfdIDNum->repaint();
  state_.gDoc = state_.gDb.documentById(id);
  if (state_.gDoc.isNothing() || !state_.gDoc.hasItem(kNameItem)) return;
  const QString name = nameOf(state_.gDoc);
  if (!name.startsWith(kProfileName)) return;
  form_.idList->addItem(olderRow(id, name));
  form_.idList->refresh();
}

}  // namespace lens

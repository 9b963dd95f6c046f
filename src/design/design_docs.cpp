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

DesignDocs::DesignDocs(Desk& desk) : desk_(desk) {}

void DesignDocs::cmdDesignDocs_Click() {
  trapped(desk_.host, {u"cmdDesignDocs_Click"_s}, [this] {
    desk_.state.gDb = desk_.state.gSession.currentDatabase();
    if (desk_.state.gDb.isNothing()) {
      desk_.host.messageBox(exact::kNoDatabase);
      return;
    }
    desk_.form.idList->clear();
    desk_.form.fldList->clear();
    desk_.form.setWindowTitle(u"Documents in: "_s + captionPlace(desk_.routines, desk_.state.gDb));
    if (hasNoteCollections(desk_.state.gSession))
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
  return names.isEmpty() ? QString() : textOf(names.at(0), desk_.host.regional());
}

void DesignDocs::listCollection() {
  desk_.state.gNoteColl = desk_.state.gDb.createNoteCollection(false);
  switchChosenClassOn(designDocsClasses(), desk_.form, desk_.state, desk_.routines);
  desk_.state.gNoteColl.buildCollection();
  QString id = desk_.state.gNoteColl.firstNoteId();
  const qint64 count = roundToInt32(desk_.state.gNoteColl.count());
  for (qint64 i = 1; i <= count; ++i) {
    desk_.state.gDoc = desk_.state.gDb.documentById(id);
    const QString noteId = desk_.state.gDoc.noteId();
    if (!noteId.isEmpty()) {
      desk_.form.idList->addItem(olderRow(noteId, nameOf(desk_.state.gDoc)));
    }
    id = desk_.state.gNoteColl.nextNoteId(id);
  }
  desk_.form.idList->refresh();
}

// Every number is tried, not only those that the client issues. The boxes show how far it came, and the
// next scan begins there.
void DesignDocs::scanNoteIds() {
  desk_.form.cmdStop->setVisible(true);
  desk_.form.lfdIDNum->setVisible(true);
  desk_.form.txtLfdNr->setVisible(true);
  desk_.form.Label4->setVisible(true);
  desk_.state.gIdScanRunning = true;
  const double shown = std::abs(numberPrefix(desk_.form.txtLfdNr->text()));
  qint32 counter = shown > 0 ? roundToInt32(shown) : 1;
  while (desk_.state.gIdScanRunning) {
    tryNoteId(counter);
    desk_.state.gDoc.release();
    desk_.host.yield();
    counter = oneMore(counter);
  }
}

// The ID is one ahead of the counter that is shown.
void DesignDocs::tryNoteId(qint32 counter) {
  const QString id = eightDigits(QString::number(oneMore(counter), 16).toUpper());
  desk_.form.lfdIDNum->setText(id);
  desk_.form.txtLfdNr->setText(QString::number(counter));
  desk_.form.lfdIDNum->repaint();
  desk_.state.gDoc = desk_.state.gDb.documentById(id);
  if (desk_.state.gDoc.isNothing() || !desk_.state.gDoc.hasItem(kNameItem)) return;
  const QString name = nameOf(desk_.state.gDoc);
  if (!name.startsWith(kProfileName)) return;
  desk_.form.idList->addItem(olderRow(id, name));
  desk_.form.idList->refresh();
}

}  // namespace lens

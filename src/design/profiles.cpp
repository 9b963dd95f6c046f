#include "design/profiles.h"

#include "design/note_listing.h"
#include "notes/literals.h"
#include "notes/numbers.h"
#include "shell/exact_texts.h"
#include "shell/row_texts.h"

namespace lens {

Profiles::Profiles(Desk& desk) : desk_(desk) {
  desk_.form.cmdGetProfiels->click = [this] { cmdGetProfiels_Click(); };
}

void Profiles::cmdGetProfiels_Click() {
  Told step(desk_.host, {u"cmdGetProfiels_Click"_s});
  // A client that does not answer must not leave the listing in the database of before.
  desk_.state.gSession.release();
  desk_.state.gUIWorkspace.release();
  desk_.state.gDb.release();
  step([&] { desk_.state.gSession = NotesSession::ofClient(desk_.notes); });
  step([&] { desk_.state.gDb = desk_.state.gSession.currentDatabase(); });
  if (desk_.state.gDb.isNothing()) {
    desk_.host.messageBox(exact::kNoDatabase);
    return;
  }
  step([&] {
    desk_.form.lastModified->setText(u"Database size: "_s + desk_.state.gDb.sizeText() + u" bytes");
  });
  desk_.form.idList->clear();
  desk_.form.fldList->clear();
  step([&] {
    desk_.form.setWindowTitle(u"PROFILE documents in: "_s + captionPlace(desk_.routines, desk_.state.gDb));
  });
  listProfiles(step);
  desk_.form.idList->refresh();
  step([&] { desk_.form.lblCounter->setText(QString::number(Int16(desk_.form.idList->listCount()))); });
  desk_.state.gDocKind = u"PROFILE"_s;
}

void Profiles::listProfiles(Told& step) {
  NotesDocumentCollection profiles;
  qint64 count = 0;
  step([&] { profiles = desk_.state.gDb.profileDocuments(); });
  step([&] { count = roundToInt32(profiles.count()); });
  // A document that cannot be had must not stand for the one before, nor for what was shown.
  desk_.state.gDoc.release();
  for (qint64 i = 1; i <= count; ++i) {
    if (step([&] { desk_.state.gDoc = profiles.nthDocument(i); })) addRow(step);
    desk_.state.gDoc.release();
  }
}

void Profiles::addRow(Told& step) {
  QString id;
  if (!step.holds([&] {
        id = desk_.state.gDoc.noteId();
        return !id.isEmpty();
      }))
    return;
  step([&] {
    desk_.form.idList->addItem(
        namedNoteRow(firstValueText(desk_.state.gDoc, kNameItem, desk_.host.regional()), id));
  });
}

void Profiles::removeUnprocessedDocuments() {
  const NotesDocumentCollection documents = desk_.state.gDb.unprocessedDocuments();
  if (documents.count() > 0) documents.removeAll(true);
}

}  // namespace lens

#include "design/profiles.h"

#include "design/note_listing.h"
#include "notes/literals.h"
#include "notes/numbers.h"
#include "shell/exact_texts.h"
#include "shell/row_texts.h"

namespace lens {

Profiles::Profiles(Form1& form, Globals& state, Gateway& notes, Host& host, Routines& routines)
    : form_(form), state_(state), notes_(notes), host_(host), routines_(routines) {
  form_.cmdGetProfiels->click = [this] { cmdGetProfiels_Click(); };
}

void Profiles::cmdGetProfiels_Click() {
  Told step(host_, {u"cmdGetProfiels_Click"_s});
  // A client that does not answer must not leave the listing in the database of before.
  state_.gSession.release();
  state_.gUIWorkspace.release();
  state_.gDb.release();
  step([&] { state_.gSession = NotesSession::ofClient(notes_); });
  step([&] { state_.gDb = state_.gSession.currentDatabase(); });
  if (state_.gDb.isNothing()) {
    host_.messageBox(exact::kNoDatabase);
    return;
  }
  step([&] { form_.lastModified->setText(u"Database size: "_s + state_.gDb.sizeText() + u" bytes"); });
  form_.idList->clear();
  form_.fldList->clear();
  step([&] { form_.setWindowTitle(u"PROFILE documents in: "_s + captionPlace(routines_, state_.gDb)); });
  listProfiles(step);
  form_.idList->refresh();
  step([&] { form_.lblCounter->setText(QString::number(Int16(form_.idList->listCount()))); });
  state_.gDocKind = u"PROFILE"_s;
}

void Profiles::listProfiles(Told& step) {
  NotesDocumentCollection profiles;
  qint64 count = 0;
  step([&] { profiles = state_.gDb.profileDocuments(); });
  step([&] { count = roundToInt32(profiles.count()); });
  // A document that cannot be had must not stand for the one before, nor for what was shown.
  state_.gDoc.release();
  for (qint64 i = 1; i <= count; ++i) {
    if (step([&] { state_.gDoc = profiles.nthDocument(i); })) addRow(step);
    state_.gDoc.release();
  }
}

void Profiles::addRow(Told& step) {
  QString id;
  if (!step.holds([&] {
        id = state_.gDoc.noteId();
        return !id.isEmpty();
      }))
    return;
  step([&] {
    form_.idList->addItem(namedNoteRow(firstValueText(state_.gDoc, kNameItem, host_.regional()), id));
  });
}

void Profiles::removeUnprocessedDocuments() {
  const NotesDocumentCollection documents = state_.gDb.unprocessedDocuments();
  if (documents.count() > 0) documents.removeAll(true);
}

}  // namespace lens

#include "design/profiles.h"

#include "design/note_listing.h"
#include "notes/numbers.h"
#include "shell/exact_texts.h"
#include "shell/list_rows.h"

namespace lens {

Profiles::Profiles(Form1& form, Globals& state, Gateway& notes, Host& host, Routines& routines)
    : form_(form), state_(state), notes_(notes), host_(host), routines_(routines) {
  form_.cmdGetProfiels->click = [this] { cmdGetProfiels_Click(); };
}

void Profiles::cmdGetProfiels_Click() {
  Told step(host_, {QStringLiteral("cmdGetProfiels_Click")});
  // A client that does not answer must not leave the listing in the database of before.
  state_.gSession.release();
  state_.gUIWorkspace.release();
  state_.gDb.release();
  step([&] { state_.gSession = notes_.create(QStringLiteral("Notes.NotesSession")); });
  step([&] { state_.gDb = state_.gSession.get(QStringLiteral("CURRENTDATABASE")).object(); });
  if (state_.gDb.isNothing()) {
    host_.messageBox(exact::kNoDatabase);
    return;
  }
  step([&] {
    form_.lastModified->setText(QStringLiteral("Database size: ") +
                                state_.gDb.get(QStringLiteral("Size")).text() + u" bytes");
  });
  form_.idList->clear();
  form_.fldList->clear();
  step([&] {
    form_.setWindowTitle(QStringLiteral("PROFILE documents in: ") + captionPlace(routines_, state_.gDb));
  });
  listProfiles(step);
  form_.idList->refresh();
  step([&] { form_.lblCounter->setText(QString::number(Int16(form_.idList->listCount()))); });
  state_.gDocKind = QStringLiteral("PROFILE");
}

void Profiles::listProfiles(Told& step) {
  Object profiles;
  qint64 count = 0;
  step([&] { profiles = state_.gDb.call(QStringLiteral("GETPROFILEDOCCOLLECTION")).object(); });
  step([&] { count = roundToInt32(profiles.get(QStringLiteral("count")).number()); });
  // A document that cannot be had must not stand for the one before, nor for what was shown.
  state_.gDoc.release();
  for (qint64 i = 1; i <= count; ++i) {
    if (step([&] { state_.gDoc = profiles.call(QStringLiteral("GETNTHDOCUMENT"), i).object(); }))
      addRow(step);
    state_.gDoc.release();
  }
}

void Profiles::addRow(Told& step) {
  QString id;
  if (!step.holds([&] {
        id = state_.gDoc.get(QStringLiteral("NoteID")).text();
        return !id.isEmpty();
      }))
    return;
  step([&] {
    form_.idList->addItem(namedNoteRow(firstValueText(state_.gDoc, kNameItem, host_.regional()), id));
  });
}

void Profiles::removeUnprocessedDocuments() {
  const Object documents = state_.gDb.get(QStringLiteral("UNPROCESSEDDOCUMENTS")).object();
  if (documents.get(QStringLiteral("count")).number() > 0) documents.call(QStringLiteral("REMOVEALL"), true);
}

}  // namespace lens

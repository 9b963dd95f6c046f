#include "design/deletion.h"

#include "notes/code_page.h"
#include "notes/literals.h"
#include "notes/numbers.h"
#include "shell/error_modes.h"
#include "shell/exact_texts.h"
#include "shell/row_texts.h"

namespace lens {
namespace {

constexpr quint16 kForce = 0x0001, kNoStub = 0x0200;
constexpr qint32 kWithoutTopBit = 0x7FFFFFFF;
constexpr int kPathSize = 256;

qint32 eightDigitId(const QString& text) {
  if (!isWholeNoteId(text)) throw RuntimeError(err::TypeMismatch);
  return hexToInt32(text) & kWithoutTopBit;
}

// A status is a signed number to the user.
QString statusNumber(Status status) {
  return QString::number(qint16(status));
}

}  // namespace

Deletion::Deletion(Desk& desk) : desk_(desk) {
  desk_.form.cmdDelete->click = [this] { cmdDelete_Click(); };
}

void Deletion::cmdDelete_Click() {
  try {
    removeMarkedRows();
  } catch (const RuntimeError& error) {
    desk_.host.messageBox(error.description(), box::Critical, u"Remove Profiles"_s);
  }
}

// After a removal the walk begins again at the first row, unless the removed row was the last one. Rows that
// it would only pass over are left out, of which there may be thousands: before the first box all above are
// unmarked.
void Deletion::removeMarkedRows() {
  const int last = desk_.form.idList->listCount();
  bool boxShown = false;
  for (int row = 0; row < last && row < desk_.form.idList->listCount();) {
    const bool marked = desk_.form.idList->selected(row);
    const Walk walk = marked ? removeNoteOf(row) : Walk::GoesOn;
    if (walk == Walk::Ends) return;
    if (walk == Walk::GoesOn) {
      boxShown = boxShown || marked;
      ++row;
    } else if (boxShown && row < desk_.form.idList->listCount()) {
      row = 0;
    }
  }
  desk_.form.idList->refresh();
}

Deletion::Walk Deletion::removeNoteOf(int row) {
  const QString noteId = listedNoteId(desk_.form.idList->list(row));
  // Whatever is left here would be removed when the look-up fails.
  desk_.state.gDoc.release();
  Continue lookup;
  if (isWholeNoteId(noteId)) lookup([&] { desk_.state.gDoc = desk_.state.gDb.documentById(noteId); });
  if (desk_.state.gDoc.isNothing()) return removeById(noteId);
  removeDocument(row);
  return Walk::StartsAnew;
}

// No part of the window shows the document afterwards.
void Deletion::removeDocument(int row) {
  desk_.state.gDoc.remove(true);
  desk_.state.gDoc.release();
  desk_.form.idList->removeItem(row);
  desk_.form.idList->refresh();
  desk_.form.fldList->clear();
  desk_.form.NotesUID->setText(QString());
  desk_.form.txtFieldName->setText(QString());
  desk_.form.cmbFieldType->setText(QString());  // its rows stay
  desk_.form.txtFieldContent->setText(QString());
  refreshCurrentView.raise();
}

Deletion::Walk Deletion::removeById(const QString& noteId) {
  if (noteId.isEmpty()) return Walk::Ends;
  if (desk_.state.gDb.isNothing()) {
    desk_.host.messageBox(exact::kNoDatabase);
    return Walk::Ends;
  }
  const QString failure = DeleteNoteLowLevel(desk_.state.gDb, noteId);
  const QString text =
      failure.isEmpty() ? u"Successfully deleted NoteID "_s + noteId : QString(failure + u' ' + noteId);
  desk_.host.messageBox(text, box::Information, u"Remove doc"_s);
  return Walk::GoesOn;
}

// NotesTerm runs only where the note was asked for: after a database that cannot be opened, and after a
// raised failure, the library stays open.
QString Deletion::DeleteNoteLowLevel(const NotesDatabase& database, const QString& noteIdText) {
  DbHandle db = 0;
  try {
    desk_.api.NotesInitExtended(0, QByteArray());
    const QString server = database.server();
    const QString filePath = database.filePath();
    QByteArray path(kPathSize, '\0');
    desk_.api.OSPathNetConstruct(0, desk_.api.nativeName(server), desk_.api.nativeName(filePath), path);
    if (const Status status = desk_.api.NSFDbOpen(upToNul(path), db); status != 0)
      return u"Cannot open database "_s + filePath + u" on server " + server + u". Error was " +
             statusNumber(status) + u": " + desk_.routines.GetAPIError(status);
    QString result;
    if (const Status status = desk_.api.NSFNoteDelete(db, eightDigitId(noteIdText), kForce | kNoStub);
        status != 0)
      result = u"Unable to delete doc. Error was "_s + statusNumber(status) + u": " +
               desk_.routines.GetAPIError(status);
    desk_.api.NSFDbClose(db);
    desk_.api.NotesTerm();
    return result;
  } catch (const RuntimeError& error) {
    if (db != 0) desk_.api.NSFDbClose(db);
    return u"Notes error "_s + QString::number(error.number()) + u" occurred: " + error.description();
  }
}

}  // namespace lens

#include "inspector/document_capture.h"

#include <functional>

#include "inspector/body_row.h"
#include "notes/literals.h"
#include "shell/client_facts.h"
#include "shell/exact_texts.h"
#include "shell/row_texts.h"
#include "shell/text_routines.h"

namespace lens {
namespace {

const QString kDecimalMode = u"DEC NoteID"_s;
const QString kHexMode = u"HEX NoteID"_s;
const QString kFile = u"$FILE"_s;

QVector<Value> itemsOf(const NotesDocument& document, Continue& step) {
  QVector<Value> items;
  step([&] { items = document.items().values(); });
  return items;
}

}  // namespace

DocumentCapture::DocumentCapture(Desk& desk) : desk_(desk) {
  desk_.form.cmdGetDoc->click = [this] { cmdGetDoc_Click(); };
  desk_.form.cmdFldtype->click = [this] { cmdFldtype_Click(); };
  desk_.form.viewNotesID->click = [this] { viewNotesID_Click(); };
  desk_.form.cmdDECHEX->click = [this] { cmdDECHEX_Click(); };
  desk_.form.NotesID->change = [this] { NotesID_Change(); };
  desk_.form.NotesID->keyPress = [this](int& key) { NotesID_KeyPress(key); };
  desk_.form.NotesUID->change = [this] { NotesUID_Change(); };
  desk_.form.idList->dblClick = [this] { idList_DblClick(); };
}

void DocumentCapture::cmdGetDoc_Click() {
  Continue step;
  if (!openCurrentDatabase(step)) {
    step([&] { desk_.form.cmdGetProfiels->raiseClick(); });
    step([&] { desk_.host.messageBox(exact::kNoDatabase); });
    desk_.state.gUIWorkspace.release();
    desk_.state.gSession.release();
    return;
  }
  step([&] {
    desk_.form.lastModified->setText(u"Database size: "_s + desk_.state.gDb.sizeText() + u" bytes");
  });
  hideScanControls(step);

  desk_.state.gDoc.release();
  takeOpenDocument(step);
  if (desk_.state.gDoc.isNothing()) takeSelectedDocument(step);
  if (desk_.state.gDoc.isNothing()) {
    step([&] { desk_.form.cmdGetProfiels->raiseClick(); });
    return;
  }

  step([&] {
    const QString commonName = serverCommonName(desk_.routines, desk_.state.gDb);
    desk_.form.setWindowTitle(u"Current UI document in: "_s + desk_.state.gDb.filePath() + u"!!" +
                              commonName);
  });
  clearDocumentControls(step, true);
  showDocumentId(step);
  forgetAttachmentSizes(step);
  forEachSelectedRow([&] { listItems(step); });
  showBody(step);

  desk_.form.txtFieldContent->setSelStart(1);
  desk_.form.txtFieldContent->setSelLength(0);
  desk_.form.idList->refresh();
  desk_.form.lblCounter->setText(QString::number(desk_.form.idList->listCount()));
  desk_.state.gDocKind = u"UIDOC"_s;
}

void DocumentCapture::cmdFldtype_Click() {
  Continue step;
  if (!openCurrentDatabase(step)) {
    step([&] { desk_.host.messageBox(exact::kNoDatabase); });
    desk_.state.gUIWorkspace.release();
    desk_.state.gSession.release();
    return;
  }
  hideScanControls(step);

  takeOpenDocument(step);
  if (desk_.state.gDoc.isNothing()) {
    step([&] { desk_.host.messageBox(exact::kNoDocument); });
    return;
  }
  clearDocumentControls(step, false);
  showDocumentId(step);
  forEachSelectedRow([&] { listItemsOfType(step); });
  desk_.form.idList->refresh();
  desk_.form.lblCounter->setText(QString::number(desk_.form.idList->listCount()));
}

void DocumentCapture::openSession() {
  desk_.state.gUIWorkspace = NotesUIWorkspace::of(desk_.notes);
  desk_.state.gSession = NotesSession::ofClient(desk_.notes);
}

// A session and a workspace of its own for every click. False when the client has no database open.
bool DocumentCapture::openCurrentDatabase(Continue& step) {
  step([&] { desk_.state.gUIWorkspace = NotesUIWorkspace::of(desk_.notes); });
  step([&] { desk_.state.gSession = NotesSession::ofClient(desk_.notes); });
  step([&] { desk_.state.gDb = desk_.state.gSession.currentDatabase(); });
  return !desk_.state.gDb.isNothing();
}

// Only the note ID scan of old releases needs these controls.
void DocumentCapture::hideScanControls(Continue& step) {
  if (!step.holds([&] { return hasNoteCollections(desk_.state.gSession); })) return;
  desk_.form.cmdStop->setVisible(false);
  desk_.form.lfdIDNum->setVisible(false);
  desk_.form.txtLfdNr->setVisible(false);
  desk_.form.Label4->setVisible(false);
}

// With no open document the read fails and gDoc stays as it is.
void DocumentCapture::takeOpenDocument(Continue& step) {
  step([&] {
    const NotesUIDocument open = desk_.state.gUIWorkspace.currentDocument();
    desk_.state.gDoc = open.document();
  });
}

void DocumentCapture::takeSelectedDocument(Continue& step) {
  NotesDocumentCollection selected;
  step([&] { selected = desk_.state.gDb.unprocessedDocuments(); });
  if (step.holds([&] { return selected.count() > 0; }))
    step([&] { desk_.state.gDoc = selected.firstDocument(); });
}

void DocumentCapture::clearDocumentControls(Continue& step, bool clearType) {
  step([&] { desk_.form.txtFieldContent->setText(QString()); });
  desk_.form.txtFieldName->setText(QString());
  if (clearType) desk_.form.cmbFieldType->setText(QString());  // its rows stay
  desk_.form.lblSize->setText(QString());
  for (CheckBox* flag :
       {desk_.form.chkSummary, desk_.form.chkEncrypted, desk_.form.chkSigned, desk_.form.chkProtected})
    flag->setValue(0);
  step([&] { desk_.form.idList->clear(); });
  step([&] { desk_.form.fldList->clear(); });
}

void DocumentCapture::showDocumentId(Continue& step) {
  QString id;
  step([&] { id = eightDigits(desk_.state.gDoc.noteId()); });
  step([&] { desk_.form.idList->addItem(id); });
  step([&] { desk_.form.NotesUID->setText(desk_.state.gDoc.universalId()); });
  desk_.form.idList->refresh();
  step([&] { desk_.form.idList->setSelected(0, true); });
}

// Removes by a place that runs on while the collection shrinks, so every second size stays and a
// name met again keeps its old one.
void DocumentCapture::forgetAttachmentSizes(Continue& step) {
  const int count = desk_.state.gAttachmentSizes.count();
  for (int place = 1; place <= count; ++place) step([&] { desk_.state.gAttachmentSizes.remove(place); });
}

void DocumentCapture::forEachSelectedRow(const std::function<void()>& use) const {
  for (int row = 0; row < desk_.form.idList->listCount(); ++row) {
    if (!desk_.form.idList->selected(row)) continue;
    if (desk_.form.idList->list(row).isEmpty()) return;
    use();
  }
}

void DocumentCapture::listItems(Continue& step) {
  const QVector<Value> items = itemsOf(desk_.state.gDoc, step);
  qsizetype width = 0;
  for (const Value& item : items)
    step([&] {
      const QString name = NotesItem(item.object()).name();
      width = qMax(width, name.size() + kNameEnd.size());
    });

  QString name, text;  // a failing read leaves what the item before had
  for (const Value& item : items) {
    step([&] { name = NotesItem(item.object()).name(); });
    step([&] { text = NotesItem(item.object()).text(); });
    if (name == kFile) {
      step([&] { text = NotesItem(item.object()).values().at(0).text(); });
      collectAttachmentSize(step, text);
    }
    step([&] { desk_.form.fldList->addItem(fieldRow(name, width, text)); });
  }
}

void DocumentCapture::collectAttachmentSize(Continue& step, const QString& fileName) {
  QString size;
  step([&] {
    const NotesEmbeddedObject file = desk_.state.gDoc.attachment(fileName);
    size = file.fileSizeText();
  });
  // The name is held against the sizes; a file named like one of them is left out.
  bool equalsSize = false;
  for (int place = 1; place <= desk_.state.gAttachmentSizes.count(); ++place)
    equalsSize = equalsSize || desk_.state.gAttachmentSizes.item(place) == fileName;
  if (!equalsSize) step([&] { desk_.state.gAttachmentSizes.add(size, fileName); });
}

void DocumentCapture::listItemsOfType(Continue& step) {
  const QString wanted = desk_.form.cmbFieldType->text();
  QString name, text;
  for (const Value& item : itemsOf(desk_.state.gDoc, step)) {
    step([&] { name = NotesItem(item.object()).name(); });
    // A type without a row in the table never matches: its look-up fails inside the test.
    const bool matches = step.holds([&] {
      const NotesItem first = desk_.state.gDoc.firstItem(name);
      return wanted == desk_.state.gDocTypes.item(first.typeText());
    });
    if (!matches) continue;
    step([&] { text = NotesItem(item.object()).text(); });
    if (upperUnits(name) == kFile) step([&] { text = NotesItem(item.object()).values().at(0).text(); });
    step([&] { desk_.form.fldList->addItem(fieldRow(name, 0, text)); });
  }
}

// Selecting the row fires its click already; the second run gives the same result.
void DocumentCapture::showBody(Continue& step) {
  const int body = firstBodyRow(*desk_.form.fldList);
  if (body < 0) return;
  step([&] { desk_.form.fldList->setSelected(body, true); });
  step([&] { desk_.form.txtSearch->setText(desk_.routines.LeftFrom(desk_.form.idList->text(), u" "_s)); });
  desk_.form.chkCase->setValue(0);
  step([&] { desk_.form.fldList->raiseClick(); });
}

void DocumentCapture::viewNotesID_Click() {
  trapped(desk_.host, {u"viewNotesID_Click"_s}, [this] {
    const QString id = typedIdText();
    if (id.isEmpty()) return;
    desk_.form.idList->clear();
    desk_.form.idList->addItem(id);
    desk_.form.idList->setSelected(0, true);
    desk_.form.txtFieldContent->setText(QString());
    openSession();
    desk_.state.gDb = desk_.state.gSession.currentDatabase();
    if (!desk_.form.NotesID->text().isEmpty() &&
        !findDocument(&NotesDatabase::documentById, id, u"Invalid note ID"))
      return;
    if (!desk_.form.NotesUID->text().isEmpty()) {
      if (!findDocument(&NotesDatabase::documentByUnid, id, u"Invalid universal ID")) return;
      desk_.form.idList->clear();
      desk_.form.idList->addItem(eightDigits(desk_.state.gDoc.noteId()));
      desk_.form.idList->refresh();
      desk_.form.idList->setSelected(0, true);
    }
    if (desk_.form.cmdidList->isEnabled()) idList_DblClick();
  });
}

QString DocumentCapture::typedIdText() {
  const QString noteId = desk_.form.NotesID->text();
  if (noteId.isEmpty()) return desk_.form.NotesUID->text();
  if (desk_.form.cmdDECHEX->text() == kHexMode) return eightDigits(noteId);
  return eightDigits(desk_.routines.UnsignedDec2Hex(noteId));
}

// The failure of the look-up is read right behind it; with no database at hand the box, which names
// it, fails too and nothing is shown.
bool DocumentCapture::findDocument(LookUp lookUp, const QString& id, const char16_t* complaint) {
  Continue lookup;
  lookup([&] { desk_.state.gDoc = (desk_.state.gDb.*lookUp)(id); });
  if (lookup.number() == 0) return true;
  lookup([&] {
    desk_.host.messageBox(QString::fromUtf16(complaint), box::Critical,
                          u"Db = "_s + desk_.state.gDb.fileName());
  });
  return false;
}

bool DocumentCapture::CloseIfOpen(const NotesDocument& document) {
  bool closed = false;
  trapped(desk_.host, {u"CloseIfOpen"_s}, [&] {
    const NotesUIWorkspace workspace = NotesUIWorkspace::of(desk_.notes);
    const NotesUIDocument open = workspace.currentDocument();
    const QString openId = open.document().noteId();
    if (document.noteId() != openId) return;
    open.close();
    closed = true;
  });
  return closed;
}

void DocumentCapture::RefreshCurrentView() {
  trapped(desk_.host, {u"RefreshCurrentView"_s}, [this] { NotesUIWorkspace::of(desk_.notes).viewRefresh(); });
}

void DocumentCapture::cmdDECHEX_Click() {
  trapped(desk_.host, {u"cmdDECHEX_Click"_s}, [this] {
    const QString typed = desk_.form.NotesID->text();
    if (desk_.form.cmdDECHEX->text() == kDecimalMode) {
      desk_.form.cmdDECHEX->setText(kHexMode);
      if (!typed.isEmpty()) desk_.form.NotesID->setText(desk_.routines.UnsignedDec2Hex(typed));
    } else {
      desk_.form.cmdDECHEX->setText(kDecimalMode);
      desk_.form.NotesID->setText(hexStringToBinary(typed).text());
    }
  });
}

void DocumentCapture::NotesID_Change() {
  trapped(desk_.host, {u"NotesID_Change"_s}, [this] {
    if (desk_.form.NotesID->text().isEmpty()) return;
    desk_.form.NotesUID->setText(QString());
    // The caption never reads so, and letters of a pasted text pass; users paste IDs that way.
    if (desk_.form.cmdDECHEX->text() != u"DEC NotesID") return;
    bool numeric = false;
    desk_.form.NotesID->text().toDouble(&numeric);
    if (!numeric) desk_.host.messageBox(u"Only numeric input is allowed"_s, box::Critical);
  });
}

void DocumentCapture::NotesID_KeyPress(int& key) {
  trapped(desk_.host, {u"NotesID_KeyPress"_s}, [&] {
    const bool typed = key >= 32 && key != 127;  // Enter and Esc are no characters of the ID
    if (!typed || desk_.form.cmdDECHEX->text() != kHexMode || (key >= u'0' && key <= u'9')) return;
    const char16_t upper = QChar(char16_t(key)).toUpper().unicode();
    if (upper < u'0' || upper > u'F') {
      desk_.host.messageBox(exact::kHexDigitsOnly, box::Critical, kHexMode);
      desk_.form.NotesID->setText(QString());
      key = 13;
      return;
    }
    key = upper;
  });
}

void DocumentCapture::NotesUID_Change() {
  trapped(desk_.host, {u"NotesUID_Change"_s}, [this] {
    if (!desk_.form.NotesUID->text().isEmpty()) desk_.form.NotesID->setText(QString());
  });
}

void DocumentCapture::idList_DblClick() {
  trapped(desk_.host, {u"idList_DblClick"_s}, [this] {
    if (desk_.form.cmdidList->isEnabled()) desk_.form.cmdidList->raiseClick();
  });
}

}  // namespace lens

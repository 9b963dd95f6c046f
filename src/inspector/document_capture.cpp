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

DocumentCapture::DocumentCapture(Form1& form, Globals& state, Gateway& notes, Host& host, Routines& routines)
    : form_(form), state_(state), notes_(notes), host_(host), routines_(routines) {
  form_.cmdGetDoc->click = [this] { cmdGetDoc_Click(); };
  form_.cmdFldtype->click = [this] { cmdFldtype_Click(); };
  form_.viewNotesID->click = [this] { viewNotesID_Click(); };
  form_.cmdDECHEX->click = [this] { cmdDECHEX_Click(); };
  form_.NotesID->change = [this] { NotesID_Change(); };
  form_.NotesID->keyPress = [this](int& key) { NotesID_KeyPress(key); };
  form_.NotesUID->change = [this] { NotesUID_Change(); };
  form_.idList->dblClick = [this] { idList_DblClick(); };
}

void DocumentCapture::cmdGetDoc_Click() {
  Continue step;
  if (!openCurrentDatabase(step)) {
    step([&] { form_.cmdGetProfiels->raiseClick(); });
    step([&] { host_.messageBox(exact::kNoDatabase); });
    state_.gUIWorkspace.release();
    state_.gSession.release();
    return;
  }
  step([&] { form_.lastModified->setText(u"Database size: "_s + state_.gDb.sizeText() + u" bytes"); });
  hideScanControls(step);

  state_.gDoc.release();
  takeOpenDocument(step);
  if (state_.gDoc.isNothing()) takeSelectedDocument(step);
  if (state_.gDoc.isNothing()) {
    step([&] { form_.cmdGetProfiels->raiseClick(); });
    return;
  }

  step([&] {
    const QString commonName = serverCommonName(routines_, state_.gDb);
    form_.setWindowTitle(u"Current UI document in: "_s + state_.gDb.filePath() + u"!!" + commonName);
  });
  clearDocumentControls(step, true);
  showDocumentId(step);
  forgetAttachmentSizes(step);
  forEachSelectedRow([&] { listItems(step); });
  showBody(step);

  form_.txtFieldContent->setSelStart(1);
  form_.txtFieldContent->setSelLength(0);
  form_.idList->refresh();
  form_.lblCounter->setText(QString::number(form_.idList->listCount()));
  state_.gDocKind = u"UIDOC"_s;
}

void DocumentCapture::cmdFldtype_Click() {
  Continue step;
  if (!openCurrentDatabase(step)) {
    step([&] { host_.messageBox(exact::kNoDatabase); });
    state_.gUIWorkspace.release();
    state_.gSession.release();
    return;
  }
  hideScanControls(step);

  takeOpenDocument(step);
  if (state_.gDoc.isNothing()) {
    step([&] { host_.messageBox(exact::kNoDocument); });
    return;
  }
  clearDocumentControls(step, false);
  showDocumentId(step);
  forEachSelectedRow([&] { listItemsOfType(step); });
  form_.idList->refresh();
  form_.lblCounter->setText(QString::number(form_.idList->listCount()));
}

void DocumentCapture::openSession() {
  state_.gUIWorkspace = NotesUIWorkspace::of(notes_);
  state_.gSession = NotesSession::ofClient(notes_);
}

// A session and a workspace of its own for every click. False when the client has no database open.
bool DocumentCapture::openCurrentDatabase(Continue& step) {
  step([&] { state_.gUIWorkspace = NotesUIWorkspace::of(notes_); });
  step([&] { state_.gSession = NotesSession::ofClient(notes_); });
  step([&] { state_.gDb = state_.gSession.currentDatabase(); });
  return !state_.gDb.isNothing();
}

// Only the note ID scan of old releases needs these controls.
void DocumentCapture::hideScanControls(Continue& step) {
  if (!step.holds([&] { return hasNoteCollections(state_.gSession); })) return;
  form_.cmdStop->setVisible(false);
  form_.lfdIDNum->setVisible(false);
  form_.txtLfdNr->setVisible(false);
  form_.Label4->setVisible(false);
}

// With no open document the read fails and gDoc stays as it is.
void DocumentCapture::takeOpenDocument(Continue& step) {
  step([&] {
    const NotesUIDocument open = state_.gUIWorkspace.currentDocument();
    state_.gDoc = open.document();
  });
}

void DocumentCapture::takeSelectedDocument(Continue& step) {
  NotesDocumentCollection selected;
  step([&] { selected = state_.gDb.unprocessedDocuments(); });
  if (step.holds([&] { return selected.count() > 0; })) step([&] { state_.gDoc = selected.firstDocument(); });
}

void DocumentCapture::clearDocumentControls(Continue& step, bool clearType) {
  step([&] { form_.txtFieldContent->setText(QString()); });
  form_.txtFieldName->setText(QString());
  if (clearType) form_.cmbFieldType->setText(QString());  // its rows stay
  form_.lblSize->setText(QString());
  for (CheckBox* flag : {form_.chkSummary, form_.chkEncrypted, form_.chkSigned, form_.chkProtected})
    flag->setValue(0);
  step([&] { form_.idList->clear(); });
  step([&] { form_.fldList->clear(); });
}

void DocumentCapture::showDocumentId(Continue& step) {
  QString id;
  step([&] { id = eightDigits(state_.gDoc.noteId()); });
  step([&] { form_.idList->addItem(id); });
  step([&] { form_.NotesUID->setText(state_.gDoc.universalId()); });
  form_.idList->refresh();
  step([&] { form_.idList->setSelected(0, true); });
}

// Removes by a place that runs on while the collection shrinks, so every second size stays and a
// name met again keeps its old one.
void DocumentCapture::forgetAttachmentSizes(Continue& step) {
  const int count = state_.gAttachmentSizes.count();
  for (int place = 1; place <= count; ++place) step([&] { state_.gAttachmentSizes.remove(place); });
}

void DocumentCapture::forEachSelectedRow(const std::function<void()>& use) const {
  for (int row = 0; row < form_.idList->listCount(); ++row) {
    if (!form_.idList->selected(row)) continue;
    if (form_.idList->list(row).isEmpty()) return;
    use();
  }
}

void DocumentCapture::listItems(Continue& step) {
  const QVector<Value> items = itemsOf(state_.gDoc, step);
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
    step([&] { form_.fldList->addItem(fieldRow(name, width, text)); });
  }
}

void DocumentCapture::collectAttachmentSize(Continue& step, const QString& fileName) {
  QString size;
  step([&] {
    const NotesEmbeddedObject file = state_.gDoc.attachment(fileName);
    size = file.fileSizeText();
  });
  // The name is held against the sizes; a file named like one of them is left out.
  bool equalsSize = false;
  for (int place = 1; place <= state_.gAttachmentSizes.count(); ++place)
    equalsSize = equalsSize || state_.gAttachmentSizes.item(place) == fileName;
  if (!equalsSize) step([&] { state_.gAttachmentSizes.add(size, fileName); });
}

void DocumentCapture::listItemsOfType(Continue& step) {
  const QString wanted = form_.cmbFieldType->text();
  QString name, text;
  for (const Value& item : itemsOf(state_.gDoc, step)) {
    step([&] { name = NotesItem(item.object()).name(); });
    // A type without a row in the table never matches: its look-up fails inside the test.
    const bool matches = step.holds([&] {
      const NotesItem first = state_.gDoc.firstItem(name);
      return wanted == state_.gDocTypes.item(first.typeText());
    });
    if (!matches) continue;
    step([&] { text = NotesItem(item.object()).text(); });
    if (upperUnits(name) == kFile) step([&] { text = NotesItem(item.object()).values().at(0).text(); });
    step([&] { form_.fldList->addItem(fieldRow(name, 0, text)); });
  }
}

// Selecting the row fires its click already; the second run gives the same result.
void DocumentCapture::showBody(Continue& step) {
  const int body = firstBodyRow(*form_.fldList);
  if (body < 0) return;
  step([&] { form_.fldList->setSelected(body, true); });
  step([&] { form_.txtSearch->setText(routines_.LeftFrom(form_.idList->text(), u" "_s)); });
  form_.chkCase->setValue(0);
  step([&] { form_.fldList->raiseClick(); });
}

void DocumentCapture::viewNotesID_Click() {
  trapped(host_, {u"viewNotesID_Click"_s}, [this] {
    const QString id = typedIdText();
    if (id.isEmpty()) return;
    form_.idList->clear();
    form_.idList->addItem(id);
    form_.idList->setSelected(0, true);
    form_.txtFieldContent->setText(QString());
    openSession();
    state_.gDb = state_.gSession.currentDatabase();
    if (!form_.NotesID->text().isEmpty() &&
        !findDocument(&NotesDatabase::documentById, id, u"Invalid note ID"))
      return;
    if (!form_.NotesUID->text().isEmpty()) {
      if (!findDocument(&NotesDatabase::documentByUnid, id, u"Invalid universal ID")) return;
      form_.idList->clear();
      form_.idList->addItem(eightDigits(state_.gDoc.noteId()));
      form_.idList->refresh();
      form_.idList->setSelected(0, true);
    }
    if (form_.cmdidList->isEnabled()) idList_DblClick();
  });
}

QString DocumentCapture::typedIdText() {
  const QString noteId = form_.NotesID->text();
  if (noteId.isEmpty()) return form_.NotesUID->text();
  if (form_.cmdDECHEX->text() == kHexMode) return eightDigits(noteId);
  return eightDigits(routines_.UnsignedDec2Hex(noteId));
}

// The failure of the look-up is read right behind it; with no database at hand the box, which names
// it, fails too and nothing is shown.
bool DocumentCapture::findDocument(LookUp lookUp, const QString& id, const char16_t* complaint) {
  Continue lookup;
  lookup([&] { state_.gDoc = (state_.gDb.*lookUp)(id); });
  if (lookup.number() == 0) return true;
  lookup([&] {
    host_.messageBox(QString::fromUtf16(complaint), box::Critical, u"Db = "_s + state_.gDb.fileName());
  });
  return false;
}

bool DocumentCapture::CloseIfOpen(const NotesDocument& document) {
  bool closed = false;
  trapped(host_, {u"CloseIfOpen"_s}, [&] {
    const NotesUIWorkspace workspace = NotesUIWorkspace::of(notes_);
    const NotesUIDocument open = workspace.currentDocument();
    const QString openId = open.document().noteId();
    if (document.noteId() != openId) return;
    open.close();
    closed = true;
  });
  return closed;
}

void DocumentCapture::RefreshCurrentView() {
  trapped(host_, {u"RefreshCurrentView"_s}, [this] { NotesUIWorkspace::of(notes_).viewRefresh(); });
}

void DocumentCapture::cmdDECHEX_Click() {
  trapped(host_, {u"cmdDECHEX_Click"_s}, [this] {
    const QString typed = form_.NotesID->text();
    if (form_.cmdDECHEX->text() == kDecimalMode) {
      form_.cmdDECHEX->setText(kHexMode);
      if (!typed.isEmpty()) form_.NotesID->setText(routines_.UnsignedDec2Hex(typed));
    } else {
      form_.cmdDECHEX->setText(kDecimalMode);
      form_.NotesID->setText(hexStringToBinary(typed).text());
    }
  });
}

void DocumentCapture::NotesID_Change() {
  trapped(host_, {u"NotesID_Change"_s}, [this] {
    if (form_.NotesID->text().isEmpty()) return;
    form_.NotesUID->setText(QString());
    // The caption never reads so, and letters of a pasted text pass; users paste IDs that way.
    if (form_.cmdDECHEX->text() != u"DEC NotesID") return;
    bool numeric = false;
    form_.NotesID->text().toDouble(&numeric);
    if (!numeric) host_.messageBox(u"Only numeric input is allowed"_s, box::Critical);
  });
}

void DocumentCapture::NotesID_KeyPress(int& key) {
  trapped(host_, {u"NotesID_KeyPress"_s}, [&] {
    const bool typed = key >= 32 && key != 127;  // Enter and Esc are no characters of the ID
    if (!typed || form_.cmdDECHEX->text() != kHexMode || (key >= u'0' && key <= u'9')) return;
    const char16_t upper = QChar(char16_t(key)).toUpper().unicode();
    if (upper < u'0' || upper > u'F') {
      host_.messageBox(exact::kHexDigitsOnly, box::Critical, kHexMode);
      form_.NotesID->setText(QString());
      key = 13;
      return;
    }
    key = upper;
  });
}

void DocumentCapture::NotesUID_Change() {
  trapped(host_, {u"NotesUID_Change"_s}, [this] {
    if (!form_.NotesUID->text().isEmpty()) form_.NotesID->setText(QString());
  });
}

void DocumentCapture::idList_DblClick() {
  trapped(host_, {u"idList_DblClick"_s}, [this] {
    if (form_.cmdidList->isEnabled()) form_.cmdidList->raiseClick();
  });
}

}  // namespace lens

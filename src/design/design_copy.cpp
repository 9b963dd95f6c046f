#include "design/design_copy.h"

#include "controls/keys.h"
#include "notes/literals.h"
#include "notes/numbers.h"
#include "shell/exact_texts.h"
#include "shell/text_routines.h"

namespace lens {
namespace {

const QString kForm2 = u"Form2"_s, kTargets = u"lstDBNamesDest"_s;

QString behind(const QString& text, const QString& mark, qsizetype skipped) {
  const qsizetype at = text.indexOf(mark);
  return at < 0 ? text : text.mid(at + skipped);
}

}  // namespace

DesignCopy::DesignCopy(Desk& desk, ServerLists& servers, DatabaseLists& databases)
    : window(&desk.form), desk_(desk), servers_(servers), databases_(databases) {
  servers_.registerWindow(kForm2, {window.lstDesignServer});
  databases_.registerList(kTargets, kForm2, *window.lstDBNamesDest);
  window.unload = [this] { Form_Unload(); };
  window.terminate = [this] { desk_.state.gSession.release(); };
  window.cmdExpand2->click = [this] { cmdExpand2_Click(); };
  window.lstDesignServer->keyPress = [this](int& key) { lstDesignServer_KeyPress(key); };
  window.cmdCopy->click = [this] { cmdCopy_Click(); };
  window.cmdMoveDocs->click = [this] { cmdMoveDocs_Click(); };
}

// What the list of servers has loaded, unseen, knows no chosen row yet.
void DesignCopy::cmdDocCopy_Click() {
  if (!loaded_ || !shown_) Form_Load();
  shown_ = true;
  window.exec();
}

ComboBox& DesignCopy::serversOfLoadedWindow() {
  if (!loaded_) Form_Load();
  return *window.lstDesignServer;
}

void DesignCopy::Form_Load() {
  loaded_ = true;
  window.lstDesignServer->clearRows();
  window.lstDesignServer->setText(QString());
  window.lblDB2->setText(u"Select target DB"_s);
  window.txtSourceDB->setText(QString());
  desk_.sessions.GetSessionProbe();
  if (!desk_.state.gDb.isNothing())
    window.txtSourceDB->setText(desk_.state.gDb.server() + u"!!" + desk_.state.gDb.filePath());
  window.txtDocID->setText(behind(desk_.form.idList->text(), u"# "_s, 2));
  servers_.GetServerList2(kForm2);
  databases_.GetDbs(window.lstDesignServer->text(), kTargets, kForm2);
}

void DesignCopy::Form_Unload() {
  loaded_ = shown_ = false;
  desk_.state.gSession.release();
}

void DesignCopy::cmdExpand2_Click() {
  const QString server = window.lstDesignServer->text();
  databases_.GetDbs(server, kTargets, kForm2);
  window.lblDB2->setText(u"Databases on: "_s + server);
  window.lblDB2->repaint();
}

void DesignCopy::lstDesignServer_KeyPress(int key) {
  if (key == key::Enter) cmdExpand2_Click();
}

void DesignCopy::cmdCopy_Click() {
  if (desk_.state.gSession.isNothing() || !closeOpenDocument()) return;
  const NotesDatabase target = openTarget();
  const QString noteId = typedNoteId();
  openSource();
  if (noteId.isEmpty())
    desk_.host.messageBox(u"not enough privilege to copy/Element is write protected!"_s);
  else if (!copyNote(target, noteId))
    return releaseObjects();
  desk_.routines.playDoneSound();
  releaseObjects();
}

// A failure on the way ends the click, and the source stays; that the copy is there is not checked otherwise.
void DesignCopy::cmdMoveDocs_Click() {
  if (desk_.state.gSession.isNothing() || !closeOpenDocument()) return;
  const NotesDatabase target = openTarget();
  const QString noteId = typedNoteId();
  openSource();
  const bool found = noteId.isEmpty() || copyNote(target, noteId);
  if (found && !noteId.isEmpty()) {
    desk_.state.gDoc = desk_.state.gDb.documentById(noteId);
    desk_.state.gDoc.removePermanently(true);
  }
  if (found) desk_.routines.playDoneSound();
  releaseObjects();
  window.hide();
}

// So that the client does not hold the note. False without a database, which was told then.
bool DesignCopy::closeOpenDocument() {
  desk_.state.gDb = desk_.state.gSession.currentDatabase();
  if (desk_.state.gDb.isNothing()) {
    desk_.host.messageBox(exact::kNoDatabase);
    return false;
  }
  desk_.state.gUIWorkspace = NotesUIWorkspace::of(desk_.notes);
  if (const NotesUIDocument open = desk_.state.gUIWorkspace.currentDocument()) open.close();
  desk_.state.gUIWorkspace.release();
  return true;
}

NotesDatabase DesignCopy::openTarget() const {
  return desk_.state.gSession.database(namedServer(window.lstDesignServer->text()),
                                       window.lstDBNamesDest->text());
}

QString DesignCopy::typedNoteId() const {
  return behind(window.txtDocID->text(), u" #"_s, 3);
}

void DesignCopy::openSource() {
  const QString source = window.txtSourceDB->text();
  desk_.state.gDb = desk_.state.gSession.database(desk_.routines.LeftFrom(source, u"!!"_s),
                                                  desk_.routines.RightFrom(source, u"!!"_s));
}

// False when the source has no such note. The copy is saved by the model itself, before it is rewritten.
bool DesignCopy::copyNote(const NotesDatabase& target, const QString& noteId) {
  desk_.state.gDoc = desk_.state.gDb.documentById(noteId);
  if (desk_.state.gDoc.isNothing()) return false;
  const NotesDocument copy = desk_.state.gDoc.copyToDatabase(target);
  if (!desk_.form.txtSearch->text().isEmpty()) rewriteItems(copy);
  return true;
}

void DesignCopy::rewriteItems(const NotesDocument& copy) {
  const Value items = desk_.state.gDoc.items();
  for (const Value& item : items.values()) rewriteItem(copy, NotesItem(item.object()));
  copy.save(true, false, true);
}

void DesignCopy::rewriteItem(const NotesDocument& copy, const NotesItem& item) {
  const QString name = item.name();
  if (item.type() == itemcode::RichText) {
    copy.createRichTextItem(name);
    const NotesRichTextItem source(desk_.state.gDoc.firstItem(name)), target(copy.firstItem(name));
    target.appendText(source.formatredText(false, 0));
  } else {
    copy.replaceItemValue(name, rewritten(item));
  }
}

// Several values never come through: what they would be looked into for is asked of an object that is none.
Value DesignCopy::rewritten(const NotesItem& item) const {
  const Value values = item.values();
  const int bound = values.upperBound();
  if (bound > 0) throw RuntimeError(err::ObjectNotSet);
  if (bound < 0) return values;
  const QString search = desk_.form.txtSearch->text(), text = textOf(values.at(0), desk_.host.regional());
  if (!text.contains(search)) return values;
  const QString replaced = desk_.routines.ReplaceAll(text, search, desk_.form.txtReplace->text());
  const double type = item.type();
  if (type == itemcode::Date) return Value::array({desk_.host.regional().dateTime(replaced)});
  if (type == itemcode::Number) return Value::array({numberPrefix(replaced)});
  return Value::array({replaced});
}

void DesignCopy::releaseObjects() {
  desk_.state.gUIWorkspace.release();
  desk_.state.gDoc.release();
}

}  // namespace lens

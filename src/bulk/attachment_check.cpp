#include "bulk/attachment_check.h"

#include <utility>

#include "bulk/run_steps.h"
#include "host/file_names.h"
#include "host/paths.h"
#include "notes/literals.h"
#include "notes/numbers.h"
#include "shell/error_modes.h"

namespace lens {

// The mode of the check: a failing statement is told and its document listed, and the next one runs.
class AttachmentCheck::Listing : public StatementMode<Listing> {
 public:
  explicit Listing(ReplicDesk& desk) : desk_(desk) {}

  NotesDocument document;  // at hand

  // Runs one statement. False when it failed.
  template <class Statement>
  bool operator()(Statement&& statement) {
    try {
      statement();
      return true;
    } catch (const RuntimeError& error) {
      desk_.host.messageBox(error.description(), box::Critical, u"CmdChkAttachments"_s);
    }
    listDocument();
    return false;
  }

 private:
  // A document that cannot tell its ID has no row; the check goes on.
  void listDocument() {
    if (document.isNothing()) return;
    Continue telling;
    telling([this] { desk_.window.lstAgentNames->addItem(document.noteId()); });
  }

  ReplicDesk& desk_;
};

AttachmentCheck::AttachmentCheck(ReplicDesk& desk) : desk_(desk) {
  desk_.window.cmdChkAttachments->click = [this] { cmdChkAttachments_Click(); };
}

void AttachmentCheck::cmdChkAttachments_Click() {
  const FrmReplic& window = desk_.window;
  desk_.state.gStopFlag = false;
  if (window.lstViewNames->listCount() == 0) return;
  window.lstAgentNames->clear();
  Listing step(desk_);
  NotesDatabase source;
  step([&] { source = openListedSource(desk_, desk_.state.gDbPath); });
  if (window.lstViewNames->listIndex() < 0) {
    desk_.host.messageBox(u"Please select a view"_s, box::Plain, u"Extract attachments"_s);
    return;
  }
  NotesView view;
  NotesViewEntryCollection entries;
  NotesViewEntry entry;
  step([&] { view = source.view(window.lstViewNames->text()); });
  step([&] { entries = view.allEntries(); });
  step([&] { entry = entries.firstEntry(); });
  window.txtProc->setText(QString());
  if (!checkEntries(entries, std::move(entry), step)) return;
  step.document.release();
  step([&] { window.txtDocsSelected->setText(numberText(entries.count())); });
  step([&] { endRunWithSound(desk_); });
}

// False when the user stopped it, which has no sound and no new count. What a failing statement leaves empty
// is empty: neither the document nor the row of an earlier turn is taken for that of this one.
bool AttachmentCheck::checkEntries(const NotesViewEntryCollection& entries, NotesViewEntry entry,
                                   Listing& step) {
  while (entry && !desk_.state.gStopFlag) {
    const NotesViewEntry current = std::exchange(entry, {});
    step.document.release();
    if (step.holds([&] { return current.isDocument(); })) {
      step([&] { step.document = current.document(); });
      if (step.holds([&] { return step.document.hasEmbedded(); })) extractFiles(step.document, step);
    }
    if (desk_.state.gStopFlag) {
      desk_.state.gStopFlag = false;
      return false;
    }
    step([&] { entry = entries.nextEntry(current); });
    countProcessed(desk_.window);
  }
  return true;
}

void AttachmentCheck::extractFiles(const NotesDocument& document, Listing& step) {
  Value items = Value::array({});
  step([&] { items = document.items(); });
  for (const Value& element : items.values()) {
    NotesItem item;
    step([&] { item = element.object(); });
    if (!step.holds([&] { return item.name().toUpper() == u"$FILE"; })) continue;
    Value values = Value::array({});
    QString name;
    step([&] { values = item.values(); });
    // An item of that name which holds nothing is no attachment.
    if (!values.isArray() || values.upperBound() < 0) continue;
    if (!step.holds([&] { return !(name = values.at(0).text()).isEmpty(); })) continue;
    NotesEmbeddedObject file;
    step([&] { file = document.attachment(name); });
    if (file) step([&] { file.extractFile(extractionPath(name)); });
  }
}

// In the directory that the box names at that moment. A name out of a document may not lead out of it.
QString AttachmentCheck::extractionPath(const QString& attachment) const {
  return desk_.host.joinPath(typedPath(desk_.window.txtListToPrint->text()), safeFileName(attachment));
}

}  // namespace lens

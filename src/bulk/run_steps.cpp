#include "bulk/run_steps.h"

#include "notes/literals.h"
#include "notes/numbers.h"

namespace lens {

NotesDatabase openListedSource(ReplicDesk& desk, const QString& path) {
  return desk.state.gSession.database(namedServer(desk.window.lstServer->text()), path);
}

bool openToldDatabase(ReplicDesk& desk, Statements& step) {
  Globals& state = desk.state;
  state.gDb.release();  // or the one before would be meant in place of one that cannot be opened
  const QString server = desk.window.lstServer->text();
  const auto open = [&] { state.gDb = state.gSession.database(namedServer(server), state.gDbPath); };
  if (namedServer(server) != server) {
    step(open);
    return true;
  }
  Continue& opening = step.switchTrapOff();
  opening.clear();
  opening(open);
  if (opening.number() < 1) return true;
  opening.clear();
  desk.host.messageBox(u"Can't open the Database!!"_s, box::Critical, u"Open Notes DB"_s);
  return false;
}

void refuse(ReplicDesk& desk, const QString& text, const QString& title) {
  desk.host.messageBox(text, box::Information, title);
}

bool requireChosen(ReplicDesk& desk, const ListBox& list, const QString& refusal, const QString& title) {
  const int row = list.listIndex();
  if (row >= 0 && list.selected(row)) return true;
  refuse(desk, refusal, title);
  return false;
}

void forEachDocument(ReplicDesk& desk, const NotesViewEntryCollection& entries,
                     const std::function<void(const NotesDocument&)>& work) {
  NotesViewEntry entry = entries.firstEntry();
  desk.window.txtProc->setText(QString());
  while (entry && !desk.state.gStopFlag) {
    if (entry.isDocument()) {
      work(entry.document());
      desk.host.yield();
    }
    entry = entries.nextEntry(entry);
    countProcessed(desk.window);
  }
}

// The number is the field's own: a run that was started within another one counts on in it.
void countProcessed(FrmReplic& window) {
  window.txtProc->setText(numberText(numberPrefix(window.txtProc->text()) + 1));
  window.txtProc->repaint();
}

void endRunWithSound(ReplicDesk& desk) {
  desk.routines.playDoneSound();
  desk.state.gStopFlag = false;
}

}  // namespace lens

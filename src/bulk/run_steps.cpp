#include "bulk/run_steps.h"

#include "notes/numbers.h"

namespace lens {

NotesDatabase openListedSource(ReplicDesk& desk, const QString& path) {
  return desk.state.gSession.database(namedServer(desk.window.lstServer->text()), path);
}

bool isRowChosen(const ListBox& list) {
  const int row = list.listIndex();
  return row >= 0 && list.selected(row);
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

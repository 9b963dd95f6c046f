#include "bulk/replic_lifecycle.h"

#include "notes/literals.h"
#include "notes/numbers.h"
#include "shell/screen_fit.h"

namespace lens {
namespace {

// The name under which the window's lists are registered.
const QString kWindowName = u"frmReplic"_s;

}  // namespace

ReplicLifecycle::ReplicLifecycle(ReplicDesk& desk) : desk_(desk), layout_(desk.window, desk.host) {
  FrmReplic& window = desk_.window;
  window.load = [this] { Form_Load(); };
  window.resized = [this] { Form_Resize(); };
  window.unload = [this] { Form_Unload(); };
  window.terminate = [this] { Form_Terminate(); };
  window.cmdLoadLast->click = [this] { cmdLoadLast_Click(); };
  window.cmdEnd->click = [this] { cmdEnd_Click(); };
  window.cmdStop->click = [this] { cmdStop_Click(); };
  window.cmdStop->keyPress = [this](int&) { cmdStop_KeyPress(); };
  window.cmdStop->mouseDown = [this](int, int) { cmdStop_MouseDown(); };
  window.cmdClearFldList->click = [this] { cmdClearFldList_Click(); };
  window.Command2->click = [this] { Command2_Click(); };
  window.cmdClearMe->click = [this] { cmdClearMe_Click(); };
  window.txtNumDocs->change = [this] { txtNumDocs_Change(); };
}

void ReplicLifecycle::show() {
  FrmReplic& window = desk_.window;
  if (window.isVisible()) {
    window.raise();
    return window.activateWindow();
  }
  if (window.isRunning()) {
    // Closing has dropped the session.
    desk_.sessions.GetSessionProbe();
  } else {
    layout_.forgetLocation();
    window.restoreDesign();
    fitDesignToScreen(window);
    // A load that fails is reported, and the window comes up with what it has by then.
    window.load.fire();
  }
  window.show();
  settleOnDesktop(window, layout_, [this] { Form_Resize(); });
}

void ReplicLifecycle::Form_Load() {
  FrmReplic& window = desk_.window;
  desk_.routines.CenterForm(window);
  findSettings.raise();
  desk_.sessions.GetSessionProbe();
  desk_.servers.GetServerList2(kWindowName);
  desk_.databases.GetDbs(window.lstServer->text(), u"lstDBNames"_s, kWindowName);
  window.lblDB->setText(u"Databases on: "_s + window.lstServer->text());
  window.txtFind->setText(QString());
  window.txtReplace->setText(QString());
  window.lblDB->repaint();
  setListExtents();
  provideSettings.raise();
  readSettings.raise();
  desk_.state.gStopFlag = false;
  layout_.GetLocation();
}

// Long rows can be read to twice the width of their list, those of the fields to three times, at every size
// of the window.
void ReplicLifecycle::setListExtents() {
  FrmReplic& window = desk_.window;
  for (ListBox* list : {window.lstDBNames, window.lstViewNames, window.lstAgentNames})
    list->setHorizontalExtent(2 * list->width());
  window.fldList->setHorizontalExtent(3 * window.fldList->width());
  window.lstDBNamesDest->setHorizontalExtent(2 * window.lstDBNamesDest->width());
}

void ReplicLifecycle::Form_Resize() {
  layout_.ResizeControls();
  setListExtents();
}

void ReplicLifecycle::Form_Unload() {
  desk_.window.hide();
}

void ReplicLifecycle::Form_Terminate() {
  desk_.state.gSession.release();
}

void ReplicLifecycle::cmdLoadLast_Click() {
  readSettings.raise();
}

void ReplicLifecycle::cmdEnd_Click() {
  writeSettings.raise();
  desk_.window.close();
}

void ReplicLifecycle::cmdStop_Click() {
  desk_.state.gStopFlag = true;
}

void ReplicLifecycle::cmdStop_KeyPress() {
  desk_.state.gStopFlag = true;
}

void ReplicLifecycle::cmdStop_MouseDown() {
  desk_.state.gStopFlag = true;
}

void ReplicLifecycle::cmdClearFldList_Click() {
  desk_.window.fldList->clear();
}

void ReplicLifecycle::Command2_Click() {
  ListBox& list = *desk_.window.fldList;
  for (int row = 0; row < list.listCount(); ++row) list.setSelected(row, true);
  list.refresh();
}

void ReplicLifecycle::cmdClearMe_Click() {
  desk_.window.txtTemplale->setText(QString());
  desk_.window.txtTemplale->repaint();
}

// The number that the text begins with counts; the text stays as typed.
void ReplicLifecycle::txtNumDocs_Change() {
  if (numberPrefix(desk_.window.txtNumDocs->text()) == 0)
    desk_.host.messageBox(u"Eingabe nicht numerisch!!"_s, box::Plain, u"INFO"_s);
}

}  // namespace lens

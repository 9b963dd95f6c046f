#include "shell/form1_lifecycle.h"

#include "notes/code_page.h"
#include "notes/literals.h"
#include "notes/version.h"
#include "shell/error_modes.h"

namespace lens {
namespace {

constexpr quint32 kPaleYellow = 0xC0FFFF;  // blue, green, red
constexpr int kLeftButtonDown = 513;
constexpr int kRightButtonUp = 517;
constexpr int kRightButton = 2;
constexpr quint16 kClipboardClass = 0xFF03;

QColor fromBgr(quint32 color) {
  return QColor(color & 0xFF, color >> 8 & 0xFF, color >> 16 & 0xFF);
}

QString versionText() {
  return u"Ver. "_s + programVersion();
}

}  // namespace

Form1Lifecycle::Form1Lifecycle(Desk& desk, ServerLists& servers) : desk_(desk), servers_(servers) {
  desk_.form.resized = [this] { Form_Resize(); };
  desk_.form.mouseUp = [this](int button) { Form_MouseUp(button); };
  desk_.form.unload = [this] { Form_Unload(); };
  desk_.form.terminate = [this] { Form_Terminate(); };
  desk_.form.cmdEnd->click = [this] { cmdEnd_Click(); };
  desk_.form.Timer2->timer = [this] { Timer2_Timer(); };
  desk_.form.cmdStop->click = [this] { cmdStop_Click(); };
  desk_.form.Command1->click = [this] { Command1_Click(); };
  desk_.form.Label6->click = [this] { Label6_Click(); };
  *desk_.form.mnuBarHide = [this] { mnuBarHide_Click(); };
  *desk_.form.mnuBarShow = [this] { mnuBarShow_Click(); };
  *desk_.form.mnuBarExit = [this] { mnuBarExit_Click(); };
  servers_.registerWindow(u"Form1"_s, {desk_.form.lstServerList});
}

void Form1Lifecycle::Form_Load() {
  trapped(desk_.host, {u"Form_Load"_s}, [this] {
    addDocTypes.raise();
    desk_.form.cmdScroll->setVisible(false);
    desk_.form.cmdDelRT->setVisible(false);
    desk_.form.lblVer->setText(versionText());
    desk_.host.addLibraryDirectory(desk_.host.programDirectory());
    desk_.sessions.GetSessionProbe();
    desk_.state.gDataDir = desk_.sessions.GetDataDirectory();
    servers_.GetServerList2(u"Form1"_s);
    setListExtents();
    desk_.layout.GetLocation();
    desk_.form.sbrMain->setBackground(fromBgr(kPaleYellow));
    desk_.form.cmdGetDoc->raiseClick();
  });
}

// Long rows can be read to twice the width of their list, at every size of the window.
void Form1Lifecycle::setListExtents() {
  for (ListBox* list : {desk_.form.fldList, desk_.form.idList}) list->setHorizontalExtent(2 * list->width());
}

void Form1Lifecycle::Form_Resize() {
  desk_.layout.ResizeControls();
  setListExtents();
  desk_.form.txtFieldContent->setSelStart(1);
  desk_.form.txtFieldContent->setSelLength(0);
}

void Form1Lifecycle::Form_MouseUp(int button) {
  trapped(desk_.host, {u"Form_MouseUp"_s}, [&] {
    if (button == kRightButton) desk_.form.mnuBar->popupAt(QCursor::pos());
  });
}

// The tray icon's removal would stand behind the end of the process and is never reached: the
// desktop clears an icon whose process has gone.
void Form1Lifecycle::releaseAndEnd() {
  desk_.state.gSession.release();
  desk_.state.gDb.release();
  desk_.state.gUIWorkspace.release();
  desk_.state.gDoc.release();
  desk_.host.endProcess();
}

void Form1Lifecycle::Form_Unload() {
  trapped(desk_.host, {u"Form_Unload"_s}, [this] { releaseAndEnd(); });
}

void Form1Lifecycle::Form_Terminate() {
  // This one box lacks the word "Formular".
  trapped(desk_.host, {u"Form_Terminate"_s, u"Form1"_s}, [this] { releaseAndEnd(); });
}

void Form1Lifecycle::cmdEnd_Click() {
  trapped(desk_.host, {u"cmdEnd_Click"_s}, [this] {
    desk_.state.gSession.release();
    desk_.state.gDb.release();
    desk_.state.gUIWorkspace.release();
    desk_.state.gDoc.release();
    desk_.state.gEnding = true;
    desk_.host.endProcess();
  });
}

void Form1Lifecycle::Timer2_Timer() {
  const QString stamp = desk_.host.regional().stampText(desk_.host.now());
  // The blank stays in the text. At exact midnight there is none, and nothing is shown.
  const qsizetype blank = stamp.indexOf(u' ');
  desk_.form.lblTime->setText(blank < 0 ? QString() : stamp.mid(blank));
}

void Form1Lifecycle::cmdStop_Click() {
  desk_.state.gIdScanRunning = false;
  desk_.host.yield();
}

void Form1Lifecycle::Command1_Click() {
  desk_.state.gDesignStop = true;
}

void Form1Lifecycle::Label6_Click() {
  trapped(desk_.host, {u"Label6_Click"_s}, [this] {
    about_ = new About(&desk_.form);
    about_->lblVer->setText(versionText());
    desk_.routines.CenterForm(*about_);
    desk_.routines.StayNotOnTop(*about_);
    about_->Image1->click = [window = about_] {
      if (window) window->close();
    };
    about_->Label0->click = [this] { MakeClip(u"empty.nsf"_s); };
    const auto endWhenEnding = [this] {
      if (desk_.state.gEnding) desk_.host.endProcess();
    };
    about_->unload = endWhenEnding;
    about_->terminate = endWhenEnding;
    about_->show();
  });
}

void Form1Lifecycle::MakeClip(const QString& fileName) {
  desk_.sessions.ensureSession();
  const NotesInit init(desk_.api);
  desk_.api.NSFDbCreate(desk_.api.nativeName(fileName), kClipboardClass, -1);
  desk_.state.gSession.database(QString(), fileName);
}

void Form1Lifecycle::mnuBarHide_Click() {
  trapped(desk_.host, {u"mnuBarHide_Click"_s}, [this] {
    const bool inTray = desk_.host.addTrayIcon(u"Rechte Maustaste für Menü"_s,
                                               [this](int message) { Picture1_MouseMove(message); });
    // Without a tray a hidden window could never be brought back.
    if (inTray)
      desk_.form.hide();
    else
      desk_.form.showMinimized();
  });
}

void Form1Lifecycle::showWindow() {
  desk_.form.setWindowState(desk_.form.windowState() & ~Qt::WindowMinimized);
  desk_.form.show();
  desk_.host.removeTrayIcon();
}

void Form1Lifecycle::mnuBarShow_Click() {
  trapped(desk_.host, {u"mnuBarShow_Click"_s}, [this] { showWindow(); });
}

void Form1Lifecycle::mnuBarExit_Click() {
  trapped(desk_.host, {u"mnuBarExit_Click"_s}, [this] { desk_.form.unload.raise(); });
}

void Form1Lifecycle::Picture1_MouseMove(int message) {
  trapped(desk_.host, {u"Picture1_MouseMove"_s}, [&] {
    if (message == kLeftButtonDown) {
      showWindow();
    } else if (message == kRightButtonUp) {
      desk_.form.raise();
      desk_.form.activateWindow();
      desk_.form.mnuBar->popupAt(QCursor::pos());
    }
  });
}

void Form1Lifecycle::WaitForTerm(qint64 processId) {
  trapped(desk_.host, {u"WaitForTerm"_s}, [&] { desk_.host.waitForProcess(processId); });
}

}  // namespace lens

#include "shell/form1_lifecycle.h"

#include "notes/code_page.h"
#include "notes/literals.h"
#include "shell/error_modes.h"
#include "shell/version.h"

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

Form1Lifecycle::Form1Lifecycle(Form1& form, Globals& state, CApi& api, Host& host, Routines& routines,
                               SessionRoutines& sessions, ServerLists& servers, WindowLayout& layout)
    : form_(form),
      state_(state),
      api_(api),
      host_(host),
      routines_(routines),
      sessions_(sessions),
      servers_(servers),
      layout_(layout) {
  form_.resized = [this] { Form_Resize(); };
  form_.mouseUp = [this](int button) { Form_MouseUp(button); };
  form_.unload = [this] { Form_Unload(); };
  form_.terminate = [this] { Form_Terminate(); };
  form_.cmdEnd->click = [this] { cmdEnd_Click(); };
  form_.Timer2->timer = [this] { Timer2_Timer(); };
  form_.cmdStop->click = [this] { cmdStop_Click(); };
  form_.Command1->click = [this] { Command1_Click(); };
  form_.Label6->click = [this] { Label6_Click(); };
  *form_.mnuBarHide = [this] { mnuBarHide_Click(); };
  *form_.mnuBarShow = [this] { mnuBarShow_Click(); };
  *form_.mnuBarExit = [this] { mnuBarExit_Click(); };
  servers_.registerWindow(u"Form1"_s, {form_.lstServerList});
}

void Form1Lifecycle::Form_Load() {
  trapped(host_, {u"Form_Load"_s}, [this] {
    addDocTypes.raise();
    form_.cmdScroll->setVisible(false);
    form_.cmdDelRT->setVisible(false);
    form_.lblVer->setText(versionText());
    host_.addLibraryDirectory(host_.programDirectory());
    sessions_.GetSessionProbe();
    state_.gDataDir = sessions_.GetDataDirectory();
    servers_.GetServerList2(u"Form1"_s);
    form_.fldList->setHorizontalExtent(2 * form_.fldList->width());
    form_.idList->setHorizontalExtent(2 * form_.idList->width());
    layout_.GetLocation();
    form_.sbrMain->setBackground(fromBgr(kPaleYellow));
    form_.cmdGetDoc->raiseClick();
  });
}

void Form1Lifecycle::Form_Resize() {
  layout_.ResizeControls();
  form_.txtFieldContent->setSelStart(1);
  form_.txtFieldContent->setSelLength(0);
}

void Form1Lifecycle::Form_MouseUp(int button) {
  trapped(host_, {u"Form_MouseUp"_s}, [&] {
    if (button == kRightButton) form_.mnuBar->popupAt(QCursor::pos());
  });
}

// The tray icon's removal would stand behind the end of the process and is never reached: the
// desktop clears an icon whose process has gone.
void Form1Lifecycle::releaseAndEnd() {
  state_.gSession.release();
  state_.gDb.release();
  state_.gUIWorkspace.release();
  state_.gDoc.release();
  host_.endProcess();
}

void Form1Lifecycle::Form_Unload() {
  trapped(host_, {u"Form_Unload"_s}, [this] { releaseAndEnd(); });
}

void Form1Lifecycle::Form_Terminate() {
  // This one box lacks the word "Formular".
  trapped(host_, {u"Form_Terminate"_s, u"Form1"_s}, [this] { releaseAndEnd(); });
}

void Form1Lifecycle::cmdEnd_Click() {
  trapped(host_, {u"cmdEnd_Click"_s}, [this] {
    state_.gSession.release();
    state_.gDb.release();
    state_.gUIWorkspace.release();
    state_.gDoc.release();
    state_.gEnding = true;
    host_.endProcess();
  });
}

void Form1Lifecycle::Timer2_Timer() {
  const QString stamp = host_.regional().stampText(host_.now());
  // The blank stays in the text. At exact midnight there is none, and nothing is shown.
  const qsizetype blank = stamp.indexOf(u' ');
  form_.lblTime->setText(blank < 0 ? QString() : stamp.mid(blank));
}

void Form1Lifecycle::cmdStop_Click() {
  state_.gIdScanRunning = false;
  host_.yield();
}

void Form1Lifecycle::Command1_Click() {
  state_.gDesignStop = true;
}

void Form1Lifecycle::Label6_Click() {
  trapped(host_, {u"Label6_Click"_s}, [this] {
    about_ = new About(&form_);
    about_->lblVer->setText(versionText());
    routines_.CenterForm(*about_);
    routines_.StayNotOnTop(*about_);
    about_->Image1->click = [window = about_] {
      if (window) window->close();
    };
    about_->Label0->click = [this] { MakeClip(u"empty.nsf"_s); };
    const auto endWhenEnding = [this] {
      if (state_.gEnding) host_.endProcess();
    };
    about_->unload = endWhenEnding;
    about_->terminate = endWhenEnding;
    about_->show();
  });
}

void Form1Lifecycle::MakeClip(const QString& fileName) {
  sessions_.ensureSession();
  const NotesInit init(api_);
  api_.NSFDbCreate(toCodePage(fileName), kClipboardClass, -1);
  state_.gSession.database(QString(), fileName);
}

void Form1Lifecycle::mnuBarHide_Click() {
  trapped(host_, {u"mnuBarHide_Click"_s}, [this] {
    const bool inTray = host_.addTrayIcon(u"Rechte Maustaste für Menü"_s,
                                          [this](int message) { Picture1_MouseMove(message); });
    // Without a tray a hidden window could never be brought back.
    if (inTray)
      form_.hide();
    else
      form_.showMinimized();
  });
}

void Form1Lifecycle::showWindow() {
  form_.setWindowState(form_.windowState() & ~Qt::WindowMinimized);
  form_.show();
  host_.removeTrayIcon();
}

void Form1Lifecycle::mnuBarShow_Click() {
  trapped(host_, {u"mnuBarShow_Click"_s}, [this] { showWindow(); });
}

void Form1Lifecycle::mnuBarExit_Click() {
  trapped(host_, {u"mnuBarExit_Click"_s}, [this] { form_.unload.raise(); });
}

void Form1Lifecycle::Picture1_MouseMove(int message) {
  trapped(host_, {u"Picture1_MouseMove"_s}, [&] {
    if (message == kLeftButtonDown) {
      showWindow();
    } else if (message == kRightButtonUp) {
      form_.raise();
      form_.activateWindow();
      form_.mnuBar->popupAt(QCursor::pos());
    }
  });
}

void Form1Lifecycle::WaitForTerm(qint64 processId) {
  trapped(host_, {u"WaitForTerm"_s}, [&] { host_.waitForProcess(processId); });
}

}  // namespace lens

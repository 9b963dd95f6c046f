#include "app/application.h"

#include <QScreen>
#include <QTimer>

#include "inspector/type_table.h"
#include "notes/literals.h"

namespace lens {
namespace {

constexpr QSize kComfortableSize(1440, 900);
constexpr double kSmallestScale = 0.8;
// What title bar and borders take of usual desktops; how much it really is shows only when the window is
// there.
constexpr int kFrameHeight = 40;
constexpr int kLooks = 20;
constexpr int kLookEveryMs = 50;

// On a screen lower than the design all places shrink before they are recorded, so the font stays.
void scaleDesign(QWidget& window, double scale) {
  for (QWidget* control : window.findChildren<QWidget*>()) {
    if (!control->property("tabIndex").isValid()) continue;
    const QRect place = control->geometry();
    control->setGeometry(place.x(), qRound(place.y() * scale), place.width(), qRound(place.height() * scale));
  }
  window.resize(window.width(), qRound(window.height() * scale));
}

}  // namespace

Application::Application(Gateway& notes, CApi& api, Host& host, const QString& source)
    : routines(host, api),
      sessions(state, notes, host),
      servers(state, host, api, routines),
      databases(state, host),
      layout(form, host),
      desk{form, state, notes, api, host, routines, sessions, layout},
      lifecycle(desk, servers),
      capture(desk),
      lowLevel(desk),
      agentInfo(desk),
      viewer(desk, lowLevel, agentInfo),
      properties(desk),
      addition(desk, lowLevel),
      overwriting(desk, lowLevel),
      searchReplace(desk),
      contentBox(desk),
      collection(desk),
      filePane(desk),
      designs(desk),
      designDocs(desk),
      designCopy(desk, servers, databases),
      databasePicker(desk, servers, databases),
      profiles(desk),
      deletion(desk),
      fieldTypes(desk),
      fieldDump(desk),
      formulaTools(desk),
      helpLookup(desk),
      remoteConsole(desk),
      hostTools(desk) {
  installUntrappedReport(host);
  fieldDump.openFile = [this](const QString& path) { filePane.ShellOpenFile(path); };
  hostTools.openFile = [this](const QString& path) { filePane.ShellOpenFile(path); };
  lifecycle.addDocTypes = [this, &host] { addDocTypes(state, *form.cmbFieldType, host); };
  deletion.refreshCurrentView = [this] { capture.RefreshCurrentView(); };
  form.sbrMain->setPanelText(u"Source"_s, source);
}

void Application::start() {
  const QSize free = form.screen()->availableSize();
  const double scale = double(free.height() - kFrameHeight) / form.height();
  if (scale < 1) scaleDesign(form, qMax(scale, kSmallestScale));
  lifecycle.Form_Load();
  if (free.width() > kComfortableSize.width() && free.height() > kComfortableSize.height())
    form.resize(kComfortableSize);
  form.Timer2->setEnabled(true);
  lifecycle.Timer2_Timer();
  form.show();
  fitToDesktop(kLooks);
}

// Window managers place a window, and may make it smaller, some time after it was shown. What comes later
// than that is the user's own resize.
void Application::fitToDesktop(int looks) {
  if (looks == 0) return;
  QTimer::singleShot(kLookEveryMs, &form, [this, looks] {
    const int before = layout.recordedHeight();
    layout.fitRecordToHeight();
    if (layout.recordedHeight() != before) lifecycle.Form_Resize();
    fitToDesktop(looks - 1);
  });
}

void installUntrappedReport(Host& host) {
  setUntrappedReport([&host](const RuntimeError& error) {
    host.messageBox(u"Run-time error '%1':"_s.arg(error.number()) + u"\n\n" + error.description(),
                    box::Critical);
  });
}

}  // namespace lens

#include "app/launcher.h"

#include <QApplication>
#include <QDir>
#include <QFileInfo>
#include <QTimer>
#include <utility>

#include "app/closed_doors.h"
#include "app/sample_workspace.h"
#include "client/kept_databases.h"
#include "controls/look.h"
#include "embedded/capi/embedded_capi.h"
#include "embedded/model/embedded_gateway.h"
#include "embedded/workspace/chosen_workspace.h"
#include "notes/literals.h"

namespace lens {
namespace {

// Milliseconds in which the main window is drawn before the client window is made.
constexpr int kMoment = 20;

// The user's own is made at the first start, with the directories that lead to it.
QString placeForWorkspace() {
  const QString directory = chosenWorkspace();
  if (!isWorkspaceNamed()) QDir().mkpath(QFileInfo(directory).path());
  return directory;
}

// Beside what else the user's directory holds. Without such a directory nothing is kept.
QString fileOfWindows(Host& host) {
  const QString directory = host.userDirectory();
  return directory.isEmpty() ? QString() : host.joinPath(directory, u"windows.ini"_s);
}

}  // namespace

Launcher::Launcher(Host& host, ClientDoors client) : host_(host), kept_(fileOfWindows(host)) {
  // Hiding into the tray, a box at the start or a closed client window must not end the process.
  QApplication::setQuitOnLastWindowClosed(false);
  applyLook();
  const QString source = openDoors(std::move(client));
  application_ = std::make_unique<Application>(*notes_, *capi_, host_, source);
}

QString Launcher::openDoors(ClientDoors client) {
  if (client.notes && !isWorkspaceNamed()) {
    notes_ = std::move(client.notes);
    capi_ = std::move(client.capi);
    return u"Notes client"_s;
  }
  openWorkspace();
  if (!workspace_) {
    notes_ = std::make_unique<ClosedGateway>(failure_);
    capi_ = std::make_unique<ClosedCApi>(failure_);
    return u"No workspace"_s;
  }
  workspace_->setInterruptCheck([&host = host_] { return host.escapePressed(); });
  notes_ = std::make_unique<EmbeddedGateway>(workspace_);
  capi_ = std::make_unique<EmbeddedCApi>(workspace_);
  return u"Embedded: "_s + QDir::toNativeSeparators(workspace_->directory());
}

Launcher::~Launcher() = default;

// Behind the main window, which the user came for; it is made when that one has been drawn.
void Launcher::openClient() {
  client_ = std::make_unique<ClientWindow>(workspace_);
  client_->keepState(kept_);
  firstDatabase_.reset();
  client_->setAttribute(Qt::WA_ShowWithoutActivating);
  client_->show();
  client_->lower();
  client_->setAttribute(Qt::WA_ShowWithoutActivating, false);
  // Closing the client window hides it; the panel that names the source brings it back.
  application_->form.sbrMain->setToolTip(u"Click on the source to show the client window"_s);
  application_->form.sbrMain->panelClick = [this](const QString& key) { sbrMain_PanelClick(key); };
  if (files_.isEmpty()) return;
  showClient();
  client_->openFiles(std::exchange(files_, {}));
}

template <class Body>
bool Launcher::tell(Body&& statements) {
  try {
    statements();
    return true;
  } catch (const RuntimeError& error) {
    failure_ = error.description();
    host_.messageBox(failure_, box::Critical, u"Workspace"_s);
    return false;
  }
}

// A sample that cannot be read must not keep the user from the other databases.
void Launcher::openWorkspace() {
  if (!tell([this] { workspace_ = Workspace::open(placeForWorkspace(), host_.regional()); })) return;
  tell([this] { fillFirstTime(*workspace_); });
  firstDatabase_ = openKeptDatabase(*workspace_, kept_);
  if (!firstDatabase_) tell([this] { firstDatabase_ = openSampleMail(*workspace_); });
}

void Launcher::sbrMain_PanelClick(const QString& key) {
  if (key == u"Source") showClient();
}

void Launcher::showClient() {
  client_->showNormal();
  client_->raise();
  client_->activateWindow();
}

void Launcher::start() {
  application_->restorePlace = [this](QWidget& window) {
    return (new KeptPlace(window, kept_, u"main/place"_s))->restore();
  };
  application_->start();
  if (workspace_) QTimer::singleShot(kMoment, &application_->form, [this] { openClient(); });
}

}  // namespace lens

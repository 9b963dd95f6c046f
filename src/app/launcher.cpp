#include "app/launcher.h"

#include <QApplication>
#include <QDir>
#include <QFileInfo>
#include <QScreen>
#include <QTimer>
#include <utility>

#include "app/closed_doors.h"
#include "app/sample_workspace.h"
#include "app/window_places.h"
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
// Below that the client window is of no use beside the main window.
constexpr QSize kLeastClient(520, 400);

// What the desktop draws around a window.
QMargins frameOf(const QWidget& window) {
  const QRect outside = window.frameGeometry(), inside = window.geometry();
  return {inside.left() - outside.left(), inside.top() - outside.top(), outside.right() - inside.right(),
          outside.bottom() - inside.bottom()};
}

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

Launcher::Launcher(Host& host, ClientDoors client, WorkspaceChoice* choice)
    : host_(host), choice_(choice), kept_(fileOfWindows(host)) {
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

// Beside the main window where there is room, else behind it, since it is the main window that the user came
// for.
void Launcher::placeClient() {
  const Form1& form = application_->form;
  QVector<QRect> screens{form.screen()->availableGeometry()};
  for (const QScreen* screen : QGuiApplication::screens())
    if (screen != form.screen()) screens += screen->availableGeometry();
  // Its own frame is not known before the desktop has drawn it; it will be like the other one's.
  const QMargins frame = frameOf(form);
  const QRect window = form.frameGeometry();
  const auto place = placeBeside(window, screens, client_->size().grownBy(frame), kLeastClient);
  if (!place) return client_->lower();
  const QRect whole = widenedBehind(*place, window, client_->minimumSizeHint().grownBy(frame).width());
  client_->setGeometry(whole.marginsRemoved(frame));
  if (whole.intersects(window)) client_->lower();
}

// It is made when the main window has been drawn.
void Launcher::openClient() {
  client_ = std::make_unique<ClientWindow>(workspace_);
  const bool hasPlace = client_->keepState(kept_);
  firstDatabase_.reset();
  client_->setAttribute(Qt::WA_ShowWithoutActivating);
  client_->show();
  if (hasPlace)
    client_->lower();
  else
    placeClient();
  client_->setAttribute(Qt::WA_ShowWithoutActivating, false);
  // Closing the client window hides it.
  access_ = std::make_unique<ClientAccess>(application_->form, [this] { showClient(); });
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

// The directory that was opened; none is when the user goes on without.
QString Launcher::openFirstThatCan(QString directory) {
  while (!directory.isEmpty()) {
    try {
      workspace_ = Workspace::open(directory, host_.regional());
      return directory;
    } catch (const RuntimeError& error) {
      failure_ = error.description();
    }
    if (!choice_) {
      host_.messageBox(failure_, box::Critical, u"Workspace"_s);
      return {};
    }
    directory = choice_->another(directory, failure_);
  }
  return {};
}

// A sample that cannot be read must not keep the user from the other databases.
void Launcher::openWorkspace() {
  const QString first = placeForWorkspace(), directory = openFirstThatCan(first);
  if (!workspace_) return;
  if (directory != first) nameWorkspace(directory);
  tell([this] { fillFirstTime(*workspace_); });
  firstDatabase_ = openKeptDatabase(*workspace_, kept_);
  if (!firstDatabase_) tell([this] { firstDatabase_ = openSampleMail(*workspace_); });
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

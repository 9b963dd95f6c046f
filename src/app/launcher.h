// The program as a whole: chooses what stands behind the two doors, and builds the windows on it.
#pragma once

#include <memory>

#include "app/application.h"
#include "app/client_access.h"
#include "app/client_doors.h"
#include "app/workspace_choice.h"
#include "client/client_window.h"
#include "controls/kept_settings.h"
#include "embedded/workspace/workspace.h"
#include "host/host.h"

namespace lens {

class Launcher {
 public:
  // Opens the workspace that the environment variable TESSALY_WORKSPACE names, else works on the client where
  // this platform has one, else opens the user's own workspace, which the first start fills with samples.
  // What was open at the end of the last start is open again. When a workspace cannot be opened the user is
  // told why and may choose another one, where there is a choice (not owned); else the program comes up with
  // closed doors.
  explicit Launcher(Host& host, ClientDoors client = {}, WorkspaceChoice* choice = nullptr);
  ~Launcher();

  // Files that the client window opens when it has come up, which brings it to the front.
  void openWhenShown(const QStringList& files) { files_ = files; }

  // Shows the windows.
  void start();

  Application& application() { return *application_; }
  // Null without a workspace, and until the main window has been drawn.
  ClientWindow* client() { return client_.get(); }

 private:
  // Puts something behind the two doors; what it is, for the user.
  QString openDoors(ClientDoors client);
  void openWorkspace();
  QString openFirstThatCan(QString directory);
  void placeClient();
  // Shows a failure with the title "Workspace"; false then.
  template <class Body>
  bool tell(Body&& statements);
  void openClient();
  void showClient();

  Host& host_;
  WorkspaceChoice* choice_;
  KeptSettings kept_;  // of the windows
  QString failure_;
  QStringList files_;  // to be opened
  std::shared_ptr<Workspace> workspace_;
  std::shared_ptr<Database> firstDatabase_;  // held until the first screen is there
  std::unique_ptr<Gateway> notes_;
  std::unique_ptr<CApi> capi_;
  std::unique_ptr<Application> application_;
  std::unique_ptr<ClientWindow> client_;
  std::unique_ptr<ClientAccess> access_;
};

}  // namespace lens

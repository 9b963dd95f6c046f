// The program as a whole: chooses what stands behind the two doors, and builds the windows on it.
#pragma once

#include <memory>

#include "app/application.h"
#include "client/client_window.h"
#include "embedded/workspace.h"
#include "host/desktop_host.h"

namespace lens {

class Program {
 public:
  // Opens the workspace that the environment variable TESSALY_WORKSPACE names, else the user's own,
  // which the first start fills with samples. When it cannot be opened the user is told why, and the
  // program comes up with closed doors.
  Program();
  ~Program();

  // Shows the windows.
  void start();

 private:
  void openWorkspace();
  void showClient();

  DesktopHost host_;
  QString failure_;
  std::shared_ptr<Workspace> workspace_;
  std::unique_ptr<Gateway> notes_;
  std::unique_ptr<CApi> capi_;
  std::unique_ptr<Application> application_;
  std::unique_ptr<ClientWindow> client_;
};

}  // namespace lens
